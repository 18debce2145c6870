#include "Core/CBridge.h"

namespace tarv {

CBridgeBase::CBridgeBase() : link_(std::allocate_shared<CLink>(CHeapAllocator<CLink>())) {
    link_->base = this;
}

CBridgeBase::~CBridgeBase() {
    CLockScope scope(link_->lock);
    link_->base = nullptr;
    link_->bridges.clear();
}

int32_t CBridgeBase::bridgeCount() const {
    CLockScope scope(link_->lock);
    return link_->bridges.count();
}

void CBridgeBase::notifyBridges(const CString& userValue) {
    std::shared_ptr<CLink> link = link_;
    CLockScope scope(link->lock);
    CArray<CBridge*, 4> bridges = link->bridges;
    for (CBridge* bridge : bridges) {
        // One that was called before may have destroyed this one.
        if (link->bridges.indexOf(bridge) >= 0 && bridge->userValue_ == userValue) {
            bridge->notify(this);
        }
    }
}

void CBridge::connect(CBridgeBase& base, const CString& userValue) {
    disconnect();
    userValue_ = userValue;
    link_ = base.link_;
    CLockScope scope(link_->lock);
    link_->bridges.append(this);
}

void CBridge::disconnect() {
    std::shared_ptr<CBridgeBase::CLink> link;
    link.swap(link_);
    if (!link) {
        return;
    }
    CLockScope scope(link->lock);
    int32_t index = link->bridges.indexOf(this);
    if (index >= 0) {
        link->bridges.removeAt(index);
    }
}

CBridgeBase* CBridge::base() const {
    if (!link_) {
        return nullptr;
    }
    CLockScope scope(link_->lock);
    return link_->base;
}

}  // namespace tarv
