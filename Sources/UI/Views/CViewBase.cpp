#include "UI/Views/CViewBase.h"

#include "UI/Views/CViewWindow.h"

namespace tarv {

CError* CViewBase::init() {
    TARV_TRY(CObject::init());
    if (getAttrBool("is-root-view")) {
        rootView_ = this;
    } else {
        parentView_ = dynamic_cast<CViewBase*>(parent());
        rootView_ = parentView_ ? parentView_->rootView_ : nullptr;
    }
    return nullptr;
}

CSectorMap* CViewBase::sectorMap() const {
    return window() ? &window()->sectorMap() : nullptr;
}

}  // namespace tarv
