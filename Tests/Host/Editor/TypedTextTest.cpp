// Texts that are typed into the editor while the host's window has the focus, and popups, in windows of the system.

#include "Tests/Host/Editor/EditorTexts.h"

namespace tarv::host {
namespace {

TEST_F(EditorTexts, TypedTextGoesIntoTheFieldAndNotToTheHost) {
    ASSERT_NE(row(kFirst), typed);
    edit(kFirst);
    desk.type(kText);
    desk.strike(kEnter);
    EXPECT_TRUE(turnsInto(typed, kFirst)) << "what was selected is replaced, and Shift makes capitals";
    EXPECT_EQ(desk.heard(parent), "");
    EXPECT_TRUE(desk.until([&] { return desk.hasFocus(parent); }));
    desk.strikeSpace();
    EXPECT_TRUE(desk.until([&] { return desk.heard(parent) == "space"; })) << "the host has its keys again";
    EXPECT_EQ(desk.heard(parent), "");
    EXPECT_EQ(row(kFirst), typed);
}

TEST_F(EditorTexts, TypedTextGoesIntoTheFieldWhileTheHostsWindowHasTheFocus) {
    openInHostOf(kFocusKeeper);
    edit(kFirst);
    EXPECT_EQ(desk.hasFocus(parent), CHostDesk::kHasKeyHook);
    ASSERT_TRUE(hasWindows(opened + 1)) << "the keyboard on the screen";
    EXPECT_EQ(desk.hasFocus(parent), CHostDesk::kHasKeyHook);
    desk.type(kText);
    EXPECT_EQ(desk.heard(parent), "");
    desk.strike(kEnter);
    EXPECT_TRUE(turnsInto(typed, kFirst));
    EXPECT_EQ(desk.heard(parent), "");
    EXPECT_TRUE(hasWindows(opened)) << "the keyboard goes with the edit";
    EXPECT_TRUE(desk.hasFocus(parent));
    desk.strikeSpace();
    EXPECT_TRUE(desk.until([&] { return desk.heard(parent) == "space"; }));
    EXPECT_EQ(desk.heard(parent), "");
}

TEST_F(EditorTexts, EscapeDropsWhatWasTyped) {
    const auto before = row(kFirst);
    edit(kFirst);
    const auto selected = row(kFirst);
    desk.type("q");
    EXPECT_TRUE(changes(selected, kFirst));
    desk.strike(kEscape);
    EXPECT_TRUE(turnsInto(before, kFirst));
    EXPECT_EQ(desk.heard(parent), "");
}

TEST_F(EditorTexts, APressElsewhereCommitsAndThenActs) {
    const uint32_t rest = pixel(10, kPressY);
    edit(kFirst);
    desk.type(kText);
    desk.moveTo(parent, 10, kPressY);
    desk.press();
    EXPECT_TRUE(turnsInto(typed, kFirst));
    EXPECT_TRUE(turnsFrom(rest, kPressY)) << "it is held";
    desk.release();
    EXPECT_TRUE(turnsTo(rest, kPressY));
    desk.strikeSpace();
    EXPECT_TRUE(desk.until([&] { return desk.heard(parent) == "space"; }));
}

TEST_F(EditorTexts, CopiedTextIsPastedIntoAnotherField) {
    edit(kFirst);
    desk.type(kText);
    desk.strike(kEnter);
    ASSERT_TRUE(turnsInto(typed, kFirst));
    edit(kFirst);
    desk.strike('c', CHeldKey::Ctrl);
    desk.strike(kEscape);
    ASSERT_TRUE(turnsInto(typed, kFirst));
    edit(kSecond);
    desk.strike('v', CHeldKey::Ctrl);
    desk.strike(kEnter);
    EXPECT_TRUE(turnsInto(typed, kSecond));
    EXPECT_EQ(desk.heard(parent), "");
}

TEST_F(EditorTexts, APressOnARowOfAPopupListChoosesItAndTheWindowGoes) {
    const auto isSelected = [&](int index) {
        return pixel(kLeft + 190, kRows + index * kRowHeight) != pixel(kLeft + 1, kRows);
    };
    EXPECT_FALSE(isSelected(0) || isSelected(1) || isSelected(2));
    click(kLeft + 10, kOpener + 12);
    ASSERT_TRUE(hasWindows(opened + 1));
    // Its rows stand over those of the list.
    click(kLeft + 10, kRows + kRowHeight);
    EXPECT_TRUE(hasWindows(opened));
    EXPECT_TRUE(desk.until([&] { return isSelected(1); })) << "the list shows what was chosen";
    EXPECT_FALSE(isSelected(0) || isSelected(2));
    desk.strikeSpace();
    EXPECT_TRUE(desk.until([&] { return desk.heard(parent) == "space"; }));
}

TEST_F(EditorTexts, ClosingTheEditorLeavesNoPopupBehind) {
    click(kLeft + 10, kOpener + 12);
    ASSERT_TRUE(hasWindows(opened + 1));
    close();
    EXPECT_TRUE(hasWindows(closed));
    ASSERT_TRUE(open());
    edit(kFirst);
    ASSERT_TRUE(hasWindows(opened + 1)) << "the keyboard on the screen";
    close();
    EXPECT_TRUE(hasWindows(closed));
    desk.strikeSpace();
    EXPECT_TRUE(desk.until([&] { return desk.heard(parent) == "space"; })) << "nobody holds the keys";
}

}  // namespace
}  // namespace tarv::host
