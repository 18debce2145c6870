// Text of the clipboard of Windows.

#include "Platform/Win32/Clipboard.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

#include "Platform/Win32/Module.h"

namespace tarv {

namespace {

constexpr int kTries = 3;
constexpr DWORD kPauseMs = 10;
/// What a field could ever take; a text of another program may have any length.
constexpr size_t kMostUnits = size_t{1} << 20;

/// Holds the clipboard for a scope.
class CClipboardScope {
public:
    explicit CClipboardScope(HWND owner) {
        for (int i = 0; i < kTries && !isOpen_; ++i) {
            if (i > 0) {
                Sleep(kPauseMs);
            }
            isOpen_ = OpenClipboard(owner) != 0;
        }
    }
    ~CClipboardScope() {
        if (isOpen_) {
            CloseClipboard();
        }
    }
    CClipboardScope(const CClipboardScope&) = delete;
    CClipboardScope& operator=(const CClipboardScope&) = delete;

    bool isOpen() const { return isOpen_; }

private:
    bool isOpen_ = false;
};

/// A window that owns the clipboard while it is written: without one the system takes nothing.
class CClipboardOwner {
public:
    CClipboardOwner()
        : window_(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, ownModule(), nullptr)) {}
    ~CClipboardOwner() { DestroyWindow(window_); }
    CClipboardOwner(const CClipboardOwner&) = delete;
    CClipboardOwner& operator=(const CClipboardOwner&) = delete;

    HWND window() const { return window_; }

private:
    HWND window_;
};

}  // namespace

bool readClipboard(std::u16string& text) {
    text.clear();
    const CClipboardScope scope(nullptr);
    const HANDLE data = scope.isOpen() ? GetClipboardData(CF_UNICODETEXT) : nullptr;
    const auto* units = data ? static_cast<const char16_t*>(GlobalLock(data)) : nullptr;
    if (!units) {
        return false;
    }
    // The end may be missing.
    const size_t room = std::min<size_t>(GlobalSize(data) / sizeof(char16_t), kMostUnits);
    text.assign(units, std::find(units, units + room, u'\0'));
    GlobalUnlock(data);
    return true;
}

bool writeClipboard(const std::u16string& text) {
    const CClipboardOwner owner;
    const CClipboardScope scope(owner.window());
    if (!scope.isOpen()) {
        return false;
    }
    const size_t size = (text.size() + 1) * sizeof(char16_t);
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, size);
    void* units = block ? GlobalLock(block) : nullptr;
    if (units) {
        memcpy(units, text.c_str(), size);
        GlobalUnlock(block);
    }
    // From then on the block is the system's.
    const bool isTaken = units && EmptyClipboard() && SetClipboardData(CF_UNICODETEXT, block);
    if (!isTaken) {
        GlobalFree(block);
    }
    return isTaken;
}

}  // namespace tarv
