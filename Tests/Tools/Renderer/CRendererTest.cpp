#include "CRenderer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "CTestPlugin.h"

namespace tarv::host {
namespace {

using CFile = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

CFile fileOf(const std::vector<double>& samples, size_t extraBytes = 0) {
    CFile file(std::tmpfile(), &std::fclose);
    std::fwrite(samples.data(), sizeof(double), samples.size(), file.get());
    std::fwrite(samples.data(), 1, extraBytes, file.get());
    std::rewind(file.get());
    return file;
}

std::vector<double> samplesOf(std::FILE* file) {
    std::rewind(file);
    std::vector<double> samples;
    for (double sample = 0.0; std::fread(&sample, sizeof sample, 1, file) == 1;) {
        samples.push_back(sample);
    }
    return samples;
}

class CRendererTest : public ::testing::Test {
protected:
    void SetUp() override {
        CTestPlugin::hasDisplayRequest = true;
        ASSERT_TRUE(host.open(&CTestPlugin::entry));
        options.rate = 1000.0;
        options.block = 64;
        for (int i = 0; i < 200; ++i) {
            stereo.push_back(0.1 * i);
            stereo.push_back(-0.3 * i);
        }
    }

    bool render() {
        CRenderer renderer(host, options);
        CFile input = fileOf(stereo);
        CFile output(std::tmpfile(), &std::fclose);
        const bool done = renderer.resolve(error) && renderer.renderAll(input.get(), output.get(), error);
        result = samplesOf(output.get());
        frames = renderer.frames();
        return done;
    }

    CVstHost host;
    CRenderOptions options;
    std::vector<double> stereo;
    std::vector<double> result;
    int64_t frames = 0;
    std::string error;
};

TEST_F(CRendererTest, TheEffectIsDrivenInAHostsOrder) {
    ASSERT_TRUE(render()) << error;
    EXPECT_EQ(CTestPlugin::last->log, "rate 1000 block 64 precision 1 resume suspend ");
    EXPECT_EQ(CTestPlugin::last->blocks, (std::vector<int32_t>{64, 64, 64, 8}));
    EXPECT_EQ(frames, 200);
}

TEST_F(CRendererTest, SamplesPassAsTheyAreIn64Bits) {
    ASSERT_TRUE(render()) << error;
    EXPECT_EQ(result, stereo);
}

TEST_F(CRendererTest, SamplesAreRoundedIn32Bits) {
    options.precision = 32;
    ASSERT_TRUE(render()) << error;
    ASSERT_EQ(result.size(), stereo.size());
    for (size_t i = 0; i < stereo.size(); ++i) {
        ASSERT_EQ(result[i], static_cast<double>(static_cast<float>(stereo[i])));
    }
}

TEST_F(CRendererTest, BlocksAreCutAtTheFrameOfEachChange) {
    options.changes = {{0.150, "Gain", "+6dB"}, {0.010, "Gain", "-6dB"}, {0.150, "Oversmp", "8x"}};
    ASSERT_TRUE(render()) << error;
    EXPECT_EQ(CTestPlugin::last->blocks, (std::vector<int32_t>{10, 64, 64, 12, 50}));
    ASSERT_EQ(result.size(), stereo.size());
    for (size_t i = 0; i < stereo.size(); ++i) {
        const double db = i < 2 * 10 ? 0.0 : i < 2 * 150 ? -6.0 : 6.0;
        // The position is a 32-bit float over 24 dB.
        ASSERT_NEAR(result[i], stereo[i] * std::pow(10.0, db / 20.0), 1e-6 * std::abs(stereo[i]) + 1e-12) << i;
    }
    EXPECT_NEAR(CTestPlugin::last->values[1], 1.0f, 1e-3);
}

TEST_F(CRendererTest, SettingsAreMadeBeforeTheFirstBlock) {
    options.settings = {{0.0, "Gain", "0.75"}};
    ASSERT_TRUE(render()) << error;
    EXPECT_NEAR(result[2], stereo[2] * std::pow(10.0, 6.0 / 20.0), 1e-9);
}

TEST_F(CRendererTest, RandomBlocksCoverTheInputAndComeAgainWithTheSeed) {
    options.isRandom = true;
    options.block = 40;
    options.seed = 7;
    ASSERT_TRUE(render()) << error;
    const std::vector<int32_t> first = CTestPlugin::last->blocks;
    EXPECT_EQ(std::accumulate(first.begin(), first.end(), 0), 200);
    EXPECT_GT(first.size(), 5u);
    EXPECT_EQ(result, stereo);
    CTestPlugin::last->blocks.clear();
    ASSERT_TRUE(render());
    EXPECT_EQ(CTestPlugin::last->blocks, first);
    options.seed = 8;
    CTestPlugin::last->blocks.clear();
    ASSERT_TRUE(render());
    EXPECT_NE(CTestPlugin::last->blocks, first);
}

TEST_F(CRendererTest, TheTailIsSilenceBehindTheInput) {
    options.tail = 0.1;
    ASSERT_TRUE(render()) << error;
    EXPECT_EQ(frames, 300);
    ASSERT_EQ(result.size(), 600u);
    EXPECT_EQ(result[400], 0.0);
    EXPECT_EQ(result[599], 0.0);
}

TEST_F(CRendererTest, AnEmptyInputGivesAnEmptyOutput) {
    stereo.clear();
    ASSERT_TRUE(render()) << error;
    EXPECT_TRUE(result.empty());
    EXPECT_TRUE(CTestPlugin::last->blocks.empty());
}

TEST_F(CRendererTest, AnInputThatEndsInsideAFrameFails) {
    stereo.push_back(1.0);
    EXPECT_FALSE(render());
    EXPECT_EQ(error, "the input ends inside a frame");
}

TEST_F(CRendererTest, AnUnknownNameOrValueFailsBeforeAnythingRuns) {
    options.changes = {{0.0, "Treble", "+6dB"}};
    EXPECT_FALSE(render());
    EXPECT_EQ(error, "no parameter is named 'Treble'; --list shows the names");
    options.changes = {{0.0, "Gain", "99dB"}};
    EXPECT_FALSE(render());
    EXPECT_EQ(error, "Gain: 99 lies outside -12 to 12");
    EXPECT_EQ(CTestPlugin::last->log, "");
}

TEST(CVstHostTest, APluginThatWantsANewerHostGivesNone) {
    CHostAnswers old;
    old.masterVersion = 2300;
    CVstHost host(old);
    EXPECT_FALSE(host.open(&CTestPlugin::entry));
}

}  // namespace
}  // namespace tarv::host
