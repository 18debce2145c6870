// A picture over a panel.

#include "UI/Views/CPicture.h"

namespace tarv {

CError* CPicture::init() {
    TARV_TRY(CView::init());
    imageRangeChanged();
    return nullptr;
}

void CPicture::imageRangeChanged() {
    if (!hasArea()) {
        return;
    }
    const CImage* image = firstImage();
    if (getAttrString("compact-width").isEmpty()) {
        area().setCompactWidth(image ? image->getWidth() : 0);
    }
    if (getAttrString("compact-height").isEmpty()) {
        area().setCompactHeight(image ? image->getHeight() : 0);
    }
}

CError* CPicture::attrCompactWidth() {
    TARV_TRY(CView::attrCompactWidth());
    imageRangeChanged();
    return nullptr;
}

CError* CPicture::attrCompactHeight() {
    TARV_TRY(CView::attrCompactHeight());
    imageRangeChanged();
    return nullptr;
}

CError* CPicture::draw() {
    if (!imageSet() || (isImageAligned() && !isFrameRange())) {
        return CView::draw();
    }
    drawStretched(kBoxArea);
    return nullptr;
}

}  // namespace tarv
