#include "UI/Placement/CViewScroll.h"

#include <algorithm>

#include "UI/Placement/CViewAxis.h"

namespace tarv {

namespace {

void setCell(CViewArea& area, CViewCell index, double value) {
    if (area.isScrollable()) {
        area.net().setValue(area.cell(index), static_cast<float>(value));
    }
}

}  // namespace

void CViewScroll::setOffset(CViewArea& area, int32_t axis, double offset) {
    if (area.isScrollable()) {
        const double end = 1.0 - area.value(kViewAxes[axis].ratio);
        setCell(area, kViewAxes[axis].offset, std::clamp(offset, 0.0, end));
    }
}

void CViewScroll::setRatio(CViewArea& area, int32_t axis, double ratio) const {
    if (area.isScrollable()) {
        setCell(area, kViewAxes[axis].ratio, std::clamp(ratio, minRatio_[axis], 1.0));
        setOffset(area, axis, area.value(kViewAxes[axis].offset));
    }
}

void CViewScroll::setMinRatio(CViewArea& area, int32_t axis, double ratio) {
    minRatio_[axis] = std::clamp(ratio, kLeastRatio, 1.0);
    if (area.isScrollable()) {
        setRatio(area, axis, area.value(kViewAxes[axis].ratio));
    }
}

void CViewScroll::setThickness(CViewArea& area, int32_t axis, double thickness) {
    setCell(area, kViewAxes[axis].scroller, thickness);
}

CViewRect CViewScroll::contentOf(const CViewArea& area) {
    CViewRect rect = area.box();
    if (area.isScrollable()) {
        const double ratioX = area.value(CViewCell::RatioX);
        const double ratioY = area.value(CViewCell::RatioY);
        const double width = rect.width - area.value(CViewCell::ScrollerWidth);
        const double height = rect.height - area.value(CViewCell::ScrollerHeight);
        rect.x -= area.value(CViewCell::OffsetX) * width / ratioX;
        rect.y -= area.value(CViewCell::OffsetY) * height / ratioY;
        rect.width = width / ratioX;
        rect.height = height / ratioY;
    }
    return rect;
}

}  // namespace tarv
