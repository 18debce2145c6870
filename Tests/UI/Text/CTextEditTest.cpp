#include "UI/Text/CTextEdit.h"

#include <gtest/gtest.h>

namespace tarv {
namespace {

/// The text with "|" at the cursor and "[" or "]" at the anchor, where it is elsewhere.
std::string shown(const CTextEdit& edit) {
    std::string text;
    for (int32_t i = 0; i <= edit.length(); ++i) {
        if (i == edit.anchor() && edit.hasSelection()) {
            text += edit.anchor() < edit.cursor() ? "[" : "]";
        }
        text += i == edit.cursor() ? "|" : "";
        text += i < edit.length() ? edit.text().substring(i, 1).toUtf8() : "";
    }
    return text;
}

/// A field with the cursor at "|".
CTextEdit edited(const std::string& text, const CTextEditRules& rules = {}) {
    CTextEdit edit;
    const size_t cursor = text.find('|');
    edit.setRules(rules);
    std::string plain = text;
    plain.erase(cursor, 1);
    edit.setText(plain.c_str());
    edit.moveTo(static_cast<int32_t>(cursor), false);
    return edit;
}

CTextEditRules accepting(const char* characters) {
    CTextEditRules rules;
    rules.acceptChars = characters;
    return rules;
}

TEST(CTextEdit, AnEditBeginsWithAllSelected) {
    CTextEdit edit;
    edit.setText("-12.0");
    EXPECT_EQ(shown(edit), "[-12.0|");
    EXPECT_TRUE(edit.type("3"));
    EXPECT_EQ(shown(edit), "3|");
    edit.setText("");
    EXPECT_EQ(shown(edit), "|");
    EXPECT_FALSE(edit.eraseBack(false));
    EXPECT_FALSE(edit.eraseForward(true));
    EXPECT_FALSE(edit.undo());
}

TEST(CTextEdit, PositionsAreHeldInTheText) {
    CTextEdit edit = edited("ab|c");
    edit.moveTo(99, false);
    EXPECT_EQ(shown(edit), "abc|");
    edit.moveTo(-1, true);
    EXPECT_EQ(shown(edit), "|abc]");
    edit.moveBack(false, true);
    EXPECT_EQ(shown(edit), "|abc]");
}

TEST(CTextEdit, AStepWithoutShiftEndsASelectionAtItsSide) {
    CTextEdit edit = edited("a|bcd");
    edit.moveForward(false, true);
    edit.moveForward(false, true);
    EXPECT_EQ(shown(edit), "a[bc|d");
    CTextEdit back = edit;
    back.moveBack(false, false);
    EXPECT_EQ(shown(back), "a|bcd");
    edit.moveForward(false, false);
    EXPECT_EQ(shown(edit), "abc|d");
}

TEST(CTextEdit, WordSteps) {
    struct {
        const char* from;
        const char* back;
        const char* forward;
    } const kRows[] = {
        {"|one two", "|one two", "one |two"},
        {"on|e two", "|one two", "one |two"},
        {"one |two", "|one two", "one two|"},
        {"one two|", "one |two", "one two|"},
        {"-12|.5 dB", "-|12.5 dB", "-12.|5 dB"},
        {"a  |  b", "|a    b", "a    |b"},
        {"a\n|b", "a|\nb", "a\nb|"},
        {"a|\nb", "|a\nb", "a\n|b"},
        {"  |a", "|  a", "  a|"},
        {"|", "|", "|"},
        {"a\n |b", "a\n| b", "a\n b|"},
    };
    for (const auto& row : kRows) {
        CTextEdit edit = edited(row.from);
        edit.moveBack(true, false);
        EXPECT_EQ(shown(edit), row.back) << row.from;
        edit = edited(row.from);
        edit.moveForward(true, false);
        EXPECT_EQ(shown(edit), row.forward) << row.from;
    }
}

TEST(CTextEdit, AWordIsSelectedWhereItIsHit) {
    CTextEdit edit = edited("|one  -12.5\n");
    const std::pair<int32_t, const char*> kRows[] = {
        {0, "[one|  -12.5\n"}, {2, "[one|  -12.5\n"},  {3, "one[  |-12.5\n"}, {5, "one  [-|12.5\n"},
        {7, "one  -[12|.5\n"}, {10, "one  -12.[5|\n"}, {11, "one  -12.5\n|"}, {99, "one  -12.5\n|"}};
    for (const auto& [position, expected] : kRows) {
        edit.selectWord(position);
        EXPECT_EQ(shown(edit), expected) << position;
    }
}

TEST(CTextEdit, DeletingTakesTheSelectionACharacterOrAWord) {
    CTextEdit edit = edited("one tw|o");
    EXPECT_TRUE(edit.eraseBack(false));
    EXPECT_EQ(shown(edit), "one t|o");
    EXPECT_TRUE(edit.eraseForward(false));
    EXPECT_EQ(shown(edit), "one t|");
    EXPECT_TRUE(edit.eraseBack(true));
    EXPECT_EQ(shown(edit), "one |");
    edit.moveTo(0, false);
    EXPECT_TRUE(edit.eraseForward(true));
    EXPECT_EQ(shown(edit), "|");
    edit = edited("a|bc");
    edit.moveTo(3, true);
    EXPECT_TRUE(edit.eraseForward(true));
    EXPECT_EQ(shown(edit), "a|");
    edit.selectAll();
    EXPECT_TRUE(edit.eraseBack(true));
    EXPECT_EQ(shown(edit), "|");
}

TEST(CTextEdit, OnlyTheCharactersOfTheFieldEnter) {
    CTextEdit edit = edited("1|", accepting("0123456789.,Kk"));
    EXPECT_FALSE(edit.type("x"));
    EXPECT_FALSE(edit.type("-"));
    EXPECT_TRUE(edit.paste(" 2 kHz"));
    EXPECT_EQ(shown(edit), "12k|");
    edit.selectAll();
    EXPECT_FALSE(edit.type("x")) << "what may not enter leaves the selection";
    EXPECT_EQ(shown(edit), "[12k|");
}

TEST(CTextEdit, ACommaIsAPointInNumbersAlone) {
    CTextEdit edit = edited("1|", accepting("0123456789.,-"));
    EXPECT_TRUE(edit.rules().isNumber());
    EXPECT_TRUE(edit.type(","));
    EXPECT_TRUE(edit.type("5"));
    EXPECT_EQ(shown(edit), "1.5|");
    edit.selectAll();
    EXPECT_TRUE(
        edit.paste(u"\u2212"
                   u"3,25"));
    EXPECT_EQ(shown(edit), "-3.25|");
    edit = edited("|");
    EXPECT_FALSE(edit.rules().isNumber());
    EXPECT_TRUE(edit.type("a,b"));
    EXPECT_EQ(shown(edit), "a,b|");
    EXPECT_TRUE(accepting("0123456789.Kk").isNumber());
    EXPECT_FALSE(accepting("0123456789,").isNumber());
    EXPECT_FALSE(accepting("0123456789.,abcdefghijklmnopqrstuvwxyz").isNumber());
}

TEST(CTextEdit, CharactersBeyond16BitsAreRefusedWhole) {
    CTextEdit edit = edited("|");
    EXPECT_FALSE(edit.type(u"\U0001F600"));
    EXPECT_TRUE(
        edit.paste(u"a\U0001F600b\xD83D"
                   u"c\xDE00"));
    EXPECT_EQ(shown(edit), "abc|");
}

TEST(CTextEdit, ControlCharactersDoNotEnter) {
    CTextEdit edit = edited("|");
    EXPECT_FALSE(edit.type("\x01"));
    EXPECT_FALSE(edit.type("\x7f"));
    EXPECT_TRUE(
        edit.paste(u"a\x07"
                   u"b\u0085c\uFEFF"));
    EXPECT_EQ(shown(edit), "ab|") << "the line ends at U+0085";
    EXPECT_TRUE(edit.paste("\tx"));
    EXPECT_EQ(shown(edit), "ab x|");
}

TEST(CTextEdit, APasteEndsAtItsFirstLineBreakUnlessTheFieldHasLines) {
    CTextEdit edit = edited("|");
    EXPECT_TRUE(edit.paste("\r\n12.5\r\n13"));
    EXPECT_EQ(shown(edit), "12.5|");
    CTextEditRules rules;
    rules.isAcceptEnter = true;
    rules.isAcceptTab = true;
    edit = edited("|", rules);
    EXPECT_TRUE(edit.paste(u"a\r\nb\rc\nd\u2029\te"));
    EXPECT_EQ(shown(edit), "a\nb\nc\nd\n\te|");
    EXPECT_EQ(edit.paragraphStart(3), 2);
    EXPECT_EQ(edit.paragraphEnd(2), 3);
}

TEST(CTextEdit, EachParagraphHasRoomForItsLengthAlone) {
    CTextEditRules rules;
    rules.maxLength = 4;
    CTextEdit edit = edited("ab|cd", rules);
    EXPECT_FALSE(edit.type("x"));
    edit.moveTo(3, true);
    EXPECT_TRUE(edit.paste("123"));
    EXPECT_EQ(shown(edit), "ab1|d");
    rules.isAcceptEnter = true;
    edit = edited("a|bc", rules);
    EXPECT_TRUE(edit.paste("123456\n123456"));
    EXPECT_EQ(shown(edit), "a123\n12|bc");
    edit = edited("abcde|f", rules);  // longer than allowed from the beginning
    EXPECT_FALSE(edit.type("x"));
    EXPECT_TRUE(edit.eraseBack(false));
    EXPECT_FALSE(edit.type("x"));
    edit.moveTo(0, true);
    EXPECT_TRUE(edit.type("x"));
    EXPECT_EQ(shown(edit), "x|f");
}

TEST(CTextEdit, ConsecutiveTypingIsTakenBackAtOnce) {
    CTextEdit edit = edited("x|");
    edit.selectAll();
    for (const char* key : {"a", "b", "c"}) {
        EXPECT_TRUE(edit.type(key));
    }
    EXPECT_TRUE(edit.eraseBack(false));
    EXPECT_TRUE(edit.eraseBack(false));
    edit.moveTo(0, false);
    EXPECT_TRUE(edit.type("z"));
    EXPECT_EQ(shown(edit), "z|a");
    EXPECT_TRUE(edit.undo());
    EXPECT_EQ(shown(edit), "|a");
    EXPECT_TRUE(edit.undo());
    EXPECT_EQ(shown(edit), "abc|");
    EXPECT_TRUE(edit.undo());
    EXPECT_EQ(shown(edit), "[x|");
    EXPECT_FALSE(edit.undo());
    EXPECT_TRUE(edit.redo());
    EXPECT_TRUE(edit.redo());
    EXPECT_EQ(shown(edit), "a|");
    EXPECT_TRUE(edit.type("q"));  // what was taken back is forgotten
    EXPECT_FALSE(edit.redo());
    EXPECT_EQ(shown(edit), "aq|");
    edit.setText("n");
    EXPECT_FALSE(edit.undo());
}

TEST(CTextEdit, TheOldestStepsAreForgotten) {
    CTextEdit edit = edited("|");
    for (int32_t i = 0; i < CTextEdit::kMaxSteps + 5; ++i) {
        EXPECT_TRUE(edit.paste("x"));
    }
    int32_t count = 0;
    while (edit.undo()) {
        ++count;
    }
    EXPECT_EQ(count, CTextEdit::kMaxSteps);
    EXPECT_EQ(edit.length(), 5);
}

}  // namespace
}  // namespace tarv
