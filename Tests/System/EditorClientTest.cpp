// The editor's end: which messages arrive, in which order and on which thread.

#include <atomic>
#include <thread>

#include "Tests/System/EditorTest.h"

namespace tarv {
namespace {

using engine::kGains;
using engine::kMute;
using engine::kOutGain;

class EditorClient : public CEditorTest {};

TEST_F(EditorClient, BeginsWithTheFullStateAndTheNamesOfTheGroups) {
    EXPECT_EQ(client_->engineState().registries.count(), 0);
    pumpEvents();
    EXPECT_EQ(client_->engineState().registries.count(), 2);
    EXPECT_EQ(client_->engineState().counts.groups, instance_->groupCount());
    EXPECT_EQ(client_->groupName(0), CString("1"));
    param(kGroupNamesParam).setText(0, 1, "Drums");
    pumpEvents();
    EXPECT_EQ(client_->groupName(1), CString("Drums"));
    param(kGroupNamesParam).setText(0, 1, "");
    pumpEvents();
    EXPECT_EQ(client_->groupName(1), CString("2"));
    EXPECT_EQ(client_->groupName(100), CString("101"));
}

TEST_F(EditorClient, ValuesTravelBothWays) {
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kGains, recorder)), "");
    EXPECT_EQ(client_->paramInfo(recorder), nullptr);
    pumpEvents();
    ASSERT_EQ(recorder.changes.size(), 1u);
    EXPECT_EQ(recorder.changes[0].group, 0);
    EXPECT_EQ(recorder.changes[0].first, 0);
    EXPECT_EQ(recorder.changes[0].count, engine::kBands);
    EXPECT_TRUE(recorder.changes[0].isReplacing);
    ASSERT_TRUE(client_->paramInfo(recorder));
    EXPECT_EQ(client_->paramInfo(recorder)->definitionPath(), param(kGains).info().definitionPath());
    const double numbers[] = {2.0, 0.5};
    EXPECT_EQ(firstLine(client_->setNumbers(kGains, 1, 2, numbers, 2)), "");
    EXPECT_EQ(param(kGains).value(1, 3), 0.5);
    EXPECT_EQ(recorder.changes.size(), 1u);
    pumpEvents();
    ASSERT_EQ(recorder.changes.size(), 2u);
    EXPECT_EQ(recorder.changes[1].group, 1);
    EXPECT_EQ(recorder.changes[1].first, 2);
    EXPECT_EQ(recorder.changes[1].count, 2);
    EXPECT_EQ(recorder.changes[1].value, 2.0);
    EXPECT_FALSE(recorder.changes[1].isReplacing);
    EXPECT_TRUE(client_->paramData(recorder)->isSame(param(kGains).userData()));
    EXPECT_EQ(firstLine(client_->setNumbers(kGains, 1, 0, numbers, 1, 1, {}, true)), "");
    pumpEvents();
    ASSERT_EQ(recorder.changes.size(), 3u);
    EXPECT_EQ(recorder.changes[2].count, 1);
    EXPECT_TRUE(recorder.changes[2].isReplacing);
    EXPECT_TRUE(client_->paramData(recorder)->isSame(param(kGains).userData()));
    EXPECT_EQ(client_->paramData(recorder)->elementCount(1), 1);
}

TEST_F(EditorClient, AWholeValueComesAsTheRangesThatAreThere) {
    param(kGains).setValue(2, 3, 2.0);
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kGains, recorder)), "");
    pumpEvents();
    ASSERT_EQ(recorder.changes.size(), 3u);
    for (int32_t group = 0; group < 3; ++group) {
        const CChange& change = recorder.changes[static_cast<size_t>(group)];
        EXPECT_EQ(change.group, group);
        EXPECT_EQ(change.first, 0);
        EXPECT_EQ(change.count, client_->paramData(recorder)->elementCount(group));
        EXPECT_TRUE(change.isReplacing);
    }
    recorder.changes.clear();
    // The groups that a reset empties are among what changed.
    EXPECT_EQ(firstLine(client_->masterReset(kRegistry)), "");
    pumpEvents();
    ASSERT_EQ(recorder.changes.size(), 3u);
    EXPECT_EQ(recorder.changes[2].count, 0);
    EXPECT_EQ(recorder.changes[2].value, 1.0);
}

TEST_F(EditorClient, AnEditForAllGroupsReachesThoseThatHoldNothingInTheCopyToo) {
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kGains, recorder)), "");
    const double half = 0.5;
    EXPECT_EQ(firstLine(client_->setNumbers(kGains, CAudioParamData::kAllGroups, 1, &half, 1)), "");
    pumpEvents();
    for (int32_t group = 0; group < instance_->groupCount(); ++group) {
        EXPECT_EQ(client_->paramData(recorder)->value(group, 1), 0.5) << group;
    }
    EXPECT_TRUE(client_->paramData(recorder)->isSame(param(kGains).userData()));
}

TEST_F(EditorClient, NegativePlacesAreRefusedBeforeAnythingIsRead) {
    const std::string start = std::string("Parameter '") + kGains + "' has no place for ";
    EXPECT_EQ(firstLine(client_->setNumbers(kGains, 0, -1, nullptr, 1)), start + "1 elements from -1 on in group 0.");
    EXPECT_EQ(firstLine(client_->setNumbers(kGains, 0, 0, nullptr, -1)), start + "-1 elements from 0 on in group 0.");
    EXPECT_EQ(firstLine(client_->setNumbers(kGains, -1, 0, nullptr, 1)), start + "1 elements from 0 on in group -1.");
    EXPECT_EQ(labels().size(), 1u);
}

TEST_F(EditorClient, TextsTravelBothWays) {
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kInNamesParam, recorder)), "");
    CTextList names;
    names.append("Bass");
    EXPECT_EQ(firstLine(client_->setTexts(kInNamesParam, 0, 1, names)), "");
    pumpEvents();
    EXPECT_TRUE(client_->paramData(recorder)->isSame(param(kInNamesParam).userData()));
    EXPECT_EQ(client_->paramData(recorder)->text(0, 1), CString("Bass"));
}

TEST_F(EditorClient, WhatIsSentIsPostedAlsoOnTheEditorsOwnThreadAndOnlyOnce) {
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, recorder)), "");
    pumpEvents();
    for (const double value : {0.5, 0.6, 0.7}) {
        param(kOutGain).setValue(0, 0, value);
    }
    EXPECT_EQ(recorder.changes.size(), 1u);
    EXPECT_EQ(clientConnector_->pendingCount(), 3);
    EXPECT_EQ(pumpEvents(), 1);
    ASSERT_EQ(recorder.changes.size(), 4u);
    EXPECT_EQ(recorder.changes[1].value, 0.5);
    EXPECT_EQ(recorder.changes[3].value, 0.7);
    EXPECT_EQ(pumpEvents(), 0);
}

TEST_F(EditorClient, WhatAListenerSetsArrivesBehindWhatWasQueued) {
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, recorder)), "");
    pumpEvents();
    int rounds = 0;
    recorder.onChange = [&] {
        if (++rounds == 1) {
            const double value = 0.9;
            EXPECT_EQ(firstLine(client_->setNumbers(kOutGain, 0, 0, &value, 1)), "");
            // A loop of events inside a listener reads no message before its turn.
            pumpEvents();
            EXPECT_EQ(rounds, 1);
        }
    };
    param(kOutGain).setValue(0, 0, 0.5);
    param(kOutGain).setValue(0, 0, 0.6);
    pumpEvents();
    ASSERT_EQ(recorder.changes.size(), 4u);
    EXPECT_EQ(recorder.changes[2].value, 0.6);
    EXPECT_EQ(recorder.changes[3].value, 0.9);
}

TEST_F(EditorClient, RegistryListenersGetWhatChanged) {
    CRegistryRecorder recorder;
    EXPECT_EQ(firstLine(client_->addRegistryListener(kRegistry, recorder)), "");
    EXPECT_EQ(firstLine(client_->setProgram(kRegistry, 2)), "");
    EXPECT_EQ(firstLine(client_->renameProgram(kRegistry, 2, "Mine")), "");
    EXPECT_EQ(firstLine(client_->swapAB(kRegistry)), "");
    pumpEvents();
    ASSERT_GE(recorder.states.size(), 4u);
    EXPECT_EQ(recorder.states[0].currentProgram, 0);
    EXPECT_EQ(recorder.states.back().currentProgram, 2);
    EXPECT_EQ(recorder.states.back().programs[2], CString("Mine"));
    EXPECT_EQ(recorder.alternates, std::vector<bool>{true});
    EXPECT_EQ(client_->engineState().registries[1].currentProgram, 2);
}

TEST_F(EditorClient, PresetsAndBanksTravelAsData) {
    CRegistryRecorder recorder;
    const double half = 0.5;
    EXPECT_EQ(firstLine(client_->setNumbers(kOutGain, 0, 0, &half, 1)), "");
    uint32_t request = 0;
    EXPECT_EQ(firstLine(client_->acquirePreset(kRegistry, recorder, request)), "");
    pumpEvents();
    ASSERT_FALSE(recorder.data.isEmpty());
    EXPECT_EQ(recorder.requests, std::vector<uint32_t>{request});
    EXPECT_EQ(firstLine(client_->masterReset(kRegistry)), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 1.0);
    EXPECT_EQ(firstLine(client_->activateData(kRegistry, recorder.data)), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
    recorder.data.clear();
    EXPECT_EQ(firstLine(client_->acquireBank(kRegistry, recorder, request, true)), "");
    pumpEvents();
    EXPECT_EQ(recorder.requests.back(), request);
    EXPECT_EQ(firstLine(client_->activateData(kRegistry, recorder.data)), "");
    EXPECT_EQ(firstLine(client_->activateRomPreset(kRegistry, 1)), "");
    EXPECT_EQ(labels().back(), "ROM preset activate");
    EXPECT_EQ(firstLine(client_->copyToAlternate(kRegistry)), "");
    EXPECT_EQ(firstLine(client_->resetState(kRegistry)), "");
    EXPECT_NE(firstLine(client_->activateRomPreset(kRegistry, 100)), "");
}

TEST_F(EditorClient, AnswersCarryTheNumbersOfTheirRequests) {
    CRegistryRecorder recorder;
    uint32_t requests[3] = {};
    EXPECT_EQ(firstLine(client_->acquirePreset(kRegistry, recorder, requests[0], true, 1)), "");
    EXPECT_EQ(firstLine(client_->acquirePreset(kRegistry, recorder, requests[1], true, 2)), "");
    EXPECT_EQ(firstLine(client_->acquireBank(kRegistry, recorder, requests[2])), "");
    pumpEvents();
    EXPECT_EQ(recorder.requests, (std::vector<uint32_t>{requests[0], requests[1], requests[2]}));
    EXPECT_NE(requests[0], requests[1]);
    EXPECT_NE(requests[1], requests[2]);
}

TEST_F(EditorClient, ProgramsAreAddedReplacedAndDeleted) {
    CRegistryRecorder recorder;
    EXPECT_EQ(firstLine(client_->addRegistryListener(kRegistry, recorder)), "");
    const int32_t count = registry().programCount();
    EXPECT_EQ(firstLine(client_->addProgram(kRegistry, 1, "Mine")), "");
    EXPECT_EQ(firstLine(client_->replaceProgram(kRegistry, 2)), "");
    pumpEvents();
    ASSERT_EQ(recorder.states.back().programs.count(), count + 1);
    EXPECT_EQ(recorder.states.back().programs[1], CString("Mine"));
    EXPECT_EQ(firstLine(client_->deleteProgram(kRegistry, 1)), "");
    pumpEvents();
    EXPECT_EQ(recorder.states.back().programs.count(), count);
}

TEST_F(EditorClient, GesturesAndTheHistory) {
    EXPECT_EQ(firstLine(client_->beginStep("Both")), "");
    const double half = 0.5;
    const double one = 1.0;
    EXPECT_EQ(firstLine(client_->setNumbers(kOutGain, 0, 0, &half, 1)), "");
    EXPECT_EQ(firstLine(client_->setNumbers(kMute, 0, 0, &one, 1)), "");
    EXPECT_EQ(firstLine(client_->endStep()), "");
    EXPECT_EQ(firstLine(client_->setNumbers(kOutGain, 0, 0, &one, 1, 1, {false, {}, -1})), "");
    pumpEvents();
    ASSERT_EQ(client_->engineState().history.labels.count(), 2);
    EXPECT_EQ(client_->engineState().history.labels[1], CString("Both"));
    EXPECT_EQ(firstLine(client_->undo()), "");
    EXPECT_EQ(param(kMute).value(0, 0), 0.0);
    EXPECT_EQ(firstLine(client_->redo()), "");
    EXPECT_EQ(param(kMute).value(0, 0), 1.0);
    EXPECT_EQ(firstLine(client_->selectStep(0)), "");
    pumpEvents();
    EXPECT_EQ(client_->engineState().history.position, 0);
}

TEST_F(EditorClient, RateCountsAndBoundValues) {
    uint32_t id = 0;
    EXPECT_EQ(firstLine(client_->bindValue("io-channel-counts", 2, id)), "");
    instance_->start(48000.0, 2, 4);
    EXPECT_EQ(firstLine(client_->requestCounts()), "");
    pumpEvents();
    EXPECT_EQ(client_->engineState().sampleRate, 48000.0);
    EXPECT_EQ(client_->engineState().counts.outputs, 4);
    EXPECT_EQ(client_->boundValue(id, 0), 2.0);
    EXPECT_EQ(client_->boundValue(id, 1), 4.0);
    EXPECT_EQ(client_->boundValue(id, 2), 0.0);
    EXPECT_EQ(firstLine(client_->unbindValue(id)), "");
    EXPECT_EQ(client_->boundValue(id, 0), 0.0);
}

TEST_F(EditorClient, TwoEditorsHaveTheLowestFreeNumbersAndFollowEachOther) {
    EXPECT_EQ(clientConnector_->clientId(), 0);
    auto second = makeRoot();
    ASSERT_EQ(firstLine(loadTree(*second, nodes())), "");
    auto* other = second->findObjectOf<CAudioInterfaceClient>("ui.client");
    EXPECT_EQ(second->findObjectOf<CAudioInterfaceClientConnector>("ui.connector")->clientId(), 1);
    CByteBuffer bytes;
    bytes.append(42);
    EXPECT_EQ(firstLine(client_->passData(bytes)), "");
    pumpEvents();
    ASSERT_EQ(other->passedData().count(), 1);
    EXPECT_TRUE(client_->passedData().isEmpty());
    editor_.reset();
    open();
    EXPECT_EQ(clientConnector_->clientId(), 0);
}

TEST_F(EditorClient, ChangesOfAnotherThreadArriveOnTheEditorsThreadInOrder) {
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, recorder)), "");
    pumpEvents();
    const std::thread::id editorThread = std::this_thread::get_id();
    recorder.onChange = [&] { EXPECT_EQ(std::this_thread::get_id(), editorThread); };
    constexpr int32_t kCount = 2000;
    std::atomic<bool> isDone{false};
    std::thread host([&] {
        for (int32_t i = 1; i <= kCount; ++i) {
            param(kOutGain).setValue(0, 0, 0.5 + i * 1e-4);
        }
        isDone = true;
    });
    while (!isDone) {
        pumpEvents();
    }
    host.join();
    pumpEvents();
    ASSERT_EQ(recorder.changes.size(), static_cast<size_t>(kCount) + 1);
    for (size_t i = 2; i < recorder.changes.size(); ++i) {
        EXPECT_GT(recorder.changes[i].value, recorder.changes[i - 1].value);
    }
}

}  // namespace
}  // namespace tarv
