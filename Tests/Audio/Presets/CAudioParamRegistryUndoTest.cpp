// Undo of the registries' actions, and the alternate state with its history.

#include "Tests/Audio/Presets/PresetTree.h"

namespace tarv {
namespace {

/// A preset with every record that a capture writes, so that capturing it anew changes no byte.
std::string preset(const std::string& name, double gain) {
    return storedPreset("TAEQ:" + name, {{"eq.gains", realRecord({{gain}}, 1, "audio.gains")},
                                         {"eq.pair", realRecord({{1, 2}}, 2, "audio.pair")},
                                         {"instance-name", textRecord({"Unnamed"}, "audio.instance-name")},
                                         {"io-params.group-names", textRecord({"1", "2", "3"}, "audio.group-names")},
                                         {"io-params.in-routing", realRecord({{1, 2}}, 1, "audio.in-routing")},
                                         {"out.mute", realRecord({{0}}, 1, "audio.mute")},
                                         {"oversampling", realRecord({{1}}, 1, "audio.oversampling")}});
}

class RegistryUndo : public testing::Test {
protected:
    CAudioParamRegistry& master() { return tree_.master(); }
    double gain() { return tree_.value("eq.gains"); }

    /// Runs an action; expects one more step with this label, whose undo restores everything and whose redo repeats it.
    void expectStep(const std::string& label, const std::function<void()>& action) {
        const std::string before = tree_.everything();
        const int32_t count = tree_.history().getStepLabels().count();
        action();
        const auto labels = tree_.history().getStepLabels();
        ASSERT_EQ(labels.count(), count + 1) << label;
        EXPECT_EQ(labels[count].toUtf8(), label);
        const std::string after = tree_.everything();
        EXPECT_NE(after, before) << label;
        for (int round = 0; round < 2; ++round) {
            tree_.history().undo(1);
            EXPECT_EQ(tree_.everything(), before) << label;
            tree_.history().redo(1);
            EXPECT_EQ(tree_.everything(), after) << label;
        }
    }

    CPresetTree tree_{{preset("One", 1), preset("Two", 2), preset("Three", 3)}};
};

TEST_F(RegistryUndo, APresetIsOneStep) {
    tree_.set("out.mute", 1);
    expectStep("Master preset activate", [this] { ASSERT_EQ(tree_.activate(master(), preset("New", 9)), ""); });
    EXPECT_EQ(gain(), 9);
    EXPECT_EQ(tree_.programs(), "*New,Two,Three");
    tree_.history().undo(1);
    EXPECT_EQ(tree_.programs(), "*One,Two,Three");
    EXPECT_EQ(tree_.value("out.mute"), 1);
}

TEST_F(RegistryUndo, ARoutingPresetIsOneStepUnderItsRegistrysLabel) {
    expectStep("Routing preset activate", [this] {
        ASSERT_EQ(tree_.activate(tree_.routing(), storedPreset("TAIO:x", {{"in-routing", realRecord({{3, 4}})}})), "");
    });
}

TEST_F(RegistryUndo, TheLabelNamesASingleGroupByNameOrNumber) {
    expectStep("Master preset (2) activate", [this] { ASSERT_EQ(tree_.activate(master(), preset("A", 5), {1}), ""); });
    tree_.param("io-params.group-names").setText(0, 1, "Side");
    expectStep("Master preset (Side) activate",
               [this] { ASSERT_EQ(tree_.activate(master(), preset("B", 6), {1}), ""); });
    tree_.param("io-params.group-names").setText(0, 1, "");
    expectStep("Master preset (2) activate", [this] { ASSERT_EQ(tree_.activate(master(), preset("C", 7), {1}), ""); });
    EXPECT_EQ(gain(), 0);
    EXPECT_EQ(tree_.value("eq.gains", 1), 7);
}

TEST_F(RegistryUndo, ARomPresetIsOneStep) {
    expectStep("ROM preset activate", [this] { ASSERT_EQ(firstLine(master().activateRomPreset(2)), ""); });
}

TEST_F(RegistryUndo, ASelectionMovesBackAndTheSlotsKeepTheirContents) {
    tree_.set("eq.gains", 7);
    expectStep("Master preset activate", [this] { master().selectProgram(1); });
    tree_.set("eq.gains", 8);
    tree_.history().undo(1);
    EXPECT_EQ(tree_.programs(), "*One,Two,Three");
    EXPECT_EQ(gain(), 7);
    master().selectProgram(1);
    EXPECT_EQ(gain(), 8) << "the value that the slot held when its selection was undone";
}

TEST_F(RegistryUndo, ABankIsOneStep) {
    master().selectProgram(1);
    tree_.set("eq.gains", 7);
    expectStep("Master preset activate", [this] {
        ASSERT_EQ(tree_.activateBank(storedBank("b", {preset("A", 11), preset("B", 12)})), "");
    });
    tree_.history().undo(1);
    EXPECT_EQ(tree_.programs(), "One,*Two,Three");
    EXPECT_EQ(gain(), 7);
}

TEST_F(RegistryUndo, AddingDeletingReplacingAndRenamingAreSteps) {
    tree_.set("eq.gains", 7);
    expectStep("Program add", [this] { master().addProgram(1, "New"); });
    tree_.set("eq.gains", 8);
    expectStep("Program replace", [this] { master().replaceProgram(2); });
    expectStep("Program name change", [this] { master().renameProgram(0, "Eins"); });
    expectStep("Program name change", [this] { master().renameProgram(3, "Drei"); });
    expectStep("Program delete", [this] { master().deleteProgram(3); });
    expectStep("Program delete", [this] { master().deleteProgram(0); });
    EXPECT_EQ(tree_.programs(), "*New,Two");
    EXPECT_EQ(gain(), 7);
}

TEST_F(RegistryUndo, AMasterResetIsOneStepToTheDefaults) {
    tree_.set("eq.gains", 7);
    tree_.set("eq.gains", 7, 1, 2);
    tree_.set("out.mute", 1);
    tree_.set("oversampling", 3);
    tree_.set("io-params.solo", 1);
    tree_.param("instance-name").setText(0, 0, "Mine");
    expectStep("Master reset", [this] { master().masterReset(); });
    EXPECT_EQ(gain(), 0);
    EXPECT_EQ(tree_.value("eq.gains", 1, 2), 0);
    EXPECT_EQ(tree_.value("out.mute"), 0);
    EXPECT_EQ(tree_.value("oversampling"), 1);
    EXPECT_EQ(tree_.value("io-params.solo"), 1);
    EXPECT_EQ(tree_.text("instance-name"), "Mine");
    EXPECT_EQ(tree_.programs(), "*One,Two,Three");
    tree_.set("io-params.in-routing", 4);
    expectStep("Routing preset reset", [this] { tree_.routing().reset(); });
}

TEST_F(RegistryUndo, MovesOverManyStepsHaveTheResultOfSingleMoves) {
    std::vector<std::string> states = {tree_.everything()};
    const auto note = [&] { states.push_back(tree_.everything()); };
    ASSERT_EQ(tree_.activate(master(), preset("First", 21)), "");
    note();
    master().selectProgram(1);
    note();
    master().renameProgram(1, "Renamed");
    note();
    master().addProgram(0, "Added");
    note();
    ASSERT_EQ(firstLine(master().activateRomPreset(2)), "");
    note();
    master().selectProgram(0);
    note();
    master().renameProgram(0, "Again");
    note();
    master().deleteProgram(0);
    note();
    ASSERT_EQ(tree_.activateBank(storedBank("b", {preset("A", 11), preset("B", 12)})), "");
    note();
    const auto last = static_cast<int32_t>(states.size()) - 1;
    ASSERT_EQ(tree_.history().getStepLabels().count(), last + 1);
    for (int32_t from = 0; from <= last; ++from)
        for (int32_t to = 0; to <= last; ++to) {
            tree_.history().selectStep(from);
            ASSERT_EQ(tree_.everything(), states[static_cast<size_t>(from)]) << from;
            tree_.history().selectStep(to);
            ASSERT_EQ(tree_.everything(), states[static_cast<size_t>(to)]) << from << " to " << to;
        }
}

TEST_F(RegistryUndo, UndoAndRedoNotifyTheBridgesOfTheProgram) {
    struct CListener {
        int32_t times = 0;
        void received(CCheckedObject*) { ++times; }
    } listener;
    COwnedBridge<CListener> bridge(&listener, &CListener::received);
    bridge.connect(master(), CAudioParamRegistry::kProgramUpdate);
    const std::function<void()> actions[] = {
        [this] { master().selectProgram(1); },
        [this] { master().addProgram(0, "x"); },
        [this] { master().renameProgram(0, "y"); },
        [this] { master().renameProgram(master().currentProgram(), "z"); },
        [this] { master().replaceProgram(0); },
        [this] { master().deleteProgram(0); },
        [this] {
            EXPECT_EQ(tree_.activateBank(storedBank("b", {preset("A", 11), preset("B", 12)})), "");
        },
        [this] { EXPECT_EQ(firstLine(master().activateRomPreset(2)), ""); },
        [this] { EXPECT_EQ(tree_.activate(master(), preset("New", 9)), ""); },
    };
    int32_t index = 0;
    for (const auto& action : actions) {
        int32_t before = listener.times;
        action();
        EXPECT_GT(listener.times, before) << index;
        before = listener.times;
        tree_.history().undo(1);
        EXPECT_GT(listener.times, before) << "undo of " << index;
        before = listener.times;
        tree_.history().redo(1);
        EXPECT_GT(listener.times, before) << "redo of " << index;
        ++index;
    }
}

TEST_F(RegistryUndo, TheAlternateStateIsTheSameAtFirstAndASecondSwapRestoresTheFirst) {
    tree_.set("eq.gains", 7);
    const std::string first = tree_.state();
    EXPECT_FALSE(master().isAlternate());
    master().swapAB();
    EXPECT_TRUE(master().isAlternate());
    EXPECT_EQ(tree_.state(), first);
    tree_.set("eq.gains", 8);
    tree_.set("io-params.in-routing", 3);
    const std::string second = tree_.state();
    master().swapAB();
    EXPECT_FALSE(master().isAlternate());
    EXPECT_EQ(tree_.state(), first);
    master().swapAB();
    EXPECT_EQ(tree_.state(), second);
}

TEST_F(RegistryUndo, EachStateKeepsItsOwnHistory) {
    master().masterReset();
    ASSERT_EQ(tree_.activate(master(), preset("InA", 5)), "");
    EXPECT_EQ(tree_.labels(), "Undo history start,*Master preset activate");
    master().swapAB();
    EXPECT_EQ(tree_.labels(), "*Undo history start") << "the swap is no step";
    ASSERT_EQ(firstLine(master().activateRomPreset(1)), "");
    EXPECT_EQ(tree_.labels(), "Undo history start,*ROM preset activate");
    tree_.history().undo(1);
    EXPECT_EQ(gain(), 5) << "back to where the alternate state began";
    master().swapAB();
    EXPECT_EQ(tree_.labels(), "Undo history start,*Master preset activate");
    tree_.history().undo(1);
    EXPECT_EQ(gain(), 0);
    master().swapAB();
    EXPECT_EQ(tree_.labels(), "*Undo history start,ROM preset activate");
    tree_.history().redo(1);
    EXPECT_EQ(gain(), 2);
}

TEST_F(RegistryUndo, ACopyMakesTheAlternateStateThePresentOne) {
    tree_.set("eq.gains", 7);
    master().swapAB();
    tree_.set("eq.gains", 8);
    master().copyToAlternate();
    tree_.set("eq.gains", 9);
    master().swapAB();
    EXPECT_EQ(gain(), 8);
    master().swapAB();
    EXPECT_EQ(gain(), 9);
}

TEST_F(RegistryUndo, ACopyIsAStepOfTheStateThatIsOverwritten) {
    master().swapAB();
    tree_.set("eq.gains", 5);
    tree_.set("out.mute", 1);
    master().swapAB();
    tree_.set("eq.gains", 7);
    const std::string own = tree_.labels();
    master().copyToAlternate();
    EXPECT_EQ(tree_.labels(), own) << "not of the state that is copied";
    master().swapAB();
    EXPECT_EQ(tree_.labels(), "Undo history start,*Copy from A");
    EXPECT_EQ(gain(), 7);
    tree_.history().undo(1);
    EXPECT_EQ(gain(), 5);
    EXPECT_EQ(tree_.value("out.mute"), 1);
    tree_.history().redo(1);
    EXPECT_EQ(gain(), 7);
    EXPECT_EQ(tree_.value("out.mute"), 0);
    tree_.set("eq.gains", 9);
    master().copyToAlternate();
    master().swapAB();
    tree_.history().undo(1);
    EXPECT_EQ(gain(), 7);
}

TEST_F(RegistryUndo, ACopyThatChangesNothingIsNoStep) {
    master().swapAB();
    master().swapAB();
    master().copyToAlternate();
    master().copyToAlternate();
    master().swapAB();
    EXPECT_EQ(tree_.labels(), "*Undo history start");
}

TEST_F(RegistryUndo, TakingACopyBackSelectsTheProgramThatItOverwrote) {
    master().swapAB();
    master().selectProgram(1);
    tree_.set("eq.gains", 5);
    master().swapAB();
    tree_.set("eq.gains", 7);
    master().copyToAlternate();
    master().swapAB();
    EXPECT_EQ(tree_.programs(), "*One,Two,Three");
    EXPECT_EQ(gain(), 7);
    tree_.history().undo(1);
    EXPECT_EQ(tree_.programs(), "One,*Two,Three");
    EXPECT_EQ(gain(), 5);
    tree_.history().redo(1);
    EXPECT_EQ(tree_.programs(), "*One,Two,Three");
    EXPECT_EQ(gain(), 7);
}

TEST_F(RegistryUndo, ACopyOverADeletedProgramBelongsToTheOneThatIsCopied) {
    master().swapAB();
    master().selectProgram(1);
    tree_.set("eq.gains", 5);
    master().swapAB();
    tree_.set("eq.gains", 7);
    master().deleteProgram(1);
    master().copyToAlternate();
    master().swapAB();
    EXPECT_EQ(gain(), 7);
    tree_.history().undo(1);
    EXPECT_EQ(gain(), 5);
    EXPECT_EQ(tree_.programs(), "*One,Three");
}

TEST_F(RegistryUndo, ACopyBeforeTheFirstSwapIsKept) {
    tree_.set("eq.gains", 7);
    master().copyToAlternate();
    tree_.set("eq.gains", 8);
    master().swapAB();
    EXPECT_EQ(gain(), 7);
    EXPECT_EQ(tree_.labels(), "*Undo history start");
}

TEST_F(RegistryUndo, ASwapLeavesPersistentParametersAndProgramsAlone) {
    tree_.param("instance-name").setText(0, 0, "Mine");
    master().swapAB();
    tree_.param("instance-name").setText(0, 0, "Still mine");
    tree_.set("io-params.solo", 1);
    master().swapAB();
    EXPECT_EQ(tree_.text("instance-name"), "Still mine");
    EXPECT_EQ(tree_.value("io-params.solo"), 1);
    EXPECT_EQ(tree_.programs(), "*One,Two,Three");
}

TEST_F(RegistryUndo, TheAlternateStateIsInNoPresetAndInNoBank) {
    const std::string presetBefore = tree_.acquire(master());
    const std::string bankBefore = tree_.acquireBank();
    tree_.set("eq.gains", 71.5);
    master().copyToAlternate();
    tree_.set("eq.gains", 0);
    EXPECT_EQ(tree_.acquire(master()), presetBefore);
    EXPECT_EQ(tree_.acquireBank(), bankBefore);
}

}  // namespace
}  // namespace tarv
