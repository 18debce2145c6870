#pragma once

#include <memory>

#include "Core/CArray.h"
#include "Core/CCheckedObject.h"
#include "Core/CString.h"

namespace tarv {

class CBridge;

/// The observed end of any number of bridges. Either end may die first, on any thread: the lock that both ends share
/// outlives them.
class CBridgeBase : public CCheckedObject {
public:
    CBridgeBase();
    ~CBridgeBase() override;

    int32_t bridgeCount() const;

protected:
    /// Calls `notify(this)` of every bridge with this user value, in the order of connection, with the link's lock
    /// held: a bridge that disconnects meanwhile, on any thread, is not called afterwards.
    void notifyBridges(const CString& userValue);
    /// Guards the bridges; recursive. A base may guard its own state by it, too.
    CLock& linkLock() const { return link_->lock; }

private:
    friend class CBridge;
    struct CLink {
        CLock lock;
        CBridgeBase* base = nullptr;
        CArray<CBridge*, 4> bridges;
    };
    std::shared_ptr<CLink> link_;
};

/// The observing end. A subclass calls disconnect in its own destructor, since a notification may
/// arrive on another thread until then.
class CBridge : public CCheckedObject {
public:
    CBridge() = default;
    ~CBridge() override { disconnect(); }

    /// Called with the link's lock held, on the notifying thread.
    virtual void notify(CCheckedObject* sender) = 0;

    /// `userValue` says which of the base's notifications are meant.
    void connect(CBridgeBase& base, const CString& userValue);
    /// After the return no notification runs or comes (but for one that this very thread is in).
    void disconnect();
    /// Null before connect, after disconnect and when the base has died.
    CBridgeBase* base() const;

private:
    friend class CBridgeBase;
    std::shared_ptr<CBridgeBase::CLink> link_;
    CString userValue_;
};

/// Bridge that forwards to a method of its owner, `void T::method(CCheckedObject* sender)`.
template <class T>
class COwnedBridge : public CBridge {
public:
    using CMethod = void (T::*)(CCheckedObject* sender);
    COwnedBridge(T* owner, CMethod method) : owner_(owner), method_(method) {}
    ~COwnedBridge() override { disconnect(); }
    void notify(CCheckedObject* sender) override { (owner_->*method_)(sender); }

private:
    T* owner_;
    CMethod method_;
};

}  // namespace tarv
