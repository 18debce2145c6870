// Renaming in a preset manager, what refuses it, and its keys.

#include "Tests/UI/Controls/Presets/ManagerTree.h"

namespace tarv {
namespace {

using CPresetManagerNames = CManagerTest;

TEST_F(CPresetManagerNames, TheFixedBanksStay) {
    for (const int32_t bank : {0, 1}) {
        select(banks(), bank);
        send("on-bank-delete");
        EXPECT_FALSE(confirmation());
        send("bank-delete");
        CAttributeMap params;
        params["index"] = CAttributeValue::fromInt(bank);
        EXPECT_EQ(firstLine(deliverEvent(manager(), "bank-can-rename", params)), "");
        EXPECT_TRUE(params["is-refused"].asBool());
        send("bank-rename", {{"index", std::to_string(bank)}, {"text", "x"}});
        EXPECT_EQ(firstLine(banks().openEdit(bank)), "");
        EXPECT_FALSE(editor_->find<CEditBox>("win-preset-manager.temp-editbox")) << bank;
    }
    EXPECT_EQ(shown(banks()), "Session Bank|[Factory ROM]");
    send("preset-rename", {{"index", "0"}, {"text", "x"}});
    send("preset-add");
    select(presets(), 0);
    send("on-preset-delete");
    send("preset-delete");
    send("preset-replace");
    send("perform-preset-replace");
    EXPECT_FALSE(confirmation());
    EXPECT_EQ(shown(presets()).substr(0, 14), "[Default]|Inve");
    EXPECT_EQ(stored(), "");
}

TEST_F(CPresetManagerNames, ASecondPressRenamesABank) {
    EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("Mine", {"a"}))), "");
    tick();
    select(banks(), 2);
    clickRow(banks(), 2);
    system_.advance(1.0);
    ASSERT_TRUE(editor_->find<CEditBox>("win-preset-manager.temp-editbox"));
    system_.input().type(u" {Yours} ");
    system_.input().tap(kKeyEnter);
    tick();
    EXPECT_EQ(stored(), "{Yours}(a)");
    EXPECT_EQ(shown(banks()), "Session Bank|Factory ROM|[{Yours}]");
    EXPECT_EQ(shown(presets()), "a");
}

TEST_F(CPresetManagerNames, ARenamedPresetKeepsItsPrefixAndAnEmptyNameChangesNothing) {
    EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("Mine", {"a", "b"}))), "");
    tick();
    select(banks(), 2);
    select(presets(), 1);
    const std::string longName(80, 'n');
    send("preset-rename", {{"index", "1"}, {"text", longName}});
    EXPECT_EQ(stored(), "Mine(a " + longName.substr(0, 64) + ")");
    send("preset-rename", {{"index", "1"}, {"text", "c: d"}});
    EXPECT_EQ(editor_->store().banks().bank(0).preset(1).name(), CString("TAEQ:c: d"));
    EXPECT_EQ(shown(presets()), "a|[c: d]");
    send("preset-rename", {{"index", "1"}, {"text", "   "}});
    send("preset-rename", {{"index", "7"}, {"text", "x"}});
    send("preset-rename", {{"text", "x"}});
    EXPECT_EQ(stored(), "Mine(a c: d)");
    select(banks(), 0);
    send("preset-rename", {{"index", "2"}, {"text", "Louder"}});
    EXPECT_EQ(registry().programName(2), CString("Louder"));
    EXPECT_EQ(lastStep(), "1 Program name change");
}

TEST_F(CPresetManagerNames, AnEditIsOfTheRowThatItBeganWith) {
    EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("Mine", {"a", "b", "c"}))), "");
    tick();
    select(banks(), 2);
    EXPECT_EQ(firstLine(presets().openEdit(1)), "");
    system_.input().type(u"B");
    EXPECT_EQ(firstLine(editor_->store().deletePreset(0, 0)), "");
    tick();
    system_.input().tap(kKeyEnter);
    tick();
    EXPECT_EQ(stored(), "Mine(B c)");
}

TEST_F(CPresetManagerNames, ANameWithoutTextIsShownAsDashesAndCanBeRenamed) {
    EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("", {""}))), "");
    tick();
    select(banks(), 2);
    EXPECT_EQ(shown(banks()), "Session Bank|Factory ROM|[---]");
    EXPECT_EQ(shown(presets()), "---");
    select(presets(), 0);
    send("preset-rename", {{"index", "0"}, {"text", "a"}});
    send("bank-rename", {{"index", "2"}, {"text", "Mine"}});
    EXPECT_EQ(stored(), "Mine(a)");
}

TEST_F(CPresetManagerNames, TheDeleteKeyAsks) {
    EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("Mine", {"a"}))), "");
    tick();
    select(banks(), 2);
    auto* window = manager().findObjectOf<CWindow>(".window-renderer");
    window->setKeyFocusView(&banks());
    system_.input().tap(kKeyDelete);
    tick();
    EXPECT_EQ(question(), "Delete the bank \"Mine\" and its preset?");
    answerBy("cancel");
    select(presets(), 0);
    window->setKeyFocusView(&presets());
    system_.input().tap(kKeyDelete);
    tick();
    EXPECT_EQ(question(), "Delete the preset \"a\"?");
    answerBy("cancel");
}

}  // namespace
}  // namespace tarv
