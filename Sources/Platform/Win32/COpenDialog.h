#pragma once

#include <windows.h>

#include <vector>

namespace tarv {

/// Marks a call that shows a dialog of the system, on the stack around it. The dialog itself is found among the windows
/// of the thread: the system gives no handle of it without a hook, which would change its look.
class COpenDialog {
public:
    explicit COpenDialog(HWND owner);
    ~COpenDialog();
    COpenDialog(const COpenDialog&) = delete;
    COpenDialog& operator=(const COpenDialog&) = delete;

    /// Cancels the dialogs of an owner on this thread.
    static void cancelAll(HWND owner);

private:
    void cancel() const;

    HWND owner_;
    DWORD thread_;
    std::vector<HWND> earlier_;  ///< dialogs of the thread that stood there before: the host's
    COpenDialog* next_;
};

}  // namespace tarv
