#include <gtest/gtest.h>

#include <string>

#include "Platform/Win32/CKeyCharacters.h"

namespace tarv {
namespace {

constexpr wchar_t kAcute = L'\u00b4';
constexpr UINT kDeadKey = VK_OEM_5;

// As the system's: one dead key waits for all windows of a thread. Whoever asks changes it.
bool isDeadKeyWaiting = false;

int WINAPI layout(UINT key, UINT, const BYTE* state, LPWSTR units, int, UINT) {
    const bool wasWaiting = isDeadKeyWaiting;
    isDeadKeyWaiting = false;
    if (key == kDeadKey) {
        units[0] = kAcute;
        units[1] = kAcute;
        isDeadKeyWaiting = !wasWaiting;
        return wasWaiting ? 2 : -1;
    }
    wchar_t unit = static_cast<wchar_t>(state[VK_SHIFT] & 0x80 ? key : key + 32);
    if (key == VK_SPACE) {
        unit = wasWaiting ? kAcute : L' ';
    } else if (state[VK_CONTROL] & 0x80) {
        unit = static_cast<wchar_t>(key - 64);
    } else if (wasWaiting && key == 'E') {
        unit = L'\u00e9';
    } else if (wasWaiting) {
        units[0] = kAcute;
        units[1] = unit;
        return 2;
    }
    units[0] = unit;
    return 1;
}

class KeyCharacters : public testing::Test {
protected:
    std::u16string type(UINT key) {
        char16_t units[4] = {};
        const int32_t count = characters.translate(key, 0, state, units);
        EXPECT_EQ(isDeadKeyWaiting, false) << "the layout is left as it was";
        return {units, static_cast<size_t>(count)};
    }
    BYTE state[256] = {};
    CKeyCharacters characters{&layout};
};

TEST_F(KeyCharacters, ADeadKeyComposesWithTheNextKey) {
    EXPECT_FALSE(characters.isWaiting(kDeadKey));
    EXPECT_EQ(type(kDeadKey), u"");
    EXPECT_TRUE(characters.isWaiting(kDeadKey));
    EXPECT_FALSE(characters.isWaiting('E'));
    EXPECT_EQ(type('E'), u"\u00e9");
    EXPECT_FALSE(characters.isWaiting(kDeadKey));
    EXPECT_EQ(type('E'), u"e");
}

TEST_F(KeyCharacters, ADeadKeyThatDoesNotComposeIsTypedBeforeTheNext) {
    EXPECT_EQ(type(kDeadKey), u"");
    EXPECT_EQ(type('X'), u"\u00b4x");
    EXPECT_EQ(type(kDeadKey), u"");
    EXPECT_EQ(type(VK_SPACE), u"\u00b4");
    EXPECT_EQ(type(kDeadKey), u"");
    EXPECT_EQ(type(kDeadKey), u"\u00b4\u00b4");
    EXPECT_EQ(type('E'), u"e");
}

TEST_F(KeyCharacters, ShiftOnTheWayToTheNextKeyKeepsTheDeadKey) {
    EXPECT_EQ(type(kDeadKey), u"");
    EXPECT_EQ(type(VK_SHIFT), u"");
    EXPECT_EQ(type(VK_LSHIFT), u"");
    EXPECT_EQ(type('E'), u"\u00e9");
}

TEST_F(KeyCharacters, AResetForgetsTheDeadKey) {
    EXPECT_EQ(type(kDeadKey), u"");
    characters.reset();
    EXPECT_EQ(type('E'), u"e");
}

TEST_F(KeyCharacters, ControlCharactersAndTheMenusKeyAreNoText) {
    state[VK_CONTROL] = 0x80;
    EXPECT_EQ(type('C'), u"");
    state[VK_CONTROL] = 0;
    state[VK_MENU] = 0x80;
    EXPECT_EQ(type('F'), u"");
}

}  // namespace
}  // namespace tarv
