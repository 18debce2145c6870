#pragma once

#include "Benchmarks/Peers/CLv2World.h"
#include "Benchmarks/Peers/CPeer.h"

namespace tarv::bench {

/// A stereo LV2 plug-in.
class CLv2Peer final : public CPeer {
public:
    /// Null if it is not installed. `world` outlives it.
    static std::unique_ptr<CPeer> create(CLv2World& world, const std::string& uri,
                                         const std::vector<CPeerSetting>& settings);
    ~CLv2Peer() override;
    void process(float* const* in, float* const* out, int32_t frames) override;

private:
    static constexpr uint32_t kEventBytes = 8192;

    CLv2Peer() = default;
    void connect(CLv2World& world, const LilvPlugin* plugin, const std::vector<CPeerSetting>& settings);
    void clearEvents();

    LilvInstance* instance_ = nullptr;
    std::vector<float> controls_;
    std::vector<uint32_t> in_;
    std::vector<uint32_t> out_;
    std::vector<std::vector<uint64_t>> events_;
    std::vector<bool> areEventsIn_;
    uint32_t sequence_ = 0;
    uint32_t chunk_ = 0;
};

}  // namespace tarv::bench
