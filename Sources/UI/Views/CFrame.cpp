// A panel.

#include "UI/Views/CFrame.h"

namespace tarv {

CError* CFrame::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CFrame::attrHasBorders>("has-borders");
    return CView::initClass(descriptor);
}

CError* CFrame::attrHasBorders() {
    hasBorders_ = getAttrBoolOr("has-borders", true);
    requestRedraw();
    return nullptr;
}

CError* CFrame::draw() {
    if (!imageSet()) {
        return CView::draw();
    }
    if (hasBorders_) {
        drawStretched(kBoxArea);
    } else {
        drawMiddle(kBoxArea);
    }
    return nullptr;
}

}  // namespace tarv
