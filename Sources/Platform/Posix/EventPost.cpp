// Posts between threads on POSIX systems, in queues of the process.

#include "Platform/EventPost.h"

#include <cerrno>
#include <list>
#include <map>
#include <new>

#include "Platform/Lock.h"
#include "Platform/Posix/EventQueue.h"
#include "Platform/ThreadId.h"

namespace tarv {

namespace {

struct CQueueWindow {
    uint64_t threadId;
    CEventHandler handler;
    void* user;
};

struct CPost {
    CEventWindow window;
    uintptr_t cookie;
};

/// Windows and posts of the whole process, as the system's own queues are.
struct CEventQueues {
    CLock lock;
    CEventWindow lastWindow = 0;
    std::map<CEventWindow, CQueueWindow> windows;
    std::list<CPost> posts;  // holds no memory while it is empty: the library may be unloaded then
};

CEventQueues& queues() {
    alignas(CEventQueues) static unsigned char storage[sizeof(CEventQueues)];
    static CEventQueues* all = new (storage) CEventQueues;
    return *all;
}

/// Takes the first post to a window of this thread.
bool takePost(uint64_t threadId, CQueueWindow& window, uintptr_t& cookie) {
    CEventQueues& all = queues();
    CLockScope scope(all.lock);
    for (auto post = all.posts.begin(); post != all.posts.end(); ++post) {
        const CQueueWindow& target = all.windows.at(post->window);
        if (target.threadId == threadId) {
            window = target;
            cookie = post->cookie;
            all.posts.erase(post);
            return true;
        }
    }
    return false;
}

}  // namespace

CPlatformError openEventWindow(CEventHandler handler, void* user, CEventWindow& window) {
    CEventQueues& all = queues();
    CLockScope scope(all.lock);
    window = ++all.lastWindow;
    all.windows[window] = {currentThreadId(), handler, user};
    return 0;
}

void closeEventWindow(CEventWindow window) {
    CEventQueues& all = queues();
    CLockScope scope(all.lock);
    all.windows.erase(window);
    std::erase_if(all.posts, [window](const CPost& post) { return post.window == window; });
}

CPlatformError postEvent(CEventWindow window, uintptr_t cookie) {
    CEventQueues& all = queues();
    CLockScope scope(all.lock);
    if (!all.windows.contains(window)) {
        return EBADF;
    }
    all.posts.push_back({window, cookie});
    return 0;
}

int pumpEvents() {
    const uint64_t threadId = currentThreadId();
    CQueueWindow window{};
    uintptr_t cookie = 0;
    int delivered = 0;
    // The handler runs outside the lock: it may post, open and close.
    for (; takePost(threadId, window, cookie); ++delivered) {
        window.handler(window.user, cookie);
    }
    return delivered;
}

}  // namespace tarv
