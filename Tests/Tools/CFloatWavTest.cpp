#include "Tools/SignalMeter/CFloatWav.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace tarv {
namespace {

template <class T>
T at(const std::string& bytes, size_t offset) {
    T value{};
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

TEST(FloatWav, KeepsSamplesBeyondFullScaleUnderARightHeader) {
    const std::string path = testing::TempDir() + "tarv-float.wav";
    const std::vector<double> samples = {0.5, -1.0, 2.0, -3.5, 1e-11, 0.1};
    CFloatWav wav(2, 47999.6);
    ASSERT_TRUE(wav.open(path));
    ASSERT_TRUE(wav.write({samples.data(), 4}));
    ASSERT_TRUE(wav.write({samples.data() + 4, 2}));
    ASSERT_TRUE(wav.close());
    std::ifstream in(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    std::filesystem::remove(path);
    ASSERT_EQ(bytes.size(), 58u + 6 * 4);
    EXPECT_EQ(bytes.substr(0, 4) + bytes.substr(8, 8) + bytes.substr(38, 4) + bytes.substr(50, 4),
              "RIFFWAVEfmt factdata");
    EXPECT_EQ(at<uint32_t>(bytes, 4), bytes.size() - 8);
    EXPECT_EQ(at<uint16_t>(bytes, 20), 3);       // floats
    EXPECT_EQ(at<uint16_t>(bytes, 22), 2);       // channels
    EXPECT_EQ(at<uint32_t>(bytes, 24), 48000u);  // Hz
    EXPECT_EQ(at<uint32_t>(bytes, 28), 48000u * 8);
    EXPECT_EQ(at<uint16_t>(bytes, 32), 8);   // bytes a frame
    EXPECT_EQ(at<uint16_t>(bytes, 34), 32);  // bits
    EXPECT_EQ(at<uint32_t>(bytes, 46), 3u);  // frames
    EXPECT_EQ(at<uint32_t>(bytes, 54), 24u);
    for (size_t i = 0; i < samples.size(); ++i) {
        EXPECT_EQ(at<float>(bytes, 58 + 4 * i), static_cast<float>(samples[i])) << i;
    }
}

TEST(FloatWav, AFileThatCannotBeMadeIsSaid) {
    CFloatWav wav(1, 44100.0);
    EXPECT_FALSE(wav.open(testing::TempDir() + "no-such-folder/x.wav"));
}

}  // namespace
}  // namespace tarv
