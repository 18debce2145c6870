// Lists: paragraphs as rows, by pointer, keys and wheel.

#include "Platform/Keyboard.h"
#include "Tests/UI/Text/TextViewTree.h"
#include "UI/Views/CInputRouter.h"

namespace tarv {
namespace {

constexpr CPixel kHover = 0x203040;
constexpr CPixel kSelection = 0x304050;
constexpr CPixel kSelectionText = 0xf0f1f2;
// A line of 14 pixels and the spacing of 6.
constexpr int32_t kRow = 20;

class TextList : public CTextViewTest {
protected:
    /// A list of rows `r0`, `r1` ... at 10, 20, 100 pixels wide.
    CTextView& openList(int32_t count, CTexts more = {}) {
        std::string title;
        for (int32_t i = 0; i < count; ++i) {
            title += (i > 0 ? "\nr" : "r") + std::to_string(i);
        }
        CTexts attributes = {{"title", title}, {"placement", "overlay"},   {"outer-border", "*L10 *T20"},
                             {"width", "100"}, {"paragraph-spacing", "6"}, {"is-list", "true"}};
        attributes.insert(attributes.end(), more.begin(), more.end());
        openTexts({label("a", attributes)});
        listen("a");
        tick();
        return text("a");
    }
    static CAttributeMap at(double x, double y, bool isDouble = false) {
        CAttributeMap params;
        params["actual-x"] = CAttributeValue::fromReal(x);
        params["actual-y"] = CAttributeValue::fromReal(y);
        params["is-double-click"] = CAttributeValue::fromBool(isDouble);
        return params;
    }
    static CAttributeMap onRow(int32_t row, bool isDouble = false) { return at(15, 20 + row * kRow + 3, isDouble); }
    static std::string failure(CError* error) { return consumed(error); }
    static void move(CTextView& list, CAttributeMap params) { EXPECT_EQ(failure(list.mouseMove(params)), ""); }
    static void press(CTextView& list, CAttributeMap params) { EXPECT_EQ(failure(list.mousePress(params)), ""); }
    static void pressR(CTextView& list, CAttributeMap params) { EXPECT_EQ(failure(list.mousePressR(params)), ""); }
    static void release(CTextView& list, CAttributeMap params) { EXPECT_EQ(failure(list.mouseRelease(params)), ""); }
    /// Gives whether the key was taken.
    static bool key(CTextView& list, int32_t code) {
        CAttributeMap params;
        params["keycode"] = CAttributeValue::fromInt(code);
        EXPECT_EQ(failure(list.keyPress(params)), "");
        return CTextView::isHandled(params);
    }
    static bool wheel(CTextView& list, double notches) {
        CAttributeMap params = at(15, 25);
        params["delta"] = CAttributeValue::fromReal(notches);
        EXPECT_EQ(failure(list.mouseWheel(params)), "");
        return CTextView::isHandled(params);
    }
    static double offset(CTextView& list) { return list.area().value(CViewCell::OffsetY); }
};

TEST_F(TextList, ALabelTakesNoInputAndAListDoes) {
    openTexts({label("a", {{"title", "x"}}), label("b", {{"title", "x"}, {"is-list", "true"}}),
               label("c", {{"title", "x"}, {"selected-paragraph", "-1"}}),
               label("d", {{"title", "x"}, {"is-drop-down-behavior-disabled", "false"}}),
               label("e", {{"title", "x"}, {"selected-paragraph", "0"}, {"is-list", "false"}})});
    for (const auto& [name, isList] :
         std::map<std::string, bool>{{"a", false}, {"b", true}, {"c", true}, {"d", true}, {"e", false}}) {
        EXPECT_EQ(text(name).isList(), isList) << name;
        EXPECT_EQ(text(name).isInputView(), isList) << name;
    }
    EXPECT_TRUE(text("d").isDropDown());
    EXPECT_EQ(text("e").selectedParagraph(), -1);
    set(text("a"), "selected-paragraph", "0");
    EXPECT_TRUE(text("a").isList());
    EXPECT_EQ(text("a").selectedParagraph(), 0);
}

TEST_F(TextList, TheHoveredAndTheSelectedRowStandOut) {
    CTextView& list = openList(3, {{"selected-paragraph", "2"}});
    EXPECT_EQ(box("a"), "10,20 100x60");
    move(list, onRow(1));
    EXPECT_EQ(list.hoveredParagraph(), 1);
    // That row alone is drawn.
    EXPECT_EQ(tick(), 100 * kRow);
    expectBackground();
    expectRect(10, 20 + kRow, 100, kRow, kHover);
    expectRect(10, 20 + 2 * kRow, 100, kRow, kSelection);
    expectText(face, "r0", 10, 23, kText);
    expectText(face, "r1", 10, 23 + kRow, kText);
    expectText(face, "r2", 10, 23 + 2 * kRow, kSelectionText);
    EXPECT_EQ(wrongPixels(), 0);
    // The selected row looks selected under the pointer, too.
    move(list, onRow(2));
    tick();
    EXPECT_EQ(pixel(100, 22 + kRow) & 0xffffff, kPanel);
    EXPECT_EQ(pixel(100, 22 + 2 * kRow) & 0xffffff, kSelection);
    CAttributeMap none;
    EXPECT_EQ(consumed(list.mouseExit(none)), "");
    EXPECT_EQ(list.hoveredParagraph(), -1);
    EXPECT_EQ(heard(), "");
}

TEST_F(TextList, RowsAreFoundFromEdgeToEdge) {
    CTextView& list = openList(2);
    EXPECT_EQ(list.paragraphAt(10, 20), 0);
    EXPECT_EQ(list.paragraphAt(109.9, 39.9), 0);
    EXPECT_EQ(list.paragraphAt(110, 30), -1);
    EXPECT_EQ(list.paragraphAt(9.9, 30), -1);
    EXPECT_EQ(list.paragraphAt(10, 40), 1);
    EXPECT_EQ(list.paragraphAt(10, 60), -1);
    EXPECT_EQ(list.rowRect(1), (CViewRect{10, 40, 100, 20}));
    EXPECT_TRUE(list.rowRect(2).isEmpty());
    EXPECT_TRUE(list.rowRect(-1).isEmpty());
}

TEST_F(TextList, APressSelectsOnceAndBesideTheRowsNothing) {
    CTextView& list = openList(3, {{"height", "100"}});
    press(list, onRow(1));
    EXPECT_EQ(list.selectedParagraph(), 1);
    EXPECT_EQ(text(list, "selected-paragraph"), "1");
    EXPECT_EQ(heard(), "selected-paragraph-changed 1 r1");
    press(list, onRow(1));
    press(list, onRow(4));
    EXPECT_EQ(list.selectedParagraph(), 1);
    EXPECT_EQ(heard(), "");
    // The right button only where it may.
    pressR(list, onRow(0));
    EXPECT_EQ(heard(), "");
    set(list, "is-right-click-selects", "true");
    pressR(list, onRow(0));
    EXPECT_EQ(heard(), "selected-paragraph-changed 0 r0");
    release(list, onRow(2));
    EXPECT_EQ(heard(), "");
}

TEST_F(TextList, APressOnTheSelectedRowMayCancelTheSelection) {
    CTextView& list = openList(3, {{"is-selected-paragraph-click-cancels", "true"}});
    press(list, onRow(1));
    press(list, onRow(1));
    EXPECT_EQ(list.selectedParagraph(), -1);
    EXPECT_EQ(heard(), "selected-paragraph-changed 1 r1, selected-paragraph-changed -1 ");
}

TEST_F(TextList, ADoubleClickIsReportedAndChooses) {
    CTextView& list = openList(3, {{"is-selected-paragraph-click-cancels", "true"}});
    press(list, onRow(2));
    press(list, onRow(2, true));
    // Its second press cancels nothing.
    EXPECT_EQ(list.selectedParagraph(), 2);
    EXPECT_EQ(heard(), "selected-paragraph-changed 2 r2, paragraph-dbl-clicked 2 r2, paragraph-chosen 2 r2");
    press(list, at(15, 150, true));
    EXPECT_EQ(heard(), "");
}

TEST_F(TextList, AnIndexOutsideIsIgnored) {
    CTextView& list = openList(3, {{"selected-paragraph", "1"}});
    for (const char* index : {"3", "-2", "99"}) {
        set(list, "selected-paragraph", index);
        EXPECT_EQ(list.selectedParagraph(), 1) << index;
    }
    list.selectParagraph(7);
    list.scrollToParagraph(7);
    EXPECT_EQ(list.selectedParagraph(), 1);
    set(list, "selected-paragraph", "-1");
    EXPECT_EQ(list.selectedParagraph(), -1);
    set(list, "selected-paragraph", "2");
    EXPECT_EQ(list.selectedParagraph(), 2);
    // What selects is no user: nothing is sent.
    EXPECT_EQ(heard(), "");
    // A text without that row ends the selection.
    set(list, "title", "r0\nr1");
    EXPECT_EQ(list.selectedParagraph(), -1);
}

TEST_F(TextList, ADropDownListFollowsThePointerAndAReleaseChooses) {
    CTextView& list = openList(3, {{"is-drop-down-behavior-disabled", "false"}});
    move(list, onRow(0));
    move(list, onRow(0));
    move(list, onRow(2));
    EXPECT_EQ(heard(), "selected-paragraph-changed 0 r0, selected-paragraph-changed 2 r2");
    press(list, onRow(2));
    EXPECT_EQ(heard(), "");
    release(list, onRow(2));
    EXPECT_EQ(heard(), "paragraph-chosen 2 r2");
    // Beside the rows nothing is chosen, and the selection stays.
    move(list, at(200, 30));
    release(list, at(200, 30));
    EXPECT_EQ(list.selectedParagraph(), 2);
    EXPECT_EQ(heard(), "");
}

TEST_F(TextList, KeysMoveTheSelectionAndEnterChooses) {
    // 100 pixels show five rows: a page is four.
    CTextView& list = openList(12, {{"is-scrollable", "true"}, {"height", "100"}, {"is-focusable", "true"}});
    EXPECT_FALSE(key(list, kKeyEnter));
    for (const auto& [code, row] : std::vector<std::pair<int32_t, int32_t>>{{kKeyDown, 0},
                                                                            {kKeyDown, 1},
                                                                            {kKeyUp, 0},
                                                                            {kKeyUp, 0},
                                                                            {kKeyPageDown, 4},
                                                                            {kKeyEnd, 11},
                                                                            {kKeyDown, 11},
                                                                            {kKeyPageUp, 7},
                                                                            {kKeyHome, 0},
                                                                            {kKeyPageUp, 0},
                                                                            {kKeyEnd, 11}}) {
        EXPECT_TRUE(key(list, code));
        EXPECT_EQ(list.selectedParagraph(), row) << code;
        // It is seen whole.
        flush();
        EXPECT_GE(list.rowRect(row).y, 20) << code;
        EXPECT_LE(list.rowRect(row).bottom(), 120) << code;
    }
    heard();
    EXPECT_TRUE(key(list, kKeyEnter));
    EXPECT_EQ(heard(), "paragraph-chosen 11 r11");
    EXPECT_FALSE(key(list, kKeyLeft));
    EXPECT_FALSE(key(list, kKeyEscape));
    set(list, "selected-paragraph", "-1");
    EXPECT_TRUE(key(list, kKeyUp));
    EXPECT_EQ(list.selectedParagraph(), 11);
    set(list, "title", "");
    EXPECT_FALSE(key(list, kKeyDown));
}

TEST_F(TextList, TheSelectedRowIsSeenWhenAListIsFirstDrawnAndStaysWhereItIsScrolledTo) {
    CTextView& list = openList(20, {{"is-scrollable", "true"}, {"height", "100"}, {"selected-paragraph", "12"}});
    EXPECT_EQ(list.rowRect(12).bottom(), 120.0);
    // Later on it may be scrolled out.
    set(list, "offset-y", "0");
    set(list, "inner-border", "3");
    tick();
    EXPECT_EQ(offset(list), 0.0);
}

TEST_F(TextList, TheFirstAndTheLastRowAreShownWithTheBorderBesideThem) {
    CTextView& list = openList(20, {{"is-scrollable", "true"}, {"height", "100"}, {"inner-border", "7"}});
    list.selectParagraph(19);
    flush();
    EXPECT_NEAR(list.rowRect(19).bottom(), 120 - 7, 1);
    list.selectParagraph(5);
    flush();
    EXPECT_NEAR(list.rowRect(5).y, 20, 1);
    list.selectParagraph(0);
    flush();
    EXPECT_EQ(offset(list), 0.0);
    EXPECT_EQ(list.rowRect(0).y, 27.0);
}

TEST_F(TextList, TheRatioIsTheVisiblePartOfTheText) {
    CTextView& list = openList(10, {{"is-scrollable", "true"}, {"height", "50"}});
    EXPECT_FLOAT_EQ(list.area().value(CViewCell::RatioY), 50.0f / (10 * kRow));
    EXPECT_FLOAT_EQ(list.area().value(CViewCell::RatioX), 1.0f);
    set(list, "height", "400");
    flush();
    EXPECT_FLOAT_EQ(list.area().value(CViewCell::RatioY), 1.0f);
    set(list, "height", "50");
    set(list, "inner-border", "5");
    flush();
    EXPECT_FLOAT_EQ(list.area().value(CViewCell::RatioY), 50.0f / (10 * kRow + 10));
    // Without wrapping, the width has one too.
    set(list, "is-text-wrapped", "false");
    set(list, "width", "12");
    flush();
    EXPECT_FLOAT_EQ(list.area().value(CViewCell::RatioX), 12.0f / static_cast<float>(face.advance("r1") + 10));
}

TEST_F(TextList, TheRoomOfScrollBarsIsNeitherTextNorRow) {
    CTextView& list = openList(10, {{"is-scrollable", "true"}, {"height", "70"}, {"selected-paragraph", "0"}});
    set(list, "scroller-width", "12");
    set(list, "scroller-height", "10");
    tick();
    EXPECT_FLOAT_EQ(list.area().value(CViewCell::RatioY), 60.0f / (10 * kRow));
    expectBackground();
    const CIntRect clip{10, 20, 98, 80};
    expectRect(10, 20, 88, kRow, kSelection);
    for (int32_t i = 0; i < 3; ++i) {
        expectText(face, "r" + std::to_string(i), 10, 20 + i * kRow + 3, i == 0 ? kSelectionText : kText, clip);
    }
    EXPECT_EQ(wrongPixels(), 0);
    EXPECT_EQ(list.paragraphAt(97, 79), 2);
    EXPECT_EQ(list.paragraphAt(98, 79), -1);
    EXPECT_EQ(list.paragraphAt(97, 80), -1);
}

TEST_F(TextList, TheOffsetMovesTheRowsAndIsHeldInItsRange) {
    CTextView& list = openList(10, {{"is-scrollable", "true"}, {"height", "50"}, {"selected-paragraph", "3"}});
    set(list, "offset-y", "0.25");
    tick();
    // A quarter of 200 pixels: row 2 is cut at the top.
    EXPECT_EQ(list.rowRect(2).y, 20 - 50 + 2 * kRow);
    expectBackground();
    const CIntRect clip{10, 20, 110, 70};
    expectRect(10, 30, 100, kRow, kSelection);
    for (int32_t i = 2; i < 5; ++i) {
        expectText(face, "r" + std::to_string(i), 10, 20 - 50 + i * kRow + 3, i == 3 ? kSelectionText : kText, clip);
    }
    EXPECT_EQ(wrongPixels(), 0);
    EXPECT_EQ(list.paragraphAt(15, 21), 2);
    set(list, "offset-y", "5");
    flush();
    EXPECT_FLOAT_EQ(static_cast<float>(offset(list)), 0.75f);
}

TEST_F(TextList, TheWheelScrollsThreeRowsANotch) {
    CTextView& list = openList(40, {{"is-scrollable", "true"}, {"height", "100"}});
    EXPECT_TRUE(wheel(list, -1));
    EXPECT_NEAR(offset(list) * 40 * kRow, 3 * kRow, 1e-3);
    EXPECT_EQ(list.hoveredParagraph(), 3);
    EXPECT_TRUE(wheel(list, 0.5));
    EXPECT_NEAR(offset(list) * 40 * kRow, 1.5 * kRow, 1e-3);
    EXPECT_TRUE(wheel(list, 100));
    EXPECT_EQ(offset(list), 0.0);
    // What fits leaves the wheel to its parent.
    CTextView& small = openList(3, {{"is-scrollable", "true"}, {"height", "100"}});
    EXPECT_FALSE(wheel(small, -1));
    EXPECT_FALSE(wheel(openList(40), -1));
}

TEST_F(TextList, MovesKeysAndWheelAllocateNothing) {
    CTextView& list =
        openList(40, {{"is-scrollable", "true"}, {"height", "100"}, {"is-drop-down-behavior-disabled", "false"}});
    tree_->findObject("ui.log")->releaseListeners();
    CAttributeMap row0 = onRow(0);
    CAttributeMap row2 = onRow(2);
    CAttributeMap down;
    down["keycode"] = CAttributeValue::fromInt(kKeyDown);
    down["is-handled"] = CAttributeValue::fromBool(false);
    CAttributeMap turn = onRow(1);
    turn["is-handled"] = CAttributeValue::fromBool(false);
    for (int32_t i = 0; i < 20; ++i) {
        turn["delta"] = CAttributeValue::fromReal(i % 2 ? 1.0 : -1.0);
        turn["is-handled"] = down["is-handled"] = CAttributeValue::fromBool(false);
        const uint64_t before = CHeap::counters().allocations;
        CError* error = list.mouseMove(i % 2 ? row0 : row2);
        error = error ? error : list.keyPress(down);
        error = error ? error : list.mouseWheel(turn);
        const int64_t drawn = tick(0.025);
        const uint64_t made = CHeap::counters().allocations - before;
        EXPECT_EQ(failure(error), "");
        EXPECT_GT(drawn, 0);
        // The first round makes what is kept.
        EXPECT_EQ(i > 0 ? made : 0, 0u) << i;
    }
}

/// Passes the input of a window to its views, as a window of the system does.
struct CListInput final : CInputWindow {
    explicit CListInput(CFakeWindow& window, CView& root) : router(window, *this) { router.setRootView(&root); }
    void capturePointer(bool) override {}
    void wantKeys(bool) override {}
    void inputFailed(CError* error) override { ADD_FAILURE() << consumed(error); }
    void pointer(CPointerKind kind, int32_t x, int32_t y, bool isDouble = false) {
        CPointerEvent event;
        event.kind = kind;
        event.button = kind == CPointerKind::Move ? CPointerButton::None : CPointerButton::Left;
        event.x = x;
        event.y = y;
        event.isDouble = isDouble;
        router.pointer(event);
    }
    bool key(int32_t code) {
        CKeyEvent event;
        event.code = code;
        event.isDown = true;
        return router.key(event);
    }
    CInputRouter router;
};

TEST_F(TextList, TheInputOfAWindowReachesTheRows) {
    CTextView& list = openList(6, {{"is-focusable", "true"}, {"is-scrollable", "true"}, {"height", "60"}});
    CListInput input(window_, *rootView_);
    window_.listener = &input.router;
    input.pointer(CPointerKind::Move, 50, 45);
    EXPECT_EQ(list.hoveredParagraph(), 1);
    input.pointer(CPointerKind::Press, 50, 45);
    input.pointer(CPointerKind::Release, 50, 45);
    EXPECT_EQ(heard(), "selected-paragraph-changed 1 r1");
    // The press has brought the key focus.
    EXPECT_TRUE(input.key(kKeyDown));
    EXPECT_TRUE(input.key(kKeyEnter));
    EXPECT_FALSE(input.key(kKeySpace));
    EXPECT_EQ(heard(), "selected-paragraph-changed 2 r2, paragraph-chosen 2 r2");
    input.pointer(CPointerKind::Press, 50, 25, true);
    EXPECT_EQ(heard(), "selected-paragraph-changed 0 r0, paragraph-dbl-clicked 0 r0, paragraph-chosen 0 r0");
    input.pointer(CPointerKind::Release, 50, 25);
    CWheelEvent turn;
    turn.x = 50;
    turn.y = 25;
    turn.delta = -1.0;
    EXPECT_TRUE(input.router.wheel(turn));
    EXPECT_EQ(list.hoveredParagraph(), 3);
    input.pointer(CPointerKind::Move, 250, 45);
    EXPECT_EQ(list.hoveredParagraph(), -1);
    // Disabled, it takes nothing, and loses the focus.
    set(list, "is-disabled", "true");
    input.pointer(CPointerKind::Move, 50, 45);
    EXPECT_EQ(list.hoveredParagraph(), -1);
    EXPECT_FALSE(input.key(kKeyDown));
    close();
    window_.listener = nullptr;
}

TEST_F(TextList, AHandlerMayDestroyTheList) {
    // Each operation, where a command of the event `selected-paragraph-changed` makes the tree release the list.
    for (int32_t i = 0; i < 4; ++i) {
        CTextView& list = openList(
            3, {{"is-drop-down-behavior-disabled", i == 0 ? "false" : "true"}, {"is-right-click-selects", "true"}});
        CRowDestroyer::victim = &list;
        CRowDestroyer::arm(*tree_, "ui.w.a");
        CAttributeMap params = onRow(1);
        params["keycode"] = CAttributeValue::fromInt(kKeyDown);
        CError* error = i == 0   ? list.mouseMove(params)
                        : i == 1 ? list.mousePress(params)
                        : i == 2 ? list.mousePressR(params)
                                 : list.keyPress(params);
        EXPECT_EQ(consumed(error), "");
        EXPECT_EQ(CRowDestroyer::victim, nullptr) << i;
        tick();
    }
}

}  // namespace
}  // namespace tarv
