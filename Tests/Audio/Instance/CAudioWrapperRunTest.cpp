#include <algorithm>
#include <cmath>
#include <limits>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Graph/CAudioGraphObserver.h"
#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Visuals/CAudioVizCollector.h"
#include "Tests/Audio/Instance/RunningInstance.h"
#include "Tests/Audio/Modules/CTestGen.h"

namespace tarv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Records the samples that the gain delivers in each run of the graph.
class CRunLengths : public CAudioGraphObserver {
public:
    void processed(CAudioProcessBase& process) override {
        if (process.name() == "g") {
            lengths.push_back(process.output(0).samples);
        }
    }
    std::vector<int32_t> lengths;
};

TEST(CAudioWrapperRunTest, BlocksAreCutIntoRunsOfAtMost512) {
    const struct {
        int32_t frames;
        std::vector<int32_t> lengths;
    } rows[] = {{0, {}}, {-5, {}}, {1, {1}}, {512, {512}}, {513, {512, 1}}, {1025, {512, 512, 1}}};
    for (const auto& row : rows) {
        CRunningInstance instance;
        instance.wrapper.resume();
        CRunLengths watch;
        instance.wrapper.graph().observer = &watch;
        CSignal signal(static_cast<size_t>(std::max(row.frames, 0)), 1.0);
        double* channels[2] = {signal.data(), nullptr};
        instance.wrapper.processBlock(channels, channels, row.frames);
        EXPECT_EQ(watch.lengths, row.lengths) << row.frames;
        EXPECT_EQ(signal, CSignal(signal.size(), 2.0)) << row.frames;
    }
}

TEST(CAudioWrapperRunTest, ThePositionCountsTheSecondsOfAllBlocks) {
    CRunningInstance instance;
    instance.wrapper.setSampleRate(48000.0);
    instance.wrapper.resume();
    EXPECT_EQ(instance.wrapper.env()->position(), 0.0);
    instance.run(CSignal(600, 1.0));
    instance.run({});
    EXPECT_DOUBLE_EQ(instance.wrapper.env()->position(), 600.0 / 48000.0);
    EXPECT_EQ(instance.wrapper.graph().now, 600.0);
    instance.wrapper.suspend();
    instance.run(CSignal(600, 1.0));
    EXPECT_DOUBLE_EQ(instance.wrapper.env()->position(), 600.0 / 48000.0);
}

TEST(CAudioWrapperRunTest, FramesOfVisualDataBeginWithBlocksBetweenResumeAndSuspend) {
    CRunningInstance instance;
    auto& viz = *instance.wrapper.instanceRoot()->findObjectOf<CAudioVizCollector>("plugin.viz-collector");
    instance.wrapper.setSampleRate(48000.0);
    viz.enableParam()->setValue(0, 0, 1.0);
    instance.run(CSignal(4800, 1.0));
    EXPECT_EQ(viz.frame(), 0u);
    instance.wrapper.resume();
    instance.run(CSignal(4800, 1.0));
    EXPECT_EQ(viz.frame(), 1u) << "one for a block of the host, not one for each run";
    instance.run(CSignal(4800, 1.0));
    EXPECT_EQ(viz.frame(), 2u);
    EXPECT_EQ(viz.position(), 0.1);
    instance.wrapper.suspend();
    instance.run(CSignal(4800, 1.0));
    EXPECT_EQ(viz.frame(), 2u);
}

TEST(CAudioWrapperRunTest, AnOutputMayBeAnInputAsItCame) {
    CWrapperDefinitions routersAlone;
    std::erase_if(routersAlone.processes, [](const CTestNode& node) { return node.name == "g"; });
    for (const size_t frames : {32u, 500u}) {
        CRunningInstance instance(routersAlone);
        instance.wrapper.resume();
        // The graph, then a run that is recorded, then repeated ones.
        for (int32_t block = 0; block < 6; ++block) {
            CSignal in(frames, 0.25 + block);
            in[7] = kInfinity;
            CSignal expected = in;
            expected[7] = 0.0;
            EXPECT_EQ(instance.run(in), expected) << frames << " " << block;
        }
    }
}

TEST(CAudioWrapperRunTest, NullPointersAreSilenceOnTheWayInAndDroppedOnTheWayOut) {
    CRunningInstance instance;
    instance.wrapper.resume();
    const CSignal ones(10, 1.0);
    CSignal first(10, 99.0);
    CSignal second(10, 99.0);
    const double* in[2] = {nullptr, ones.data()};
    double* out[2] = {first.data(), second.data()};
    instance.wrapper.processBlock(in, out, 10);
    EXPECT_EQ(first, CSignal(10, 0.0));
    EXPECT_EQ(second, CSignal(10, 2.0));
    out[1] = nullptr;
    instance.wrapper.processBlock(in, out, 10);
    instance.wrapper.processBlock(in, static_cast<double* const*>(nullptr), 10);
    out[1] = second.data();
    instance.wrapper.processBlock(static_cast<const double* const*>(nullptr), out, 10);
    EXPECT_EQ(second, CSignal(10, 0.0));
}

TEST(CAudioWrapperRunTest, BothPrecisionsRunTheSameGraph) {
    CRunningInstance instance;
    instance.setGain(1.0 / 3.0);
    instance.wrapper.resume();
    const CSignal wide = noiseSignal(700);
    std::vector<float> in(wide.begin(), wide.end());
    std::vector<float> out(700);
    const float* inputs[2] = {in.data(), nullptr};
    float* outputs[2] = {out.data(), nullptr};
    instance.wrapper.processBlock(inputs, outputs, 700);
    for (size_t i = 0; i < in.size(); ++i) {
        EXPECT_EQ(out[i], static_cast<float>(static_cast<double>(in[i]) * (1.0 / 3.0)));
    }
}

TEST(CAudioWrapperRunTest, InPlaceProcessingGivesTheSame) {
    CRunningInstance instance;
    instance.setGain(3.0, 1);
    instance.wrapper.resume();
    CSignal first = noiseSignal(1000, 1);
    CSignal second = noiseSignal(1000, 2);
    const CSignal before[2] = {first, second};
    double* in[2] = {first.data(), second.data()};
    double* crossed[2] = {second.data(), first.data()};
    instance.wrapper.processBlock(in, crossed, 1000);
    for (size_t i = 0; i < 1000; ++i) {
        EXPECT_EQ(second[i], before[0][i] * 2.0);
        EXPECT_EQ(first[i], before[1][i] * 3.0);
    }
}

TEST(CAudioWrapperRunTest, WithoutResumeTheOutputIsSilent) {
    CRunningInstance instance;
    EXPECT_EQ(instance.run(CSignal(10, 1.0)), CSignal(10, 0.0));
    instance.wrapper.resume();
    EXPECT_EQ(instance.run(CSignal(10, 1.0)), CSignal(10, 2.0));
    instance.wrapper.suspend();
    EXPECT_EQ(instance.run(CSignal(10, 1.0)), CSignal(10, 0.0));
}

TEST(CAudioWrapperRunTest, ASecondSuspendOrResumeDoesNothing) {
    CRunningInstance instance;
    instance.wrapper.suspend();
    EXPECT_FALSE(instance.wrapper.isActive());
    instance.wrapper.resume();
    instance.run(CSignal(10, 1.0));
    instance.setGain(4.0);
    instance.run({1.0});  // a fade runs
    instance.wrapper.resume();
    EXPECT_TRUE(instance.wrapper.isActive());
    EXPECT_LT(instance.run({1.0})[0], 2.1);  // and goes on
    instance.wrapper.suspend();
    instance.wrapper.suspend();
    EXPECT_FALSE(instance.wrapper.isActive());
    instance.wrapper.resume();
    EXPECT_EQ(instance.run({1.0})[0], 4.0);
}

TEST(CAudioWrapperRunTest, ChangesWhileSuspendedSoundFromTheFirstSampleWithoutAFade) {
    CRunningInstance instance;
    instance.setGain(3.0);
    instance.wrapper.resume();
    EXPECT_EQ(instance.run(CSignal(10, 1.0)), CSignal(10, 3.0));
    instance.wrapper.suspend();
    instance.setGain(5.0);
    instance.wrapper.resume();
    EXPECT_EQ(instance.run(CSignal(10, 1.0)), CSignal(10, 5.0));
    instance.setGain(1.0);
    EXPECT_EQ(instance.run({1.0})[0], 5.0);  // while running it fades
}

TEST(CAudioWrapperRunTest, ARateSetWhileSuspendedTakesEffectAtTheResume) {
    CRunningInstance instance;
    instance.wrapper.setSampleRate(96000.0);
    EXPECT_EQ(instance.wrapper.env()->sampleRate(), 96000.0);
    instance.wrapper.resume();
    EXPECT_EQ(instance.wrapper.graph().hostRate, 96000.0);
    for (const double bad : {0.0, -44100.0, std::nan(""), kInfinity}) {
        instance.wrapper.setSampleRate(bad);
        EXPECT_EQ(instance.wrapper.env()->sampleRate(), 96000.0);
    }
}

TEST(CAudioWrapperRunTest, ChannelCountsAreHeldBetween1And32) {
    CRunningInstance instance;
    const struct {
        int32_t asked;
        int32_t held;
    } rows[] = {{0, 1}, {-3, 1}, {1, 1}, {8, 8}, {32, 32}, {33, 32}};
    for (const auto& row : rows) {
        instance.wrapper.setChannelCounts(row.asked, row.asked);
        // An editor may be open while the sound is not: it lists these.
        EXPECT_EQ(instance.wrapper.interfaceBase()->counts().inputs, row.held);
        EXPECT_EQ(instance.wrapper.interfaceBase()->counts().outputs, row.held);
        instance.wrapper.resume();
        EXPECT_EQ(instance.wrapper.graph().hostInputs, row.held);
        EXPECT_EQ(instance.wrapper.graph().hostOutputs, row.held);
        instance.wrapper.suspend();
    }
}

TEST(CAudioWrapperRunTest, AnInputThatIsNotFiniteCountsAs0) {
    CRunningInstance instance;
    instance.wrapper.resume();
    EXPECT_EQ(instance.run({1.0, kInfinity, -kInfinity, std::nan(""), 1.0}), (CSignal{2.0, 0.0, 0.0, 0.0, 2.0}));
}

TEST(CAudioWrapperRunTest, AnOutputThatIsNotFiniteSilencesTheRestOfTheRunAndResetsTheGraph) {
    CRunningInstance instance;
    instance.wrapper.resume();
    CSignal in(600, 1.0);
    in[300] = 1e308;  // twice that is beyond the range
    const CSignal out = instance.run(in);
    EXPECT_EQ(CSignal(out.begin(), out.begin() + 300), CSignal(300, 2.0));
    EXPECT_EQ(CSignal(out.begin() + 300, out.begin() + 512), CSignal(212, 0.0));
    EXPECT_EQ(CSignal(out.begin() + 512, out.end()), CSignal(88, 2.0));
}

TEST(CAudioWrapperRunTest, AHostOf32BitsHasASmallerRange) {
    CRunningInstance instance;
    instance.wrapper.resume();
    std::vector<float> in(4, 1.0f);
    std::vector<float> out(4, 99.0f);
    in[2] = 3e38f;
    const float* inputs[2] = {in.data(), nullptr};
    float* outputs[2] = {out.data(), nullptr};
    instance.wrapper.processBlock(inputs, outputs, 4);
    EXPECT_EQ(out, (std::vector<float>{2.0f, 2.0f, 0.0f, 0.0f}));
}

TEST(CAudioWrapperRunTest, OffLineRenderingIsFollowed) {
    CRunningInstance instance;
    instance.wrapper.resume();
    instance.run({1.0});
    EXPECT_EQ(graphValue(instance.wrapper, kOffline), 0.0);
    instance.wrapper.processLevel = 4;
    instance.run({1.0});
    instance.run({1.0});
    EXPECT_EQ(graphValue(instance.wrapper, kOffline), 1.0);
    EXPECT_EQ(graphValue(instance.wrapper, kOversampling), 1.0);
    for (const int32_t level : {0, 1, 2, 3, 5}) {
        instance.wrapper.processLevel = level;
        instance.run({1.0});
        instance.run({1.0});
        EXPECT_EQ(graphValue(instance.wrapper, kOffline), 0.0) << level;
        EXPECT_EQ(graphValue(instance.wrapper, kOversampling), 0.0) << level;
    }
    instance.wrapper.suspend();
    instance.wrapper.processLevel = 4;
    instance.wrapper.resume();
    EXPECT_EQ(instance.param("host-offline"), 1.0);
}

TEST(CAudioWrapperRunTest, UsersReadTheOffLineStateOfTheAudioThreadBehindTheNextResume) {
    CRunningInstance instance;
    instance.wrapper.resume();
    instance.wrapper.processLevel = 4;
    instance.run({1.0});
    EXPECT_EQ(instance.param("host-offline"), 0.0) << "the audio thread takes no lock for it";
    instance.wrapper.suspend();
    instance.wrapper.resume();
    EXPECT_EQ(instance.param("host-offline"), 1.0);
    EXPECT_EQ(instance.param("host-oversampling-mode"), 1.0);
    instance.run({1.0});
    EXPECT_EQ(graphValue(instance.wrapper, kOffline), 1.0);
}

TEST(CAudioWrapperRunTest, OnlyAPlugInThatUsesTheTempoAsksForIt) {
    for (const bool isUsed : {false, true}) {
        CWrapperDefinitions definitions;
        definitions.pluginAttributes = {{"use-host-bpm", isUsed ? "true" : "false"}};
        CRunningInstance instance(definitions);
        instance.wrapper.tempo = 97.5;
        instance.wrapper.resume();
        instance.run({1.0});
        instance.run({1.0});
        EXPECT_EQ(instance.wrapper.tempoQuestions, isUsed ? 2 : 0);
        EXPECT_EQ(graphValue(instance.wrapper, kBpm), isUsed ? 97.5 : 140.0);
        instance.wrapper.tempo = 0.0;  // the host has none: the last one stays
        instance.run({1.0});
        EXPECT_EQ(graphValue(instance.wrapper, kBpm), isUsed ? 97.5 : 140.0);
    }
    CRunningInstance instance;
    instance.wrapper.setHostBpm(120.0);
    EXPECT_EQ(instance.param("host-bpm"), 120.0);
}

/// Adds a filter behind the gain that passes its input and reports a delay: 0, 100 or 7 samples by its index.
CWrapperDefinitions delayedDefinitions(CTestAttributes filterAttributes = {}) {
    CWrapperDefinitions definitions;
    CTestNode array{"audio:fltgen-array", "arr"};
    for (const char* latency : {"0", "100", "7"}) {
        const std::string name = std::string("late") + latency;
        definitions.audioChildren.push_back(
            {"test:gen", name, {{"type", "5"}, {"gains", "1"}, {"numerators", "1"}, {"latency", latency}}});
        array.children.push_back({"audio:fltgen-array-item",
                                  "item",
                                  {{"index", std::to_string(array.children.size())}, {"fltgen", "audio." + name}}});
    }
    definitions.audioChildren.push_back(array);
    filterAttributes.emplace_back("gen-array", "audio.arr");
    definitions.processes.insert(definitions.processes.end() - 1,
                                 CTestNode{"audio:modFilter",
                                           "f",
                                           filterAttributes,
                                           {numberNode("index", "1"), allocNode("count", 0), allocNode("index", 1)}});
    return definitions;
}

TEST(CAudioWrapperRunTest, TheLatencyOfTheGraphIsReportedByTheResume) {
    CRunningInstance instance(delayedDefinitions());
    EXPECT_EQ(instance.wrapper.latency(), 0);
    instance.wrapper.resume();
    EXPECT_EQ(instance.wrapper.latency(), 100);
    EXPECT_EQ(instance.wrapper.ioChanges, 0);
}

TEST(CAudioWrapperRunTest, TheHostIsNotifiedOfALatencyThatChangesWhileAudioRuns) {
    for (const bool isSmooth : {false, true}) {
        CRunningInstance instance(delayedDefinitions({{"is-smooth-update", isSmooth ? "true" : "false"}}));
        instance.wrapper.resume();
        instance.run(CSignal(10, 1.0));
        EXPECT_EQ(instance.wrapper.ioChanges, 0);
        CAudioParam& index = *instance.wrapper.paramCollector()->findParam("plugin.modMain.f.index");
        index.setValue(0, 0, 2.0);
        instance.run(CSignal(10, 1.0));
        EXPECT_EQ(instance.wrapper.latency(), 100);  // the channel of the other group still has it
        index.setValue(1, 0, 2.0);
        instance.run(CSignal(10, 1.0));
        EXPECT_EQ(instance.wrapper.latency(), 7);
        EXPECT_EQ(instance.wrapper.ioChanges, 1);
        instance.run({1.0});
        EXPECT_EQ(graphValue(instance.wrapper, kLatencyChange), 1.0);
        EXPECT_EQ(instance.wrapper.ioChanges, 1);
        // The mark stays until a resume, behind which the host reads the latency again.
        CAudioParam& mark = *instance.wrapper.paramCollector()->findParam("plugin.modMain.host-latency-change");
        EXPECT_TRUE(mark.takeEngineValue());
        EXPECT_EQ(mark.value(0, 0), 1.0);
        instance.wrapper.suspend();
        instance.wrapper.resume();
        EXPECT_EQ(mark.value(0, 0), 0.0);
        instance.run({1.0});
        EXPECT_EQ(graphValue(instance.wrapper, kLatencyChange), 0.0);
    }
}

TEST(CAudioWrapperRunTest, TheHostIsNotifiedOfTheLatencyOfANewFormat) {
    CRunningInstance instance(delayedDefinitions());
    instance.wrapper.resume();
    instance.run(CSignal(10, 1.0));
    CAudioParam& index = *instance.wrapper.paramCollector()->findParam("plugin.modMain.f.index");
    index.setValue(0, 0, 2.0);
    index.setValue(1, 0, 2.0);
    instance.wrapper.setSampleRate(96000.0);
    instance.run({1.0});
    EXPECT_EQ(instance.wrapper.latency(), 7);
    EXPECT_EQ(instance.wrapper.ioChanges, 1);
}

TEST(CAudioWrapperRunTest, TwoInstancesDoNotAffectEachOther) {
    CRunningInstance first;
    CTestWrapper second;
    ASSERT_EQ(messageOf(second.init()), "");
    second.resume();
    first.wrapper.resume();
    first.setGain(7.0);
    CSignal signal(1000, 1.0);
    double* channels[2] = {signal.data(), nullptr};
    second.processBlock(channels, channels, 1000);
    EXPECT_EQ(signal, CSignal(1000, 2.0));
    EXPECT_EQ(first.run(CSignal(1000, 1.0)).back(), 7.0);
}

}  // namespace
}  // namespace tarv
