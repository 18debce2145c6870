// Random sequences of typing, clicking, lists, keyboards on the screen and closing: whatever comes, one edit has the
// keys or none, and in the end nothing is left over.

#include <cstdlib>
#include <random>

#include "Tests/UI/Text/EditTree.h"
#include "UI/Text/CPopupList.h"
#include "UI/Text/CVirtualKeyboard.h"

namespace tarv {
namespace {

struct RandomEdit : CEditTree {
    RandomEdit() {
        classes.push_back({"ui:popup-list", &createObject<CPopupList>, &CPopupList::initClass});
        classes.push_back({"ui:view-command", &createObject<CViewCommand>, nullptr});
        classes.push_back({"ui:virtual-keyboard", &createObject<CVirtualKeyboard>, &CVirtualKeyboard::initClass});
        const CTestNode renderer{"ui:window-renderer", "window-renderer"};
        const CTexts root = {{"is-root-view", "true"}, {"is-popup-window", "true"}, {"font-name", "shared::font.base"}};
        CTexts keyboard = root;
        keyboard.insert(keyboard.end(), {{"is-helper-window", "true"},
                                         {"keyboard-path", "{full-name}"},
                                         {"window-alignment", "bottom-local-center"}});
        std::vector<CTestNode> keys = {renderer};
        for (const char* key : {"1", "x", "Bkspace", "CAPS", "Enter", "Cancel"}) {
            keys.push_back(view(key, {{"key", key}, {"width", "20"}, {"height", "20"}},
                                {{"ui:view-command",
                                  "command",
                                  {{"on-event", "mouse-release"},
                                   {"run-event", "virtual-keyboard-press"},
                                   {"run-event-target", "{keyboard-path}"}},
                                  {{"core:object", "run-event-params", {{"key", key}}}}}}));
        }
        for (const char* name : {"ui:virtual-keyboard-digit", "ui:virtual-keyboard-alphadigit"}) {
            templates.push_back(testTemplate(name, "ui:virtual-keyboard", keyboard, keys));
        }
        templates.push_back(testTemplate("ui:window-app-popup-list", "test:view", root,
                                         {renderer, {"ui:popup-list", "list", {{"placement", "full"}}}}));
    }
    void openAll() {
        openFields(
            {field("a", {{"title", "one"}, {"tab-group", "g"}, {"is-focusable", "true"}}),
             field("b",
                   {{"title", "2"}, {"tab-group", "g"}, {"is-number", "true"}, {"accept-chars", "0123456789.,-x"}}),
             field("c", {{"title", "p\nq"}, {"is-list", "true"}, {"height", "60"}, {"is-focusable", "true"}}),
             view("opener", {{"placement", "bottom"}, {"width", "100"}, {"height", "20"}, {"is-focusable", "true"}},
                  {{"core:object", "value-list", {{"title", "u\nv\nw"}}}})});
        EXPECT_EQ(
            consumed(tree->findObject("ui.global-settings")->setAttribute("show-virtual-keyboard", CString("true"))),
            "");
        CFilledView::actions["opener.mouse-press"] = [](CFilledView& opener, CAttributeMap&) {
            CAttributeMap params;
            EXPECT_EQ(consumed(opener.openPopup("ui:window-app-popup-list", params)), "");
        };
        CFilledView::actions["opener.popup-result"] = [this](CFilledView&, CAttributeMap&) {
            EXPECT_EQ(consumed(text("b").openEdit()), "");
        };
    }
    int32_t next(int32_t count) { return static_cast<int32_t>(random() % static_cast<uint32_t>(count)); }
    /// Somewhere in one of the windows, main or popup.
    void pointAnywhere() {
        const std::vector<CWindowByHand*> windows = system.desktop().windows();
        const CWindowByHand* one = windows[static_cast<size_t>(next(static_cast<int32_t>(windows.size())))];
        const CIntRect bounds = one->screenBounds();
        const int32_t x = bounds.left + next(std::max(bounds.width(), 1));
        const int32_t y = bounds.top + next(std::max(bounds.height(), 1));
        system.input().move(x, y);
    }
    void typeSomething() {
        constexpr int32_t kKeys[] = {kKeyBackspace, kKeyTab, kKeyEnter,  kKeyEscape, kKeyLeft, kKeyRight,
                                     kKeyHome,      kKeyEnd, kKeyDelete, kKeyUp,     kKeyDown, kKeySpace,
                                     kKeyF2,        'A',     'V',        'X',        'Z'};
        constexpr const char* kHeld[] = {"", "", "", "s", "c", "cs"};
        if (next(2) == 0) {
            type(next(2) == 0 ? u"1" : u"x");
        } else {
            const int32_t key = kKeys[next(static_cast<int32_t>(std::size(kKeys)))];
            tap(key, kHeld[next(6)]);
        }
    }
    void change() {
        CTestField& field = text(next(2) == 0 ? "a" : "b");
        const bool isVisibility = next(2) == 0;
        // Mostly back to what a field needs.
        const bool isOn = next(3) == 0 ? next(2) == 0 : isVisibility;
        EXPECT_EQ(
            consumed(field.setAttribute(isVisibility ? "is-visible" : "is-disabled", CAttributeValue::fromBool(isOn))),
            "");
    }
    /// Nothing is hovered or pushed but what the routers hold.
    void expectStates() {
        for (const CWindow* shown : window().sharedData().windows()) {
            expectStatesIn(shown->view(), const_cast<CWindow*>(shown)->router());
        }
    }
    void expectStatesIn(const CObject& object, const CInputRouter& router) {
        if (const auto* view = dynamic_cast<const CView*>(&object)) {
            const bool isHeld = router.drag().isActive() && router.drag().view() == view;
            EXPECT_EQ(view->isStateSet("hover"), router.hovered() == view) << view->fullName().toUtf8();
            hovers += view->isStateSet("hover") ? 1 : 0;
            holds += isHeld ? 1 : 0;
            EXPECT_TRUE(isHeld || !view->isStateSet("pushed")) << view->fullName().toUtf8();
        }
        for (const CObject* child : object.children()) {
            expectStatesIn(*child, router);
        }
    }
    void actAnyhow() {
        switch (next(12)) {
            case 0:
            case 1:
            case 2:
                pointAnywhere();
                system.input().press();
                expectStates();
                if (next(3) == 0) {
                    pointAnywhere();
                }
                if (next(5) == 0) {
                    system.desktop().takeCapture();
                }
                system.input().release();
                break;
            case 3:
                if (next(3) == 0) {
                    const CViewRect rect = at("opener").wholeRect();
                    click(static_cast<int32_t>(rect.x) + 5, static_cast<int32_t>(rect.y) + 5);
                } else {
                    clickOn(next(2) == 0 ? "a" : "b");
                }
                break;
            case 4:
                pointAnywhere();
                system.input().wheel(next(5) - 2);
                break;
            case 5:
                system.advance(0.03 * next(20));
                break;
            case 6:
                change();
                break;
            case 7:
                system.desktop().activate(next(3) == 0 ? other : host);
                break;
            case 8:
                if (next(3) == 0) {
                    window().popups().close();
                } else {
                    EXPECT_EQ(consumed(text("c").openEdit(next(2))), "");
                }
                break;
            default:
                typeSomething();
        }
    }
    void step() {
        actAnyhow();
        expectStates();
        // Only what is edited has a box, and the box has the keys.
        lists += window().isBlocked() ? 1 : 0;
        if (isEditing()) {
            ++edits;
            keyboards += box()->keyboard() ? 1 : 0;
            EXPECT_EQ(box()->owner()->editBox(), box());
            EXPECT_EQ(window().keyFocusView(), box());
            EXPECT_EQ(system.desktop().keyGrabber(), window().handle());
            EXPECT_FALSE(window().isBlocked());
        }
        int32_t edited = 0;
        for (const char* name : {"a", "b", "c"}) {
            edited += text(name).editBox() ? 1 : 0;
        }
        EXPECT_EQ(edited, isEditing() ? 1 : 0);
        EXPECT_FALSE(text("b").getAttrString("title").toUtf8().find('x') != std::string::npos) << "refused";
    }
    void run(uint32_t seed) {
        random.seed(seed);
        other = system.desktop().openHost({1200, 700, 1300, 800}, seed % 2 == 0);
        openAll();
        for (int32_t i = 0; i < 120 && !HasFailure(); ++i) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(i));
            step();
        }
        if (seed % 3 == 0) {
            // Closed in the midst of it.
            tree.reset();
            EXPECT_TRUE(system.isClean()) << seed;
        } else {
            system.desktop().activate(host);
            window().popups().close();
            window().setKeyFocusView(nullptr);
            system.advance(1.5);
            EXPECT_FALSE(box()) << seed;
            EXPECT_EQ(window().popups().count(), 0) << seed;
            EXPECT_FALSE(window().isBlocked()) << seed;
            EXPECT_EQ(system.desktop().keyGrabber(), 0u) << seed;
            EXPECT_EQ(system.desktop().windowCount(), 1) << seed;
            for (const char* name : {"a", "b", "c"}) {
                EXPECT_FALSE(text(name).isStateSet("error") || text(name).isStateSet("pushed")) << seed;
            }
        }
        close();
        system.desktop().destroy(other);
    }

    std::mt19937 random;
    int32_t edits = 0;
    int32_t lists = 0;
    int32_t hovers = 0;
    int32_t holds = 0;
    int32_t keyboards = 0;
    CWindowHandle other = 0;
};

TEST_F(RandomEdit, SequencesLeaveACleanState) {
    const uint32_t runs = std::getenv("TARV_LONG") ? 600 : 12;
    for (uint32_t seed = 0; seed < runs && !HasFailure(); ++seed) {
        run(seed);
    }
    // The sequences go where they shall go.
    const auto steps = static_cast<int32_t>(runs) * 120;
    EXPECT_GT(edits, steps / 10);
    EXPECT_GT(lists, steps / 50);
    EXPECT_GT(keyboards, steps / 50);
    EXPECT_GT(hovers, steps / 5);
    EXPECT_GT(holds, steps / 50);
}

}  // namespace
}  // namespace tarv
