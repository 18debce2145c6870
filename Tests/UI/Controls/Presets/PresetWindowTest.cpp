// The windows of the preset managers as the library embeds them, worked by pointer and keys.

#include "Audio/Stores/CAudioDefaultPreset.h"
#include "Tests/UI/Controls/Presets/PresetTree.h"
#include "UI/Controls/Presets/CPresetManager.h"
#include "UI/Text/CEditBox.h"

namespace tarv {
namespace {

class PresetWindow : public CProductTree {
protected:
    PresetWindow() {
        EXPECT_EQ(CApplication::openEditor(), nullptr);
        const CWindowHandle host = system_.desktop().openHost({100, 100, 900, 700});
        editor_ = makeEditor();
        EXPECT_EQ(editor_->setAttribute("ParentWindow", CAttributeValue::fromPointer(reinterpret_cast<void*>(host))),
                  nullptr);
        std::vector<CTestNode> nodes = {
            testTemplate("test:w", "ui:view",
                         {{"is-root-view", "true"},
                          {"width", "640"},
                          {"height", "400"},
                          {"palette", "Default"},
                          {"font-name", "shared::font.base"}},
                         {{"ui:view", "opener", {{"placement", "top"}, {"width", "120"}, {"height", "20"}}},
                          {"ui:window-renderer", "window-renderer", {{"is-plugin-vst", "true"}}}})};
        EXPECT_EQ(firstLine(loadTree(*editor_, nodes)), "");
        if (!editor_->findObject("ui.window-shared-data")) {
            make("ui:window-shared-data", "window-shared-data", false);
        }
        make("test:w", "w", true);
        EXPECT_EQ(firstLine(editor_->findObjectOf<CWindow>("ui.w.window-renderer")->open()), "");
        system_.advance(0.1);
    }
    ~PresetWindow() override {
        editor_.reset();
        CApplication::closeEditor();
        EXPECT_EQ(firstLine(CAudioDefaultPreset::clear()), "");
        for (const auto& [data, name, id] :
             {std::tuple<CApplicationData*, const char*, uint32_t>{&CLocalData::instance(), kBanks, 0x6b6e6273},
              {&CGlobalData::instance(), kRouting, 0x74736c61}}) {
            data->write(name, {}, id);
        }
    }
    void make(const char* tag, const char* name, bool isTemplate) {
        CObject* made = nullptr;
        EXPECT_EQ(firstLine(editor_->findChild("ui")->createChild(made, tag, name, isTemplate)), "");
    }
    CPresetManager& open(const char* name = "win-preset-manager") {
        CAttributeMap none;
        EXPECT_EQ(firstLine(editor_->findObjectOf<CView>("ui.w.opener")->openPopup(CString("ui:") + name, none)), "");
        system_.advance(0.1);
        auto* found = editor_->findObjectOf<CPresetManager>(CString("ui.") + name);
        EXPECT_TRUE(found);
        manager_ = found;
        return *found;
    }
    CView& at(const std::string& path) const {
        auto* found = manager_->findObjectOf<CView>(("." + path).c_str());
        EXPECT_TRUE(found) << path;
        return *found;
    }
    CTextView& list(const char* column) const {
        return dynamic_cast<CTextView&>(at("c." + std::string(column) + ".outline.list"));
    }
    void moveOnto(const CViewRect& rect) {
        system_.input().moveIn(manager_->findObjectOf<CWindow>(".window-renderer")->handle(),
                               static_cast<int32_t>(rect.x + rect.width / 2),
                               static_cast<int32_t>(rect.y + rect.height / 2));
    }
    void press(const std::string& button) {
        moveOnto(at("c." + button).wholeRect());
        system_.input().click();
        system_.advance(0.2);
    }
    void pressRow(const char* column, int32_t row) {
        moveOnto(list(column).rowRect(row));
        system_.input().click();
        system_.advance(1.0);
    }
    std::string rows(const char* column) const {
        std::string text;
        for (int32_t i = 0; i < list(column).paragraphCount(); ++i) {
            text += (i > 0 ? "|" : "") + list(column).paragraphText(i).toUtf8();
        }
        return text;
    }
    std::string popupText(const char* name) const {
        const auto* popup = editor_->findObjectOf<CView>(CString("ui.") + name);
        return popup ? popup->getAttrString("text").toUtf8() : "-";
    }
    /// A press on OK.
    void answer(const char* name) {
        auto* popup = editor_->findObjectOf<CView>(CString("ui.") + name);
        ASSERT_TRUE(popup) << name;
        const CViewRect rect = popup->findObjectOf<CView>(".c.buttons.ok")->wholeRect();
        system_.input().moveIn(popup->findObjectOf<CWindow>(".window-renderer")->handle(),
                               static_cast<int32_t>(rect.x + rect.width / 2),
                               static_cast<int32_t>(rect.y + rect.height / 2));
        system_.input().click();
        system_.advance(0.2);
        EXPECT_FALSE(editor_->findObject(CString("ui.") + name)) << "it closes";
    }

    CWindowSystemByHand system_;
    std::unique_ptr<CObject> editor_;
    CPresetManager* manager_ = nullptr;
};

TEST_F(PresetWindow, EachButtonOfTheManagerActs) {
    open();
    EXPECT_EQ(rows("banks"), "Session Bank|Factory ROM");
    EXPECT_EQ(list("presets").selectedParagraph(), 0);
    press("banks.buttons.add");
    EXPECT_EQ(rows("banks"), "Session Bank|Factory ROM|Bank 1");
    press("presets.buttons.add");
    press("presets.buttons.add");
    pressRow("presets", 0);
    moveOnto(at("c.presets.buttons.add").wholeRect());
    system_.input().press(CPointerButton::Right);
    system_.input().release(CPointerButton::Right);
    system_.advance(0.2);
    EXPECT_EQ(rows("presets"), "Preset 1|Preset 3|Preset 2");
    press("presets.buttons.delete");
    EXPECT_EQ(popupText("win-confirmation"), "Delete the preset \"Preset 3\"?");
    answer("win-confirmation");
    EXPECT_EQ(rows("presets"), "Preset 1|Preset 2");
    press("presets.buttons.replace");
    EXPECT_EQ(popupText("win-confirmation"), "Replace the preset \"Preset 2\" by the current state?");
    answer("win-confirmation");
    press("presets.buttons.activate");
    EXPECT_EQ(instance().paramRegistry()->programName(0), CString("Preset 2"));
    press("presets.buttons.set-default");
    answer("win-confirmation");
    CString name;
    EXPECT_TRUE(CAudioDefaultPreset::readName(name));
    EXPECT_EQ(name, CString("Preset 2"));
    for (const char* button :
         {"presets.buttons.load", "presets.buttons.save", "banks.buttons.load", "banks.buttons.save"}) {
        system_.refuseFileDialog();
        press(button);
    }
    ASSERT_EQ(system_.fileDialogs().size(), 4u);
    EXPECT_EQ(system_.fileDialogs()[1].name, u"BrindleXEQ_Preset 2.cpf");
    EXPECT_EQ(system_.fileDialogs()[3].name, u"BrindleXEQ_Bank 1.cbf");
    press("banks.buttons.delete");
    EXPECT_EQ(popupText("win-confirmation"), "Delete the bank \"Bank 1\" and its 2 presets?");
    answer("win-confirmation");
    EXPECT_EQ(rows("banks"), "Session Bank|Factory ROM");
}

TEST_F(PresetWindow, WhatFailsOpensAMessageWithItsReason) {
    open();
    for (const auto& [button, text] :
         {std::pair<const char*, const char*>{"presets.buttons.load", "The preset \"[B]x.cpf\" can't be loaded.\n"},
          {"banks.buttons.load", "The bank \"[B]x.cpf\" can't be loaded.\n"},
          {"presets.buttons.save", "The preset \"[B]x.cpf\" can't be saved.\n"},
          {"banks.buttons.save", "The bank \"[B]x.cpf\" can't be saved.\n"}}) {
        system_.answerFileDialog(u"/no/such/folder/[B]x.cpf");
        press(button);
        EXPECT_EQ(popupText("win-message").substr(0, std::string(text).size()), text) << button;
        EXPECT_GT(popupText("win-message").size(), std::string(text).size()) << "and the reason";
        answer("win-message");
    }
}

TEST_F(PresetWindow, NamesAreEditedWhereTheyStand) {
    open();
    ASSERT_EQ(list("presets").selectedParagraph(), 0);
    pressRow("presets", 0);
    ASSERT_TRUE(editor_->findObjectOf<CEditBox>("ui.win-preset-manager.temp-editbox"));
    system_.input().type(u"Mine");
    system_.input().tap(13);
    system_.advance(0.2);
    EXPECT_EQ(instance().paramRegistry()->programName(0), CString("Mine"));
    EXPECT_EQ(rows("presets").substr(0, 5), "Mine|");
}

TEST_F(PresetWindow, RoutingPresetsHaveAWindowOfOneList) {
    open("win-preset-manager-routing");
    EXPECT_EQ(rows("presets").substr(0, 14), "Default Stereo");
    press("presets.buttons.add");
    EXPECT_EQ(list("presets").paragraphCount(), 10);
    pressRow("presets", 5);
    press("presets.buttons.activate");
    EXPECT_EQ(instance().paramCollector()->findParam(kInRouting)->value(0, 1), 0.0);
}

TEST_F(PresetWindow, ButtonsAndListsFitAndTheCloseButtonCloses) {
    for (const char* name : {"win-preset-manager", "win-preset-manager-routing"}) {
        const CPresetManager& manager = open(name);
        const CViewRect whole = manager.wholeRect();
        for (const CObject* column : manager.findObject(".c")->children()) {
            for (const CObject* button : column->findChild("buttons")->children()) {
                const CViewRect rect = dynamic_cast<const CView&>(*button).wholeRect();
                const CViewRect outer = dynamic_cast<const CView&>(*column).wholeRect();
                EXPECT_GE(rect.width, 24.0) << button->fullName().toUtf8();
                EXPECT_LE(rect.right(), outer.right()) << button->fullName().toUtf8();
                EXPECT_LE(rect.bottom(), whole.bottom()) << button->fullName().toUtf8();
            }
            EXPECT_GT(dynamic_cast<const CView&>(*column->findObject(".outline.list")).wholeRect().height, 150.0);
        }
        moveOnto(at("window-title.close").wholeRect());
        system_.input().click();
        system_.advance(0.2);
        EXPECT_FALSE(editor_->findObject(CString("ui.") + name));
    }
}

}  // namespace
}  // namespace tarv
