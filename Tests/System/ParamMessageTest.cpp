// Parameters through messages: subscribing, values both ways, their order and their limits.

#include <cmath>
#include <limits>

#include "Tests/System/MessageTest.h"

namespace tarv {
namespace {

using engine::kGains;
using engine::kMute;
using engine::kOutGain;

class ParamMessages : public CMessageTest {
protected:
    CMessageClient client_{*connector_};
};

TEST_F(ParamMessages, ASubscriptionIsAnsweredByTheWholeValueAsItIsStored) {
    param(kGains).setValue(1, 2, 2.0);
    EXPECT_EQ(client_.subscribe(1, kGains, kSendAtOnce, 77), "");
    const std::vector<CReceivedMessage> received = client_.take();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].type, kParamValues);
    EXPECT_EQ(received[0].id, client_.id(1));
    EXPECT_EQ(received[0].request, 77u);
    EXPECT_TRUE(received[0].isWhole);
    EXPECT_EQ(received[0].definition, "audio.modMain.modBrindleXEQ.xeq-gains");
    ASSERT_GE(received[0].groups.size(), 2u);
    EXPECT_EQ(received[0].groups[1][2], 2.0);
}

TEST_F(ParamMessages, WithoutTheFlagNothingComesUntilItIsAskedFor) {
    EXPECT_EQ(client_.subscribe(1, kGains, 0), "");
    EXPECT_EQ(client_.waiting(), 0u);
    EXPECT_EQ(client_.send(kRequestValues, client_.id(1)), "");
    EXPECT_TRUE(client_.takeLast(kParamValues).isWhole);
}

TEST_F(ParamMessages, WhatAHostSetsReachesTheSubscriberInOrder) {
    EXPECT_EQ(client_.subscribe(1, kGains, 0), "");
    // Host index 1 is EQA0, 9 is EQB0.
    hostParams().setParameter(1, 1.0);
    hostParams().setParameter(9, 0.5);
    hostParams().setParameter(1, 0.0);
    const std::vector<CReceivedMessage> received = client_.take(kParamValues);
    ASSERT_EQ(received.size(), 3u);
    const struct {
        int32_t group;
        double db;
    } kExpected[] = {{0, 12.0}, {1, 0.0}, {0, -12.0}};
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_FALSE(received[i].isWhole);
        EXPECT_EQ(received[i].group, kExpected[i].group);
        EXPECT_EQ(received[i].first, 0);
        ASSERT_EQ(received[i].numbers.size(), 1u);
        EXPECT_NEAR(engine::decibels(received[i].numbers[0]), kExpected[i].db, 1e-9) << i;
    }
}

TEST_F(ParamMessages, TwoChangesInOneBlockBothArriveInOrder) {
    instance_->start(44100.0, 2, 2);
    EXPECT_EQ(client_.subscribe(1, kOutGain, 0), "");
    EXPECT_EQ(client_.subscribe(2, kMute, 0), "");
    client_.take();
    param(kOutGain).setValue(0, 0, 0.5);
    param(kMute).setValue(0, 0, 1.0);
    param(kOutGain).setValue(0, 0, 0.75);
    instance_->run({std::vector<double>(64), std::vector<double>(64)}, 64);
    const std::vector<CReceivedMessage> received = client_.take(kParamValues);
    ASSERT_EQ(received.size(), 3u);
    EXPECT_EQ(received[0].id, client_.id(1));
    EXPECT_EQ(received[0].numbers, std::vector<double>{0.5});
    EXPECT_EQ(received[1].id, client_.id(2));
    EXPECT_EQ(received[1].numbers, std::vector<double>{1.0});
    EXPECT_EQ(received[2].numbers, std::vector<double>{0.75});
}

TEST_F(ParamMessages, WhatAClientSetsSoundsInTheNextBlock) {
    const engine::CSignal input = engine::noise(2, 256, 0.25);
    instance_->start(44100.0, 2, 2);
    instance_->run(input, 256);
    EXPECT_EQ(client_.set(kMute, CAudioParamData::kAllGroups, 0, {1.0}), "");
    EXPECT_EQ(client_.set(kMute, 0, 0, {1.0}), "");
    EXPECT_EQ(client_.set(kMute, 1, 0, {1.0}), "");
    instance_->run(input, 4096);
    const engine::CSignal output = instance_->run(engine::noise(2, 4096, 0.25), 256);
    EXPECT_LT(engine::peak(output, 2048), 1e-9);
    EXPECT_EQ(param(kMute).value(0, 0), 1.0);
}

TEST_F(ParamMessages, WhatAClientSetsIsSentToTheHostAndToEverySubscriber) {
    CMessageClient other(*connector_);
    EXPECT_EQ(client_.subscribe(1, kGains, 0), "");
    EXPECT_EQ(other.subscribe(1, kGains, 0), "");
    instance_->paramChanges = 0;
    EXPECT_EQ(client_.set(kGains, 0, 3, {2.0}), "");
    EXPECT_EQ(instance_->paramChanges, 1);
    EXPECT_NEAR(hostParams().getParameter(4), 0.5 + 20.0 * std::log10(2.0) / 24.0, 1e-12);
    for (CMessageClient* each : {&client_, &other}) {
        const CReceivedMessage received = each->takeLast(kParamValues);
        EXPECT_EQ(received.id, each->id(1));
        EXPECT_EQ(received.group, 0);
        EXPECT_EQ(received.first, 3);
        EXPECT_EQ(received.numbers, std::vector<double>{2.0});
    }
}

TEST_F(ParamMessages, ASubscriptionStandsForItsParameterWhenSetting) {
    EXPECT_EQ(client_.subscribe(5, kOutGain, 0), "");
    EXPECT_EQ(client_.send(kSetValues, client_.id(5), CString(), int32_t{0}, int32_t{0}, int32_t{1}, uint32_t{0}, 0.5,
                           CString(), int32_t{-1}),
              "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
    EXPECT_EQ(client_.send(kSetValues, client_.id(6), CString(), int32_t{0}, int32_t{0}, int32_t{1}, uint32_t{0}, 0.5,
                           CString(), int32_t{-1}),
              "No parameter listener " + std::to_string(client_.id(6)) + " found.");
}

TEST_F(ParamMessages, ValuesAreClampedAndTheClientGetsTheClampedOnes) {
    EXPECT_EQ(client_.subscribe(1, kOutGain, 0), "");
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {1000.0}), "");
    const double top = client_.takeLast(kParamValues).numbers[0];
    EXPECT_NEAR(engine::decibels(top), 12.0, 1e-9);
    // It stays, and the client gets it again, since its control shows another value.
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {std::numeric_limits<double>::infinity()}), "");
    EXPECT_EQ(client_.takeLast(kParamValues).numbers[0], top);
    EXPECT_EQ(labels().size(), 2u);
}

TEST_F(ParamMessages, WhatIsNoNumberLeavesItsPlaceAlone) {
    param(kGains).setValue(0, 1, 2.0);
    EXPECT_EQ(client_.set(kGains, 0, 0, {0.5, std::nan(""), 0.5}), "");
    EXPECT_EQ(param(kGains).value(0, 0), 0.5);
    EXPECT_EQ(param(kGains).value(0, 1), 2.0);
    EXPECT_EQ(param(kGains).value(0, 2), 0.5);
    param(kGains).setValue(1, 1, 1.5);
    EXPECT_EQ(client_.set(kGains, CAudioParamData::kAllGroups, 0, {0.75, std::nan("")}), "");
    for (int32_t group = 0; group < 2; ++group) {
        EXPECT_EQ(param(kGains).value(group, 0), 0.75);
        EXPECT_EQ(param(kGains).value(group, 1), group == 0 ? 2.0 : 1.5);
    }
}

TEST_F(ParamMessages, AReplacingMessageEndsTheGroupBehindItsValues) {
    EXPECT_EQ(client_.subscribe(1, kGains, 0), "");
    EXPECT_EQ(client_.set(kGains, 1, 0, {2.0, 2.0, 2.0, 2.0}), "");
    client_.take();
    EXPECT_EQ(client_.set(kGains, 1, 0, {0.5, 0.5}, kIsReplacing | kIsRecorded), "");
    const CReceivedMessage received = client_.takeLast(kParamValues);
    EXPECT_EQ(received.held, 2);
    EXPECT_EQ(received.numbers, (std::vector<double>{0.5, 0.5}));
    EXPECT_EQ(param(kGains).value(1, 3), 1.0);
    EXPECT_EQ(client_.undo(), "");
    EXPECT_EQ(param(kGains).value(1, 3), 2.0);
}

TEST_F(ParamMessages, TheHostIsNotifiedOfTheElementsThatAReplacingMessageRemoves) {
    EXPECT_EQ(client_.set(kGains, 1, 0, {2.0, 2.0, 2.0, 2.0}), "");
    instance_->paramChanges = 0;
    EXPECT_EQ(client_.set(kGains, 1, 0, {0.5, 0.5}, kIsReplacing), "");
    EXPECT_EQ(instance_->paramChanges, 4);
    EXPECT_NEAR(hostParams().getParameter(9 + 3), 0.5, 1e-12);
    EXPECT_EQ(client_.set(kGains, CAudioParamData::kAllGroups, 0, {0.5}, kIsReplacing), "");
    EXPECT_EQ(instance_->paramChanges, 4 + 2) << "EQA0 and EQB1; the others are as they were";
}

TEST_F(ParamMessages, AllGroupsTakeWhatIsMeantForAllAlsoThoseThatHoldNothing) {
    EXPECT_EQ(client_.set(kGains, CAudioParamData::kAllGroups, 2, {0.5}), "");
    for (int32_t group = 0; group < instance_->groupCount(); ++group) {
        EXPECT_EQ(param(kGains).value(group, 2), 0.5) << group;
        EXPECT_EQ(param(kGains).value(group, 1), 1.0) << group;
    }
    EXPECT_EQ(labels().size(), 2u);
    EXPECT_EQ(client_.undo(), "");
    EXPECT_EQ(param(kGains).value(7, 2), 1.0);
}

TEST_F(ParamMessages, AllGroupsTakeWhatIsMeantForAll) {
    param(kGains).setValue(1, 0, 1.5);
    EXPECT_EQ(client_.subscribe(1, kGains, 0), "");
    EXPECT_EQ(client_.set(kGains, CAudioParamData::kAllGroups, 0, {0.5}), "");
    EXPECT_EQ(param(kGains).value(0, 0), 0.5);
    EXPECT_EQ(param(kGains).value(1, 0), 0.5);
    EXPECT_TRUE(client_.takeLast(kParamValues).isWhole);
    EXPECT_EQ(labels().back(), param(kGains).info().visualName().toUtf8() + " change");
}

TEST_F(ParamMessages, AStepOfAParameterWithoutAVisualNameHasItsOwnName) {
    ASSERT_TRUE(param(engine::kBandCount).info().visualName().isEmpty());
    EXPECT_EQ(client_.subscribe(1, engine::kBandCount, 0), "");
    EXPECT_EQ(client_.set(engine::kBandCount, 0, 0, {5.0}), "");
    EXPECT_EQ(labels().back(), "band-count (1) change");
}

TEST_F(ParamMessages, TextsTravelBothWays) {
    EXPECT_EQ(client_.subscribe(1, kInNamesParam), "");
    EXPECT_EQ(client_.takeLast(kParamValues).texts[0], "L");
    EXPECT_EQ(client_.setTexts(kInNamesParam, 0, 1, {"Bass \xc3\xa4", ""}), "");
    const CReceivedMessage received = client_.takeLast(kParamValues);
    EXPECT_EQ(received.first, 1);
    EXPECT_EQ(received.texts, (std::vector<std::string>{"Bass \xc3\xa4", ""}));
    EXPECT_EQ(param(kInNamesParam).text(0, 1).toUtf8(), "Bass \xc3\xa4");
}

TEST_F(ParamMessages, GroupNamesComeAsAListWhereTheyAreAskedForAsSuch) {
    EXPECT_EQ(client_.subscribe(1, kGroupNamesParam, kSendAtOnce | kAsGroupNames), "");
    EXPECT_EQ(client_.takeLast(kGroupNames).texts, (std::vector<std::string>{"1", "2", "3", "4", "5", "6", "7", "8"}));
    param(kGroupNamesParam).setText(0, 1, "Drums");
    const CReceivedMessage received = client_.takeLast(kGroupNames);
    EXPECT_EQ(received.id, client_.id(1));
    EXPECT_EQ(received.texts[1], "Drums");
    EXPECT_EQ(received.texts.size(), 8u);
}

TEST_F(ParamMessages, AnUnsubscribedParameterIsSilent) {
    EXPECT_EQ(client_.subscribe(1, kOutGain, 0), "");
    EXPECT_EQ(client_.send(kUnsubscribeParam, client_.id(1)), "");
    param(kOutGain).setValue(0, 0, 0.5);
    EXPECT_EQ(client_.waiting(), 0u);
    EXPECT_EQ(client_.send(kUnsubscribeParam, client_.id(1)),
              "No parameter listener " + std::to_string(client_.id(1)) + " found.");
    EXPECT_EQ(client_.send(kRequestValues, client_.id(1)), "No listener " + std::to_string(client_.id(1)) + " found.");
}

TEST_F(ParamMessages, ASubscriptionNeedsAParameterAFreeIdAndAClientThatIsThere) {
    EXPECT_EQ(client_.subscribe(1, "plugin.nowhere"), "No parameter 'plugin.nowhere' found.");
    EXPECT_EQ(client_.subscribe(1, kOutGain), "");
    EXPECT_EQ(client_.subscribe(1, kGains), "Listener " + std::to_string(client_.id(1)) + " exists already.");
    EXPECT_EQ(client_.send(kSubscribeParam, uint32_t{0x70001}, CString(kGains), uint32_t{0}, uint32_t{0}),
              "Unknown client 7.");
}

TEST_F(ParamMessages, PlacesThatAParameterDoesNotHaveAreRefused) {
    const struct {
        const char* name;
        int32_t group, first, count;
    } kBad[] = {
        {kGains, -1, 0, 1}, {kGains, 32, 0, 1}, {kGains, 9998, 0, 1},       {kGains, 0, -1, 1},
        {kGains, 0, 65, 1}, {kGains, 0, 0, -1}, {kGains, 0, 1, 0x7fffffff}, {kInNamesParam, 1, 0, 1},
    };
    for (const auto& bad : kBad) {
        EXPECT_EQ(client_.send(kSetValues, uint32_t{0}, CString(bad.name), bad.group, bad.first, bad.count, uint32_t{0},
                               1.0, CString(), int32_t{-1}),
                  std::string("Parameter '") + bad.name + "' has no place for " + std::to_string(bad.count) +
                      " elements from " + std::to_string(bad.first) + " on in group " + std::to_string(bad.group) +
                      ".");
    }
    EXPECT_EQ(labels().size(), 1u);
}

TEST_F(ParamMessages, AfterARestoredStateEverySubscriberGetsAll) {
    EXPECT_EQ(client_.subscribe(1, kOutGain, 0), "");
    EXPECT_EQ(client_.subscribe(2, kGains, 0), "");
    EXPECT_EQ(client_.send(kSubscribeRegistry, CString(kRegistry), client_.id(3)), "");
    client_.take();
    base().sendState();
    const std::vector<CReceivedMessage> received = client_.take();
    ASSERT_EQ(received.size(), 4u);
    EXPECT_EQ(received[0].id, client_.id(1));
    EXPECT_TRUE(received[0].isWhole);
    EXPECT_EQ(received[1].id, client_.id(2));
    EXPECT_EQ(received[2].type, kRegistryChanged);
    EXPECT_EQ(received[3].type, kHistory);
}

}  // namespace
}  // namespace tarv
