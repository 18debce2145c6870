#pragma once

#include "Platform/File.h"

namespace tarv {

/// A place on one thread to which any thread posts; 0 is none. A hidden window on Windows; elsewhere a queue that is
/// pumped by hand (Posix/EventQueue.h).
using CEventWindow = uintptr_t;

/// Receives a post on the thread that opened the window.
using CEventHandler = void (*)(void* user, uintptr_t cookie);

/// On the thread that shall receive. The window stays until closed, by that thread.
[[nodiscard]] CPlatformError openEventWindow(CEventHandler handler, void* user, CEventWindow& window);
/// Posts that wait are dropped.
void closeEventWindow(CEventWindow window);
/// Any thread; returns at once. Posts to one window arrive in their order.
[[nodiscard]] CPlatformError postEvent(CEventWindow window, uintptr_t cookie);

}  // namespace tarv
