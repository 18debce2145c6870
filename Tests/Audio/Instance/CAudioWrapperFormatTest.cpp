// What comes later than before a resume: a rate, a block size, values.

#include "Audio/Parameters/CAudioEnv.h"
#include "Tests/Audio/Instance/RunningInstance.h"

namespace tarv {
namespace {

TEST(CAudioWrapperFormatTest, ARateThatComesWhileRunningIsTheOneOfTheNextBlock) {
    CRunningInstance instance;
    instance.wrapper.resume();
    instance.run(CSignal(441, 1.0));
    instance.wrapper.setSampleRate(96000.0);
    EXPECT_EQ(instance.wrapper.graph().hostRate, 44100.0) << "the block that may be running keeps its rate";
    instance.run(CSignal(960, 1.0));
    EXPECT_EQ(instance.wrapper.graph().hostRate, 96000.0);
    EXPECT_DOUBLE_EQ(instance.wrapper.env()->position(), 0.02);
    EXPECT_TRUE(instance.wrapper.isActive());
}

TEST(CAudioWrapperFormatTest, ANewFormatEndsAFadeAsAResumeDoes) {
    const struct {
        const char* name;
        void (*set)(CTestWrapper& wrapper);
        double heard;
    } rows[] = {
        {"rate", [](CTestWrapper& wrapper) { wrapper.setSampleRate(48000.0); }, 4.0},
        {"block size", [](CTestWrapper& wrapper) { wrapper.setBlockSize(77); }, 4.0},
        {"the same rate", [](CTestWrapper& wrapper) { wrapper.setSampleRate(44100.0); }, 2.0},
    };
    for (const auto& row : rows) {
        CRunningInstance instance;
        instance.wrapper.resume();
        instance.run({1.0});
        instance.setGain(4.0);
        row.set(instance.wrapper);
        EXPECT_EQ(instance.run({1.0})[0], row.heard) << row.name;
    }
}

TEST(CAudioWrapperFormatTest, ChangesBetweenResumeAndFirstBlockAreHeardWithoutAFade) {
    CRunningInstance instance;
    for (const double gain : {5.0, 7.0}) {
        instance.wrapper.resume();
        instance.setGain(gain);
        instance.run({});
        EXPECT_EQ(instance.run(CSignal(10, 1.0)), CSignal(10, gain));
        instance.setGain(1.0);
        EXPECT_EQ(instance.run({1.0})[0], gain) << "from the second block on it fades";
        instance.wrapper.suspend();
    }
}

}  // namespace
}  // namespace tarv
