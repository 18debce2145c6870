#pragma once

#include <ladspa.h>

#include "Benchmarks/Peers/CPeer.h"

namespace tarv::bench {

/// A plug-in of a LADSPA library.
class CLadspaPeer final : public CPeer {
public:
    /// Of the first file in LADSPA's folder that fits `file`, a pattern of the shell; null without it.
    static std::unique_ptr<CPeer> create(const std::string& file, const std::string& label,
                                         const std::vector<CPeerSetting>& settings, double rate);
    ~CLadspaPeer() override;
    void process(float* const* in, float* const* out, int32_t frames) override;

private:
    struct CInstance {
        LADSPA_Handle handle = nullptr;
        std::vector<float> controls;
        std::vector<unsigned long> in;
        std::vector<unsigned long> out;
    };

    explicit CLadspaPeer(void* library) : library_(library) {}
    bool open(const std::string& label, const std::vector<CPeerSetting>& settings, double rate);
    bool addInstance(const std::vector<CPeerSetting>& settings, double rate);
    float defaultOf(unsigned long port, double rate) const;

    void* library_;
    const LADSPA_Descriptor* descriptor_ = nullptr;
    std::vector<CInstance> instances_;
};

}  // namespace tarv::bench
