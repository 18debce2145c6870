#include "Audio/Presets/CAudioParamUndo.h"

#include <limits>
#include <thread>

#include "Tests/Audio/Presets/PresetTree.h"

namespace tarv {
namespace {

constexpr int32_t kNoKey = CAudioParamUndoStep::kNoKey;

class ParamUndo : public testing::Test {
protected:
    CTestHistory& history() { return tree_.history(); }

    /// Sets one number and puts it into the step, as an editor's gesture does.
    void turn(CAudioParamUndoStep& step, const std::string& name, double value, int32_t group = 0,
              int32_t element = 0) {
        CAudioParam& param = tree_.param(name);
        CAudioParamCollector::CAssignment assignment{&param, {}, -1};
        {
            CLockScope scope(param.lock());
            assignment.data = param.userData();
        }
        CAudioParamChange change;
        fillChange(change, group, element, {value});
        assignment.data.apply(change);
        CAudioParamData before;
        CAudioParamData after;
        if (tree_.collector().assign(assignment, &before, &after))
            step.add(param, std::move(before), std::move(after));
    }
    /// One step of one number; with a key it is a part of a gesture.
    void step(const std::string& label, const std::string& name, double value, int32_t key = kNoKey) {
        auto step = key == kNoKey ? std::make_unique<CAudioParamUndoStep>(label.c_str())
                                  : std::make_unique<CAudioParamUndoStep>(label.c_str(), key);
        turn(*step, name, value);
        history().addStep(std::move(step));
    }
    double gain() { return tree_.value("eq.gains"); }
    double mute() { return tree_.value("out.mute"); }
    double routing() { return tree_.value("io-params.in-routing"); }

    CPresetTree tree_;
};

TEST_F(ParamUndo, TheListBeginsWithItsStart) {
    EXPECT_EQ(tree_.labels(), "*Undo history start");
    EXPECT_EQ(history().undoCountMax(), 32);
}

TEST_F(ParamUndo, AStepIsUndoneAndRedone) {
    step("Gain change", "eq.gains", 5);
    step("Mute change", "out.mute", 1);
    EXPECT_EQ(tree_.labels(), "Undo history start,Gain change,*Mute change");
    history().undo(1);
    EXPECT_EQ(tree_.labels(), "Undo history start,*Gain change,Mute change");
    EXPECT_EQ(mute(), 0);
    EXPECT_EQ(gain(), 5);
    history().undo(1);
    EXPECT_EQ(gain(), 0);
    EXPECT_EQ(tree_.labels(), "*Undo history start,Gain change,Mute change");
    history().redo(2);
    EXPECT_EQ(gain(), 5);
    EXPECT_EQ(mute(), 1);
}

TEST_F(ParamUndo, AGestureThatIsTakenBackLeavesTheListAsItWas) {
    step("a", "eq.gains", 5);
    step("b", "eq.gains", 6);
    step("c", "eq.gains", 7);
    history().undo(2);
    step("drag", "eq.gains", 8, 4);
    step("drag", "eq.gains", 9, 4);
    EXPECT_EQ(tree_.labels(), "Undo history start,a,*drag");
    history().takeBack(5);
    EXPECT_EQ(gain(), 9) << "of another gesture";
    history().takeBack(4);
    EXPECT_EQ(tree_.labels(), "Undo history start,*a,b,c");
    EXPECT_EQ(gain(), 5);
    history().redo(2);
    EXPECT_EQ(gain(), 7);
    history().takeBack(kNoKey);
    EXPECT_EQ(tree_.labels(), "Undo history start,a,b,*c") << "a step without a gesture";
}

TEST_F(ParamUndo, AGestureThatIsTakenBackBringsTheOldestStepBack) {
    for (int i = 1; i <= 32; ++i) {
        step("s" + std::to_string(i), "eq.gains", i);
    }
    step("drag", "eq.gains", 100, 4);
    EXPECT_EQ(history().getStepLabels()[1], "s2");
    history().takeBack(4);
    EXPECT_EQ(history().getStepLabels().count(), 33);
    EXPECT_EQ(history().getStepLabels()[1], "s1");
    history().undo(32);
    EXPECT_EQ(gain(), 0);
}

TEST_F(ParamUndo, OfAGestureBehindOneThatWasUndoneOnlyItsOwnStepIsTakenBack) {
    step("drag", "eq.gains", 8, 4);
    history().undo(1);
    history().takeBack(4);
    EXPECT_EQ(tree_.labels(), "*Undo history start,drag");
    history().redo(1);
    step("other", "out.mute", 1, 6);
    history().takeBack(4);
    EXPECT_EQ(gain(), 8);
    EXPECT_EQ(tree_.labels(), "Undo history start,drag,*other");
}

TEST_F(ParamUndo, MovesEndAtTheEndsOfTheList) {
    history().undo(1);
    history().redo(1);
    EXPECT_EQ(history().received, 0);
    step("a", "eq.gains", 5);
    step("b", "eq.gains", 6);
    const int32_t most = std::numeric_limits<int32_t>::max();
    history().undo(most);
    EXPECT_EQ(gain(), 0);
    history().undo(1);
    history().undo(-1);
    history().redo(-1);
    history().undo(std::numeric_limits<int32_t>::min());
    EXPECT_EQ(tree_.labels(), "*Undo history start,a,b");
    history().redo(most);
    EXPECT_EQ(gain(), 6);
    history().redo(1);
    EXPECT_EQ(tree_.labels(), "Undo history start,a,*b");
}

TEST_F(ParamUndo, AStepIsSelectedByItsPlaceInTheListOfLabels) {
    for (int i = 1; i <= 5; ++i)
        step("s" + std::to_string(i), "eq.gains", i);
    for (const int32_t place : {3, 0, 5, 1, 4}) {
        history().selectStep(place);
        EXPECT_EQ(gain(), place);
    }
    for (const int32_t place : {-1, 6, std::numeric_limits<int32_t>::max(), std::numeric_limits<int32_t>::min()}) {
        history().selectStep(place);
        EXPECT_EQ(gain(), 4) << place;
    }
}

TEST_F(ParamUndo, AThirtyThirdStepDropsTheOldestAndKeepsTheStart) {
    for (int i = 1; i <= 33; ++i)
        step("s" + std::to_string(i), "eq.gains", i);
    int32_t position = 0;
    const auto labels = history().getStepLabels(&position);
    EXPECT_EQ(labels.count(), 33);
    EXPECT_EQ(position, 32);
    EXPECT_EQ(labels[0], "Undo history start");
    EXPECT_EQ(labels[1], "s2");
    EXPECT_EQ(labels[32], "s33");
    history().undo(100);
    EXPECT_EQ(gain(), 1) << "the step from 0 to 1 was deleted";
}

TEST_F(ParamUndo, ANewStepDeletesTheStepsThatCouldHaveBeenRedone) {
    step("a", "eq.gains", 1);
    step("b", "eq.gains", 2);
    step("c", "eq.gains", 3);
    history().undo(2);
    step("d", "out.mute", 1);
    EXPECT_EQ(tree_.labels(), "Undo history start,a,*d");
    history().redo(5);
    EXPECT_EQ(gain(), 1);
}

TEST_F(ParamUndo, StepsOfOneGestureMergeAndKeepTheFirstFormerValue) {
    step("Gain change", "eq.gains", 1, 77);
    step("Gain change", "eq.gains", 2, 77);
    step("Gain change", "eq.gains", 3, 77);
    EXPECT_EQ(tree_.labels(), "Undo history start,*Gain change");
    history().undo(1);
    EXPECT_EQ(gain(), 0);
    history().redo(1);
    EXPECT_EQ(gain(), 3);
}

TEST_F(ParamUndo, GesturesWithAnotherControlBetweenThemDoNotMerge) {
    step("Gain change", "eq.gains", 1, 77);
    step("Mute change", "out.mute", 1, 78);
    step("Gain change", "eq.gains", 2, 77);
    EXPECT_EQ(tree_.labels(), "Undo history start,Gain change,Mute change,*Gain change");
}

TEST_F(ParamUndo, OnlyGesturesOfTheSameKeyAndParametersMerge) {
    step("a", "eq.gains", 1, 77);
    step("another key", "eq.gains", 2, 78);
    step("no gesture", "eq.gains", 3);
    step("after it", "eq.gains", 4, 78);
    EXPECT_EQ(tree_.labels(), "Undo history start,a,another key,no gesture,*after it");
    auto wider = std::make_unique<CAudioParamUndoStep>("wider", 78);
    turn(*wider, "eq.gains", 5);
    turn(*wider, "out.mute", 1);
    history().addStep(std::move(wider));
    EXPECT_EQ(tree_.labels(), "Undo history start,a,another key,no gesture,after it,*wider");
    step("a part of it", "out.mute", 0, 78);
    EXPECT_EQ(tree_.labels(), "Undo history start,a,another key,no gesture,after it,*wider");
    auto keyless = std::make_unique<CAudioParamUndoStep>("keyless", kNoKey);
    turn(*keyless, "eq.gains", 6);
    history().addStep(std::move(keyless));
    auto second = std::make_unique<CAudioParamUndoStep>("keyless", kNoKey);
    turn(*second, "eq.gains", 7);
    history().addStep(std::move(second));
    EXPECT_EQ(history().getStepLabels().count(), 8) << "-1 is no key";
}

TEST_F(ParamUndo, AnEmptyStepLeavesTheListAlone) {
    step("a", "eq.gains", 1);
    history().undo(1);
    const int32_t received = history().received;
    step("the same value", "eq.gains", 0);
    EXPECT_EQ(tree_.labels(), "*Undo history start,a");
    EXPECT_EQ(history().received, received);
    history().redo(1);
    EXPECT_EQ(gain(), 1);
}

TEST_F(ParamUndo, TextsAndGroupsAreRestored) {
    auto first = std::make_unique<CAudioParamUndoStep>("group");
    turn(*first, "eq.gains", 4, 2, 1);
    history().addStep(std::move(first));
    CAudioParam& names = tree_.param("io-params.group-names");
    CAudioParamCollector::CAssignment assignment{&names, {}, -1};
    assignment.data.resetWithDefaults(names.info(), 0);
    CAudioParamChange change;
    change.isString = 1;
    CAudioParamData pool;
    change.sourcePool = &pool;
    fillChange(change, 0, 1, {static_cast<double>(pool.addString("Mitte \u00e4"))});
    assignment.data.apply(change);
    auto second = std::make_unique<CAudioParamUndoStep>("names");
    CAudioParamData before;
    CAudioParamData after;
    ASSERT_TRUE(tree_.collector().assign(assignment, &before, &after));
    second->add(names, std::move(before), std::move(after));
    history().addStep(std::move(second));
    const std::string done = tree_.state();
    history().undo(2);
    EXPECT_EQ(tree_.text("io-params.group-names", 1), "2");
    EXPECT_EQ(tree_.value("eq.gains", 2, 1), 0);
    history().redo(2);
    EXPECT_EQ(tree_.state(), done);
    EXPECT_EQ(tree_.value("eq.gains", 2, 1), 4);
}

TEST_F(ParamUndo, ARecordIsOneStepOfAllThatIsAddedToIt) {
    history().beginRecord(std::make_unique<CAudioParamUndoStep>("Group A to B copy"));
    step("part", "eq.gains", 1);
    step("part", "out.mute", 1);
    step("part", "eq.gains", 2);
    EXPECT_EQ(tree_.labels(), "*Undo history start");
    history().endRecord();
    EXPECT_EQ(tree_.labels(), "Undo history start,*Group A to B copy");
    history().undo(1);
    EXPECT_EQ(gain(), 0);
    EXPECT_EQ(mute(), 0);
    history().redo(1);
    EXPECT_EQ(gain(), 2);
    history().endRecord();
    history().beginRecord(std::make_unique<CAudioParamUndoStep>("nothing"));
    history().endRecord();
    EXPECT_EQ(tree_.labels(), "Undo history start,*Group A to B copy");
}

TEST_F(ParamUndo, AnOpenRecordIsEndedByAMoveAndByTheNext) {
    history().beginRecord(std::make_unique<CAudioParamUndoStep>("first"));
    step("part", "eq.gains", 1);
    history().beginRecord(std::make_unique<CAudioParamUndoStep>("second"));
    step("part", "out.mute", 1);
    history().undo(1);
    EXPECT_EQ(tree_.labels(), "Undo history start,*first,second");
    EXPECT_EQ(mute(), 0);
    step("no part any more", "out.mute", 1);
    EXPECT_EQ(tree_.labels(), "Undo history start,first,*no part any more");
}

TEST_F(ParamUndo, EachChangeOfTheListNotifiesOnceWithTheLockFree) {
    bool isFree = true;
    history().onMessage = [&] {
        std::thread([&] {
            const bool entered = history().lock().tryEnter();
            isFree = isFree && entered;
            if (entered)
                history().lock().leave();
        }).join();
    };
    step("a", "eq.gains", 1);
    EXPECT_EQ(history().received, 1);
    history().undo(1);
    EXPECT_EQ(history().received, 2);
    history().redo(1);
    EXPECT_EQ(history().received, 3);
    tree_.master().masterReset();
    EXPECT_EQ(history().received, 4);
    tree_.master().swapAB();
    EXPECT_EQ(history().received, 5);
    EXPECT_TRUE(isFree);
}

TEST_F(ParamUndo, ACallerThatHoldsTheLockCanAddAStep) {
    auto step = std::make_unique<CAudioParamUndoStep>("under the lock");
    turn(*step, "eq.gains", 1);
    {
        CLockScope scope(history().lock());
        history().addStep(std::move(step), true);
        EXPECT_EQ(history().received, 0);
    }
    history().notifyIfChanged();
    history().notifyIfChanged();
    EXPECT_EQ(history().received, 1);
    EXPECT_EQ(tree_.labels(), "Undo history start,*under the lock");
}

TEST_F(ParamUndo, ListenersAreNotifiedOfTheValuesThatAMoveRestored) {
    struct CListener : CAudioParamListener {
        void onParamChanged(CAudioParam& param, int32_t group, int32_t first, int32_t count) override {
            value = param.value(0, 0);
            isWhole = group == CAudioParamData::kAllGroups && first == 0 && count > 16;
            ++times;
        }
        double value = -1;
        bool isWhole = false;
        int32_t times = 0;
    } listener;
    step("a", "eq.gains", 1);
    step("b", "eq.gains", 2);
    tree_.param("eq.gains").addListener(listener);
    history().undo(2);
    EXPECT_EQ(listener.value, 0);
    EXPECT_EQ(listener.times, 1);
    EXPECT_TRUE(listener.isWhole);
    tree_.param("eq.gains").removeListener(listener);
}

TEST(ParamUndoOfLengthZero, KeepsNoStep) {
    CPresetTree tree({}, "0");
    tree.set("eq.gains", 5);
    tree.master().masterReset();
    EXPECT_EQ(tree.labels(), "*Undo history start");
    tree.history().undo(1);
    EXPECT_EQ(tree.value("eq.gains"), 0);
}

}  // namespace
}  // namespace tarv
