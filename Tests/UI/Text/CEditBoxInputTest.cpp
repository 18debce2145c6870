// What the user sees of an edit box, and what the pointer and the lines of the text do.

#include "Tests/UI/Text/EditTree.h"

namespace tarv {
namespace {

struct CEditBoxInputTest : CEditTree {};

TEST_F(CEditBoxInputTest, TheMouseSelects) {
    openFields({field("a", {{"title", "one two"}})});
    clickOn("a");
    tick();
    const CTestFace face;
    const auto at = [&](const char* before) { return 10 + 2 + face.advance(before); };
    moveTo(at("o"), 20);
    system.input().press();
    EXPECT_EQ(box()->edit().cursor(), 1);
    EXPECT_FALSE(box()->edit().hasSelection());
    moveTo(at("one t"), 20);
    EXPECT_EQ(selected(), "ne t");
    moveTo(500, 20);  // beyond the window
    EXPECT_EQ(selected(), "ne two");
    system.input().release();
    moveTo(at("on"), 20);
    EXPECT_EQ(selected(), "ne two");
    system.input().holdKeys(true, false, false);
    click(at("one"), 20);
    EXPECT_EQ(selected(), "ne");
    system.input().holdKeys(false, false, false);
    system.advance(1.0);
    click(at("one t") + 1, 20);
    click(at("one t") + 1, 20);
    EXPECT_EQ(selected(), "two");
    EXPECT_EQ(system.desktop().find(window().handle())->cursor(), CCursorShape::Text);
    moveTo(200, 150);
    EXPECT_EQ(system.desktop().find(window().handle())->cursor(), CCursorShape::Arrow);
    EXPECT_TRUE(isEditing());
}

TEST_F(CEditBoxInputTest, ATextThatIsTooWideScrollsWithTheCursor) {
    openFields({field("a", {{"title", "0123456789 0123456789 0123456789"}})});
    clickOn("a");
    tick();
    const auto isSeen = [&] { return box()->cursorPoint().x >= 12 && box()->cursorPoint().x < 108; };
    EXPECT_TRUE(isSeen());
    tap(kKeyHome);
    EXPECT_EQ(box()->cursorPoint().x, 12);
    for (int32_t i = 0; i < 32; ++i) {
        tap(kKeyRight);
        EXPECT_TRUE(isSeen()) << i;
    }
    EXPECT_EQ(box()->cursorPoint().x, 107);
    tap('A', "c");
    type(u"0");
    EXPECT_EQ(box()->cursorPoint().x, 12 + CTestFace().advance("0"));
}

TEST_F(CEditBoxInputTest, AFieldOfSeveralParagraphs) {
    openFields(
        {field("a", {{"title", "abc\nde"}, {"is-accept-enter", "true"}, {"is-accept-tab", "true"}, {"height", "60"}})});
    clickOn("a");
    tick();
    tap(kKeyEnd, "c");
    EXPECT_TRUE(tap(kKeyEnter, "", u"\r"));
    EXPECT_TRUE(tap(kKeyTab, "", u"\t"));
    type(u"fgh");
    EXPECT_EQ(edited(), "abc\nde\n\tfgh");
    tap(kKeyUp);
    EXPECT_EQ(box()->edit().cursor(), 6);
    tap(kKeyUp);
    EXPECT_EQ(box()->edit().cursor(), 1);
    tap(kKeyUp, "s");
    EXPECT_EQ(selected(), "a");
    tap(kKeyEnd);
    EXPECT_EQ(box()->edit().cursor(), 3);
    tap(kKeyDown);
    tap(kKeyHome);
    EXPECT_EQ(box()->edit().cursor(), 4);
    tap(kKeyDown);
    tap(kKeyDown);
    EXPECT_EQ(box()->edit().cursor(), box()->edit().length());
    EXPECT_TRUE(tap(kKeyEnter, "c"));
    EXPECT_EQ(title("a"), "abc\nde\n\tfgh");
}

TEST_F(CEditBoxInputTest, TheBoxIsNotClippedAndItsPlaceIsThatOfTheData) {
    openFields({{"test:view",
                 "frame",
                 {{"placement", "top"}, {"width", "50"}, {"height", "15"}},
                 {field("a", {{"title", "one"}, {"editbox-inner-border", "7"}})}}});
    EXPECT_EQ(consumed(text("frame.a").openEdit()), "");
    tick();
    EXPECT_EQ(box()->wholeRect().width, 100.0);
    EXPECT_EQ(box()->visibleRect().width, 100.0);
    EXPECT_EQ(box()->visibleRect().height, 20.0);
    EXPECT_EQ(box()->getAttrString("inner-border"), "7");
    tap(kKeyEscape);
    EXPECT_EQ(consumed(text("frame.a").setAttribute("editbox-placement", CString("window-overlay"))), "");
    EXPECT_EQ(consumed(text("frame.a").openEdit()), "");
    EXPECT_EQ(box()->getAttrString("placement"), "window-overlay");
}

TEST_F(CEditBoxInputTest, TheCursorBlinks) {
    openFields({field("a")});
    clickOn("a");
    const auto isLit = [&] {
        const CTextView::CPoint point = box()->cursorPoint();
        return (pixel(point.x, point.y + 2) & 0xffffff) == 0x405060;
    };
    tick();
    EXPECT_TRUE(isLit()) << "from the beginning";
    int32_t lit = 0;
    for (int32_t i = 0; i < 40; ++i) {
        system.advance(0.1);
        lit += isLit() ? 1 : 0;
    }
    EXPECT_NEAR(lit, 20, 1);
    system.advance(0.5);
    tap(kKeyLeft);
    tick();
    EXPECT_TRUE(isLit());
}

TEST_F(CEditBoxInputTest, ADeadKeyIsTheFieldsAsLongAsItTakesTheKeys) {
    constexpr int32_t kAccentKey = 221;
    openFields({field("a")});
    const auto strike = [&](bool isDead) {
        const bool isTaken = system.input().key(kAccentKey, true, {}, isDead);
        EXPECT_EQ(system.input().key(kAccentKey, false), isTaken) << "the release goes where the press went";
        return isTaken;
    };
    clickOn("a");
    EXPECT_FALSE(strike(false)) << "a key that types nothing";
    EXPECT_TRUE(strike(true));
    EXPECT_EQ(edited(), "");
    tap(kKeyEscape);
    EXPECT_FALSE(strike(true));
}

TEST_F(CEditBoxInputTest, ASelectionHasItsColours) {
    openFields({field("a", {{"title", "  "}})});
    clickOn("a");
    tick();
    const CTestFace face;
    EXPECT_EQ(pixel(12 + 1, 20) & 0xffffff, 0x203040u);
    EXPECT_EQ(pixel(12 + face.advance("  ") + 3, 20) & 0xffffff, 0x102030u);
    tap(kKeyHome);
    tap(kKeyRight, "s");
    tick();
    EXPECT_EQ(pixel(12 + 1, 20) & 0xffffff, 0x203040u);
    EXPECT_EQ(pixel(12 + face.advance(" ") + 2, 20) & 0xffffff, 0x102030u);
}

TEST_F(CEditBoxInputTest, RowsOfAListAreEditedInTheirPlace) {
    openFields(
        {field("a", {{"title", "one\ntwo\nthree"}, {"is-list", "true"}, {"height", "90"}, {"is-focusable", "true"}})});
    CTestField& list = text("a");
    EXPECT_FALSE(list.isEditable(-1));
    EXPECT_FALSE(list.isEditable(3));
    const CViewRect row = list.rowRect(1);
    click(30, static_cast<int32_t>(row.y) + 3);
    EXPECT_EQ(list.selectedParagraph(), 1);
    EXPECT_FALSE(box());
    window().setKeyFocusView(&list);
    system.desktop().find(window().handle())->takeFocus();
    EXPECT_TRUE(tap(kKeyF2));
    ASSERT_TRUE(isEditing());
    tick();
    EXPECT_EQ(edited(), "two");
    EXPECT_EQ(box()->wholeRect().y, row.y);
    EXPECT_EQ(box()->wholeRect().height, row.height);
    EXPECT_EQ(box()->wholeRect().width, row.width);
    type(u"x");
    heard();
    tap(kKeyEnter);
    EXPECT_EQ(heard(), "a.accept-x a.edit-ended");
    EXPECT_EQ(window().keyFocusView(), &list);
    CAttributeMap params;
    params["index"] = CAttributeValue::fromInt(0);
    EXPECT_EQ(consumed(deliverEvent(list, "edit-text", params)), "");
    EXPECT_EQ(edited(), "one");
    EXPECT_EQ(box()->paragraph(), 0);
    EXPECT_EQ(consumed(list.setAttribute("title", CString(""))), "");
    tick();
    EXPECT_FALSE(isEditing()) << "its row is gone";
    params["index"] = CAttributeValue::fromInt(7);
    EXPECT_EQ(consumed(deliverEvent(list, "edit-text", params)), "");
    EXPECT_FALSE(isEditing());
}

TEST_F(CEditBoxInputTest, ABoxMayFillTheListInsteadOfTheRow) {
    openFields(
        {field("a", {{"title", "one\ntwo"}, {"is-list", "true"}, {"height", "90"}, {"is-editbox-full", "true"}})});
    EXPECT_EQ(consumed(text("a").openEdit(1)), "");
    tick();
    EXPECT_EQ(edited(), "two");
    EXPECT_EQ(box()->wholeRect().y, text("a").wholeRect().y);
    EXPECT_EQ(box()->wholeRect().height, 90.0);
}

TEST_F(CEditBoxInputTest, AReadoutHasAPlacementOfItsOwn) {
    struct CReadOutLike : CTestField {
        const char* editPlacementAttribute() const override { return "editbox-readout-placement"; }
    };
    classes.push_back({"test:readout", &createObject<CReadOutLike>, &CTestField::initClass});
    CTestNode node =
        field("a", {{"title", "1"}, {"editbox-placement", "overlay"}, {"editbox-readout-placement", "full"}});
    node.tag = "test:readout";
    openFields({node});
    EXPECT_EQ(consumed(text("a").openEdit()), "");
    EXPECT_EQ(box()->getAttrString("placement"), "full");
}

TEST_F(CEditBoxInputTest, ARowThatScrollsTakesTheBoxWithIt) {
    openFields({field(
        "a",
        {{"title", "1\n2\n3\n4\n5\n6\n7\n8\n9"}, {"is-list", "true"}, {"height", "60"}, {"is-scrollable", "true"}})});
    EXPECT_EQ(consumed(text("a").openEdit(1)), "");
    tick();
    const double before = box()->wholeRect().y;
    EXPECT_EQ(before, text("a").rowRect(1).y);
    text("a").scrollToParagraph(2);
    moveTo(50, 55);
    system.input().wheel(-1.0);
    system.advance(0.1);
    EXPECT_LT(text("a").rowRect(1).y, before);
    EXPECT_EQ(box()->wholeRect().y, text("a").rowRect(1).y);
    EXPECT_TRUE(isEditing());
}

TEST_F(CEditBoxInputTest, AReaderForTheBlindFindsNamesRolesAndValues) {
    openFields({field("a", {{"title", "-3.0"}, {"readable-name", "Gain of band 1"}, {"is-focusable", "true"}}),
                field("b", {{"title", "[B]Bank[/B]"}, {"is-read-only", "true"}}),
                field("c", {{"title", "x\ny"}, {"is-list", "true"}, {"hint", "Banks"}, {"selected-paragraph", "1"}})});
    CViewReading reading = CViewReader::read(text("a"));
    EXPECT_EQ(reading.name.toUtf8(), "Gain of band 1");
    EXPECT_EQ(reading.value.toUtf8(), "-3.0");
    EXPECT_EQ(reading.role, CViewRole::Edit);
    reading = CViewReader::read(text("b"));
    EXPECT_EQ(reading.name.toUtf8(), "Bank");
    EXPECT_EQ(reading.value.toUtf8(), "");
    EXPECT_EQ(reading.role, CViewRole::Text);
    reading = CViewReader::read(text("c"));
    EXPECT_EQ(reading.name.toUtf8(), "Banks");
    EXPECT_EQ(reading.value.toUtf8(), "y");
    EXPECT_EQ(reading.role, CViewRole::List);
    clickOn("a");
    type(u"5");
    reading = CViewReader::read(*box());
    EXPECT_EQ(reading.name.toUtf8(), "Gain of band 1");
    EXPECT_EQ(reading.value.toUtf8(), "5");
    EXPECT_EQ(reading.role, CViewRole::Edit);
    EXPECT_TRUE(reading.isFocused);
}

}  // namespace
}  // namespace tarv
