#pragma once

namespace tarv {

/// A mutual exclusion that spins 4000 times before it waits (a critical section on Windows, an equivalent elsewhere).
/// Recursive: the thread that holds it may take it again. Construction never fails. Any thread.
class CLock {
public:
    CLock();
    ~CLock();
    CLock(const CLock&) = delete;
    CLock& operator=(const CLock&) = delete;

    void enter();
    bool tryEnter();
    void leave();

    /// Spins before a waiter sleeps.
    static constexpr unsigned kSpinCount = 4000;

private:
    // Room for either platform's object, so that no header of a platform is needed here.
    alignas(8) unsigned char storage_[40];
};

/// Holds a lock for a scope.
class CLockScope {
public:
    explicit CLockScope(CLock& lock) : lock_(lock) { lock_.enter(); }
    ~CLockScope() { lock_.leave(); }
    CLockScope(const CLockScope&) = delete;
    CLockScope& operator=(const CLockScope&) = delete;

private:
    CLock& lock_;
};

}  // namespace tarv
