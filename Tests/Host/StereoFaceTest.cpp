// The two faces of the library: the full one, and the one of two channels that a file name ending in -Stereo chooses.

#include "HostTest.h"

namespace tarv::host {
namespace {

constexpr int32_t kStereo = 2;

/// Both files in one process, as in a host that scans them.
class StereoFaceTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        std::string error;
        ASSERT_TRUE(stereoLibrary.load(kStereoFile, error)) << error;
        ASSERT_NE(stereoLibrary.entry(), library->entry());
        ASSERT_TRUE(stereo.open(stereoLibrary.entry()));
        ASSERT_TRUE(full.open(library->entry()));
    }
    void TearDown() override { stereo.close(); }

    CPluginLibrary stereoLibrary;
    CVstHost stereo;
    CVstHost full;
};

/// Values on every parameter but bypass.
void setAll(CVstHost& host) {
    for (int32_t i = 1; i < kParamCount; ++i) {
        host.setParameter(i, i == kOversampling ? 0.5f : 0.2f + 0.035f * static_cast<float>(i));
    }
}

template <class Sample>
CSignal<Sample> run(CVstHost& host, const CSignal<Sample>& input) {
    host.prepare(48000.0, 512, sizeof(Sample) == 8 ? vst::kPrecision64 : vst::kPrecision32);
    host.resume();
    CSignal<Sample> output = process(host, input);
    host.suspend();
    return output;
}

template <class Sample>
CSignal<Sample> firstTwo(const CSignal<Sample>& signal) {
    return {signal.begin(), signal.begin() + kStereo};
}

TEST_F(StereoFaceTest, ShowsTwoChannelsUnderASeparateId) {
    const vst::AEffect& e = *stereo.effect();
    EXPECT_EQ(e.numInputs, kStereo);
    EXPECT_EQ(e.numOutputs, kStereo);
    EXPECT_EQ(e.uniqueId, vst::fourCc('T', 'A', 'E', 'S'));
    EXPECT_EQ(full.effect()->numInputs, kChannels);
    EXPECT_EQ(full.effect()->uniqueId, vst::fourCc('T', 'A', 'E', 'Q'));
}

TEST_F(StereoFaceTest, HasTheSameNamesAndParametersAsTheFullFace) {
    const vst::AEffect& a = *stereo.effect();
    const vst::AEffect& b = *full.effect();
    EXPECT_EQ(a.numParams, b.numParams);
    EXPECT_EQ(a.numPrograms, b.numPrograms);
    EXPECT_EQ(a.flags, b.flags);
    EXPECT_EQ(a.version, b.version);
    EXPECT_EQ(a.initialDelay, b.initialDelay);
    for (int32_t opcode : {vst::kEffectGetEffectName, vst::kEffectGetVendorString, vst::kEffectGetProductString,
                           vst::kEffectGetProgramName}) {
        EXPECT_EQ(stereo.text(opcode), full.text(opcode)) << opcode;
    }
    for (int32_t i = 0; i < kParamCount; ++i) {
        for (int32_t opcode : {vst::kEffectGetParamName, vst::kEffectGetParamLabel, vst::kEffectGetParamDisplay}) {
            EXPECT_EQ(stereo.text(opcode, i), full.text(opcode, i)) << opcode;
        }
        EXPECT_EQ(stereo.parameter(i), full.parameter(i));
    }
}

TEST_F(StereoFaceTest, HasTheBitsOfTheFirstTwoChannelsOfTheFullFace) {
    const auto input = noise<double>(kChannels, 3000);
    const auto narrow = noise<float>(kChannels, 3000);
    for (int32_t program = 0; program < full.effect()->numPrograms; ++program) {
        for (CVstHost* host : {&stereo, &full}) {
            host->setProgram(program);
            setAll(*host);
        }
        EXPECT_TRUE(sameBits(run(stereo, firstTwo(input)), firstTwo(run(full, input)))) << program;
        EXPECT_TRUE(sameBits(run(stereo, firstTwo(narrow)), firstTwo(run(full, narrow)))) << program;
    }
}

TEST_F(StereoFaceTest, ExchangesChunksWithTheFullFace) {
    setAll(full);
    const std::string program = full.chunk(true);
    full.setProgram(3);
    const std::string bank = full.chunk(false);
    ASSERT_TRUE(stereo.setChunk(bank, false));
    EXPECT_EQ(stereo.chunk(false), bank);
    ASSERT_TRUE(stereo.setChunk(program, true));
    EXPECT_EQ(stereo.chunk(true), program);
    // And back, into a fresh effect of the full face.
    CVstHost other;
    ASSERT_TRUE(other.open(library->entry()));
    ASSERT_TRUE(other.setChunk(stereo.chunk(true), true));
    EXPECT_EQ(other.chunk(true), program);
    for (int32_t i = 0; i < kParamCount; ++i) {
        EXPECT_EQ(other.parameter(i), stereo.parameter(i)) << i;
    }
}

TEST_F(StereoFaceTest, HasTwoChannelsInEveryHost) {
    for (int32_t version : {2299, 2300, 2400}) {
        CVstHost host;
        host.answers.masterVersion = version;
        ASSERT_TRUE(host.open(stereoLibrary.entry()));
        EXPECT_EQ(host.effect()->numInputs, kStereo) << version;
        EXPECT_EQ(host.effect()->numOutputs, kStereo) << version;
    }
}

}  // namespace
}  // namespace tarv::host
