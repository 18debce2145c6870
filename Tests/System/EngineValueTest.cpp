// What the engine sets itself: off-line state, oversampling and latency reach subscribers at the tick of an editor.

#include "Audio/Parameters/CAudioEnv.h"
#include "Core/CApplicationData.h"
#include "Tests/System/EditorTest.h"

namespace tarv {
namespace {

constexpr const char* kOffline = "plugin.modMain.host-offline";
constexpr const char* kHostMode = "plugin.modMain.host-oversampling-mode";
constexpr const char* kLatencyChange = "plugin.modMain.host-latency-change";
constexpr const char* kBpm = "plugin.modMain.host-bpm";
constexpr const char* kLevel = "oversampling-level";
constexpr int32_t kOfflineLevel = 4;

class EngineValues : public CMessageTest {
protected:
    EngineValues() { instance_->start(44100.0, 2, 2); }
    ~EngineValues() override { CGlobalData::instance().writeText(kLevel, "1"); }

    void runBlock() { instance_->run({std::vector<double>(64), std::vector<double>(64)}, 64); }
    /// A tick, and the numbers that it brings for the n-th listener.
    std::vector<double> tick(uint32_t n) {
        EXPECT_EQ(client_.send(kRequestValues, tickIdOf(client_.number())), "");
        std::vector<double> numbers;
        for (const CReceivedMessage& received : client_.take(kParamValues)) {
            if (received.id == client_.id(n)) {
                numbers.insert(numbers.end(), received.numbers.begin(), received.numbers.end());
            }
        }
        return numbers;
    }

    CMessageClient client_{*connector_};
};

TEST_F(EngineValues, TheOfflineStateComesWithTheTick) {
    EXPECT_EQ(client_.subscribe(1, kOffline, 0), "");
    EXPECT_EQ(client_.subscribe(2, kHostMode, 0), "");
    client_.take();
    instance_->paramChanges = 0;
    instance_->processLevel = kOfflineLevel;
    runBlock();
    EXPECT_EQ(client_.waiting(), 0u) << "the audio thread sends nothing";
    EXPECT_EQ(tick(1), std::vector<double>{1.0});
    EXPECT_EQ(param(kOffline).value(0, 0), 1.0);
    EXPECT_EQ(param(kHostMode).value(0, 0), 1.0);
    EXPECT_EQ(tick(1), std::vector<double>{}) << "once";
    instance_->processLevel = 0;
    runBlock();
    EXPECT_EQ(tick(2), std::vector<double>{0.0});
    EXPECT_EQ(param(kOffline).value(0, 0), 0.0);
    EXPECT_EQ(instance_->paramChanges, 0) << "no automation";
    EXPECT_EQ(labels().size(), 1u);
}

TEST_F(EngineValues, EverySubscriberGetsThemAtTheTickOfAnyClient) {
    CMessageClient other(*connector_);
    EXPECT_EQ(client_.subscribe(1, kOffline, 0), "");
    EXPECT_EQ(other.subscribe(1, kOffline, 0), "");
    instance_->processLevel = kOfflineLevel;
    runBlock();
    EXPECT_EQ(tick(1), std::vector<double>{1.0});
    EXPECT_EQ(other.takeLast(kParamValues).numbers, std::vector<double>{1.0});
}

TEST_F(EngineValues, ASubscriptionBeginsWithWhatTheEngineSet) {
    instance_->processLevel = kOfflineLevel;
    runBlock();
    EXPECT_EQ(client_.subscribe(1, kOffline), "");
    EXPECT_EQ(client_.takeLast(kParamValues).groups[0][0], 1.0);
}

TEST_F(EngineValues, TheTempoComesWithTheTickToItsBoundValue) {
    EXPECT_EQ(client_.send(kBindValue, client_.id(1), CString("host-bpm"), uint32_t{1}), "");
    client_.take();
    param(kBpm).setEngineValue(0, 0, 97.5);
    EXPECT_EQ(client_.waiting(), 0u);
    EXPECT_EQ(client_.send(kRequestValues, tickIdOf(client_.number())), "");
    EXPECT_EQ(client_.takeLast(kData).numbers, std::vector<double>{97.5});
}

TEST_F(EngineValues, WhatAUserSetsBehindTheEngineStays) {
    EXPECT_EQ(client_.subscribe(1, kBpm, 0), "");
    param(kBpm).setEngineValue(0, 0, 97.5);
    param(kBpm).setValue(0, 0, 120.0);
    client_.take();
    EXPECT_EQ(tick(1), std::vector<double>{});
    EXPECT_EQ(param(kBpm).value(0, 0), 120.0);
}

TEST_F(EngineValues, TheLatencyAndTheMarkOfItsChangeComeWithTheTick) {
    EXPECT_EQ(client_.subscribe(1, kLatencyChange, 0), "");
    EXPECT_EQ(client_.send(kBindValue, client_.id(2), CString("latency"), uint32_t{1}), "");
    client_.take();
    instance_->env()->setLatency(100);
    param(kLatencyChange).setEngineValue(0, 0, 1.0);
    EXPECT_EQ(client_.waiting(), 0u);
    EXPECT_EQ(client_.send(kRequestValues, tickIdOf(client_.number())), "");
    const std::vector<CReceivedMessage> received = client_.take();
    ASSERT_EQ(received.size(), 2u);
    EXPECT_EQ(received[0].id, client_.id(1));
    EXPECT_EQ(received[0].numbers, std::vector<double>{1.0});
    EXPECT_EQ(received[1].id, client_.id(2));
    EXPECT_EQ(received[1].numbers, std::vector<double>{100.0});
    param(kLatencyChange).setEngineValue(0, 0, 0.0);
    EXPECT_EQ(tick(1), std::vector<double>{0.0});
}

TEST_F(EngineValues, ATickNeedsAConnectedClient) {
    EXPECT_EQ(client_.send(kRequestValues, tickIdOf(7)), "No listener " + std::to_string(tickIdOf(7)) + " found.");
}

TEST_F(EngineValues, TheStoredOversamplingIsFollowedWhileAudioRunsOffLine) {
    EXPECT_EQ(client_.subscribe(1, kHostMode, 0), "");
    CGlobalData::instance().writeText(kLevel, "2");
    EXPECT_EQ(instance_->oversamplingLevel(), 2);
    runBlock();
    EXPECT_EQ(tick(1), std::vector<double>{}) << "not while it plays";
    instance_->processLevel = kOfflineLevel;
    runBlock();
    EXPECT_EQ(tick(1), std::vector<double>{2.0});
    CGlobalData::instance().writeText(kLevel, "3");
    runBlock();
    EXPECT_EQ(tick(1), std::vector<double>{3.0});
    CGlobalData::instance().writeText(kLevel, "nonsense");
    runBlock();
    EXPECT_EQ(tick(1), std::vector<double>{1.0});
}

class EngineValuesInAnEditor : public CEditorTest {};

TEST_F(EngineValuesInAnEditor, ComeWithTheEditorsTickAlsoWithoutVisualData) {
    instance_->start(44100.0, 2, 2);
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kOffline, recorder)), "");
    pumpEvents();
    recorder.changes.clear();
    instance_->processLevel = kOfflineLevel;
    instance_->run({std::vector<double>(64), std::vector<double>(64)}, 64);
    EXPECT_EQ(firstLine(client_->requestFrames()), "");
    pumpEvents();
    ASSERT_EQ(recorder.changes.size(), 1u);
    EXPECT_EQ(recorder.changes[0].value, 1.0);
}

}  // namespace
}  // namespace tarv
