#pragma once

#include <cstdint>

namespace tarv {

/// Tells the calling thread from all others that live.
uint64_t currentThreadId();

/// Hidden target of posted messages, bound to the thread that opens it: any thread posts, that thread receives in the
/// order of the posts, from its message loop.
class CEventWindow {
public:
    using CReceiver = void (*)(void* user, uint32_t message, uintptr_t cookie);

    CEventWindow() = default;
    ~CEventWindow() { close(); }
    CEventWindow(const CEventWindow&) = delete;
    CEventWindow& operator=(const CEventWindow&) = delete;

    /// Gives 0, or the system's error number.
    uint32_t open(CReceiver receiver, void* user);
    /// Drops what has not arrived. On the thread that opened it.
    void close();
    /// Any thread, while the object lives. Gives 0, or the system's error number.
    uint32_t post(uint32_t message, uintptr_t cookie);

    void receive(uint32_t message, uintptr_t cookie) { receiver_(user_, message, cookie); }

private:
    CReceiver receiver_ = nullptr;
    void* user_ = nullptr;
    void* handle_ = nullptr;
};

/// Delivers what has been posted to windows of the calling thread so far, and tells how many messages that were. For
/// programs without a message loop of their own.
int dispatchPostedEvents();

}  // namespace tarv
