#include "UI/Text/CTextEditKeys.h"

#include <gtest/gtest.h>

#include <string>

#include "Platform/ByHand/CWindowSystemByHand.h"
#include "Platform/Keyboard.h"

namespace tarv {
namespace {

using R = CTextKeyResult;

struct CTextEditKeysTest : testing::Test {
    R press(int32_t code, const char* held = "", const CString& characters = {}) {
        CInputModifiers modifiers;
        for (const char* key = held; *key; ++key) {
            modifiers.isShift = modifiers.isShift || *key == 's';
            modifiers.isCtrl = modifiers.isCtrl || *key == 'c';
            modifiers.isAlt = modifiers.isAlt || *key == 'a';
        }
        return CTextEditKeys::press(edit, code, modifiers, characters);
    }
    void begin(const char* text, int32_t cursor) {
        edit.setText(text);
        edit.moveTo(cursor, false);
    }
    std::string text() const { return edit.text().toUtf8(); }
    std::string selected() const { return edit.selectedText().toUtf8(); }
    std::u16string clipboard() {
        std::u16string found;
        return system.clipboardText(found) ? found : u"-";
    }

    CWindowSystemByHand system;
    CTextEdit edit;
};

TEST_F(CTextEditKeysTest, WhatAKeyTypesEntersTheText) {
    begin("", 0);
    EXPECT_EQ(press('A', "", "a"), R::Changed);
    EXPECT_EQ(press('A', "s", "A"), R::Changed);
    EXPECT_EQ(press('Q', "ca", "@"), R::Changed) << "AltGr";
    EXPECT_EQ(press(0, "", u"\u00e9"), R::Changed) << "a dead key and a letter";
    EXPECT_EQ(press(kKeySpace, "", " "), R::Changed);
    EXPECT_EQ(text(), "aA@\u00e9 ");
    EXPECT_EQ(press(0, "", u"\U0001F600"), R::Taken);
    CTextEditRules rules;
    rules.acceptChars = "0123456789.";
    edit.setRules(rules);
    EXPECT_EQ(press('X', "", "x"), R::Taken) << "what the field lets out is no key of the host's";
    EXPECT_EQ(text(), "aA@\u00e9 ");
}

TEST_F(CTextEditKeysTest, KeysWithoutAMeaningAreTheHosts) {
    begin("abc", 1);
    EXPECT_EQ(press('S', "c"), R::NotTaken);
    EXPECT_EQ(press('F', "a", "f"), R::NotTaken);
    EXPECT_EQ(press(kKeyTab, "a"), R::NotTaken);
    EXPECT_EQ(press(112), R::NotTaken);
    EXPECT_EQ(press(kKeyShift, "s"), R::NotTaken);
    EXPECT_EQ(text(), "abc");
}

TEST_F(CTextEditKeysTest, KeysThatMove) {
    begin("one two\nthree", 10);
    EXPECT_EQ(press(kKeyLeft), R::Moved);
    EXPECT_EQ(edit.cursor(), 9);
    EXPECT_EQ(press(kKeyHome), R::Moved);
    EXPECT_EQ(edit.cursor(), 8);
    EXPECT_EQ(press(kKeyEnd, "s"), R::Moved);
    EXPECT_EQ(selected(), "three");
    EXPECT_EQ(press(kKeyHome, "cs"), R::Moved);
    EXPECT_EQ(selected(), "one two\n");
    EXPECT_EQ(press(kKeyRight, "c"), R::Moved);
    EXPECT_EQ(edit.cursor(), 4);
    EXPECT_EQ(press(kKeyEnd, "c"), R::Moved);
    EXPECT_EQ(edit.cursor(), edit.length());
    EXPECT_EQ(press(kKeyLeft, "cs"), R::Moved);
    EXPECT_EQ(selected(), "three");
    EXPECT_EQ(press('A', "c", u"\x01"), R::Moved);
    EXPECT_EQ(selected(), "one two\nthree");
    EXPECT_EQ(press(kKeyUp), R::Taken);
    EXPECT_EQ(press(kKeyPageDown), R::Taken);
}

TEST_F(CTextEditKeysTest, KeysThatErase) {
    begin("one two three", 7);
    EXPECT_EQ(press(kKeyBackspace, "", "\b"), R::Changed);
    EXPECT_EQ(press(kKeyBackspace, "c", u"\x7f"), R::Changed);
    EXPECT_EQ(text(), "one  three");
    EXPECT_EQ(press(kKeyDelete), R::Changed);
    EXPECT_EQ(press(kKeyDelete, "c"), R::Changed);
    EXPECT_EQ(text(), "one ");
    EXPECT_EQ(press(kKeyDelete), R::Taken);
    EXPECT_EQ(press('Z', "c", u"\x1a"), R::Changed);
    EXPECT_EQ(press('Z', "c"), R::Changed);
    EXPECT_EQ(text(), "one  three");
    EXPECT_EQ(press('Y', "c"), R::Changed);
    EXPECT_EQ(press('Z', "cs"), R::Changed);
    EXPECT_EQ(text(), "one ");
    EXPECT_EQ(press('Y', "c"), R::Taken);
}

TEST_F(CTextEditKeysTest, CutCopyAndPaste) {
    begin("one two", 0);
    EXPECT_EQ(press('C', "c"), R::Taken);
    EXPECT_EQ(clipboard(), u"-") << "nothing is selected";
    EXPECT_EQ(press('V', "c"), R::Taken);
    press(kKeyRight, "cs");
    EXPECT_EQ(press('C', "c"), R::Taken);
    EXPECT_EQ(clipboard(), u"one ");
    EXPECT_EQ(press(kKeyEnd), R::Moved);
    EXPECT_EQ(press('V', "c", u"\x16"), R::Changed);
    EXPECT_EQ(text(), "one twoone ");
    press('A', "c");
    EXPECT_EQ(press(kKeyDelete, "s"), R::Changed);
    EXPECT_EQ(text(), "");
    EXPECT_EQ(press(kKeyInsert, "s"), R::Changed);
    EXPECT_EQ(text(), "one twoone ");
    press(kKeyLeft, "s");
    EXPECT_EQ(press(kKeyInsert, "c"), R::Taken);
    EXPECT_EQ(clipboard(), u" ");
    EXPECT_EQ(press('X', "c"), R::Changed);
    EXPECT_EQ(text(), "one twoone");
}

TEST_F(CTextEditKeysTest, WhatOneFieldCopiesAnotherFieldTakesByItsRules) {
    ASSERT_TRUE(system.setClipboardText(u"a\n\U0001F6001,5\u0001"));
    begin("", 0);
    EXPECT_EQ(press('V', "c"), R::Changed);
    EXPECT_EQ(text(), "a");
    CTextEditRules rules;
    rules.acceptChars = "0123456789.,";
    edit.setRules(rules);
    begin("", 0);
    EXPECT_EQ(press('V', "c"), R::Changed);
    EXPECT_EQ(text(), "1.5");
}

TEST_F(CTextEditKeysTest, ABusyClipboardIsTriedThreeTimesAndThenNothingHappens) {
    ASSERT_TRUE(system.setClipboardText(u"new"));
    begin("old", 0);
    press('A', "c");
    system.keepClipboard(2);
    EXPECT_EQ(press('V', "c"), R::Changed);
    EXPECT_EQ(text(), "new");
    press('A', "c");
    for (const int32_t key : {'V', 'X', 'C'}) {
        system.keepClipboard(3);
        EXPECT_EQ(press(key, "c"), R::Taken);
        EXPECT_EQ(text(), "new");
        EXPECT_EQ(selected(), "new");
    }
    system.keepClipboard(0);
    EXPECT_EQ(clipboard(), u"new");
    system.emptyClipboard();
    EXPECT_EQ(press('V', "c"), R::Taken);
}

TEST_F(CTextEditKeysTest, EnterAndTabReachTheTextOnlyWhereTheFieldTakesThem) {
    begin("a", 1);
    EXPECT_EQ(press(kKeyEnter, "", "\r"), R::Enter);
    EXPECT_EQ(press(kKeyTab, "", "\t"), R::Tab);
    EXPECT_EQ(press(kKeyTab, "s", "\t"), R::TabBack);
    EXPECT_EQ(press(kKeyEscape, "", u"\x1b"), R::Escape);
    CTextEditRules rules;
    rules.isAcceptEnter = true;
    rules.isAcceptTab = true;
    edit.setRules(rules);
    EXPECT_EQ(press(kKeyEnter, "", "\r"), R::Changed);
    EXPECT_EQ(press(kKeyTab, "", "\t"), R::Changed);
    EXPECT_EQ(text(), "a\n\t");
    EXPECT_EQ(press(kKeyEnter, "c"), R::Enter);
    EXPECT_EQ(press(kKeyTab, "s"), R::TabBack);
}

}  // namespace
}  // namespace tarv
