// The templates of edit boxes, keyboards and lists, as the library embeds them, in a window in memory.

#include "Platform/ByHand/CWindowByHand.h"
#include "Platform/ByHand/CWindowSystemByHand.h"
#include "ProductTree.h"
#include "Tests/Core/TreeBuilder.h"
#include "UI/Text/CEditBox.h"
#include "UI/Text/CPopupList.h"
#include "UI/Text/CVirtualKeyboard.h"
#include "UI/Windows/CWindow.h"

namespace tarv {

namespace {

class EditorTemplates : public CProductTree {
protected:
    EditorTemplates() {
        EXPECT_EQ(CApplication::openEditor(), nullptr);
        const CWindowHandle host = system_.desktop().openHost({100, 100, 700, 500});
        editor_ = makeEditor();
        EXPECT_EQ(editor_->setAttribute("ParentWindow", CAttributeValue::fromPointer(reinterpret_cast<void*>(host))),
                  nullptr);
        const CTestNode field{
            "ui:textview",
            "field",
            {{"is-read-only", "false"}, {"placement", "top"}, {"width", "120"}, {"height", "20"}, {"title", "one"}},
            {}};
        const CTestNode opener{"ui:view",
                               "opener",
                               {{"placement", "top"}, {"width", "120"}, {"height", "20"}},
                               {{"core:object", "value-list", {{"title", "first\nsecond"}}, {}}}};
        EXPECT_EQ(
            loadTree(*editor_->findChild("ui"),
                     {{"ui:window-shared-data", "window-shared-data", {}, {}},
                      {"ui:view",
                       "w",
                       {{"is-root-view", "true"},
                        {"width", "300"},
                        {"height", "200"},
                        {"palette", "Default"},
                        {"font-name", "shared::font.base"},
                        {"color", "Panel"}},
                       {field, opener, {"ui:window-renderer", "window-renderer", {{"is-plugin-vst", "true"}}, {}}}}}),
            nullptr);
        window_ = editor_->findObjectOf<CWindow>("ui.w.window-renderer");
        EXPECT_TRUE(window_);
        EXPECT_EQ(window_->open(), nullptr);
        system_.advance(0.1);
    }
    ~EditorTemplates() override {
        editor_.reset();
        CApplication::closeEditor();
    }
    CEditBox* box() const { return editor_->findObjectOf<CEditBox>("ui.w.temp-editbox"); }
    void press(const CView& view, CWindowHandle window) {
        const CViewRect rect = view.wholeRect();
        system_.input().moveIn(window, static_cast<int32_t>(rect.x + rect.width / 2),
                               static_cast<int32_t>(rect.y + rect.height / 2));
        system_.input().click();
    }
    void edit(const char* accepted) {
        auto* field = editor_->findObjectOf<CTextView>("ui.w.field");
        EXPECT_EQ(field->setAttribute("accept-chars", CString(accepted)), nullptr);
        press(*field, window_->handle());
        system_.advance(0.2);
    }
    /// Presses a key of the keyboard that is shown.
    void pressKey(const char* name) {
        const CVirtualKeyboard* keyboard = box()->keyboard();
        ASSERT_TRUE(keyboard);
        const auto* key = dynamic_cast<CView*>(keyboard->findChild(name));
        ASSERT_TRUE(key) << name;
        press(*key, dynamic_cast<CWindow*>(keyboard->findChild("window-renderer"))->handle());
    }

    CWindowSystemByHand system_;
    std::unique_ptr<CObject> editor_;
    CWindow* window_ = nullptr;
};

TEST_F(EditorTemplates, TheKeyboardOfLettersTypes) {
    edit("");
    ASSERT_TRUE(box());
    EXPECT_EQ(box()->getAttrString("color"), CString("Field"));
    ASSERT_TRUE(box()->keyboard());
    for (const char* key : {"q", "caps", "a", "caps", "space", "seven", "minus", "comma", "backspace", "point"}) {
        pressKey(key);
    }
    EXPECT_EQ(box()->edit().text().toUtf8(), "qA 7-.");
    pressKey("enter");
    system_.advance(0.1);
    EXPECT_EQ(editor_->findObject("ui.w.field")->getAttrString("title").toUtf8(), "qA 7-.");
    EXPECT_EQ(system_.desktop().windowCount(), 1);
}

TEST_F(EditorTemplates, TheKeyboardOfFiguresTypes) {
    edit("0123456789.,-");
    ASSERT_TRUE(box() && box()->keyboard());
    for (const char* key : {"minus", "one", "two", "three", "four", "five", "six", "seven", "eight", "nine", "zero",
                            "point", "backspace"}) {
        pressKey(key);
    }
    EXPECT_EQ(box()->edit().text().toUtf8(), "-1234567890");
    pressKey("cancel");
    system_.advance(0.1);
    EXPECT_EQ(editor_->findObject("ui.w.field")->getAttrString("title").toUtf8(), "one");
    EXPECT_FALSE(box());
}

TEST_F(EditorTemplates, AKeyIsAsHighAsItsRowAndShowsItsTitle) {
    edit("");
    ASSERT_TRUE(box() && box()->keyboard());
    system_.advance(0.1);
    for (const CObject* child : box()->keyboard()->children()) {
        const auto* key = dynamic_cast<const CView*>(child);
        if (key && key->hasAttr("key")) {
            EXPECT_EQ(key->wholeRect().height, 24.0) << key->name().toUtf8();
            const auto* label = dynamic_cast<const CTextView*>(key->findChild("label"));
            ASSERT_TRUE(label);
            EXPECT_EQ(label->getAttrString("title"), key->getAttrString("title"));
            EXPECT_LE(label->layout().width(), key->wholeRect().width) << key->name().toUtf8();
        }
    }
}

TEST_F(EditorTemplates, TheListShowsItsRowsAndAnswers) {
    auto* opener = editor_->findObjectOf<CView>("ui.w.opener");
    CAttributeMap params;
    params["is-same-width"] = CAttributeValue::fromBool(true);
    params["result-target"] = CAttributeValue::fromString("^field");
    params["result-target-index-attr"] = CAttributeValue::fromString("chosen");
    ASSERT_EQ(opener->openPopup("ui:window-app-popup-list", params), nullptr);
    system_.advance(0.1);
    auto* list = editor_->findObjectOf<CPopupList>("ui.window-app-popup-list.list");
    ASSERT_TRUE(list);
    EXPECT_EQ(list->paragraphCount(), 2);
    EXPECT_EQ(dynamic_cast<CView*>(list->parent())->wholeRect().width, 120.0);
    EXPECT_EQ(list->wholeRect().width, 118.0);
    EXPECT_TRUE(system_.input().tap(40));
    EXPECT_TRUE(system_.input().tap(40));
    EXPECT_TRUE(system_.input().tap(13));
    EXPECT_EQ(editor_->findObject("ui.w.field")->getAttrInt("chosen"), 1);
}

}  // namespace

}  // namespace tarv
