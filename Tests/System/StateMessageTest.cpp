// What the engine sends to its clients: full state, counts, bound values, frames, bytes of other clients, labels.

#include <cstring>

#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Visuals/CAudioVizCollector.h"
#include "Tests/System/MessageTest.h"

namespace tarv {
namespace {

using engine::kOutGain;

constexpr uint32_t kValueKind = static_cast<uint32_t>(CDataKind::Value);

class StateMessages : public CMessageTest {
protected:
    /// Numbers of the bound values that have come.
    std::vector<std::vector<double>> bound() {
        std::vector<std::vector<double>> found;
        for (const CReceivedMessage& received : client_.take(kData)) {
            if (received.kind == kValueKind) {
                found.push_back(received.numbers);
            }
        }
        return found;
    }

    CMessageClient client_{*connector_};
};

TEST_F(StateMessages, TheFullStateHoldsWhatAnEditorBeginsWith) {
    instance_->start(48000.0, 2, 4);
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}, kIsRecorded, "a"), "");
    EXPECT_EQ(client_.send(kRequestState, client_.id(3)), "");
    const CReceivedMessage received = client_.takeLast(kFullState);
    EXPECT_EQ(received.id, client_.id(3));
    EXPECT_EQ(received.state.sampleRate, 48000.0);
    EXPECT_EQ(received.state.blockSize, instance_->env()->blockSize());
    EXPECT_EQ(received.state.latency, instance_->latency());
    EXPECT_TRUE(received.state.isRunning);
    EXPECT_EQ(received.state.counts,
              (CInterfaceCounts{2, 4, 0, instance_->groupCount(), instance_->internalChannelCount()}));
    ASSERT_EQ(received.state.registries.count(), 2);
    EXPECT_EQ(received.state.registries[0].path, CString(kRoutingRegistry));
    EXPECT_EQ(received.state.registries[1].path, CString(kRegistry));
    EXPECT_EQ(received.state.registries[1].programs.count(), registry().programCount());
    EXPECT_EQ(received.state.history.position, 1);
    ASSERT_EQ(received.state.history.labels.count(), 2);
    EXPECT_EQ(received.state.history.labels[1], CString("a"));
}

TEST_F(StateMessages, EachRequestHasItsAnswerWhichOnlyItsClientGets) {
    CMessageClient other(*connector_);
    instance_->start(96000.0, 2, 6);
    client_.take();
    other.take();
    EXPECT_EQ(client_.send(kAskSampleRate, client_.id(1)), "");
    EXPECT_EQ(client_.send(kAskIoCounts, client_.id(2)), "");
    EXPECT_EQ(client_.send(kAskGroupCount, client_.id(3)), "");
    EXPECT_EQ(client_.send(kAskInternalCount, client_.id(4)), "");
    const std::vector<CReceivedMessage> received = client_.take();
    const struct {
        uint32_t type;
        std::vector<double> numbers;
    } kExpected[] = {{kSampleRate, {96000.0}},
                     {kIoCounts, {2, 6, 0}},
                     {kGroupCount, {static_cast<double>(instance_->groupCount())}},
                     {kInternalCount, {static_cast<double>(instance_->internalChannelCount())}}};
    ASSERT_EQ(received.size(), 4u);
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(received[i].type, kExpected[i].type);
        EXPECT_EQ(received[i].id, client_.id(static_cast<uint32_t>(i) + 1));
        EXPECT_EQ(received[i].numbers, kExpected[i].numbers);
    }
    EXPECT_EQ(other.waiting(), 0u);
}

TEST_F(StateMessages, WhatTheHostChangesIsSentToEveryClient) {
    CMessageClient other(*connector_);
    instance_->setSampleRate(88200.0);
    base().setIoCounts(3, 4, 1);
    base().setGroupCount(5);
    base().setInternalChannelCount(6);
    TARV_CONSUME(base().notify("clear"));
    for (CMessageClient* each : {&client_, &other}) {
        const std::vector<CReceivedMessage> received = each->take();
        ASSERT_EQ(received.size(), 5u);
        EXPECT_EQ(received[0].type, kSampleRate);
        EXPECT_EQ(received[0].id, kNoRequest);
        EXPECT_EQ(received[0].numbers, std::vector<double>{88200.0});
        EXPECT_EQ(received[1].type, kIoCounts);
        EXPECT_EQ(received[1].numbers, (std::vector<double>{3, 4, 1}));
        EXPECT_EQ(received[2].type, kGroupCount);
        EXPECT_EQ(received[2].numbers, std::vector<double>{5});
        EXPECT_EQ(received[3].type, kInternalCount);
        EXPECT_EQ(received[3].numbers, std::vector<double>{6});
        EXPECT_EQ(received[4].type, kData);
        EXPECT_EQ(received[4].kind, static_cast<uint32_t>(CDataKind::Clear));
    }
}

TEST_F(StateMessages, CountsThatStayAreNotSent) {
    base().setIoCounts(3, 4, 1);
    client_.take();
    base().setIoCounts(3, 4, 1);
    EXPECT_EQ(client_.waiting(), 0u);
}

TEST_F(StateMessages, ASuspendSendsThatTheAudioStateIsCleared) {
    instance_->start(44100.0, 2, 2);
    client_.take();
    instance_->suspend();
    const CReceivedMessage received = client_.takeLast(kData);
    EXPECT_EQ(received.kind, static_cast<uint32_t>(CDataKind::Clear));
}

TEST_F(StateMessages, AClearThatTheAudioThreadMarksIsSentOnceAtTheNextTick) {
    client_.take();
    base().clearAtTick();
    EXPECT_TRUE(client_.take().empty());
    EXPECT_EQ(client_.send(kRequestValues, tickIdOf(client_.number())), "");
    EXPECT_EQ(client_.takeLast(kData).kind, static_cast<uint32_t>(CDataKind::Clear));
    EXPECT_EQ(client_.send(kRequestValues, tickIdOf(client_.number())), "");
    EXPECT_TRUE(client_.take().empty());
}

TEST_F(StateMessages, ABoundValueComesAtOnceAndAtEachChange) {
    EXPECT_EQ(client_.send(kBindValue, client_.id(1), CString("sample-rate"), uint32_t{1}), "");
    EXPECT_EQ(bound(), (std::vector<std::vector<double>>{{44100.0}}));
    instance_->setSampleRate(48000.0);
    EXPECT_EQ(bound(), (std::vector<std::vector<double>>{{48000.0}}));
    base().setGroupCount(2);
    EXPECT_TRUE(bound().empty());
    EXPECT_EQ(client_.send(kUnbindValue, client_.id(1)), "");
    instance_->setSampleRate(96000.0);
    EXPECT_TRUE(bound().empty());
    EXPECT_EQ(client_.send(kUnbindValue, client_.id(1)), "No bound value " + std::to_string(client_.id(1)) + " found.");
}

TEST_F(StateMessages, EveryNamedValueCanBeBound) {
    instance_->start(44100.0, 2, 4);
    client_.take();
    const struct {
        const char* name;
        std::vector<double> numbers;
    } kValues[] = {
        {"sample-rate", {44100.0}},
        {"block-size", {static_cast<double>(instance_->env()->blockSize())}},
        {"latency", {static_cast<double>(instance_->latency())}},
        {"is-running", {1.0}},
        {"host-bpm", {140.0}},
        {"io-channel-counts", {2.0, 4.0, 0.0}},
        {"group-count", {static_cast<double>(instance_->groupCount())}},
        {"internal-channel-count", {static_cast<double>(instance_->internalChannelCount())}},
        {"viz-fps", {30.0}},
    };
    uint32_t n = 0;
    for (const auto& value : kValues) {
        const auto count = static_cast<uint32_t>(value.numbers.size());
        EXPECT_EQ(client_.send(kBindValue, client_.id(++n), CString(value.name), count), "") << value.name;
        EXPECT_EQ(bound(), std::vector<std::vector<double>>{value.numbers}) << value.name;
        EXPECT_EQ(client_.send(kBindValue, client_.id(100), CString(value.name), count + 1),
                  std::string("No value '") + value.name + "' of " + std::to_string(count + 1) + " numbers found.");
        EXPECT_EQ(client_.send(kBindValue, client_.id(100), CString(value.name), uint32_t{0}),
                  std::string("No value '") + value.name + "' of 0 numbers found.");
        EXPECT_EQ(client_.send(kRequestValues, client_.id(n)), "");
        EXPECT_EQ(bound(), std::vector<std::vector<double>>{value.numbers}) << value.name;
    }
    EXPECT_EQ(client_.send(kBindValue, client_.id(100), CString("nothing"), uint32_t{1}),
              "No value 'nothing' of 1 numbers found.");
    instance_->setHostBpm(90.0);
    EXPECT_EQ(bound(), (std::vector<std::vector<double>>{{90.0}}));
    instance_->suspend();
    EXPECT_EQ(bound(), (std::vector<std::vector<double>>{{0.0}}));
}

TEST_F(StateMessages, FewerNumbersOfAValueCanBeAskedFor) {
    base().setIoCounts(3, 4, 1);
    EXPECT_EQ(client_.send(kBindValue, client_.id(1), CString("io-channel-counts"), uint32_t{2}), "");
    EXPECT_EQ(bound(), (std::vector<std::vector<double>>{{3.0, 4.0}}));
}

TEST_F(StateMessages, PassedBytesReachTheOtherClientsAlone) {
    CMessageClient second(*connector_);
    CMessageClient third(*connector_);
    CByteBuffer bytes;
    for (const uint8_t byte : {1, 2, 250}) {
        bytes.append(byte);
    }
    EXPECT_EQ(client_.send(kPass, client_.id(7), bytes), "");
    EXPECT_EQ(client_.waiting(), 0u);
    for (CMessageClient* each : {&second, &third}) {
        const CReceivedMessage received = each->takeLast(kData);
        EXPECT_EQ(received.kind, static_cast<uint32_t>(CDataKind::Passed));
        EXPECT_EQ(received.id, client_.id(7));
        ASSERT_EQ(received.bytes.count(), 3);
        EXPECT_EQ(received.bytes[2], 250);
    }
}

TEST_F(StateMessages, ImportedLabelsNameTheInputChannels) {
    EXPECT_EQ(client_.send(kImportLabels), "");
    EXPECT_EQ(labels().size(), 1u);
    CTextList names;
    for (const char* name : {"Left", "", "Centre"}) {
        names.append(name);
    }
    base().setChannelLabels(names);
    EXPECT_EQ(client_.subscribe(1, kInNamesParam, 0), "");
    EXPECT_EQ(client_.send(kImportLabels), "");
    EXPECT_EQ(labels().back(), "Channel label import");
    EXPECT_EQ(client_.takeLast(kParamValues).texts, (std::vector<std::string>{"Left", "R", "Centre"}));
    EXPECT_EQ(param(kInNamesParam).text(0, 3), CString("IN4"));
    EXPECT_EQ(client_.undo(), "");
    EXPECT_EQ(param(kInNamesParam).text(0, 0), CString("L"));
}

TEST_F(StateMessages, ImportedLabelsAreCutAsNamesAre) {
    CTextList names;
    for (const char* name :
         {"Left Surround", "Back to  it", "\xc3\x84\xc3\xb6\xc3\xbc\xc3\x84\xc3\xb6\xc3\xbc\xc3\x84\xc3\xb6\xc3\xbc"}) {
        names.append(CString::fromUtf8(name, std::strlen(name)));
    }
    base().setChannelLabels(names);
    EXPECT_EQ(client_.subscribe(1, kInNamesParam, 0), "");
    EXPECT_EQ(client_.send(kImportLabels), "");
    EXPECT_EQ(client_.takeLast(kParamValues).texts,
              (std::vector<std::string>{"Left Sur", "Back to",
                                        "\xc3\x84\xc3\xb6\xc3\xbc\xc3\x84\xc3\xb6\xc3\xbc\xc3\x84\xc3\xb6"}));
}

/// Two sources whose switches are on, as processes of a graph would have them.
class FrameMessages : public StateMessages {
protected:
    FrameMessages() {
        meter_ = makeSource("plugin.meter", CAudioVizKind::Meter);
        spectrum_ = makeSource("plugin.spectrum", CAudioVizKind::Spectrum);
        collector().enableParam()->setValue(0, 0, 1.0);
        collector().start();
    }
    CAudioVizCollector& collector() { return *base().vizCollector(); }
    CAudioVizSource* makeSource(const char* name, CAudioVizKind kind) {
        const CAudioParamInfo& info = collector().enableParam()->info();
        instance_->paramCollector()->define(CString(name) + "-enable", info)->setValue(0, 0, 1.0);
        return collector().addSource(name, kind, 1, 8);
    }
    /// One frame: a level, and two bins.
    void makeFrame(double level) {
        collector().setPosition(seconds_ += 1.0);
        auto* meter = static_cast<CAudioVizDataMeter*>(meter_->beginRecord());
        auto* spectrum = static_cast<CAudioVizDataSpectrum*>(spectrum_->beginRecord());
        ASSERT_TRUE(meter && spectrum);
        meter->level = level;
        spectrum->bins.clear();
        spectrum->bins.append(level);
        spectrum->bins.append(2.0 * level);
        meter_->endRecord();
        spectrum_->endRecord();
    }

    CAudioVizSource* meter_ = nullptr;
    CAudioVizSource* spectrum_ = nullptr;
    double seconds_ = 0.0;
};

TEST_F(FrameMessages, AFrameComesWhenItIsAskedForToEachOneThatSubscribedItsSource) {
    CMessageClient other(*connector_);
    EXPECT_EQ(client_.send(kSubscribeVisual, CString(), client_.id(1)), "");
    EXPECT_EQ(other.send(kSubscribeVisual, CString("plugin.meter"), other.id(1)), "");
    makeFrame(0.5);
    EXPECT_EQ(client_.waiting(), 0u);
    EXPECT_EQ(client_.send(kRequestValues, client_.id(1)), "");
    const CReceivedMessage all = client_.takeLast(kFrame);
    EXPECT_EQ(all.id, client_.id(1));
    ASSERT_EQ(all.records.size(), 2u);
    EXPECT_EQ(static_cast<CAudioVizDataMeter&>(*all.records[0]).level, 0.5);
    EXPECT_EQ(static_cast<CAudioVizDataSpectrum&>(*all.records[1]).bins[1], 1.0);
    const CReceivedMessage meters = other.takeLast(kFrame);
    ASSERT_EQ(meters.records.size(), 1u);
    EXPECT_EQ(meters.records[0]->kind(), CAudioVizKind::Meter);
    EXPECT_EQ(meters.records[0]->source, meter_->number());
}

TEST_F(FrameMessages, WithoutARecordThereIsNoFrame) {
    EXPECT_EQ(client_.send(kSubscribeVisual, CString(), client_.id(1)), "");
    EXPECT_EQ(client_.send(kRequestValues, client_.id(1)), "");
    EXPECT_EQ(client_.waiting(), 0u);
}

TEST_F(FrameMessages, AnUnsubscribedSourceIsSilent) {
    EXPECT_EQ(client_.send(kSubscribeVisual, CString(), client_.id(1)), "");
    EXPECT_EQ(client_.send(kSubscribeVisual, CString("plugin.meter"), client_.id(2)), "");
    EXPECT_EQ(client_.send(kUnsubscribeVisual, client_.id(1)), "");
    makeFrame(0.5);
    EXPECT_EQ(client_.send(kRequestValues, client_.id(2)), "");
    const std::vector<CReceivedMessage> received = client_.take(kFrame);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].id, client_.id(2));
    EXPECT_EQ(client_.send(kUnsubscribeVisual, client_.id(1)),
              "No visual listener " + std::to_string(client_.id(1)) + " found.");
}

}  // namespace
}  // namespace tarv
