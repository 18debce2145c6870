// The windows of names, by hand: what the engine holds afterwards.

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Core/CApplication.h"
#include "ProductEditor.h"

namespace tarv {

namespace {

struct CRow {
    const char* window;
    const char* panel;
    const char* param;
};
constexpr CRow kRows[] = {{"ui.win-channel-label-setup", "input-routing", "io-params.in-channel-names"},
                          {"ui.win-group-name-setup", "group-assignments", "io-params.group-names"}};

class NamingWindows : public CProductEditor {
protected:
    NamingWindows() { click("c.buttons.channel-routing"); }
    void open(const CRow& row) { click(std::string("ui.win-channel-routing.c.") + row.panel + ".names"); }
    static std::string button(const CRow& row, const char* name) {
        return std::string(row.window) + ".c.buttons." + name;
    }
    /// The field of a name.
    std::string field(const CRow& row, int32_t index) {
        const CObject* names = &at<CObject>(std::string(row.window) + ".c.names");
        int32_t found = 0;
        for (const CObject* child : names->children()) {
            if (child->findChild("name") && found++ == index) {
                return child->fullName().toUtf8() + ".name";
            }
        }
        ADD_FAILURE() << "no name " << index;
        return "";
    }
    /// As another editor or a host sets it.
    void setText(const std::string& param, int32_t element, const char* text) {
        wrapper().paramCollector()->findParam(("plugin.modMain." + param).c_str())->setText(0, element, text);
        wait();
    }
    void load(const std::string& bytes) {
        std::string copy(bytes);
        dispatch(vst::kEffectSetChunk, 1, static_cast<intptr_t>(copy.size()), copy.data());
        wait();
    }
    /// The tree of one more editor of the same instance.
    std::unique_ptr<CObject> secondEditor() {
        CObject* root = nullptr;
        EXPECT_EQ(CApplication::initRootObject(root), nullptr);
        EXPECT_EQ(root->setAttribute("PluginRootPtrVar", CAttributeValue::fromPointer(wrapper().instanceRoot())),
                  nullptr);
        EXPECT_EQ(root->loadFromResource("UserInterface.xml", true), nullptr);
        wait();
        return std::unique_ptr<CObject>(root);
    }
    void typeInto(const CRow& row, int32_t index, const std::u16string& name) {
        if (!at<CTextView>(field(row, index)).editBox()) {
            click(field(row, index));
        }
        type(name);
    }
    std::string shown(const CRow& row, int32_t index) {
        return at<CTextView>(field(row, index)).paragraphText(0).toUtf8();
    }
};

TEST_F(NamingWindows, NamesThatAreTypedAreSetByOk) {
    for (const CRow& row : kRows) {
        open(row);
        const std::string before = engineText(row.param, 1);
        typeInto(row, 1, u"Violas");
        EXPECT_EQ(engineText(row.param, 1), before);
        click(button(row, "ok"));
        EXPECT_FALSE(exists(row.window));
        EXPECT_EQ(engineText(row.param, 1), "Violas");
        click("c.buttons.history.button-undo");
        EXPECT_EQ(engineText(row.param, 1), before) << "one step";
    }
}

TEST_F(NamingWindows, CancelLeavesTheNames) {
    for (const CRow& row : kRows) {
        open(row);
        const std::string before = engineText(row.param, 0);
        typeInto(row, 0, u"Brass");
        click(button(row, "cancel"));
        EXPECT_FALSE(exists(row.window));
        open(row);
        typeInto(row, 0, u"Brass");
        click(std::string(row.window) + ".window-title.close");
        EXPECT_FALSE(exists(row.window));
        EXPECT_EQ(engineText(row.param, 0), before);
    }
}

TEST_F(NamingWindows, AllNamesAreCopiedAndPasted) {
    for (const CRow& row : kRows) {
        open(row);
        const std::string second = shown(row, 1);
        click(button(row, "copy-paste.copy"));
        typeInto(row, 1, u"Horns");
        EXPECT_EQ(shown(row, 1), "Horns");
        click(button(row, "copy-paste.paste"));
        EXPECT_EQ(shown(row, 1), second);
        click(button(row, "cancel"));
    }
}

TEST_F(NamingWindows, TheHostsNamesAreTakenOver) {
    const CRow& row = kRows[0];
    CTextList labels;
    labels.append("Left in");
    labels.append("Right in");
    wrapper().interfaceBase()->setChannelLabels(labels);
    open(row);
    click("ui.win-channel-label-setup.c.from-host.import");
    EXPECT_EQ(shown(row, 1), "Right in");
    EXPECT_EQ(engineText(row.param, 0), "L") << "until OK";
    click(button(row, "cancel"));
    EXPECT_EQ(engineText(row.param, 0), "L");
    open(row);
    click("ui.win-channel-label-setup.c.from-host.import");
    click(button(row, "ok"));
    EXPECT_EQ(engineText(row.param, 0), "Left in");
    EXPECT_EQ(engineText(row.param, 1), "Right in");
    click("c.buttons.history.button-undo");
    EXPECT_EQ(engineText(row.param, 0), "L") << "one step";
}

TEST_F(NamingWindows, AreWorkedByKeysAlone) {
    const CRow& row = kRows[1];
    open(row);
    system_.input().type(u"Front");
    tap(kKeyTab);
    type(u"Back");
    EXPECT_EQ(engineText(row.param, 0), "1");
    tap(kKeyEnter);
    EXPECT_FALSE(exists(row.window));
    EXPECT_EQ(engineText(row.param, 0), "Front");
    EXPECT_EQ(engineText(row.param, 1), "Back");
    EXPECT_EQ(text("c.buttons.history.button-undo", "hint"), "Undo: Group names change");
}

TEST_F(NamingWindows, TheKeyboardOnTheScreenLeavesTheFieldsFree) {
    const CRow& row = kRows[0];
    open(row);
    wait(0.2);
    ASSERT_TRUE(exists("ui.virtual-keyboard-alphadigit"));
    const auto bounds = [&](const char* root) { return dynamic_cast<CWindow*>(at(root).window())->screenBounds(); };
    const CIntRect keyboard = bounds("ui.virtual-keyboard-alphadigit");
    const CIntRect window = bounds(row.window);
    for (int32_t i = 0; i < 16; ++i) {
        const CViewRect& rect = at(field(row, i)).visibleRect();
        const int32_t x = window.left + static_cast<int32_t>(rect.x);
        const int32_t y = window.top + static_cast<int32_t>(rect.y);
        const CIntRect area{x, y, x + static_cast<int32_t>(rect.width), y + static_cast<int32_t>(rect.height)};
        EXPECT_TRUE(keyboard.intersection(area).isEmpty()) << i;
    }
}

TEST_F(NamingWindows, WhatIsTypedStaysWhenAChunkComesMeanwhile) {
    for (const CRow& row : kRows) {
        const std::string former = chunk(true);
        setText(row.param, 1, "Newer");
        open(row);
        typeInto(row, 0, u"Mine");
        click(field(row, 2));
        system_.input().type(u"Ope");
        load(former);
        EXPECT_EQ(shown(row, 0), "Mine");
        EXPECT_NE(shown(row, 1), "Newer");
        tap(kKeyEnter);
        click(button(row, "ok"));
        EXPECT_EQ(engineText(row.param, 0), "Mine");
        EXPECT_NE(engineText(row.param, 1), "Newer");
        EXPECT_EQ(engineText(row.param, 2), "Ope");
    }
}

TEST_F(NamingWindows, TwoEditorsKeepWhatWasTypedInEach) {
    const CRow& row = kRows[1];
    open(row);
    typeInto(row, 0, u"Mine");
    const std::unique_ptr<CObject> second = secondEditor();
    const auto client = second->findObjectOf<CAudioInterfaceClient>("ui.interface-client");
    ASSERT_TRUE(client);
    CTextList theirs;
    theirs.append("Theirs");
    theirs.append("Second");
    EXPECT_EQ(client->setTexts("plugin.modMain.io-params.group-names", 0, 0, theirs), nullptr);
    wait();
    EXPECT_EQ(shown(row, 0), "Mine");
    EXPECT_EQ(shown(row, 1), "Second");
    EXPECT_EQ(client->undo(), nullptr);
    wait();
    EXPECT_EQ(shown(row, 1), "2");
    click(button(row, "ok"));
    EXPECT_EQ(engineText(row.param, 0), "Mine");
    EXPECT_EQ(engineText(row.param, 1), "2");
    EXPECT_EQ(client->groupName(0), CString("Mine"));
    EXPECT_EQ(client->undo(), nullptr);
    wait();
    EXPECT_EQ(engineText(row.param, 0), "1");
}

}  // namespace

}  // namespace tarv
