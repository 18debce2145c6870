// Hosts of several versions and vendors, and how the effect treats each.
#include "HostTest.h"

namespace tarv::host {
namespace {

using HostKindsTest = HostTest;

TEST_F(HostKindsTest, ChannelsDependOnTheHostsVersionAndProduct) {
    const struct {
        int32_t version;
        const char* product;
        int32_t channels;
    } rows[] = {
        {2400, "Any", 8},           {2300, "Any", 8},
        {2299, "Any", 2},           {1, "Any", 2},
        {2400, "Sony ACID Pro", 2}, {2400, "Sony ACID Pro 6", 8},
        {2400, "sony acid pro", 8}, {2400, "", 8},
    };
    for (const auto& row : rows) {
        CVstHost host;
        host.answers.masterVersion = row.version;
        host.answers.product = row.product;
        ASSERT_TRUE(host.open(library->entry())) << row.version << row.product;
        EXPECT_EQ(host.effect()->numInputs, row.channels) << row.version << row.product;
        EXPECT_EQ(host.effect()->numOutputs, row.channels) << row.version << row.product;
    }
}

TEST_F(HostKindsTest, AHostOfTwoChannelsGetsBoth) {
    CVstHost host;
    host.answers.masterVersion = 2299;
    ASSERT_TRUE(host.open(library->entry()));
    host.prepare(44100.0, 512, vst::kPrecision64);
    host.setParameter(kBypass, 1.0f);
    host.resume();
    const auto input = noise<double>(2, 2000);
    const auto output = process(host, input);
    for (int c = 0; c < 2; ++c) {
        for (size_t i = 0; i < input[c].size(); ++i) {
            // The anti-denormal noise is 1e-11.
            ASSERT_NEAR(output[c][i], input[c][i], 1.1e-11);
        }
    }
}

TEST_F(HostKindsTest, AHostWithoutAVersionGetsNoEffect) {
    CVstHost host;
    host.answers.masterVersion = 0;
    EXPECT_FALSE(host.open(library->entry()));
    EXPECT_EQ(library->entry()(nullptr), nullptr);
}

intptr_t answerVersionOnly(vst::AEffect*, int32_t opcode, int32_t, intptr_t, void*, float) {
    return opcode == vst::kHostVersion;
}

TEST_F(HostKindsTest, AHostThatAnswersOnlyItsVersionGetsAnEffect) {
    vst::AEffect* e = library->entry()(&answerVersionOnly);
    ASSERT_NE(e, nullptr);
    EXPECT_EQ(e->numInputs, 2);
    float left[64] = {0.5f}, right[64] = {0.5f};
    float* channels[] = {left, right};
    e->dispatcher(e, vst::kEffectMainsChanged, 0, 1, nullptr, 0.0f);
    e->processReplacing(e, channels, channels, 64);
    e->process(e, channels, channels, 64);
    e->dispatcher(e, vst::kEffectMainsChanged, 0, 0, nullptr, 0.0f);
    EXPECT_EQ(e->dispatcher(e, vst::kEffectClose, 0, 0, nullptr, 0.0f), 1);
}

TEST_F(HostKindsTest, AHostWhoseCallsMustBeSerialisedSoundsTheSame) {
    CVstHost locked;
    locked.answers.product = "Best WaveLab 6";
    ASSERT_TRUE(locked.open(library->entry()));
    locked.prepare(44100.0, 4096, vst::kPrecision64);
    locked.resume();
    const auto input = noise<double>(kChannels, 3000);
    EXPECT_TRUE(sameBits(process(locked, input), render(library->entry(), input, 44100.0)));
    locked.suspend();
}

TEST_F(HostKindsTest, AHostWithOverlongNamesGetsAnEffect) {
    CVstHost host;
    host.answers.vendor = host.answers.product = std::string(63, 'W');
    EXPECT_TRUE(host.open(library->entry()));
}

TEST_F(HostKindsTest, SpeakersAreKeptForTheHost) {
    CVstHost host;
    ASSERT_TRUE(host.open(library->entry()));
    vst::SpeakerArrangement* input = nullptr;
    vst::SpeakerArrangement* output = nullptr;
    const auto inputOut = reinterpret_cast<intptr_t>(&input);
    EXPECT_EQ(host.dispatch(vst::kEffectGetSpeakerArrangement, 0, inputOut, &output), 0);
    EXPECT_EQ(input, nullptr);
    vst::SpeakerArrangement stereo{};
    stereo.type = vst::kArrangementStereo;
    stereo.numChannels = 2;
    vst::SpeakerArrangement mono{};
    mono.numChannels = 1;
    const auto stereoIn = reinterpret_cast<intptr_t>(&stereo);
    EXPECT_EQ(host.dispatch(vst::kEffectSetSpeakerArrangement, 0, stereoIn, &mono), 1);
    EXPECT_EQ(host.dispatch(vst::kEffectGetSpeakerArrangement, 0, inputOut, &output), 1);
    ASSERT_TRUE(input && output);
    EXPECT_EQ(input->type, vst::kArrangementStereo);
    EXPECT_EQ(input->numChannels, 2);
    EXPECT_EQ(output->numChannels, 1);
    EXPECT_EQ(host.dispatch(vst::kEffectSetSpeakerArrangement, 0, 0, &mono), 0);
    EXPECT_EQ(host.dispatch(vst::kEffectSetSpeakerArrangement, 0, stereoIn, nullptr), 0);
    stereo.numChannels = 1 << 30;
    EXPECT_EQ(host.dispatch(vst::kEffectSetSpeakerArrangement, 0, stereoIn, &mono), 1);
    stereo.numChannels = -5;
    EXPECT_EQ(host.dispatch(vst::kEffectSetSpeakerArrangement, 0, stereoIn, &mono), 1);
}

}  // namespace
}  // namespace tarv::host
