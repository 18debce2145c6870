#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <thread>

#include "Platform/WindowSystem.h"

namespace tarv {
namespace {

/// Another program that keeps the clipboard for a while.
class CBusyClipboard {
public:
    explicit CBusyClipboard(DWORD milliseconds)
        : thread_([this, milliseconds] {
              const HWND window =
                  CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
              EXPECT_TRUE(OpenClipboard(window));
              isHeld_ = true;
              for (DWORD start = GetTickCount(); !isOver_ && GetTickCount() - start < milliseconds;) {
                  Sleep(1);
              }
              CloseClipboard();
              DestroyWindow(window);
          }) {
        while (!isHeld_) {
            Sleep(1);
        }
    }
    ~CBusyClipboard() {
        isOver_ = true;
        thread_.join();
    }
    CBusyClipboard(const CBusyClipboard&) = delete;
    CBusyClipboard& operator=(const CBusyClipboard&) = delete;

private:
    std::atomic<bool> isHeld_{false};
    std::atomic<bool> isOver_{false};
    std::thread thread_;
};

std::u16string read() {
    std::u16string text;
    EXPECT_TRUE(windowSystem()->clipboardText(text));
    return text;
}

TEST(Win32Clipboard, GivesBackWhatWasWritten) {
    for (const char16_t* text : {u"-3.5 dB", u"\u0141\u00e9 \xd83d\xde00", u"two\r\nlines", u""}) {
        EXPECT_TRUE(windowSystem()->setClipboardText(text));
        EXPECT_EQ(read(), text);
    }
    const std::u16string longText(100000, u'x');
    EXPECT_TRUE(windowSystem()->setClipboardText(longText));
    EXPECT_EQ(read(), longText);
}

TEST(Win32Clipboard, WithoutTextGivesNone) {
    ASSERT_TRUE(OpenClipboard(nullptr));
    EXPECT_TRUE(EmptyClipboard());
    CloseClipboard();
    std::u16string text = u"old";
    EXPECT_FALSE(windowSystem()->clipboardText(text));
    EXPECT_EQ(text, u"");
}

TEST(Win32Clipboard, ATextOfAnotherProgramWithoutAnEndIsReadWithinItsBlock) {
    const HWND window = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_TRUE(OpenClipboard(window));
    EXPECT_TRUE(EmptyClipboard());
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 4 * sizeof(wchar_t));
    auto* units = static_cast<wchar_t*>(GlobalLock(block));
    std::fill_n(units, 4, L'z');
    GlobalUnlock(block);
    EXPECT_TRUE(SetClipboardData(CF_UNICODETEXT, block));
    CloseClipboard();
    DestroyWindow(window);
    const std::u16string text = read();
    // A system may put an end in place of the last unit, and round the block up.
    EXPECT_EQ(text.substr(0, 3), u"zzz");
    EXPECT_LE(text.size(), 16u);
}

TEST(Win32Clipboard, ThatStaysBusyIsLeftAlone) {
    ASSERT_TRUE(windowSystem()->setClipboardText(u"before"));
    {
        const CBusyClipboard busy(10000);
        std::u16string text;
        EXPECT_FALSE(windowSystem()->clipboardText(text));
        EXPECT_FALSE(windowSystem()->setClipboardText(u"lost"));
    }
    EXPECT_EQ(read(), u"before");
}

TEST(Win32Clipboard, ThatIsBusyForAMomentIsTriedAgain) {
    ASSERT_TRUE(windowSystem()->setClipboardText(u"before"));
    const CBusyClipboard busy(5);
    EXPECT_TRUE(windowSystem()->setClipboardText(u"after"));
    EXPECT_EQ(read(), u"after");
}

}  // namespace
}  // namespace tarv
