// The banks of a master: ROM, session, programs, the alternate state.

#include "Audio/Presets/CAudioParamRegistryNameBridge.h"
#include "Tests/Audio/Presets/PresetTree.h"

namespace tarv {
namespace {

std::string gainsOf(double first) {
    return realRecord({{first}}, 1, "audio.gains");
}

std::string preset(const std::string& name, double gain) {
    return storedPreset("TAEQ:" + name, {{"eq.gains", gainsOf(gain)}});
}

std::vector<std::string> threePresets() {
    return {preset("One", 1), preset("Two", 2), preset("Three", 3)};
}

class RegistryBanks : public testing::Test {
protected:
    CAudioParamRegistry& master() { return tree_.master(); }
    double gain() { return tree_.value("eq.gains"); }
    std::string acquireFailure(CAudioParamRegistry& registry, bool fromRom, int32_t index) {
        CByteBuffer bytes;
        CBufferWriter writer(bytes);
        const std::string failure = firstLine(registry.acquirePreset(fromRom, index, -1, writer, false));
        EXPECT_EQ(bytes.count(), 0);
        return failure;
    }
    std::string acquireBankFailure(CAudioParamRegistry& registry) {
        CByteBuffer bytes;
        CBufferWriter writer(bytes);
        return firstLine(registry.acquireBank(false, writer, false));
    }

    CPresetTree tree_{threePresets()};
};

TEST_F(RegistryBanks, TheSessionBankBeginsAsACopyOfTheRomAndBothHaveFixedNames) {
    EXPECT_EQ(tree_.programs(), "*One,Two,Three");
    EXPECT_EQ(master().romCount(), 3);
    EXPECT_EQ(master().romName(1), "Two");
    EXPECT_EQ(master().romName(3), "");
    EXPECT_EQ(master().romName(-1), "");
    EXPECT_EQ(master().programName(3), "");
    EXPECT_EQ(master().bankName(true), "Factory ROM");
    EXPECT_EQ(master().bankName(false), "Session Bank");
    EXPECT_EQ(tree_.acquireBank(true), storedBank("Factory ROM", threePresets()));
    EXPECT_EQ(gain(), 0) << "nothing is applied at the start";
    EXPECT_EQ(tree_.text("preset-name"), "One") << "but the name";
}

TEST(RegistryBanksWithoutRom, AFileThatCannotBeReadLeavesOneDefaultPreset) {
    CPresetTree tree;
    EXPECT_EQ(tree.programs(), "*Default");
    EXPECT_EQ(tree.master().romCount(), 0);
    EXPECT_EQ(tree.acquireBank(true), storedBank("Factory ROM", {}));
    EXPECT_EQ(firstLine(tree.master().activateRomPreset(0)), "Invalid preset index 0 specified.");
}

TEST_F(RegistryBanks, ANonMasterHasNoBanks) {
    CAudioParamRegistry& routing = tree_.routing();
    const std::string before = tree_.everything();
    EXPECT_EQ(acquireBankFailure(routing), "Acquiring bank in a non-master registry is an error.");
    const std::string bank = storedBank("b", {storedPreset("TAIO:x")});
    CMemoryReader reader(bank.data(), static_cast<uint32_t>(bank.size()));
    EXPECT_EQ(firstLine(routing.activateBank(reader)), "Activating bank in a non-master registry is an error.");
    EXPECT_EQ(firstLine(routing.activateRomPreset(0)), "Activating ROM preset in a non-master registry is an error.");
    EXPECT_EQ(acquireFailure(routing, false, 0), "Invalid preset index 0 specified.");
    EXPECT_EQ(routing.programCount(), 0);
    EXPECT_EQ(routing.currentProgram(), 0);
    EXPECT_EQ(routing.programName(0), "");
    routing.selectProgram(0);
    routing.addProgram(0, "x");
    routing.deleteProgram(0);
    routing.renameProgram(0, "x");
    routing.replaceProgram(0);
    routing.swapAB();
    routing.copyToAlternate();
    EXPECT_EQ(routing.programCount(), 0);
    EXPECT_EQ(tree_.everything(), before);
    EXPECT_EQ(tree_.labels(), "*Undo history start");
}

TEST_F(RegistryBanks, TheIndexIsCheckedAgainstTheRequestedBank) {
    master().deleteProgram(2);
    EXPECT_EQ(acquireFailure(master(), false, 2), "Invalid preset index 2 specified.");
    EXPECT_EQ(acquireFailure(master(), false, -2), "Invalid preset index -2 specified.");
    EXPECT_EQ(acquireFailure(master(), true, 3), "Invalid preset index 3 specified.");
    EXPECT_EQ(tree_.acquire(master(), 2, true), preset("Three", 3));
    EXPECT_EQ(firstLine(master().activateRomPreset(3)), "Invalid preset index 3 specified.");
    EXPECT_EQ(firstLine(master().activateRomPreset(-1)), "Invalid preset index -1 specified.");
}

TEST_F(RegistryBanks, MinusOneWritesThePresentStateAndAnIndexTheStoredSlot) {
    master().selectProgram(1);
    tree_.set("eq.gains", 7);
    EXPECT_EQ(tree_.acquire(master(), 1), preset("Two", 2));
    const std::string current = tree_.acquire(master());
    EXPECT_EQ(current.find(CStored().text("TAEQ:Two").bytes()), 0u);
    EXPECT_NE(current.find(realRecord({{7}}, 1, "audio.gains")), std::string::npos);
    EXPECT_EQ(tree_.acquire(master(), 1), preset("Two", 2)) << "the slot is unchanged";
}

TEST_F(RegistryBanks, SelectingAnotherProgramStoresThePresentValuesInTheSlot) {
    master().selectProgram(1);
    EXPECT_EQ(gain(), 2);
    EXPECT_EQ(tree_.text("preset-name"), "Two");
    tree_.set("eq.gains", 7);
    tree_.set("out.mute", 1);
    master().selectProgram(2);
    EXPECT_EQ(gain(), 3);
    EXPECT_EQ(tree_.value("out.mute"), 0);
    master().selectProgram(1);
    EXPECT_EQ(gain(), 7);
    EXPECT_EQ(tree_.value("out.mute"), 1);
    EXPECT_EQ(tree_.programs(), "One,*Two,Three");
}

TEST_F(RegistryBanks, TheCurrentProgramAgainAndIndexesOutOfRangeChangeNothing) {
    master().selectProgram(1);
    tree_.set("eq.gains", 7);
    const std::string before = tree_.everything();
    const std::string labels = tree_.labels();
    for (const int32_t index : {1, -1, 3, 1000000})
        master().selectProgram(index);
    EXPECT_EQ(tree_.everything(), before);
    EXPECT_EQ(tree_.labels(), labels);
}

TEST_F(RegistryBanks, AnAddedProgramHoldsThePresentStateAndTheCurrentOneStaysCurrent) {
    master().selectProgram(1);
    tree_.set("eq.gains", 7);
    master().addProgram(0, "New: one");
    EXPECT_EQ(tree_.programs(), "New: one,One,*Two,Three");
    master().addProgram(4, "Last");
    EXPECT_EQ(tree_.programs(), "New: one,One,*Two,Three,Last");
    master().addProgram(-1, "no");
    master().addProgram(6, "no");
    EXPECT_EQ(master().programCount(), 5);
    master().selectProgram(3);
    EXPECT_EQ(gain(), 3);
    master().selectProgram(0);
    EXPECT_EQ(gain(), 7);
    EXPECT_EQ(tree_.text("preset-name"), "New: one");
}

TEST_F(RegistryBanks, DeletingTheCurrentProgramSelectsItsNeighbourAndTheLastOneStays) {
    master().selectProgram(1);
    master().deleteProgram(1);
    EXPECT_EQ(tree_.programs(), "One,*Three");
    EXPECT_EQ(gain(), 3);
    EXPECT_EQ(tree_.text("preset-name"), "Three");
    tree_.set("eq.gains", 8);
    master().deleteProgram(0);
    EXPECT_EQ(tree_.programs(), "*Three");
    EXPECT_EQ(gain(), 8) << "deleting another program changes no value";
    master().deleteProgram(0);
    master().deleteProgram(5);
    master().deleteProgram(-1);
    EXPECT_EQ(tree_.programs(), "*Three");
}

TEST_F(RegistryBanks, DeletingTheLastSlotSelectsTheOneBeforeIt) {
    master().selectProgram(2);
    master().deleteProgram(2);
    EXPECT_EQ(tree_.programs(), "One,*Two");
    EXPECT_EQ(gain(), 2);
}

TEST_F(RegistryBanks, ReplacingOverwritesASlotWithTheStateAndKeepsItsName) {
    tree_.set("eq.gains", 7);
    master().replaceProgram(2);
    master().replaceProgram(3);
    EXPECT_EQ(tree_.programs(), "*One,Two,Three");
    master().selectProgram(2);
    EXPECT_EQ(gain(), 7);
    EXPECT_EQ(tree_.text("preset-name"), "Three");
}

TEST_F(RegistryBanks, RenamingChangesTheNameShownOfTheCurrentOneOnly) {
    master().renameProgram(2, "Drei: 3");
    EXPECT_EQ(tree_.programs(), "*One,Two,Drei: 3");
    EXPECT_EQ(tree_.text("preset-name"), "One");
    master().renameProgram(0, "Eins");
    EXPECT_EQ(tree_.programs(), "*Eins,Two,Drei: 3");
    EXPECT_EQ(tree_.text("preset-name"), "Eins");
    EXPECT_EQ(tree_.acquire(master(), 2).find(CStored().text("TAEQ:Drei: 3").bytes()), 0u);
    const std::string labels = tree_.labels();
    master().renameProgram(0, "Eins");
    master().renameProgram(3, "x");
    master().renameProgram(-1, "x");
    EXPECT_EQ(tree_.labels(), labels);
}

TEST_F(RegistryBanks, ANameSetByItsParameterIsTheSlotsName) {
    tree_.param("preset-name").setText(0, 0, "Typed");
    EXPECT_EQ(tree_.programs(), "*Typed,Two,Three");
}

TEST_F(RegistryBanks, ARomPresetIsCopiedOverTheCurrentSlot) {
    master().selectProgram(1);
    ASSERT_EQ(firstLine(master().activateRomPreset(2)), "");
    EXPECT_EQ(tree_.programs(), "One,*Three,Three");
    EXPECT_EQ(gain(), 3);
    EXPECT_EQ(tree_.text("preset-name"), "Three");
    EXPECT_EQ(master().romName(1), "Two");
}

TEST_F(RegistryBanks, ABankReplacesTheSessionAndKeepsTheIndexIfItIsInRange) {
    master().selectProgram(1);
    ASSERT_EQ(tree_.activateBank(storedBank("Foreign name", {preset("A", 11), preset("B", 12)})), "");
    EXPECT_EQ(tree_.programs(), "A,*B");
    EXPECT_EQ(gain(), 12);
    EXPECT_EQ(tree_.text("preset-name"), "B");
    EXPECT_EQ(master().bankName(false), "Session Bank");
    ASSERT_EQ(tree_.activateBank(storedBank("b", {preset("C", 13)})), "");
    EXPECT_EQ(tree_.programs(), "*C");
    EXPECT_EQ(gain(), 13);
}

TEST_F(RegistryBanks, ABankThatIsEmptyOrHoldsAForeignPresetIsIncompatible) {
    tree_.set("eq.gains", 7);
    const std::string before = tree_.everything();
    for (const auto& presets : std::vector<std::vector<std::string>>{{},
                                                                     {storedPreset("TAIO:x")},
                                                                     {preset("A", 1), storedPreset("no colon")},
                                                                     {storedPreset("x"), preset("A", 1)}})
        EXPECT_EQ(tree_.activateBank(storedBank("b", presets)), "Incompatible bank.") << presets.size();
    EXPECT_EQ(tree_.everything(), before);
    EXPECT_EQ(tree_.labels(), "*Undo history start");
}

TEST_F(RegistryBanks, ADamagedBankChangesNothing) {
    tree_.set("eq.gains", 7);
    const std::string good = storedBank("b", {preset("A", 11), preset("B", 12)});
    const std::string before = tree_.everything();
    for (size_t length = 0; length < good.size(); ++length)
        EXPECT_NE(tree_.activateBank(good.substr(0, length)), "") << length;
    EXPECT_NE(tree_.activateBank(good + "?"), "");
    EXPECT_NE(tree_.activateBank(storedBank("b", {storedPreset("TAEQ:x", {{"eq.gains", "damage"}}), preset("B", 1)})),
              "");
    EXPECT_EQ(tree_.everything(), before);
}

TEST_F(RegistryBanks, ASlotWithADamagedRecordIsNotSelected) {
    ASSERT_EQ(tree_.activateBank(storedBank("b", {preset("A", 11), storedPreset("TAEQ:x", {{"eq.gains", "damage"}})})),
              "");
    const std::string before = tree_.everything();
    const std::string labels = tree_.labels();
    master().selectProgram(1);
    master().deleteProgram(0);
    EXPECT_EQ(tree_.everything(), before);
    EXPECT_EQ(tree_.labels(), labels);
}

TEST_F(RegistryBanks, TheSavedBankHoldsThePresentStateInItsSlot) {
    master().selectProgram(1);
    tree_.set("eq.gains", 7);
    tree_.param("instance-name").setText(0, 0, "Mine");
    const std::string bank = tree_.acquireBank();
    CPresetTree other(threePresets());
    other.master().selectProgram(1);
    ASSERT_EQ(other.activateBank(bank, {-1, true, false}), "");
    EXPECT_EQ(other.value("eq.gains"), 7);
    EXPECT_EQ(other.text("instance-name"), "Mine");
    EXPECT_EQ(other.programs(), "One,*Two,Three");
    EXPECT_EQ(other.acquireBank(), bank);
    EXPECT_EQ(other.labels(), "*Undo history start")
        << "it is no step, and ends the steps of the former bank's programs";
}

TEST_F(RegistryBanks, AHostsRestoreGivesTheSameAsAnActivationWithUndo) {
    tree_.set("out.mute", 1);
    const std::string stream = storedPreset("TAEQ:x", {{"eq.gains", realRecord({{4, 5}, {6}})}});
    ASSERT_EQ(tree_.activate(master(), stream), "");
    CPresetTree other(threePresets());
    other.set("out.mute", 1);
    ASSERT_EQ(other.activate(other.master(), stream, {-1, true, false}), "");
    EXPECT_EQ(other.everything(), tree_.everything());
}

TEST_F(RegistryBanks, TheNameBridgeReadsWritesAndIsNotifiedOfTheCurrentName) {
    int32_t received = 0;
    std::string seen;
    struct CUser {
        int32_t* received;
        std::string* seen;
        CAudioParamRegistryNameBridge* bridge;
    } user{&received, &seen, nullptr};
    CAudioParamRegistryNameBridge bridge(
        master(),
        [](void* opaque) {
            auto& listener = *static_cast<CUser*>(opaque);
            ++*listener.received;
            *listener.seen = listener.bridge->read().toUtf8();
        },
        &user);
    user.bridge = &bridge;
    EXPECT_EQ(bridge.read(), "One");
    bridge.write("Eins");
    EXPECT_EQ(bridge.read(), "Eins");
    EXPECT_EQ(seen, "Eins");
    EXPECT_EQ(tree_.text("preset-name"), "Eins");
    EXPECT_EQ(tree_.programs(), "*Eins,Two,Three");
    EXPECT_EQ(tree_.labels(), "Undo history start,*Program name change");
    tree_.history().undo(1);
    EXPECT_EQ(tree_.programs(), "*One,Two,Three") << "the slot had this name";
}

}  // namespace
}  // namespace tarv
