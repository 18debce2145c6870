#pragma once

#include <windows.h>

#include "Platform/Lock.h"

namespace tarv {

/// Sends the keys of a thread to one window before the host's message loop passes them on. One window of the process
/// owns the hook; hook and owner change under a lock, which is not held while the window takes a key.
class CKeyHook {
public:
    /// To the owner, with WH_KEYBOARD's parameters. A result of 1 keeps the key from the host.
    static constexpr UINT kPressMessage = 5121;
    static constexpr UINT kReleaseMessage = 5122;
    /// To a former owner: the hook is another one's, the user types into another window of the process, or works in
    /// another program. Posted.
    static constexpr UINT kLostMessage = 5123;

    /// Of the calling thread; a former owner loses the hook. False if the system refuses it.
    static bool grab(HWND window);
    /// Nothing if another window is the owner. Any thread.
    static void release(HWND window);
    static bool isOwner(HWND window);
    /// The owner is a window of the calling thread: it is asked for each key before the host's loop goes on with it.
    static bool asksThisThread();

private:
    static LRESULT CALLBACK procedure(int code, WPARAM wParam, LPARAM lParam);
    /// Of WH_CALLWNDPROC: notices that the user goes to another program, of which no child is informed.
    static LRESULT CALLBACK watchProcedure(int code, WPARAM wParam, LPARAM lParam);
    static void remove();
    /// Under the lock.
    static void takeFrom(HWND former);

    static CLock lock_;
    static HHOOK hook_;
    static HHOOK watch_;
    static HWND owner_;
};

}  // namespace tarv
