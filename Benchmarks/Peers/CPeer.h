#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tarv::bench {

/// Controls whose name, or symbol, fits the pattern of a shell get `first` and `second` in turn.
struct CPeerSetting {
    std::string pattern;
    float first;
    float second;
};

/// A plug-in that processes stereo in 32 bits: one instance, or two of a mono one.
class CPeer {
public:
    CPeer() = default;
    virtual ~CPeer() = default;
    CPeer(const CPeer&) = delete;
    CPeer& operator=(const CPeer&) = delete;

    /// `frames` samples at most those that it was made for; two channels each.
    virtual void process(float* const* in, float* const* out, int32_t frames) = 0;
};

/// Applies settings to the controls of a plug-in, by name.
class CPeerSettings {
public:
    explicit CPeerSettings(const std::vector<CPeerSetting>& settings) : settings_(settings), counts_(settings.size()) {}
    /// The value of the next control, or `otherwise` if no pattern fits it.
    float valueOf(const char* name, float otherwise);

private:
    const std::vector<CPeerSetting>& settings_;
    std::vector<int32_t> counts_;
};

}  // namespace tarv::bench
