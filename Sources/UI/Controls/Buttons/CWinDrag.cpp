#include "UI/Controls/Buttons/CWinDrag.h"

#include "Core/CObjectWatch.h"
#include "UI/Windows/CWindow.h"

namespace tarv {

CWinDrag::~CWinDrag() {
    endInput();
}

CError* CWinDrag::mousePress(CAttributeMap& params) {
    isHeld_ = isDraggable();
    heldX_ = pixels(params["actual-x"].asReal());
    heldY_ = pixels(params["actual-y"].asReal());
    const auto* own = isHeld_ ? dynamic_cast<CWindow*>(window()) : nullptr;
    boundsBefore_ = own ? own->screenBounds() : CIntRect();
    return CFrame::mousePress(params);
}

CError* CWinDrag::mouseMove(CAttributeMap& params) {
    auto* own = isHeld_ ? dynamic_cast<CWindow*>(window()) : nullptr;
    if (own) {
        // The event's own position: it is the one that the system reports everywhere.
        const CIntRect bounds = own->screenBounds();
        own->moveTo(bounds.left + pixels(params["actual-x"].asReal()) - heldX_,
                    bounds.top + pixels(params["actual-y"].asReal()) - heldY_);
    }
    return CFrame::mouseMove(params);
}

CError* CWinDrag::mouseRelease(CAttributeMap& params) {
    isHeld_ = false;
    return CFrame::mouseRelease(params);
}

CError* CWinDrag::mouseCancel(CAttributeMap& params) {
    isHeld_ = false;
    return CFrame::mouseCancel(params);
}

CError* CWinDrag::mouseTakeBack(CAttributeMap& params) {
    auto* own = isHeld_ ? dynamic_cast<CWindow*>(window()) : nullptr;
    if (own) {
        own->moveTo(boundsBefore_.left, boundsBefore_.top);
    }
    return CFrame::mouseTakeBack(params);
}

CError* CWinDrag::inputEvent(const CString& name, CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = name == CString("flash-title") ? flashTitle() : nullptr;
    return error || !watch.isAlive() ? error : CFrame::inputEvent(name, params);
}

CError* CWinDrag::flashTitle() {
    auto* title = dynamic_cast<CView*>(findChild("window-title"));
    return title ? title->setStateTimed("flash") : nullptr;
}

}  // namespace tarv
