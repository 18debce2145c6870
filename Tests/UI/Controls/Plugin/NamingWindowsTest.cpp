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
    void press(const CView& pressed) {
        const auto* window = dynamic_cast<CWindow*>(root_->findChild("window-renderer"));
        system_.input().moveIn(window->handle(), static_cast<int32_t>(pressed.visibleRect().x + 4.0),
                               static_cast<int32_t>(pressed.visibleRect().y + 4.0));
        system_.input().click();
        turn();
    }
    void type(const CView& field, const std::u16string& text) {
        press(field);
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
    ASSERT_TRUE(root_->findObject(".names.item8.name"));
    EXPECT_FALSE(root_->findObject(".names.item9"));
    type(view("names.item1.name"), u"Front");
    type(view("names.item8.name"), u"Longer than twelve");
    EXPECT_EQ(text("group-names", 0), "1");
    press(view("buttons.ok"));
    EXPECT_FALSE(isOpen("win-group-name-setup"));
    EXPECT_EQ(text("group-names", 0), "Front");
    EXPECT_EQ(text("group-names", 7), "Longer than") << "no blank at its end";
    EXPECT_EQ(history(), "Group names change");
}

TEST_F(NamingWindows, CancelSetsNothing) {
    open("ui:win-channel-label-setup");
    type(view("names.item16.name"), u"Sub");
    press(view("buttons.cancel"));
    EXPECT_FALSE(isOpen("win-channel-label-setup"));
    EXPECT_EQ(text("in-channel-names", 15), "IN16");
    EXPECT_EQ(history(), "");
}

TEST_F(NamingWindows, EscapeSetsNothing) {
    open("ui:win-group-name-setup");
    type(view("names.item1.name"), u"Front");
    tap(kKeyEscape);
    EXPECT_FALSE(isOpen("win-group-name-setup"));
    EXPECT_EQ(history(), "");
}

TEST_F(NamingWindows, ChannelsTakeTheHostsNamesAndThoseOfTheClipboard) {
    open("ui:win-channel-label-setup");
    CTextList labels;
    labels.append("Left");
    instance().interfaceBase()->setChannelLabels(labels);
    press(view("from-host.import"));
    EXPECT_EQ(view("names.item1.name").getAttrString("title"), CString("Left"));
    ASSERT_TRUE(system_.setClipboardText(u"A\nB longer than eight"));
    press(view("buttons.copy-paste.paste"));
    EXPECT_EQ(view("names.item2.name").getAttrString("title"), CString("B longer"));
    press(view("buttons.ok"));
    EXPECT_EQ(text("in-channel-names", 0), "A");
    EXPECT_EQ(text("in-channel-names", 1), "B longer");
}

}  // namespace
}  // namespace tarv
