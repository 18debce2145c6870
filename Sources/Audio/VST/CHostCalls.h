#pragma once

#include <atomic>

#include "Platform/ThreadId.h"

namespace tarv {

/// The thread on which the host sets a program or a chunk at present. Changes that follow on that thread are not
/// reported to the host: it made them. Any thread.
class CHostCalls {
public:
    /// Marks such a call of the host, on its thread.
    class CScope {
    public:
        explicit CScope(CHostCalls& owner) : owner_(owner), before_(owner.thread_.exchange(currentThreadId())) {}
        ~CScope() { owner_.thread_.store(before_); }
        CScope(const CScope&) = delete;
        CScope& operator=(const CScope&) = delete;

    private:
        CHostCalls& owner_;
        uint64_t before_;
    };

    /// Whether the current thread is inside such a call.
    bool isInside() const { return thread_.load() == currentThreadId(); }

private:
    std::atomic<uint64_t> thread_{0};
};

}  // namespace tarv
