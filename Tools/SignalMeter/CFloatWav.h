#pragma once

#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

namespace tarv {

/// Writes a WAV file of 32-bit floats (format 3), rounded to nearest. Samples beyond full scale stay what they are,
/// which programs that count in whole numbers inside would clip. Little-endian machines only.
class CFloatWav {
public:
    /// `channels` from 1 up; `rate` in hertz, of which the file keeps the next whole number.
    CFloatWav(int channels, double rate) : channels_(channels), rate_(rate) {}
    ~CFloatWav();
    CFloatWav(const CFloatWav&) = delete;
    CFloatWav& operator=(const CFloatWav&) = delete;

    [[nodiscard]] bool open(const std::string& path);
    /// Interleaved samples, whole frames. False if the file takes no more, or would pass the 4 GiB that the form holds.
    [[nodiscard]] bool write(std::span<const double> samples);
    /// Writes the sizes, which are known now.
    [[nodiscard]] bool close();

private:
    bool writeHeader();

    int channels_;
    double rate_;
    std::FILE* file_ = nullptr;
    uint64_t samples_ = 0;
    std::vector<float> block_;
};

}  // namespace tarv
