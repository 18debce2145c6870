// The windows of names, as the library embeds them.

#include "PluginTree.h"
#include "UI/Text/CTextView.h"

namespace tarv {
namespace {

struct NamingWindows : CPluginTest {
    void open(const char* templateName) {
        for (const char* name : {"in-channel-names", "group-names"}) {
            if (!object("").findChild((std::string(name) + "-bridge").c_str())) {
                addBridge(std::string(name) + "-bridge", std::string("io-params.") + name);
            }
        }
        openWindow({{"ui:view", "opener", {{"width", "50"}, {"height", "20"}}}});
        CAttributeMap none;
        EXPECT_EQ(consumed(at("opener").openPopup(templateName, none)), "");
        turn();
        root_ = dynamic_cast<CView*>(object("").findChild(CString(templateName).substring(3)));
        ASSERT_TRUE(root_);
    }
    CView& view(const char* path) { return dynamic_cast<CView&>(*root_->findObject(CString(".") + path)); }
    /// The title of a field.
    std::string shown(const char* path) { return view(path).getAttrString("title").toUtf8(); }
    bool isEdited(const char* path) { return dynamic_cast<CTextView&>(view(path)).editBox() != nullptr; }
    void press(const CView& pressed) {
        const auto* window = dynamic_cast<CWindow*>(root_->findChild("window-renderer"));
        system_.input().moveIn(window->handle(), static_cast<int32_t>(pressed.visibleRect().x + 4.0),
                               static_cast<int32_t>(pressed.visibleRect().y + 4.0));
        system_.input().click();
        turn();
    }
    /// Into a field that is open already, or is opened by a press.
    void type(const CView& field, const std::u16string& text) {
        if (!dynamic_cast<const CTextView&>(field).editBox()) {
            press(field);
        }
        system_.input().type(text);
        tap(kKeyEnter);
    }
    bool isOpen(const char* name) { return object("").findChild(name) != nullptr; }
    std::string text(const char* param, int32_t element) {
        return instance()
            .paramCollector()
            ->findParam((std::string("plugin.modMain.io-params.") + param).c_str())
            ->text(0, element)
            .toUtf8();
    }

    CView* root_ = nullptr;
};

TEST_F(NamingWindows, OkSetsTheNamesOfGroupsInOneStep) {
    open("ui:win-group-name-setup");
    ASSERT_TRUE(root_->findObject(".c.names.item8.name"));
    EXPECT_FALSE(root_->findObject(".c.names.item9"));
    type(view("c.names.item1.name"), u"Front");
    type(view("c.names.item8.name"), u"Longer than twelve");
    EXPECT_EQ(text("group-names", 0), "1");
    press(view("c.buttons.ok"));
    EXPECT_FALSE(isOpen("win-group-name-setup"));
    EXPECT_EQ(text("group-names", 0), "Front");
    EXPECT_EQ(text("group-names", 7), "Longer than") << "no blank at its end";
    EXPECT_EQ(history(), "Group names change");
}

TEST_F(NamingWindows, CancelSetsNothing) {
    open("ui:win-channel-label-setup");
    type(view("c.names.item16.name"), u"Sub");
    press(view("c.buttons.cancel"));
    EXPECT_FALSE(isOpen("win-channel-label-setup"));
    EXPECT_EQ(text("in-channel-names", 15), "IN16");
    EXPECT_EQ(history(), "");
}

TEST_F(NamingWindows, TheFirstFieldIsEditedWhenTheWindowOpens) {
    open("ui:win-channel-label-setup");
    EXPECT_TRUE(isEdited("c.names.item1.name"));
    system_.input().type(u"Front");
    tap(kKeyTab);
    EXPECT_EQ(shown("c.names.item1.name"), "Front");
    EXPECT_TRUE(isEdited("c.names.item2.name"));
    press(view("c.buttons.cancel"));
    EXPECT_EQ(history(), "");
}

TEST_F(NamingWindows, EnterTakesAFieldAndInNoneIsOk) {
    open("ui:win-group-name-setup");
    system_.input().type(u"Front");
    tap(kKeyEnter);
    EXPECT_TRUE(isOpen("win-group-name-setup"));
    EXPECT_FALSE(isEdited("c.names.item1.name"));
    EXPECT_EQ(text("group-names", 0), "1");
    tap(kKeyEnter);
    EXPECT_FALSE(isOpen("win-group-name-setup"));
    EXPECT_EQ(text("group-names", 0), "Front");
    EXPECT_EQ(history(), "Group names change");
}

TEST_F(NamingWindows, EscapeDropsAFieldAndInNoneSetsNothing) {
    open("ui:win-group-name-setup");
    type(view("c.names.item2.name"), u"Back");
    press(view("c.names.item1.name"));
    system_.input().type(u"Front");
    tap(kKeyEscape);
    EXPECT_FALSE(isEdited("c.names.item1.name"));
    EXPECT_TRUE(isOpen("win-group-name-setup"));
    EXPECT_EQ(shown("c.names.item1.name"), "1");
    tap(kKeyEscape);
    EXPECT_FALSE(isOpen("win-group-name-setup"));
    EXPECT_EQ(text("group-names", 1), "2");
    EXPECT_EQ(history(), "");
}

TEST_F(NamingWindows, TheCrossSetsNothing) {
    open("ui:win-group-name-setup");
    type(view("c.names.item1.name"), u"Front");
    press(view("window-title.close"));
    EXPECT_FALSE(isOpen("win-group-name-setup"));
    EXPECT_EQ(history(), "");
}

TEST_F(NamingWindows, WhenTheSystemClosesItNothingIsSet) {
    open("ui:win-group-name-setup");
    type(view("c.names.item1.name"), u"Front");
    system_.input().type(u"Back");
    deliver("win-group-name-setup", "close-window");
    turn();
    EXPECT_FALSE(isOpen("win-group-name-setup"));
    EXPECT_EQ(history(), "");
}

TEST_F(NamingWindows, ChannelsTakeTheHostsNamesAndThoseOfTheClipboard) {
    CTextList labels;
    labels.append("Left");
    instance().interfaceBase()->setChannelLabels(labels);
    open("ui:win-channel-label-setup");
    press(view("c.from-host.import"));
    EXPECT_EQ(shown("c.names.item1.name"), "Left");
    EXPECT_EQ(text("in-channel-names", 0), "L") << "until OK";
    ASSERT_TRUE(system_.setClipboardText(u"A\nB longer than eight"));
    press(view("c.buttons.copy-paste.paste"));
    EXPECT_EQ(shown("c.names.item2.name"), "B longer");
    press(view("c.buttons.ok"));
    EXPECT_EQ(text("in-channel-names", 0), "A");
    EXPECT_EQ(text("in-channel-names", 1), "B longer");
    EXPECT_EQ(history(), "In channel names change");
}

}  // namespace
}  // namespace tarv
