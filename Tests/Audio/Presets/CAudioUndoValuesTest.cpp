// Undo restores the elements that a step changed; what was set elsewhere meanwhile stays.

#include "Audio/Presets/CAudioUndoValues.h"

#include "Tests/Audio/Presets/PresetTree.h"

namespace tarv {
namespace {

class UndoValues : public testing::Test {
protected:
    CTestHistory& history() { return tree_.history(); }
    double gain(int32_t element, int32_t group = 0) { return tree_.value("eq.gains", group, element); }
    int32_t count(const std::string& name, int32_t group = 0) {
        CAudioParam& param = tree_.param(name);
        CLockScope scope(param.lock());
        return param.userData().elementCount(group);
    }
    CAudioParamData data(const std::string& name) {
        CAudioParam& param = tree_.param(name);
        CLockScope scope(param.lock());
        return param.userData();
    }
    /// A step of what an action changes of one parameter; with a key it is a part of a gesture.
    template <class Act>
    void step(const std::string& name, int32_t key, Act&& act) {
        auto step = std::make_unique<CAudioParamUndoStep>("step", key);
        if (key == CAudioParamUndoStep::kNoKey)
            step = std::make_unique<CAudioParamUndoStep>("step");
        const CAudioParamData before = data(name);
        act();
        step->add(tree_.param(name), before, data(name));
        history().addStep(std::move(step));
    }
    /// A step of one gain; the host's changes are made by tree_.set.
    void turn(int32_t element, double value, int32_t group = 0, int32_t key = CAudioParamUndoStep::kNoKey) {
        step("eq.gains", key, [&] { tree_.set("eq.gains", value, group, element); });
    }

    CPresetTree tree_;
};

TEST_F(UndoValues, UndoKeepsValuesThatAHostSetInAnotherBandOrGroup) {
    tree_.set("eq.gains", 1, 0, 6);
    tree_.set("eq.gains", 1, 1, 6);
    turn(2, 5);
    tree_.set("eq.gains", 7, 0, 5);
    tree_.set("eq.gains", 8, 1, 2);
    history().undo(1);
    EXPECT_EQ(gain(2), 0);
    EXPECT_EQ(gain(5), 7);
    EXPECT_EQ(gain(2, 1), 8);
    tree_.set("eq.gains", 9, 0, 5);
    history().redo(1);
    EXPECT_EQ(gain(2), 5);
    EXPECT_EQ(gain(5), 9);
    EXPECT_EQ(gain(2, 1), 8);
}

TEST_F(UndoValues, UndoOfAGestureRestoresTheUnionOfItsElements) {
    tree_.set("eq.gains", 1, 0, 6);
    turn(1, 5, 0, 77);
    tree_.set("eq.gains", 2, 0, 3);
    tree_.set("eq.gains", 7, 0, 5);
    turn(3, 6, 0, 77);
    turn(1, 8, 0, 77);
    ASSERT_EQ(tree_.labels(), "Undo history start,*step");
    history().undo(1);
    EXPECT_EQ(gain(1), 0);
    EXPECT_EQ(gain(3), 2) << "the value before the gesture";
    EXPECT_EQ(gain(5), 7);
    EXPECT_EQ(gain(6), 1);
    history().redo(1);
    EXPECT_EQ(gain(1), 8);
    EXPECT_EQ(gain(3), 6);
    EXPECT_EQ(gain(5), 7);
}

TEST_F(UndoValues, UndoOfAPresetRestoresDifferingElementsAndCounts) {
    tree_.set("eq.gains", 4, 0, 4);
    tree_.set("eq.gains", 3, 1, 1);
    ASSERT_EQ(tree_.activate(tree_.master(), storedPreset("TAEQ:x", {{"eq.gains", realRecord({{0, 9}})}})), "");
    ASSERT_EQ(count("eq.gains"), 2);
    ASSERT_EQ(count("eq.gains", 1), 0);
    tree_.set("eq.gains", 6, 0, 0);
    history().undo(1);
    EXPECT_EQ(count("eq.gains"), 5);
    EXPECT_EQ(count("eq.gains", 1), 2);
    EXPECT_EQ(gain(0), 6) << "the preset did not change it";
    EXPECT_EQ(gain(1), 0);
    EXPECT_EQ(gain(4), 4);
    EXPECT_EQ(gain(1, 1), 3);
    history().redo(1);
    EXPECT_EQ(count("eq.gains"), 2);
    EXPECT_EQ(count("eq.gains", 1), 0);
    EXPECT_EQ(gain(0), 6);
    EXPECT_EQ(gain(1), 9);
}

TEST_F(UndoValues, AGroupThatGrewSinceKeepsItsCount) {
    turn(1, 3, 1);
    ASSERT_EQ(count("eq.gains", 1), 2);
    tree_.set("eq.gains", 8, 1, 4);
    history().undo(1);
    EXPECT_EQ(count("eq.gains", 1), 5);
    EXPECT_EQ(gain(1, 1), 0);
    EXPECT_EQ(gain(4, 1), 8);
    history().redo(1);
    EXPECT_EQ(gain(1, 1), 3);
    EXPECT_EQ(gain(4, 1), 8);
}

TEST_F(UndoValues, UndoRestoresAnElementBeyondAGroupThatShrankSince) {
    tree_.set("eq.gains", 2, 0, 5);
    turn(5, 7);
    ASSERT_EQ(
        tree_.activate(tree_.master(), storedPreset("TAEQ:x", {{"eq.gains", realRecord({{1}})}}), {-1, false, false}),
        "");
    history().undo(1);
    EXPECT_EQ(gain(0), 1);
    EXPECT_EQ(gain(5), 2);
}

TEST_F(UndoValues, UndoRestoresElementsOfSeveralNumbersAndTextsOneByOne) {
    step("eq.pair", CAudioParamUndoStep::kNoKey, [&] { tree_.param("eq.pair").setValue(0, 0, 5, 1); });
    CAudioParam& names = tree_.param("io-params.group-names");
    step("io-params.group-names", CAudioParamUndoStep::kNoKey, [&] { names.setText(0, 1, "Mid"); });
    names.setText(0, 2, "Host");
    history().undo(2);
    EXPECT_EQ(tree_.value("eq.pair", 0, 0, 0), 1);
    EXPECT_EQ(tree_.value("eq.pair", 0, 0, 1), 2);
    EXPECT_EQ(tree_.text("io-params.group-names", 1), "2");
    EXPECT_EQ(tree_.text("io-params.group-names", 2), "Host");
    history().redo(2);
    EXPECT_EQ(tree_.value("eq.pair", 0, 0, 1), 5);
    EXPECT_EQ(tree_.text("io-params.group-names", 1), "Mid");
    EXPECT_EQ(tree_.text("io-params.group-names", 2), "Host");
}

TEST_F(UndoValues, UndoToThePresentValuesPostsNothing) {
    turn(2, 5);
    tree_.set("eq.gains", 0, 0, 2);
    tree_.collector().applyPendingChanges(0.0);
    history().undo(1);
    EXPECT_EQ(tree_.collector().pendingCount(), 0);
}

}  // namespace
}  // namespace tarv
