#include "Core/CScaledResource.h"

#include "Platform/Lock.h"

namespace tarv {

namespace {

// No scale: nothing is loaded.
constexpr double kNoScale = 0.0;

CScaledResource* first = nullptr;
double loadedScale = kNoScale;

// Guards the list and the scale.
CLock& listLock() {
    static CLock lock;
    return lock;
}

}  // namespace

CScaledResource::CScaledResource() {
    CLockScope scope(listLock());
    next_ = first;
    if (next_) {
        next_->previous_ = this;
    }
    first = this;
}

CScaledResource::~CScaledResource() {
    CLockScope scope(listLock());
    (previous_ ? previous_->next_ : first) = next_;
    if (next_) {
        next_->previous_ = previous_;
    }
}

CError* CScaledResource::loadAll(double scale) {
    CLockScope scope(listLock());
    if (scale == loadedScale) {
        return nullptr;
    }
    loadedScale = kNoScale;
    for (CScaledResource* each = first; each; each = each->next_) {
        if (CError* error = each->loadAt(scale)) {
            return error;
        }
    }
    loadedScale = scale;
    return nullptr;
}

void CScaledResource::forgetScale() {
    CLockScope scope(listLock());
    loadedScale = kNoScale;
}

CError* CScaledResource::loadWithOthers() {
    CLockScope scope(listLock());
    return loadedScale == kNoScale ? nullptr : loadAt(loadedScale);
}

}  // namespace tarv
