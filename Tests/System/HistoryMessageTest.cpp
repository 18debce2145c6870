// The history through messages: steps, gestures, labels, moves, records.

#include "Tests/System/MessageTest.h"

namespace tarv {
namespace {

using engine::kGains;
using engine::kMute;
using engine::kOutGain;

class HistoryMessages : public CMessageTest {
protected:
    std::string visualName(const char* name) { return param(name).info().visualName().toUtf8(); }

    CMessageClient client_{*connector_};
};

TEST_F(HistoryMessages, ASetValueIsAStepThatCanBeUndoneAndRedone) {
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}), "");
    EXPECT_EQ(client_.undo(), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 1.0);
    EXPECT_EQ(client_.redo(), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
}

TEST_F(HistoryMessages, OnlyWhatIsAskedForAndWhatChangesIsRecorded) {
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}, 0), "");
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}), "");
    hostParams().setParameter(1, 1.0);
    EXPECT_EQ(labels(), std::vector<std::string>{"Undo history start"});
}

TEST_F(HistoryMessages, LabelsNameTheParameterAndTheGroup) {
    param(kGroupNamesParam).setText(0, 1, "Drums");
    EXPECT_EQ(client_.set(kOutGain, 1, 0, {0.5}), "");
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}), "");
    EXPECT_EQ(client_.set(kOutGain, 9999, 0, {0.25}), "");
    EXPECT_EQ(client_.set(engine::kInRouting, 0, 0, {2.0}), "");
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}, kIsRecorded, "Group 1 reset"), "");
    EXPECT_EQ(labels(),
              (std::vector<std::string>{"Undo history start", visualName(kOutGain) + " (Drums) change",
                                        visualName(kOutGain) + " (1) change", visualName(kOutGain) + " change",
                                        visualName(engine::kInRouting) + " change", "Group 1 reset"}));
}

TEST_F(HistoryMessages, TheStepsOfOneGestureAreOne) {
    for (const double value : {0.9, 0.8, 0.7}) {
        EXPECT_EQ(client_.set(kOutGain, 0, 0, {value}, kIsRecorded, "", 5), "");
    }
    EXPECT_EQ(labels().size(), 2u);
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.6}, kIsRecorded, "", 6), "");
    EXPECT_EQ(labels().size(), 3u);
    EXPECT_EQ(client_.undo(2), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 1.0);
    EXPECT_EQ(client_.redo(), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.7);
}

TEST_F(HistoryMessages, AnotherControlInBetweenEndsAGesture) {
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.9}, kIsRecorded, "", 5), "");
    EXPECT_EQ(client_.set(kMute, 0, 0, {1.0}, kIsRecorded, "", 6), "");
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.8}, kIsRecorded, "", 5), "");
    EXPECT_EQ(labels().size(), 4u);
}

TEST_F(HistoryMessages, NoMoreThan32StepsAreKept) {
    for (int32_t i = 0; i < 40; ++i) {
        EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5 + 0.01 * i}, kIsRecorded, std::to_string(i).c_str()), "");
    }
    const CInterfaceHistory history = client_.takeLast(kHistory).history;
    EXPECT_EQ(history.labels.count(), 33);
    EXPECT_EQ(history.labels[0], CString("Undo history start"));
    EXPECT_EQ(history.labels[1], CString("8"));
    EXPECT_EQ(history.position, 32);
    EXPECT_EQ(client_.undo(100), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5 + 0.01 * 7);
    EXPECT_EQ(client_.takeLast(kHistory).history.position, 0);
}

TEST_F(HistoryMessages, ARecordMakesOneStepOfSeveralValues) {
    EXPECT_EQ(client_.openRecord("Group 1 to 2 copy"), "");
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}), "");
    EXPECT_EQ(client_.set(kMute, 0, 0, {1.0}), "");
    EXPECT_EQ(labels().size(), 1u);
    EXPECT_EQ(client_.endRecord(), "");
    EXPECT_EQ(labels(), (std::vector<std::string>{"Undo history start", "Group 1 to 2 copy"}));
    EXPECT_EQ(client_.undo(), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 1.0);
    EXPECT_EQ(param(kMute).value(0, 0), 0.0);
}

TEST_F(HistoryMessages, AClientEndsItsOwnRecordOnly) {
    CMessageClient other(*connector_);
    EXPECT_EQ(client_.openRecord("Mine"), "");
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}), "");
    EXPECT_EQ(other.endRecord(), "");
    EXPECT_EQ(labels().size(), 1u);
}

TEST_F(HistoryMessages, ARecordLeftOpenEndsWithItsClient) {
    {
        CMessageClient other(*connector_);
        EXPECT_EQ(other.openRecord("Half a gesture"), "");
        EXPECT_EQ(other.set(kOutGain, 0, 0, {0.5}), "");
    }
    EXPECT_EQ(labels(), (std::vector<std::string>{"Undo history start", "Half a gesture"}));
    EXPECT_EQ(client_.set(kMute, 0, 0, {1.0}), "");
    EXPECT_EQ(labels().size(), 3u);
}

TEST_F(HistoryMessages, ANewStepEndsWhatCouldBeRedone) {
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}, kIsRecorded, "a"), "");
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.6}, kIsRecorded, "b"), "");
    EXPECT_EQ(client_.undo(), "");
    EXPECT_EQ(client_.set(kMute, 0, 0, {1.0}, kIsRecorded, "c"), "");
    EXPECT_EQ(labels(), (std::vector<std::string>{"Undo history start", "a", "c"}));
    EXPECT_EQ(client_.redo(), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
}

TEST_F(HistoryMessages, SelectingMovesToAnyStepAndNotifiesEveryClient) {
    CMessageClient other(*connector_);
    EXPECT_EQ(other.subscribe(1, kOutGain, 0), "");
    for (const double value : {0.5, 0.6, 0.7}) {
        EXPECT_EQ(client_.set(kOutGain, 0, 0, {value}), "");
    }
    other.take();
    EXPECT_EQ(client_.select(1), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
    const std::vector<CReceivedMessage> received = other.take();
    ASSERT_EQ(received.size(), 2u);
    EXPECT_EQ(received[0].type, kParamValues);
    EXPECT_EQ(received[0].groups[0], std::vector<double>{0.5});
    EXPECT_EQ(received[1].history.position, 1);
    EXPECT_EQ(client_.select(4), "");
    EXPECT_EQ(client_.select(-1), "");
    EXPECT_EQ(client_.undo(-3), "");
    int32_t position = 0;
    labels(&position);
    EXPECT_EQ(position, 1);
}

TEST_F(HistoryMessages, AnUnknownMoveIsRefused) {
    EXPECT_EQ(client_.send(kMoveInHistory, client_.id(0), uint32_t{3}, int32_t{0}, int32_t{1}),
              "Invalid move 3 in the history.");
}

TEST_F(HistoryMessages, AGestureThatGoesOnSendsItsListOnce) {
    for (const double value : {0.9, 0.8, 0.7, 0.6}) {
        EXPECT_EQ(client_.set(kOutGain, 0, 0, {value}, kIsRecorded, "", 5), "");
    }
    EXPECT_EQ(client_.take(kHistory).size(), 1u);
}

TEST_F(HistoryMessages, EachStateOfABHasItsOwnList) {
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}, kIsRecorded, "in A"), "");
    EXPECT_EQ(client_.send(kSwapAB, CString(kRegistry)), "");
    EXPECT_EQ(labels(), std::vector<std::string>{"Undo history start"});
    EXPECT_EQ(client_.takeLast(kHistory).history.labels.count(), 1);
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.25}, kIsRecorded, "in B"), "");
    EXPECT_EQ(client_.send(kSwapAB, CString(kRegistry)), "");
    EXPECT_EQ(labels(), (std::vector<std::string>{"Undo history start", "in A"}));
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
    EXPECT_EQ(client_.undo(), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 1.0);
}

TEST_F(HistoryMessages, AStepTakesItsElementsBackAndLeavesWhatAHostSetMeanwhile) {
    EXPECT_EQ(client_.set(kGains, 0, 0, {0.5, 0.6, 0.7}), "");
    param(kGains).setValue(0, 5, 2.0);
    EXPECT_EQ(client_.undo(), "");
    EXPECT_EQ(param(kGains).value(0, 0), 1.0);
    EXPECT_EQ(param(kGains).value(0, 5), 2.0);
}

}  // namespace
}  // namespace tarv
