// Dialogs of the system that are being shown.

#include "Platform/Win32/COpenDialog.h"

#include <algorithm>
#include <cwchar>

#include "Platform/Lock.h"

namespace tarv {

namespace {

CLock lock;
COpenDialog* newest = nullptr;

BOOL CALLBACK noteDialog(HWND window, LPARAM found) {
    wchar_t name[16] = {};
    if (GetClassNameW(window, name, 16) && wcscmp(name, L"#32770") == 0) {
        reinterpret_cast<std::vector<HWND>*>(found)->push_back(window);
    }
    return TRUE;
}

std::vector<HWND> dialogsOf(DWORD thread) {
    std::vector<HWND> found;
    EnumThreadWindows(thread, &noteDialog, reinterpret_cast<LPARAM>(&found));
    return found;
}

}  // namespace

COpenDialog::COpenDialog(HWND owner)
    : owner_(owner), thread_(GetCurrentThreadId()), earlier_(dialogsOf(thread_)), next_(nullptr) {
    const CLockScope scope(lock);
    next_ = newest;
    newest = this;
}

COpenDialog::~COpenDialog() {
    const CLockScope scope(lock);
    COpenDialog** link = &newest;
    while (*link != this) {
        link = &(*link)->next_;
    }
    *link = next_;
}

void COpenDialog::cancelAll(HWND owner) {
    const CLockScope scope(lock);
    for (const COpenDialog* dialog = newest; dialog; dialog = dialog->next_) {
        if (owner && dialog->owner_ == owner && dialog->thread_ == GetCurrentThreadId()) {
            dialog->cancel();
        }
    }
}

void COpenDialog::cancel() const {
    for (const HWND window : dialogsOf(thread_)) {
        if (std::find(earlier_.begin(), earlier_.end(), window) == earlier_.end()) {
            PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
        }
    }
}

}  // namespace tarv
