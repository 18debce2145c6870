// A rate, a block size and values that are set behind a resume.

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Parameters/CAudioEnv.h"
#include "Tests/Audio/Instance/RunningInstance.h"
#include "Tests/Audio/Messages/MessageClient.h"

namespace tarv {
namespace {

TEST(CAudioWrapperFormatTest, ARateSetWhileRunningTakesEffectInTheNextBlock) {
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

TEST(CAudioWrapperFormatTest, ANewFormatEndsAFadeLikeAResume) {
    const struct {
        const char* name;
        void (*set)(CTestWrapper& wrapper);
        double output;
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
        EXPECT_EQ(instance.run({1.0})[0], row.output) << row.name;
    }
}

TEST(CAudioWrapperFormatTest, ChangesBetweenResumeAndFirstBlockSoundWithoutAFade) {
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

/// A running instance with an editor, which counts the messages `Clear` that a tick brings.
class CAudioWrapperClearTest : public testing::Test {
protected:
    CAudioWrapperClearTest() : client(connector()) {
        instance.wrapper.resume();
        runBlock();
        tick();
    }
    CAudioInterfaceBaseConnectorVST& connector() {
        return dynamic_cast<CAudioInterfaceBaseConnectorVST&>(*instance.wrapper.interfaceBase()->connector());
    }
    void runBlock() { instance.run(CSignal(64, 1.0)); }
    int32_t tick() {
        EXPECT_EQ(client.send(kRequestValues, tickIdOf(client.number())), "");
        return countClears();
    }
    int32_t countClears() {
        int32_t count = 0;
        for (const CReceivedMessage& message : client.take(kData)) {
            count += message.kind == static_cast<uint32_t>(CDataKind::Clear) ? 1 : 0;
        }
        return count;
    }

    CRunningInstance instance;
    CMessageClient client;
};

TEST_F(CAudioWrapperClearTest, ASuspendClearsEditorsAtOnce) {
    instance.wrapper.suspend();
    EXPECT_EQ(countClears(), 1);
    instance.wrapper.resume();
    runBlock();
    EXPECT_EQ(tick(), 0);
}

TEST_F(CAudioWrapperClearTest, ANewFormatClearsEditorsAtTheTickBehindItsFirstBlock) {
    const struct {
        const char* name;
        void (*set)(CTestWrapper& wrapper);
        int32_t clears;
    } rows[] = {
        {"rate", [](CTestWrapper& wrapper) { wrapper.setSampleRate(48000.0); }, 1},
        {"the same rate", [](CTestWrapper& wrapper) { wrapper.setSampleRate(48000.0); }, 0},
        {"block size", [](CTestWrapper& wrapper) { wrapper.setBlockSize(77); }, 1},
        {"the same block size", [](CTestWrapper& wrapper) { wrapper.setBlockSize(77); }, 0},
    };
    for (const auto& row : rows) {
        row.set(instance.wrapper);
        EXPECT_EQ(tick(), 0) << row.name << ": the graph still runs in the old format";
        runBlock();
        EXPECT_EQ(countClears(), 0) << row.name << ": the audio thread sends nothing";
        EXPECT_EQ(tick(), row.clears) << row.name;
        runBlock();
        EXPECT_EQ(tick(), 0) << row.name << ": sent once";
    }
}

TEST_F(CAudioWrapperClearTest, EveryEditorIsClearedByTheTickOfOne) {
    CMessageClient other(connector());
    instance.wrapper.setSampleRate(48000.0);
    runBlock();
    other.take();
    EXPECT_EQ(tick(), 1);
    EXPECT_EQ(other.takeLast(kData).kind, static_cast<uint32_t>(CDataKind::Clear));
}

TEST_F(CAudioWrapperClearTest, AFormatBeforeTheFirstBlockClearsNothing) {
    instance.wrapper.suspend();
    instance.wrapper.resume();
    instance.wrapper.setSampleRate(48000.0);
    countClears();
    runBlock();
    EXPECT_EQ(tick(), 0) << "nothing was drawn since the resume";
}

}  // namespace
}  // namespace tarv
