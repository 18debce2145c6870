// What hands do on a surface: press, drag, wheel, keys.

#include <algorithm>
#include <cmath>

#include "Core/CGlobalSettings.h"
#include "Core/CObjectWatch.h"
#include "Platform/Keyboard.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Controls/Surface/CControlSurface.h"
#include "UI/Controls/Surface/CRuler.h"
#include "UI/Views/CTouchTarget.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

/// Finer with Shift, finer still with Ctrl and Shift.
double CControlSurface::precisionOf(const CSurfacePointer& pointer) const {
    const double finer = globalSettings().shiftKeyPrecision;
    return !pointer.isShift ? 1.0 : pointer.isCtrl ? finer * finer : finer;
}

int32_t CControlSurface::pointAt(int32_t x, int32_t y) const {
    if (!editable_ || !editable_->isActive()) {
        return -1;
    }
    const bool isTablet = globalSettings().isTabletMode;
    if (isSliderMode_) {
        const CSurfaceLayout layout = layoutOf(*editable_);
        return isTablet ? layout.nearestColumn(x, y) : layout.columnAt(x, y);
    }
    // The nearest one within the size of its picture.
    int32_t nearest = -1;
    double least = HUGE_VAL;
    const CImage* image = pointImage(*editable_);
    const double size = image ? std::max(image->getWidth(), image->getHeight()) : 0.0;
    const double reach = std::max(size, isTablet ? double{CTouchTarget::kSize} : 0.0) / 2.0;
    for (int32_t i = 0; i < editable_->count(); ++i) {
        const CSurfacePlace place = placeOf(*editable_, i);
        const double distance = std::hypot(x + 0.5 - place.x, y + 0.5 - place.y);
        if (distance <= reach && distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

CError* CControlSurface::hoverAt(int32_t x, int32_t y) {
    return setHovered(globalSettings().isTabletMode ? -1 : pointAt(x, y));
}

CError* CControlSurface::setHovered(int32_t point) {
    if (point == hovered_) {
        return nullptr;
    }
    redrawColumn(hovered_);
    hovered_ = point;
    redrawColumn(point);
    return showHovered();
}

/// What follows the hovered point may end a ruler, and this view.
CError* CControlSurface::showHovered() {
    findRulers();
    const CObjectWatch watch(*this);
    for (int32_t i = rulers_.count() - 1; i >= 0 && watch.isAlive(); --i) {
        if (i < rulers_.count()) {
            rulers_[i]->setHovered(*this, hovered_);
        }
    }
    if (!watch.isAlive()) {
        return nullptr;
    }
    static const CString kHovered("hovered-point");
    CError* error = setAttribute(kHovered, CAttributeValue::fromInt(hovered_));
    return error || !watch.isAlive() ? error : exportPoint();
}

/// For the readout, and for views of the data that show where the pointer is.
CError* CControlSurface::exportPoint() {
    isExportStale_ = false;
    const CObjectWatch watch(*this);
    CError* error = exportPositions();
    return error || !watch.isAlive() ? error : showCursor();
}

CError* CControlSurface::exportPositions() {
    static const CString kNames[] = {"curpos-x", "curpos-y", "curpos-y-alt", "curpos-bw", "curpos-band-sel"};
    static const CString kFlags[] = {"is-export-x", "is-export-y", "is-export-bw"};
    const bool isX = getAttrBool(kFlags[0]);
    const bool isY = getAttrBool(kFlags[1]);
    const bool isBandWidth = getAttrBool(kFlags[2]);
    if (!isX && !isY && !isBandWidth) {
        return nullptr;
    }
    const bool isThere = editable_ && hovered_ >= 0 && hovered_ < editable_->count();
    const CControlSurfaceGroup::CPoint point = isThere ? editable_->point(hovered_) : CControlSurfaceGroup::CPoint();
    const bool isAlt = isY && minMaxYAlt_;
    const double values[] = {point.x, point.y, isAlt ? minMaxYAlt_->value(axisY_.position(point.y)) : 0.0,
                             point.bandWidth, static_cast<double>(selected_)};
    const bool isWanted[] = {isThere && isX, isThere && isY, isThere && isAlt, isThere && isBandWidth, true};
    const CObjectWatch watch(*this);
    for (int i = 0; i < 5; ++i) {
        CError* error = isWanted[i] ? setAttribute(kNames[i], CAttributeValue::fromReal(values[i])) : nullptr;
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

CError* CControlSurface::mouseEnter(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    const CSurfacePointer pointer = CSurfacePointer::of(params);
    TARV_TRY(CView::mouseEnter(params));
    return watch.isAlive() ? hoverAt(pointer.x, pointer.y) : nullptr;
}

CError* CControlSurface::mouseExit(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    TARV_TRY(CView::mouseExit(params));
    return watch.isAlive() ? setHovered(-1) : nullptr;
}

CError* CControlSurface::mousePress(CAttributeMap& params) {
    static const CString kDouble("is-double-click");
    const CObjectWatch watch(*this);
    const CSurfacePointer pointer = CSurfacePointer::of(params);
    const bool isDouble = params[kDouble].asBool();
    TARV_TRY(CView::mousePress(params));
    if (!watch.isAlive()) {
        return nullptr;
    }
    drag_.end();
    const int32_t point = pointAt(pointer.x, pointer.y);
    CError* error = hoverAt(pointer.x, pointer.y);
    error = error || !watch.isAlive() ? error : select(point);
    if (error || !watch.isAlive()) {
        return error;
    }
    if (!editable_ || point >= editable_->count()) {
        return nullptr;
    }
    if (point >= 0 && isDouble && editable_->isEraseable()) {
        return erasePoint(point);
    }
    if (point >= 0 && (isDouble || (pointer.isCtrl && !pointer.isShift && !pointer.isAlt))) {
        return resetPoints(point, 1);
    }
    return pressPoint(point, pointer);
}

CError* CControlSurface::mouseMove(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    const CSurfacePointer pointer = CSurfacePointer::of(params);
    TARV_TRY(CView::mouseMove(params));
    if (!watch.isAlive()) {
        return nullptr;
    }
    if (drag_.mode() == CSurfaceDrag::CMode::None) {
        return hoverAt(pointer.x, pointer.y);
    }
    if (drag_.mode() == CSurfaceDrag::CMode::Painting) {
        return paintTo(pointer);
    }
    if (drag_.isActive()) {
        drag_.moveTo(pointer, precisionOf(pointer));
        moveHeld();
        return exportPoint();
    }
    return nullptr;
}

CError* CControlSurface::mouseRelease(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    const CSurfacePointer pointer = CSurfacePointer::of(params);
    TARV_TRY(endDrag());
    if (!watch.isAlive()) {
        return nullptr;
    }
    TARV_TRY(CView::mouseRelease(params));
    return watch.isAlive() ? hoverAt(pointer.x, pointer.y) : nullptr;
}

CError* CControlSurface::mouseCancel(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    TARV_TRY(endDrag());
    if (!watch.isAlive()) {
        return nullptr;
    }
    TARV_TRY(CView::mouseCancel(params));
    return watch.isAlive() ? setHovered(-1) : nullptr;
}

CError* CControlSurface::mouseTakeBack(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    TARV_TRY(takeBackDrag());
    return watch.isAlive() ? CView::mouseTakeBack(params) : nullptr;
}

CError* CControlSurface::mouseWheel(CAttributeMap& params) {
    static const CString kDelta("delta");
    const CSurfacePointer pointer = CSurfacePointer::of(params);
    const double delta = params[kDelta].asReal();
    const int32_t point = pointAt(pointer.x, pointer.y);
    if (point < 0 || delta == 0.0) {
        return CView::mouseWheel(params);
    }
    setHandled(params);
    return stepPoint(point, delta, pointer);
}

CError* CControlSurface::stepPoint(int32_t point, double notches, const CSurfacePointer& pointer) {
    const bool isWidth = !isSliderMode_ && editable_->param(CRole::BandWidth);
    const CRole role = isSliderMode_ ? editable_->barRole() : isWidth ? CRole::BandWidth : CRole::Y;
    CUIParam* param = editable_->param(role);
    if (!param) {
        return nullptr;
    }
    const double former = editable_->paramValue(role, point);
    double value = wheel_.turned(*param, param->getElement() + point, former, notches, precisionOf(pointer),
                                 editable_->valueStep());
    double low = 0.0;
    double high = 0.0;
    editable_->paramRange(role, low, high);
    value = isWidth ? std::clamp(value, low, high)
                    : axis(role).clamp(editable_->allowed(role, point, axis(role).clamp(value)));
    if (value == former) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    CError* error = gesture_.notch(*param, value, point);
    if (watch.isAlive() && editable_) {
        editable_->readValues();
    }
    return error || !watch.isAlive() ? error : exportPoint();
}

/// The mark of a press goes with the focus, or is that of a parameter; otherwise nothing would take it away.
bool CControlSurface::canSelect() const {
    return isFocusable() || (editable_ && editable_->param(CRole::Selected));
}

CError* CControlSurface::select(int32_t point) {
    point = canSelect() ? point : -1;
    if (point == selected_) {
        return nullptr;
    }
    redrawColumn(selected_);
    selected_ = point;
    redrawColumn(point);
    CUIParam* param = editable_ && point >= 0 ? editable_->param(CRole::Selected) : nullptr;
    const CObjectWatch watch(*this);
    // Which point is chosen is no change of the sound, and no step of the history.
    CError* error = param ? param->setValue(point, CParamEdit::unrecorded()) : nullptr;
    return error || !watch.isAlive() ? error : exportPoint();
}

CError* CControlSurface::keyPress(CAttributeMap& params) {
    static const CString kKeyCode("keycode");
    const int32_t key = params[kKeyCode].asInt();
    const CSurfacePointer pointer = CSurfacePointer::of(params);
    const bool isArrow = key == kKeyUp || key == kKeyDown || key == kKeyLeft || key == kKeyRight;
    const bool isMine = editable_ && editable_->isActive() && editable_->count() > 0 && !drag_.isActive();
    if (key == kKeyEscape && selected_ >= 0 && window() && window()->keyFocusView() == this) {
        setHandled(params);
        window()->setKeyFocusView(nullptr);
        return nullptr;
    }
    if (isArrow && drag_.isActive()) {
        setHandled(params);
        return nullptr;
    }
    if (!isArrow || !isMine || pointer.isAlt) {
        return CView::keyPress(params);
    }
    setHandled(params);
    if (selected_ < 0) {
        return select(0);
    }
    const bool isRow = isSliderMode_ && !editable_->isVertical();
    const bool isAlong = isRow == (key == kKeyLeft || key == kKeyRight);
    const double step = key == kKeyUp || key == kKeyRight ? 1.0 : -1.0;
    if (isAlong) {
        return stepPoint(selected_, step, pointer);
    }
    const int32_t next = selected_ + static_cast<int32_t>(isRow ? -step : step);
    return select(std::clamp(next, 0, editable_->count() - 1));
}

CError* CControlSurface::focusLost(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    if (menuMark_ == CMenuMark::None) {
        TARV_TRY(select(-1));
    }
    return watch.isAlive() ? CView::focusLost(params) : nullptr;
}

void CControlSurface::disabledChanged() {
    CView::disabledChanged();
    requestRedraw();
}

}  // namespace tarv
