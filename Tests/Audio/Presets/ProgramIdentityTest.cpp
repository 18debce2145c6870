// Steps of the history and the two states (A/B) know programs by their identities.

#include "Tests/Audio/Presets/PresetTree.h"

namespace tarv {
namespace {

std::string preset(const std::string& name, double gain) {
    return storedPreset("TAEQ:" + name, {{"eq.gains", realRecord({{gain}}, 1, "audio.gains")}});
}

class ProgramIdentity : public testing::Test {
protected:
    CAudioParamRegistry& master() { return tree_.master(); }
    CTestHistory& history() { return tree_.history(); }
    double gain() { return tree_.value("eq.gains"); }
    /// The first gain that a program holds.
    double gainOf(int32_t index) {
        CPresetTree other;
        EXPECT_EQ(other.activate(other.master(), tree_.acquire(master(), index)), "");
        return other.value("eq.gains");
    }
    /// A step of the name as an editor makes it, by the parameter.
    void typeName(const std::string& name) {
        CAudioParam& param = tree_.param("preset-name");
        auto step = std::make_unique<CAudioParamUndoStep>("Name change", 5);
        const CAudioParamData before = param.userData();
        param.setText(0, 0, name.c_str());
        step->add(param, before, param.userData());
        history().addStep(std::move(step));
    }

    CPresetTree tree_{{preset("One", 1), preset("Two", 2), preset("Three", 3)}};
};

TEST_F(ProgramIdentity, UndoNeverRemovesAProgramThatTheOtherStateAdded) {
    tree_.set("eq.gains", 7);
    master().deleteProgram(2);
    master().replaceProgram(1);
    ASSERT_EQ(tree_.activateBank(storedBank("b", {preset("A", 11), preset("B", 12)})), "");
    master().swapAB();
    tree_.set("eq.gains", 55);
    master().addProgram(2, "Mine");
    master().swapAB();
    history().undo(10);
    EXPECT_EQ(tree_.programs(), "A,*One,Two,Three,Mine") << "the other state edited A";
    EXPECT_EQ(gainOf(4), 55);
    history().redo(10);
    EXPECT_EQ(tree_.programs(), "*A,B,Mine");
    EXPECT_EQ(gainOf(2), 55);
}

TEST_F(ProgramIdentity, UndoInOneStateKeepsTheContentsThatTheOtherStoredInTheSameProgram) {
    tree_.set("eq.gains", 7);
    master().replaceProgram(2);
    master().addProgram(3, "Added");
    master().swapAB();
    tree_.set("eq.gains", 8);
    master().replaceProgram(2);
    master().renameProgram(3, "Other's");
    master().swapAB();
    history().undo(2);
    EXPECT_EQ(tree_.programs(), "*One,Two,Three,Other's");
    EXPECT_EQ(gainOf(2), 8);
    master().swapAB();
    history().undo(2);
    EXPECT_EQ(tree_.programs(), "*One,Two,Three,Added");
    EXPECT_EQ(gainOf(2), 7) << "the other state's step, undone in that state";
}

TEST_F(ProgramIdentity, RedoRestoresAnAddedProgramWithItsLastContents) {
    master().addProgram(0, "New");
    const uint64_t id = master().programId(0);
    master().selectProgram(0);
    tree_.set("eq.gains", 33);
    history().undo(2);
    EXPECT_EQ(tree_.programs(), "*One,Two,Three");
    history().redo(1);
    EXPECT_EQ(tree_.programs(), "New,*One,Two,Three");
    EXPECT_EQ(master().programId(0), id);
    EXPECT_EQ(gainOf(0), 33);
}

TEST_F(ProgramIdentity, ABankThatAHostRestoresEndsTheStepsOfTheFormerPrograms) {
    master().deleteProgram(2);
    master().renameProgram(1, "Zwei");
    ASSERT_EQ(tree_.activate(master(), preset("Loaded", 9)), "");
    master().masterReset();
    master().swapAB();
    master().addProgram(0, "InB");
    master().swapAB();
    ASSERT_EQ(tree_.activateBank(storedBank("b", {preset("A", 11), preset("B", 12)}), {-1, true, false}), "");
    EXPECT_EQ(tree_.labels(), "Undo history start,Master preset activate,*Master reset") << "steps of values stay";
    history().undo(1);
    EXPECT_EQ(gain(), 9);
    history().undo(1);
    EXPECT_EQ(tree_.programs(), "A,*B");
    history().redo(2);
    EXPECT_EQ(tree_.programs(), "A,*B");
    EXPECT_EQ(gainOf(1), 12);
    master().swapAB();
    EXPECT_EQ(tree_.labels(), "*Undo history start");
    EXPECT_EQ(tree_.programs(), "A,*B") << "that state's program was deleted, the current one stays";
}

TEST_F(ProgramIdentity, EachStateHasItsCurrentProgram) {
    tree_.set("eq.gains", 7);
    master().swapAB();
    master().selectProgram(1);
    tree_.set("eq.gains", 8);
    master().swapAB();
    EXPECT_EQ(tree_.programs(), "*One,Two,Three");
    EXPECT_EQ(tree_.text("preset-name"), "One");
    EXPECT_EQ(gain(), 7);
    EXPECT_EQ(gainOf(1), 8) << "the value that the other state stored there";
    master().renameProgram(1, "Zwei");
    tree_.set("eq.gains", 9);
    master().swapAB();
    EXPECT_EQ(tree_.programs(), "One,*Zwei,Three");
    EXPECT_EQ(tree_.text("preset-name"), "Zwei");
    EXPECT_EQ(gain(), 8);
    EXPECT_EQ(gainOf(0), 9);
}

TEST_F(ProgramIdentity, ACopyTakesTheProgramAlong) {
    master().swapAB();
    master().selectProgram(2);
    master().copyToAlternate();
    master().swapAB();
    EXPECT_EQ(tree_.programs(), "One,Two,*Three");
}

TEST_F(ProgramIdentity, IfAStatesProgramWasDeletedTheCurrentOneStays) {
    tree_.set("eq.gains", 7);
    master().swapAB();
    master().selectProgram(1);
    master().deleteProgram(0);
    master().swapAB();
    EXPECT_EQ(tree_.programs(), "*Two,Three");
    EXPECT_EQ(tree_.text("preset-name"), "Two");
    EXPECT_EQ(gain(), 7) << "the values are exchanged all the same";
}

TEST_F(ProgramIdentity, ASwapKeepsContentsThatWereStoredInTheOtherStatesProgram) {
    master().swapAB();
    master().selectProgram(1);
    tree_.set("eq.gains", 8);
    master().replaceProgram(0);
    master().swapAB();
    EXPECT_EQ(tree_.programs(), "*One,Two,Three");
    EXPECT_EQ(gain(), 8);
}

TEST_F(ProgramIdentity, UndoOfASelectionAppliesThePresentContentsOfTheProgram) {
    tree_.set("eq.gains", 7);
    master().selectProgram(1);
    master().swapAB();
    tree_.set("eq.gains", 44);
    master().replaceProgram(0);
    master().swapAB();
    history().undo(1);
    EXPECT_EQ(tree_.programs(), "*One,Two,Three");
    EXPECT_EQ(gain(), 44) << "stored there by the other state";
}

TEST_F(ProgramIdentity, ValuesOfAProgramThatIsNotCurrentStayAsTheyAre) {
    ASSERT_EQ(tree_.activate(master(), preset("Loaded", 9)), "");
    master().selectProgram(1);
    master().swapAB();
    master().selectProgram(2);
    master().deleteProgram(0);
    master().swapAB();
    ASSERT_EQ(tree_.programs(), "*Two,Three");
    history().undo(2);
    EXPECT_EQ(tree_.programs(), "*Two,Three");
    EXPECT_EQ(gain(), 2) << "the preset was loaded into a program that was deleted since";
}

TEST_F(ProgramIdentity, UndoOfANameSetByItsParameterRenamesTheSameProgramOnly) {
    typeName("Eins");
    typeName("Uno");
    EXPECT_EQ(tree_.labels(), "Undo history start,*Name change") << "one gesture";
    master().swapAB();
    master().selectProgram(1);
    master().copyToAlternate();
    master().swapAB();
    ASSERT_EQ(tree_.programs(), "Uno,*Two,Three");
    ASSERT_EQ(tree_.labels(), "Undo history start,Name change,*Copy from B");
    history().undo(2);
    EXPECT_EQ(tree_.programs(), "*One,Two,Three");
    EXPECT_EQ(tree_.text("preset-name"), "One");
    history().redo(1);
    EXPECT_EQ(tree_.programs(), "*Uno,Two,Three");
    history().redo(1);
    EXPECT_EQ(tree_.programs(), "Uno,*Two,Three");
    EXPECT_EQ(tree_.text("preset-name"), "Two");
}

TEST_F(ProgramIdentity, UndoOfAnActivationRestoresTheProgramsUnknownRecords) {
    ASSERT_EQ(tree_.activate(master(), storedPreset("TAEQ:Mine", {{"test.unknown", "u"}})), "");
    ASSERT_EQ(tree_.activate(master(), preset("Other", 4)), "");
    EXPECT_EQ(tree_.acquire(master()).find("test.unknown"), std::string::npos);
    history().undo(1);
    EXPECT_NE(tree_.acquire(master()).find("test.unknown"), std::string::npos);
}

}  // namespace
}  // namespace tarv
