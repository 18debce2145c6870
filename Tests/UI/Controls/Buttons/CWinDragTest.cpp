#include "UI/Controls/Buttons/CWinDrag.h"

#include "Tests/UI/Controls/ControlEditor.h"
#include "Tests/UI/Windows/WindowTree.h"

namespace tarv {
namespace {

/// A main window with a view that opens a popup of the class, 120 x 80 pixels, with a title and a control.
struct CWinDragTest : CWindowTree {
    CWinDragTest() { classes = {{"ui:window-drag", &createObject<CWinDrag>, &CWinDrag::initClass}}; }
    void openDialog(const CTexts& more) {
        CTexts attributes = {{"is-root-view", "true"}, {"width", "120"}, {"height", "80"}};
        attributes.insert(attributes.end(), more.begin(), more.end());
        templates = {testTemplate("ui:dialog", "ui:window-drag", attributes,
                                  {{"ui:window-renderer", "window-renderer"},
                                   view("window-title", {{"placement", "top"},
                                                         {"width", "100%"},
                                                         {"height", "20"},
                                                         {"is-input", "false"},
                                                         {"duration", "0.3"}}),
                                   view("control", {{"placement", "top"}, {"width", "40"}, {"height", "20"}})})};
        open({view("opener", {{"width", "50"}, {"height", "20"}})});
        openPopup("opener", "ui:dialog");
        dialog = popupWindow("dialog");
        ASSERT_TRUE(dialog);
        heard();
    }
    void moveIn(int32_t x, int32_t y) { system.input().moveIn(dialog->handle(), x, y); }
    std::string place() const {
        const CIntRect now = dialog->screenBounds();
        return std::to_string(now.left - start.left) + "," + std::to_string(now.top - start.top) + " " +
               std::to_string(now.width()) + "x" + std::to_string(now.height());
    }
    CView& root() const { return *tree->findObjectOf<CView>("ui.dialog"); }

    CWindow* dialog = nullptr;
    CIntRect start;
};

TEST_F(CWinDragTest, APressOnTheTitleDragsTheWindow) {
    openDialog({{"is-window-draggable", "true"}});
    start = dialog->screenBounds();
    moveIn(30, 10);
    system.input().press();
    const int32_t x = system.input().x();
    const int32_t y = system.input().y();
    system.input().move(x + 25, y + 7);
    EXPECT_EQ(place(), "25,7 120x80");
    system.input().move(x - 60, y + 90);
    EXPECT_EQ(place(), "-60,90 120x80") << "the same pixel stays under the pointer";
    system.input().release();
    system.input().move(x, y);
    EXPECT_EQ(place(), "-60,90 120x80");
}

TEST_F(CWinDragTest, ADragThatIsTakenBackPutsTheWindowWhereItWas) {
    openDialog({{"is-window-draggable", "true"}});
    start = dialog->screenBounds();
    moveIn(30, 10);
    system.input().press();
    system.input().move(system.input().x() + 25, system.input().y() + 7);
    EXPECT_EQ(place(), "25,7 120x80");
    EXPECT_TRUE(system.input().tap(kKeyEscape));
    EXPECT_EQ(place(), "0,0 120x80");
    system.input().move(system.input().x() + 25, system.input().y());
    system.input().release();
    EXPECT_EQ(place(), "0,0 120x80");
    ASSERT_TRUE(popupWindow("dialog"));
    EXPECT_TRUE(system.input().tap(kKeyEscape));
    system.advance(0.1);
    EXPECT_FALSE(popupWindow("dialog"));
}

TEST_F(CWinDragTest, AControlKeepsItsPress) {
    openDialog({{"is-window-draggable", "true"}});
    start = dialog->screenBounds();
    moveIn(60, 30);
    system.input().press();
    moveIn(70, 50);
    system.input().release();
    EXPECT_EQ(heard(),
              "control.mouse-enter control.mouse-move control.mouse-press control.mouse-move "
              "control.mouse-cancel control.mouse-exit");
    EXPECT_EQ(place(), "0,0 120x80");
}

TEST_F(CWinDragTest, WithoutTheFlagItStays) {
    openDialog({});
    start = dialog->screenBounds();
    EXPECT_FALSE(root().isInputView());
    moveIn(30, 10);
    system.input().press();
    system.input().move(system.input().x() + 25, system.input().y());
    EXPECT_EQ(place(), "0,0 120x80");
}

TEST_F(CWinDragTest, ACaptureThatIsLostEndsTheDragWhereItIs) {
    openDialog({{"is-window-draggable", "true"}});
    start = dialog->screenBounds();
    moveIn(30, 10);
    system.input().press();
    system.input().move(system.input().x() + 25, system.input().y());
    system.desktop().activate(host);
    system.input().move(system.input().x() + 25, system.input().y());
    EXPECT_EQ(place(), "25,0 120x80");
}

TEST_F(CWinDragTest, APressOnWhatWaitsFlashesTheTitle) {
    openDialog({{"is-modal", "true"}});
    const auto& title = *tree->findObjectOf<CView>("ui.dialog.window-title");
    click(10, 190);
    EXPECT_TRUE(title.isStateSet("flash"));
    EXPECT_TRUE(dialog->isOpen());
    system.advance(0.4);
    EXPECT_FALSE(title.isStateSet("flash"));
}

class CEmbeddedDragTest : public CControlEditor {};

TEST_F(CEmbeddedDragTest, AnEmbeddedWindowStays) {
    load("", {{"ui:window-drag",
               "e",
               {{"is-root-view", "true"}, {"width", "90"}, {"height", "90"}, {"is-window-draggable", "true"}},
               {{"ui:window-renderer", "window-renderer", {{"is-plugin-vst", "true"}}}}}});
    auto& window = dynamic_cast<CWindow&>(object("e.window-renderer"));
    ASSERT_EQ(consumed(window.open()), "");
    const CIntRect before = window.screenBounds();
    system_.input().moveIn(window.handle(), 30, 30);
    system_.input().press();
    system_.input().moveIn(window.handle(), 50, 50);
    system_.input().release();
    EXPECT_EQ(window.screenBounds(), before);
}

}  // namespace
}  // namespace tarv
