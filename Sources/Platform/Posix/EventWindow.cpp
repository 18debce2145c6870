#include "Platform/EventWindow.h"

#include <atomic>
#include <cerrno>
#include <deque>
#include <mutex>

namespace tarv {

namespace {

struct CPost {
    CEventWindow* window;
    uint64_t thread;
    uint32_t message;
    uintptr_t cookie;
};

struct CPosts {
    std::mutex mutex;
    std::deque<CPost> queue;
};

CPosts& posts() {
    static CPosts instance;
    return instance;
}

bool takeFirst(uint64_t thread, CPost& post) {
    std::lock_guard<std::mutex> guard(posts().mutex);
    std::deque<CPost>& queue = posts().queue;
    for (auto it = queue.begin(); it != queue.end(); ++it) {
        if (it->thread == thread) {
            post = *it;
            queue.erase(it);
            return true;
        }
    }
    return false;
}

}  // namespace

uint64_t currentThreadId() {
    static std::atomic<uint64_t> last{0};
    thread_local uint64_t id = ++last;
    return id;
}

uint32_t CEventWindow::open(CReceiver receiver, void* user) {
    std::lock_guard<std::mutex> guard(posts().mutex);
    receiver_ = receiver;
    user_ = user;
    handle_ = reinterpret_cast<void*>(static_cast<uintptr_t>(currentThreadId()));
    return 0;
}

void CEventWindow::close() {
    std::lock_guard<std::mutex> guard(posts().mutex);
    handle_ = nullptr;
    std::erase_if(posts().queue, [this](const CPost& post) { return post.window == this; });
}

uint32_t CEventWindow::post(uint32_t message, uintptr_t cookie) {
    std::lock_guard<std::mutex> guard(posts().mutex);
    if (!handle_) {
        return EBADF;
    }
    posts().queue.push_back(CPost{this, reinterpret_cast<uintptr_t>(handle_), message, cookie});
    return 0;
}

int dispatchPostedEvents() {
    uint64_t thread = currentThreadId();
    int count = 0;
    for (CPost post; takeFirst(thread, post); ++count) {
        post.window->receive(post.message, post.cookie);
    }
    return count;
}

}  // namespace tarv
