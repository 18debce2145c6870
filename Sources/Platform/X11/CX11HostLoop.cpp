// A timer in a host's own loop.

#include "Platform/X11/CX11HostLoop.h"

#include <dlfcn.h>

#include "Platform/ThreadId.h"

namespace tarv {

namespace {

constexpr unsigned kMilliseconds = 10;
constexpr int kDefaultPriority = 0;

/// The functions of GLib, as its documentation gives them: no header of it is needed for five of them.
using CContext = void;
using CGetContext = CContext* (*)();
using CIsOwner = int (*)(CContext*);
using CAddTimeout = unsigned (*)(int priority, unsigned milliseconds, int (*call)(void*), void* user,
                                 void (*destroyed)(void*));
using CRemoveSource = int (*)(unsigned);

template <class T>
T function(void* library, const char* name) {
    return reinterpret_cast<T>(dlsym(library, name));
}

}  // namespace

CX11HostLoop::CX11HostLoop(std::function<void()> call) : call_(std::move(call)), threadId_(currentThreadId()) {
    // Only where the host has loaded it.
    library_ = dlopen("libglib-2.0.so.0", RTLD_LAZY | RTLD_LOCAL | RTLD_NOLOAD);
    if (!library_) {
        return;
    }
    const auto context = function<CGetContext>(library_, "g_main_context_default");
    const auto isOwner = function<CIsOwner>(library_, "g_main_context_is_owner");
    const auto add = function<CAddTimeout>(library_, "g_timeout_add_full");
    if (context && isOwner && add && isOwner(context())) {
        source_ = add(kDefaultPriority, kMilliseconds, &onTimeout, this, nullptr);
    }
}

CX11HostLoop::~CX11HostLoop() {
    if (source_) {
        if (const auto remove = function<CRemoveSource>(library_, "g_source_remove")) {
            remove(source_);
        }
    }
    if (library_) {
        dlclose(library_);
    }
}

int CX11HostLoop::onTimeout(void* self) {
    const auto* loop = static_cast<CX11HostLoop*>(self);
    if (loop->threadId_ == currentThreadId()) {
        // May destroy this object, and its source with it.
        loop->call_();
    }
    return 1;
}

}  // namespace tarv
