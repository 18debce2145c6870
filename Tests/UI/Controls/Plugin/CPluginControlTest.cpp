#include "UI/Controls/Plugin/CPluginControl.h"

#include "Audio/Stores/CAudioDefaultPreset.h"
#include "Core/CompressedBlock.h"
#include "PluginTree.h"

namespace tarv {
namespace {

struct PluginControl : CPluginTest {
    PluginControl() { loadControl("pc"); }
    ~PluginControl() override { delete CAudioDefaultPreset::clear(); }

    void loadControl(const char* name) {
        load("",
             {{"ui:plugin-control", name, {{"interface-client", "ui.interface-client"}, {"param-registry", kMaster}}}});
    }
    std::string attr(const char* name, const char* control = "pc") {
        return object(control).getAttrString(name).toUtf8();
    }
    CByteBuffer present() {
        CByteBuffer packed;
        CBufferWriter writer(packed);
        EXPECT_EQ(consumed(registry().acquirePreset(false, -1, -1, writer, true)), "");
        return packed;
    }
};

TEST_F(PluginControl, NeedsTheClientAndTheRegistry) {
    EXPECT_EQ(tryLoad("", {{"ui:plugin-control", "no", {{"interface-client", "ui.nothing"}}}}),
              "No interfacing object 'ui.nothing' found.");
    EXPECT_EQ(tryLoad("", {{"ui:plugin-control",
                            "no",
                            {{"interface-client", "ui.interface-client"}, {"param-registry", "plugin.nothing"}}}}),
              "No param registry object 'plugin.nothing' found.");
}

TEST_F(PluginControl, ASecondPressBringsTheFirstStateBackWithItsOwnHistory) {
    system_.pump();
    setGain(3.0);
    EXPECT_EQ(attr("ab-state"), "");
    deliver("pc", "on-ab");
    EXPECT_TRUE(registry().isAlternate());
    EXPECT_EQ(attr("ab-state"), "b-state");
    EXPECT_TRUE(object("pc").getAttrBool("is-alternate"));
    EXPECT_EQ(history(), "");
    setGain(-6.0);
    EXPECT_EQ(shownGain(), -6.0);
    deliver("pc", "on-ab");
    EXPECT_EQ(attr("ab-state"), "");
    EXPECT_EQ(shownGain(), 3.0);
    EXPECT_EQ(client().engineState().history.labels.count(), 2);
    deliver("pc", "on-ab");
    EXPECT_EQ(shownGain(), -6.0);
    undo();
    EXPECT_EQ(shownGain(), 3.0);
}

TEST_F(PluginControl, WhatIsLiveComesFromTheRegistryWhoeverSwapsIt) {
    system_.pump();
    registry().swapAB();
    EXPECT_EQ(attr("ab-state"), "") << "as it was until the message is there";
    system_.pump();
    EXPECT_EQ(attr("ab-state"), "b-state");
    loadControl("late");
    EXPECT_EQ(attr("ab-state", "late"), "");
    system_.pump();
    EXPECT_EQ(attr("ab-state", "late"), "b-state");
}

TEST_F(PluginControl, CopiesTheLiveStateToTheOtherOne) {
    setGain(3.0);
    deliver("pc", "on-copy");
    setGain(1.0);
    deliver("pc", "on-ab");
    EXPECT_EQ(shownGain(), 3.0);
}

TEST_F(PluginControl, ACopyIsAStepOfTheStateThatIsOverwritten) {
    deliver("pc", "on-ab");
    setGain(3.0);
    deliver("pc", "on-copy");
    deliver("pc", "on-ab");
    EXPECT_EQ(history(), "Copy from B");
    EXPECT_EQ(shownGain(), 3.0);
    undo();
    EXPECT_EQ(shownGain(), 0.0);
}

TEST_F(PluginControl, ResetsTheLiveState) {
    setGain(3.0);
    setCurve(1, {6.0});
    deliver("pc", "on-reset");
    EXPECT_EQ(shownGain(), 0.0);
    EXPECT_EQ(shownBand(1, 0), 0.0);
    undo();
    EXPECT_EQ(shownGain(), 3.0);
    EXPECT_EQ(shownBand(1, 0), 6.0);
}

TEST_F(PluginControl, ShowsTheCurrentProgramAsItIsCalled) {
    system_.pump();
    EXPECT_EQ(attr("program-name"), registry().programName(0).toUtf8());
    registry().renameProgram(0, "{/ui x} [B]");
    system_.pump();
    EXPECT_EQ(attr("program-name"), "{/ui x} [B]");
    registry().selectProgram(2);
    system_.pump();
    EXPECT_EQ(attr("program-name"), registry().programName(2).toUtf8());
}

TEST_F(PluginControl, ShowsTheDefaultPreset) {
    system_.pump();
    EXPECT_FALSE(object("pc").getAttrBool("has-default-preset"));
    listen(object("pc"), {"default-preset-update"});
    registry().renameProgram(0, "Mine");
    EXPECT_EQ(consumed(client().setDefaultPreset(kMaster, present())), "");
    system_.pump();
    EXPECT_EQ(attr("default-preset-name"), "Mine");
    EXPECT_TRUE(object("pc").getAttrBool("has-default-preset"));
    EXPECT_EQ(heard(), "pc default-preset-update");
    EXPECT_EQ(consumed(client().clearDefaultPreset()), "");
    system_.pump();
    EXPECT_EQ(attr("default-preset-name"), "");
    EXPECT_FALSE(object("pc").getAttrBool("has-default-preset"));
}

TEST_F(PluginControl, AViewTakesItsStateFromIt) {
    openWindow({{"ui:view",
                 "v",
                 {{"state", "{*/ui.pc ab-state}"}, {"title", "A"}},
                 {{"ui:view-state", "b", {{"state-name", "b-state"}, {"title", "B"}}}}}});
    deliver("pc", "on-ab");
    EXPECT_EQ(attr("title", "w.v"), "B");
    deliver("pc", "on-ab");
    EXPECT_EQ(attr("title", "w.v"), "A");
}

}  // namespace
}  // namespace tarv
