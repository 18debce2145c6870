// Lists: paragraphs as rows, by pointer and keys.

#include "Tests/UI/Text/ListTree.h"
#include "UI/Views/CInputRouter.h"

namespace tarv {
namespace {

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

TEST_F(TextList, AllOfTheSelectedRowHasTheColourOfItsText) {
    const std::string marked = "[C1]r[/C1][IMG=is.button#BoxActive:Action]";
    openTexts({label("a", {{"title", marked + "\n" + marked},
                           {"text-color1", "Knob_Active"},
                           {"placement", "overlay"},
                           {"outer-border", "*L10 *T20"},
                           {"width", "100"},
                           {"paragraph-spacing", "6"},
                           {"is-list", "true"},
                           {"selected-paragraph", "1"}})});
    tick();
    expectBackground();
    expectRect(10, 20 + kRow, 100, kRow, kSelection);
    expectText(face, "r", 10, 23, kKnobActive);
    expectRect(10 + face.advance("r"), 27, 6, 6, kAction);
    expectText(face, "r", 10, 23 + kRow, kSelectionText);
    expectRect(10 + face.advance("r"), 27 + kRow, 6, 6, kSelectionText);
    EXPECT_EQ(wrongPixels(), 0);
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
