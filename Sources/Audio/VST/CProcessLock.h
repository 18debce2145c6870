#pragma once

#include <memory>

#include "Platform/Lock.h"

namespace tarv {

/// A lock that serialises suspend, resume and blocks for a host that needs it; without effect until it is enabled.
class CProcessLock {
public:
    /// Holds the lock, if it is enabled.
    class CScope {
    public:
        explicit CScope(CProcessLock& owner) : lock_(owner.lock_.get()) {
            if (lock_) {
                lock_->enter();
            }
        }
        ~CScope() {
            if (lock_) {
                lock_->leave();
            }
        }
        CScope(const CScope&) = delete;
        CScope& operator=(const CScope&) = delete;

    private:
        CLock* lock_;
    };

    void enable() { lock_ = std::make_unique<CLock>(); }  // [main thread, before the first scope]
    bool isEnabled() const { return lock_ != nullptr; }

private:
    std::unique_ptr<CLock> lock_;
};

}  // namespace tarv
