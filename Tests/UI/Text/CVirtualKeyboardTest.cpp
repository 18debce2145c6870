#include "UI/Text/CVirtualKeyboard.h"

#include "Tests/UI/Text/EditTree.h"

namespace tarv {
namespace {

/// The keyboards of the test have a row of keys of 20 x 20 pixels.
struct CVirtualKeyboardTest : CEditTree {
    CVirtualKeyboardTest() {
        classes.push_back({"ui:virtual-keyboard", &createObject<CVirtualKeyboard>, &CVirtualKeyboard::initClass});
        classes.push_back({"ui:view-command", &createObject<CViewCommand>, nullptr});
        templates.push_back(keyboard("ui:virtual-keyboard-digit", {"1", "2", ",", "-", "Bkspace", "Cancel", "Enter"}));
        templates.push_back(
            keyboard("ui:virtual-keyboard-alphadigit", {"a", "b", "1", "Space", "CAPS", "Bkspace", "Cancel", "Enter"}));
    }
    static CTestNode keyboard(const std::string& name, const std::vector<std::string>& keys) {
        std::vector<CTestNode> children = {{"ui:window-renderer", "window-renderer"}};
        for (const std::string& key : keys) {
            const std::string text = key == "-" ? "{virtual-keyboard-minus-char}" : key;
            const std::string named = key == "," ? "comma" : key == "-" ? "minus" : key;
            children.push_back(view(named, {{"key", text}, {"title", text}, {"width", "20"}, {"height", "20"}},
                                    {{"ui:view-command",
                                      "command",
                                      {{"on-event", "mouse-release"},
                                       {"run-event", "virtual-keyboard-press"},
                                       {"run-event-target", "{keyboard-path}"}},
                                      {{"core:object", "run-event-params", {{"key", "{/^^ key}"}}}}}}));
        }
        return testTemplate(name, "ui:virtual-keyboard",
                            {{"is-root-view", "true"},
                             {"is-helper-window", "true"},
                             {"is-popup-window", "true"},
                             {"keyboard-path", "{full-name}"},
                             {"caps-button", ".CAPS"},
                             {"window-alignment", "bottom-local-center"}},
                            std::move(children));
    }
    void openWithKeyboard(std::vector<CTestNode> fields) {
        openFields(std::move(fields));
        EXPECT_EQ(
            consumed(tree->findObject("ui.global-settings")->setAttribute("show-virtual-keyboard", CString("true"))),
            "");
    }
    void begin(const std::string& name) {
        clickOn(name);
        wait();
    }
    void wait() { system.advance(0.1); }
    CVirtualKeyboard* shown() const { return box() ? box()->keyboard() : nullptr; }
    CWindow* window(const CVirtualKeyboard& keyboard) const {
        return dynamic_cast<CWindow*>(keyboard.findChild("window-renderer"));
    }
    void pressKey(const std::string& name) {
        const auto* key = dynamic_cast<CView*>(shown()->findChild(name.c_str()));
        ASSERT_TRUE(key) << name;
        const CViewRect rect = key->wholeRect();
        system.input().moveIn(window(*shown())->handle(), static_cast<int32_t>(rect.x) + 5,
                              static_cast<int32_t>(rect.y) + 5);
        system.input().click();
    }
};

CTestNode textField(const std::string& name, CTexts more = {}) {
    more.insert(more.begin(), {"title", ""});
    return CEditTree::field(name, more);
}

TEST_F(CVirtualKeyboardTest, OpensWithAnEditOnlyWhereTheSettingsWantIt) {
    openFields({textField("a")});
    begin("a");
    EXPECT_FALSE(shown());
    tap(kKeyEscape);
    EXPECT_EQ(consumed(tree->findObject("ui.global-settings")->setAttribute("show-virtual-keyboard", CString("true"))),
              "");
    begin("a");
    ASSERT_TRUE(shown());
    EXPECT_EQ(shown()->name(), "virtual-keyboard-alphadigit");
    EXPECT_TRUE(isEditing());
    EXPECT_EQ(CEditTree::window().keyFocusView(), box());
    EXPECT_FALSE(CEditTree::window().isBlocked());
    EXPECT_EQ(system.desktop().active(), host);
    tap(kKeyEnter);
    wait();
    EXPECT_FALSE(tree->findObject("ui.virtual-keyboard-alphadigit"));
    EXPECT_EQ(system.desktop().windowCount(), 1);
}

TEST_F(CVirtualKeyboardTest, DigitsWhereTheViewHasNoAlphabet) {
    openWithKeyboard({textField("a", {{"is-virtual-keyboard-alphabet", "false"}}),
                      textField("b", {{"accept-chars", "0123456789.,-"}}),
                      textField("c", {{"accept-chars", "0123456789.,-"}, {"is-virtual-keyboard-alphabet", "true"}})});
    const std::pair<const char*, const char*> kRows[] = {
        {"a", "virtual-keyboard-digit"}, {"b", "virtual-keyboard-digit"}, {"c", "virtual-keyboard-alphadigit"}};
    for (const auto& [name, expected] : kRows) {
        begin(name);
        ASSERT_TRUE(shown()) << name;
        EXPECT_EQ(shown()->tag().toUtf8().substr(3), expected) << name;
    }
    EXPECT_EQ(CEditTree::window().popups().count(), 1);
}

TEST_F(CVirtualKeyboardTest, ItsKeysTypeBesideTheRealOnes) {
    openWithKeyboard({textField("a")});
    begin("a");
    pressKey("a");
    type(u"x");
    pressKey("Space");
    pressKey("b");
    EXPECT_EQ(edited(), "ax b");
    pressKey("Bkspace");
    pressKey("1");
    EXPECT_EQ(edited(), "ax 1");
    EXPECT_EQ(CEditTree::window().keyFocusView(), box());
    EXPECT_EQ(system.desktop().keyGrabber(), CEditTree::window().handle());
    EXPECT_EQ(system.desktop().active(), host) << "a press leaves the activation where it is";
    pressKey("Enter");
    EXPECT_EQ(title("a"), "ax 1");
    EXPECT_FALSE(isEditing());
}

TEST_F(CVirtualKeyboardTest, CapsSwitchesTheLettersAndShowsIt) {
    openWithKeyboard({textField("a")});
    begin("a");
    const auto* a = shown()->findChild("a");
    const auto* caps = dynamic_cast<CView*>(shown()->findChild("CAPS"));
    pressKey("CAPS");
    EXPECT_TRUE(shown()->isCaps());
    EXPECT_TRUE(caps->isStateSet("active"));
    EXPECT_EQ(a->getAttrString("title"), "A");
    pressKey("a");
    pressKey("1");
    EXPECT_EQ(edited(), "A1");
    EXPECT_EQ(caps->getAttrString("title"), "CAPS");
    pressKey("CAPS");
    EXPECT_FALSE(caps->isStateSet("active"));
    EXPECT_EQ(a->getAttrString("title"), "a");
    pressKey("b");
    EXPECT_EQ(edited(), "A1b");
}

TEST_F(CVirtualKeyboardTest, CancelDropsTheEdit) {
    openWithKeyboard({textField("a", {{"title", "one"}})});
    begin("a");
    pressKey("b");
    pressKey("Cancel");
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(title("a"), "one");
    wait();
    EXPECT_FALSE(box());
    EXPECT_EQ(CEditTree::window().popups().count(), 0);
}

TEST_F(CVirtualKeyboardTest, AnotherCharacterMayStandForMinus) {
    openWithKeyboard({textField("a", {{"accept-chars", "0123456789.,Kk"}, {"virtual-keyboard-minus-char", "K"}}),
                      textField("b", {{"accept-chars", "0123456789.,-"}})});
    begin("a");
    EXPECT_EQ(shown()->findChild("minus")->getAttrString("title"), "K");
    pressKey("1");
    pressKey("minus");
    pressKey("comma");
    EXPECT_EQ(edited(), "1K.");
    begin("b");
    EXPECT_EQ(shown()->findChild("minus")->getAttrString("title"), "-");
    pressKey("minus");
    EXPECT_EQ(edited(), "-");
}

TEST_F(CVirtualKeyboardTest, ItNeverLiesOverTheFieldNorLeavesTheMonitor) {
    for (const int32_t hostY : {0, 300, 700, 950}) {
        openWithKeyboard({textField("a"), textField("b")});
        const CWindowHandle low = system.desktop().openHost({20, hostY, 420, hostY + 120});
        tree->findObjectOf<CWindow>("ui.main-window.window-renderer")->shut();
        EXPECT_EQ(
            consumed(tree->setAttribute("ParentWindow", CAttributeValue::fromPointer(reinterpret_cast<void*>(low)))),
            "");
        EXPECT_EQ(consumed(CEditTree::window().open()), "");
        system.pump();
        for (const char* name : {"a", "b"}) {
            EXPECT_EQ(consumed(text(name).openEdit()), "");
            wait();
            ASSERT_TRUE(shown()) << hostY;
            const CIntRect keyboard = window(*shown())->screenBounds();
            const CIntRect own = CEditTree::window().screenBounds();
            const CViewRect rect = box()->wholeRect();
            const CIntRect field =
                CIntRect{0, 0, static_cast<int32_t>(rect.width), static_cast<int32_t>(rect.height)}.moved(
                    own.left + static_cast<int32_t>(rect.x), own.top + static_cast<int32_t>(rect.y));
            EXPECT_TRUE(keyboard.intersection(field).isEmpty()) << hostY << ' ' << name;
            EXPECT_EQ(keyboard.intersection({0, 0, 1920, 1080}), keyboard) << hostY;
        }
        close();
        system.desktop().destroy(low);
    }
}

TEST_F(CVirtualKeyboardTest, ItGoesWithTheWindowAndWithTheUserWhoCloses) {
    openWithKeyboard({textField("a")});
    begin("a");
    system.desktop().requestClose(window(*shown())->handle());
    wait();
    EXPECT_FALSE(shown());
    EXPECT_TRUE(isEditing());
    type(u"x");
    tap(kKeyEnter);
    EXPECT_EQ(title("a"), "x");
    begin("a");
    EXPECT_TRUE(shown());
    tree.reset();
    EXPECT_TRUE(system.isClean());
}

TEST_F(CVirtualKeyboardTest, WithoutItsTemplateTheEditGoesOn) {
    templates.pop_back();
    openWithKeyboard({textField("a")});
    const CLogCapture log;
    begin("a");
    EXPECT_TRUE(isEditing());
    EXPECT_FALSE(shown());
}

}  // namespace
}  // namespace tarv
