#include "Tools/SignalMeter/CFloatWav.h"

#include <cmath>
#include <cstring>

namespace tarv {

namespace {

constexpr uint16_t kFloatFormat = 3;

/// The file's beginning, field by field as it lies there.
#pragma pack(push, 1)
struct CHeader {
    char riff[4] = {'R', 'I', 'F', 'F'};
    uint32_t riffSize = 0;
    char wave[4] = {'W', 'A', 'V', 'E'};
    char fmt[4] = {'f', 'm', 't', ' '};
    uint32_t fmtSize = 18;
    uint16_t format = kFloatFormat;
    uint16_t channels = 0;
    uint32_t rate = 0;
    uint32_t bytesPerSecond = 0;
    uint16_t bytesPerFrame = 0;
    uint16_t bits = 32;
    uint16_t extraSize = 0;
    // A format other than whole numbers has to say how many frames there are.
    char fact[4] = {'f', 'a', 'c', 't'};
    uint32_t factSize = 4;
    uint32_t frames = 0;
    char data[4] = {'d', 'a', 't', 'a'};
    uint32_t dataSize = 0;
};
#pragma pack(pop)
static_assert(sizeof(CHeader) == 58);

constexpr uint64_t kMostBytes = 0xffffffffu - sizeof(CHeader);

}  // namespace

CFloatWav::~CFloatWav() {
    if (file_ != nullptr) {
        std::fclose(file_);
    }
}

bool CFloatWav::open(const std::string& path) {
    file_ = std::fopen(path.c_str(), "wb");
    return file_ != nullptr && writeHeader();
}

bool CFloatWav::writeHeader() {
    const auto bytes = static_cast<uint32_t>(samples_ * sizeof(float));
    CHeader header;
    header.riffSize = static_cast<uint32_t>(sizeof(CHeader)) - 8 + bytes;
    header.channels = static_cast<uint16_t>(channels_);
    header.rate = static_cast<uint32_t>(std::lround(rate_));
    header.bytesPerFrame = static_cast<uint16_t>(sizeof(float) * channels_);
    header.bytesPerSecond = header.rate * header.bytesPerFrame;
    header.frames = static_cast<uint32_t>(samples_ / static_cast<uint64_t>(channels_));
    header.dataSize = bytes;
    return std::fwrite(&header, sizeof header, 1, file_) == 1;
}

bool CFloatWav::write(std::span<const double> samples) {
    if ((samples_ + samples.size()) * sizeof(float) > kMostBytes) {
        return false;
    }
    block_.assign(samples.begin(), samples.end());
    samples_ += samples.size();
    return std::fwrite(block_.data(), sizeof(float), block_.size(), file_) == block_.size();
}

bool CFloatWav::close() {
    const bool isWhole = std::fseek(file_, 0, SEEK_SET) == 0 && writeHeader();
    const bool isClosed = std::fclose(file_) == 0;
    file_ = nullptr;
    return isWhole && isClosed;
}

}  // namespace tarv
