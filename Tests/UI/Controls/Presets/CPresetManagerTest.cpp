// A preset manager: its lists, selection, additions, deletions, activation.

#include "Tests/UI/Controls/Presets/ManagerTree.h"

namespace tarv {
namespace {

constexpr const char* kSessionShown =
    "[Default]|Inverted Smiley|More Loudness|High Freq Roll-off|Boom Box|Stereo Sheen|Strange Stereo";
constexpr const char* kRoutingShown =
    "Default Stereo|2.1 Stereo|5.1 Surround|Dual Mono|Mid-Side Stereo|Mono To Stereo|Stereo Side-Chain|Mono "
    "Side-Chain|Force Mono";

using CPresetManagerTest = CManagerTest;

TEST_F(CPresetManagerTest, ShowsTheFixedBanksFirstAndTheCurrentProgram) {
    EXPECT_EQ(shown(banks()), "[Session Bank]|Factory ROM");
    EXPECT_EQ(shown(presets()), kSessionShown);
    EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("Mine", {"a", "b: c"}))), "");
    tick();
    EXPECT_EQ(shown(banks()), "[Session Bank]|Factory ROM|Mine");
    select(banks(), 2);
    EXPECT_EQ(shown(presets()), "a|b: c") << "names have no prefix";
    select(banks(), 1);
    EXPECT_EQ(shown(presets()).substr(0, 12), "Default|Inve");
    select(banks(), 0);
    EXPECT_EQ(shown(presets()), kSessionShown);
}

TEST_F(CPresetManagerTest, TheSelectionFollowsTheCurrentProgramWhoeverChoosesIt) {
    registry().selectProgram(3);
    tick();
    EXPECT_EQ(presets().selectedParagraph(), 3);
    select(presets(), 5);
    registry().renameProgram(1, "other");
    tick();
    EXPECT_EQ(presets().selectedParagraph(), 5) << "what does not choose leaves it";
    registry().deleteProgram(0);
    tick();
    EXPECT_EQ(presets().selectedParagraph(), 2);
    EXPECT_EQ(registry().currentProgram(), 2);
}

TEST_F(CPresetManagerTest, ButtonsThatCanDoNothingAreDisabled) {
    EXPECT_EQ(enabled(),
              "bank:add bank:load bank:save preset:add preset:delete preset:replace preset:load preset:save "
              "preset:activate preset:set-default");
    select(banks(), 1);
    EXPECT_EQ(enabled(), "bank:add bank:load bank:save");
    select(presets(), 0);
    EXPECT_EQ(enabled(), "bank:add bank:load bank:save preset:save preset:activate preset:set-default");
    send("bank-add");
    EXPECT_EQ(enabled(), "bank:add bank:delete bank:load bank:save preset:add preset:load");
    openRoutingManager();
    EXPECT_EQ(enabled(), "preset:add preset:load");
    select(presets(), 0);
    EXPECT_EQ(enabled(), "preset:add preset:delete preset:replace preset:load preset:save preset:activate");
}

TEST_F(CPresetManagerTest, WithoutASelectionNothingIsReplacedActivatedOrSaved) {
    EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("Mine", {"a"}))), "");
    tick();
    select(banks(), 2);
    ASSERT_EQ(presets().selectedParagraph(), -1);
    for (const char* event : {"preset-replace", "preset-activate", "on-preset-delete", "preset-delete", "preset-save",
                              "preset-set-default", "perform-preset-set-default"}) {
        send(event);
        EXPECT_FALSE(confirmation()) << event;
    }
    EXPECT_EQ(stored(), "Mine(a)");
    EXPECT_EQ(lastStep().substr(0, 2), "0 ");
    EXPECT_TRUE(system_.fileDialogs().empty());
}

TEST_F(CPresetManagerTest, NewBanksTakeTheFirstFreeNumberAndAreSelected) {
    send("bank-add");
    EXPECT_EQ(shown(banks()), "Session Bank|Factory ROM|[Bank 1]");
    send("bank-add");
    send("bank-add");
    EXPECT_EQ(firstLine(editor_->store().deleteBank(1)), "");
    tick();
    select(banks(), 2);
    send("bank-add", {{"is-insert", "1"}});
    EXPECT_EQ(shown(banks()), "Session Bank|Factory ROM|Bank 1|[Bank 2]|Bank 3");
    select(banks(), 0);
    send("bank-add", {{"is-insert", "1"}});
    EXPECT_EQ(shown(banks()), "Session Bank|Factory ROM|[Bank 4]|Bank 1|Bank 2|Bank 3");
    send("bank-add");
    EXPECT_EQ(shown(banks()), "Session Bank|Factory ROM|Bank 4|Bank 1|Bank 2|Bank 3|[Bank 5]");
}

TEST_F(CPresetManagerTest, ABankIsDeletedBehindAQuestion) {
    EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("[B]x", {"a", "b"}))), "");
    EXPECT_EQ(firstLine(editor_->store().insertBank(1, CBank("Two", {"a"}))), "");
    EXPECT_EQ(firstLine(editor_->store().insertBank(2, CBank("Three", {}))), "");
    tick();
    select(banks(), 2);
    send("on-bank-delete");
    EXPECT_EQ(question(), "Delete the bank \"[B]x\" and its 2 presets?");
    answerBy("cancel");
    EXPECT_EQ(stored(), "[B]x(a b)Two(a)Three()");
    send("on-bank-delete");
    answerBy("ok");
    EXPECT_EQ(stored(), "Two(a)Three()");
    EXPECT_EQ(shown(banks()), "Session Bank|Factory ROM|[Two]|Three");
    select(banks(), 3);
    send("on-bank-delete");
    EXPECT_EQ(question(), "Delete the bank \"Three\"?");
    answerBy("ok");
    EXPECT_EQ(shown(banks()), "Session Bank|Factory ROM|[Two]");
    EXPECT_EQ(shown(presets()), "a");
    send("on-bank-delete");
    EXPECT_EQ(question(), "Delete the bank \"Two\" and its preset?");
    answerBy("ok");
    EXPECT_EQ(shown(banks()), "Session Bank|[Factory ROM]");
}

TEST_F(CPresetManagerTest, ANewPresetHoldsTheCurrentState) {
    param(kOutGain).setValue(0, 0, 0.5);
    send("preset-add");
    EXPECT_EQ(programs().back(), "Preset 1");
    EXPECT_EQ(lastStep(), "1 Program add");
    select(presets(), 1);
    send("preset-add", {{"is-insert", "1"}});
    EXPECT_EQ(programs()[2], "Preset 2");
    send("bank-add");
    send("preset-add");
    send("preset-add");
    EXPECT_EQ(shown(presets()), "Preset 1|[Preset 2]");
    select(presets(), 0);
    send("preset-add", {{"is-insert", "1"}});
    EXPECT_EQ(shown(presets()), "Preset 1|[Preset 3]|Preset 2");
    EXPECT_EQ(editor_->store().banks().bank(0).preset(1).name(), CString("TAEQ:Preset 3"));
    param(kOutGain).setValue(0, 0, 1.0);
    send("preset-activate");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
    EXPECT_EQ(registry().programName(0), CString("Preset 3"));
}

TEST_F(CPresetManagerTest, APresetThatIsAddedWhileItsBankIsDeletedIsDropped) {
    send("bank-add");
    CAttributeMap none;
    EXPECT_EQ(firstLine(deliverEvent(manager(), "preset-add", none)), "");
    EXPECT_EQ(firstLine(editor_->store().deleteBank(0)), "");
    tick();
    EXPECT_EQ(stored(), "");
    EXPECT_EQ(shown(banks()), "[Session Bank]|Factory ROM");
}

TEST_F(CPresetManagerTest, APresetIsDeletedBehindAQuestion) {
    select(presets(), 4);
    send("on-preset-delete");
    EXPECT_EQ(question(), "Delete the preset \"Boom Box\"?");
    answerBy("ok");
    EXPECT_EQ(programs().size(), 6u);
    EXPECT_EQ(lastStep(), "1 Program delete");
    EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("Mine", {"a", "b", "c"}))), "");
    tick();
    select(banks(), 2);
    select(presets(), 1);
    send("on-preset-delete");
    // Another editor moves it, and adds one, while the question stands.
    EXPECT_EQ(firstLine(editor_->store().insertPreset(0, 0, CAudioPreset("TAEQ:new"))), "");
    tick();
    answerBy("ok");
    EXPECT_EQ(stored(), "Mine(new a c)");
    EXPECT_EQ(shown(presets()), "new|a|[c]");
}

TEST_F(CPresetManagerTest, TheLastProgramStays) {
    while (registry().programCount() > 1) {
        registry().deleteProgram(1);
    }
    tick();
    EXPECT_EQ(enabled().find("preset:delete"), std::string::npos);
    send("on-preset-delete");
    EXPECT_FALSE(confirmation());
    send("preset-delete");
    EXPECT_EQ(programs().size(), 1u);
}

TEST_F(CPresetManagerTest, ReplacingIsAStepInTheSessionAndAQuestionElsewhere) {
    select(presets(), 2);
    param(kOutGain).setValue(0, 0, 0.5);
    send("preset-replace");
    EXPECT_FALSE(confirmation());
    EXPECT_EQ(lastStep(), "1 Program replace");
    EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("Mine", {"a", "b"}))), "");
    tick();
    select(banks(), 2);
    select(presets(), 1);
    send("preset-replace");
    EXPECT_EQ(question(), "Replace the preset \"b\" by the current state?");
    EXPECT_EQ(editor_->store().banks().bank(0).preset(1).recordCount(), 0);
    answerBy("ok");
    EXPECT_EQ(stored(), "Mine(a b)");
    EXPECT_GT(editor_->store().banks().bank(0).preset(1).recordCount(), 5);
    EXPECT_EQ(editor_->store().banks().bank(0).preset(0).recordCount(), 0);
    EXPECT_EQ(lastStep(), "1 Program replace") << "what all instances share is no step";
}

TEST_F(CPresetManagerTest, ADoubleClickActivatesOnceAndEnterDoes) {
    const CViewRect row = presets().rowRect(3);
    editor_->clickIn(manager(), row);
    system_.input().click();
    tick();
    EXPECT_EQ(registry().currentProgram(), 3);
    EXPECT_EQ(lastStep(), "1 Master preset activate");
    select(banks(), 1);
    editor_->clickIn(manager(), presets().rowRect(4));
    system_.input().click();
    tick();
    EXPECT_EQ(lastStep(), "2 ROM preset activate");
    system_.advance(1.0);
    EXPECT_FALSE(editor_->find<CEditBox>("win-preset-manager.temp-editbox"));
    select(presets(), 5);
    auto* window = manager().findObjectOf<CWindow>(".window-renderer");
    window->setKeyFocusView(&presets());
    system_.input().tap(kKeyEnter);
    tick();
    EXPECT_EQ(lastStep(), "3 ROM preset activate");
    EXPECT_EQ(registry().programName(3), CString("Stereo Sheen"));
}

TEST_F(CPresetManagerTest, TheDefaultPresetIsMarkedAndClearedBehindQuestions) {
    select(presets(), 4);
    send("preset-set-default");
    EXPECT_EQ(question(), "Use this preset as default preset?");
    EXPECT_EQ(confirmation()->getAttrString("title"), CString("Set as Default"));
    EXPECT_EQ(presets().source().images().count(), 0);
    answerBy("ok");
    EXPECT_EQ(presets().source().images().count(), 1);
    CString name;
    EXPECT_TRUE(CAudioDefaultPreset::readName(name));
    EXPECT_EQ(name, CString("Boom Box"));
    EXPECT_EQ(presets().selectedParagraph(), 4);
    send("preset-set-default");
    EXPECT_EQ(question(), "This preset is the default preset. Use none from now on?");
    answerBy("ok");
    EXPECT_EQ(presets().source().images().count(), 0);
    EXPECT_FALSE(CAudioDefaultPreset::readName(name));
    EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("Mine", {"a"}))), "");
    tick();
    select(banks(), 2);
    select(presets(), 0);
    send("preset-set-default");
    answerBy("ok");
    EXPECT_TRUE(CAudioDefaultPreset::readName(name));
    EXPECT_EQ(name, CString("a"));
    select(banks(), 1);
    select(presets(), 2);
    send("preset-set-default");
    answerBy("ok");
    EXPECT_TRUE(CAudioDefaultPreset::readName(name));
    EXPECT_EQ(name, CString("More Loudness"));
}

TEST_F(CPresetManagerTest, AnotherPresetOfTheDefaultsNameCanBeMadeTheDefault) {
    const std::string set = "Use this preset as default preset?";
    const std::string clear = "This preset is the default preset. Use none from now on?";
    EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("Mine", {"Boom Box"}))), "");
    tick();
    for (const int32_t bank : {1, 2}) {
        select(banks(), bank);
        select(presets(), bank == 1 ? 4 : 0);
        send("preset-set-default");
        EXPECT_EQ(question(), set) << bank;
        answerBy("ok");
        send("preset-set-default");
        EXPECT_EQ(question(), clear) << bank;
        answerBy("cancel");
    }
    CByteBuffer bytes;
    CAudioDefaultPreset::read(bytes);
    EXPECT_LT(bytes.count(), 64) << "the own one, without a record";
    select(banks(), 1);
    select(presets(), 4);
    send("preset-set-default");
    EXPECT_EQ(question(), set);
}

TEST_F(CPresetManagerTest, RoutingPresetsAreOneListWithoutBanks) {
    openRoutingManager();
    EXPECT_EQ(shown(presets()), kRoutingShown);
    send("bank-add");
    send("on-bank-delete");
    send("bank-delete");
    send("bank-load");
    send("preset-add");
    EXPECT_EQ(shown(presets()), std::string(kRoutingShown) + "|[Preset 1]");
    CAudioPresetStore& routing = editor_->store(kRouting);
    EXPECT_EQ(routing.banks().bank(0).preset(9).name(), CString("TAIO:Preset 1"));
    select(presets(), 5);
    send("preset-activate");
    EXPECT_EQ(lastStep(), "1 Routing preset activate");
    EXPECT_EQ(param(kInRouting).value(0, 1), 0.0);
    send("preset-set-default");
    EXPECT_FALSE(confirmation());
    send("on-preset-delete");
    answerBy("ok");
    EXPECT_EQ(routing.banks().bank(0).count(), 9);
    EXPECT_TRUE(system_.fileDialogs().empty());
}

TEST_F(CPresetManagerTest, AStoreThatCannotBeEditedIsShownAsAnError) {
    CByteBuffer other;
    other.resize(10);
    CLocalData::instance().write(kBanks, other, blockIdOf(CAudioBankList::kBlockId));
    tick();
    send("bank-add");
    EXPECT_EQ(raised(), "error-bank-save shared-banks: Unsupported bank list version 0.");
    EXPECT_EQ(raisedPath_, "shared-banks");
}

TEST_F(CPresetManagerTest, WhatAnotherProgramChangedIsShownAsAnErrorAndListed) {
    EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("One", {"a"}))), "");
    tick();
    select(banks(), 2);
    select(presets(), 0);
    CAudioBankList theirs;
    theirs.insert(0, CBank("One", {"a2"}));
    storeElsewhere(theirs);
    send("on-preset-delete");
    answerBy("ok");
    EXPECT_EQ(raised(), "error-preset-save shared-banks: The preset 'a' was changed by another program.");
    EXPECT_EQ(shown(presets()), "a2");
}

TEST_F(CPresetManagerTest, WhatIsMissingFails) {
    const auto failure = [this](CTexts attributes) {
        return openEditor({{"ui:preset-manager", "m", std::move(attributes), {}}})->failure();
    };
    EXPECT_EQ(failure({{"interface-client", "ui.none"}}), "No interfacing object 'ui.none' found.");
    EXPECT_EQ(failure({{"interface-client", "ui.client"}, {"param-registry", kRegistry}}),
              "No preset list view found.");
    EXPECT_EQ(failure({{"interface-client", "ui.client"}, {"store-name", "none"}}), "No preset store 'none' found.");
}

TEST_F(CPresetManagerTest, AnEngineThatGoesDisablesAllButtons) {
    instance_.reset();
    tick();
    EXPECT_EQ(enabled(), "");
    for (const char* event :
         {"preset-add", "preset-activate", "preset-replace", "preset-save", "bank-save", "bank-load"}) {
        send(event);
    }
    EXPECT_TRUE(system_.fileDialogs().empty());
    instance_ = makeInstance();
}

TEST_F(CPresetManagerTest, TwoEditorsShowTheSameBanks) {
    auto second = makeInstance();
    auto other = openManager(second.get());
    send("bank-add");
    send("preset-add");
    EXPECT_EQ(shown(list(managerOf(*other), "banks")), "[Session Bank]|Factory ROM|Bank 1");
    sendTo(managerOf(*other), "bank-add");
    EXPECT_EQ(shown(banks()), "Session Bank|Factory ROM|[Bank 1]|Bank 2");
    EXPECT_EQ(shown(presets()), "[Preset 1]");
    // The bank that one of them shows is deleted by the other.
    EXPECT_EQ(firstLine(other->store().deleteBank(0)), "");
    tick();
    EXPECT_EQ(shown(banks()), "[Session Bank]|Factory ROM|Bank 2");
    EXPECT_EQ(shown(presets()), kSessionShown);
    other.reset();
}

}  // namespace
}  // namespace tarv
