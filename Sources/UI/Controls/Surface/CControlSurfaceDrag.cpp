// What a press does to the points that it takes: drag, stroke, reset, erasure.

#include <algorithm>
#include <utility>

#include "Core/CGlobalSettings.h"
#include "Core/CObjectWatch.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Controls/Surface/CControlSurface.h"

namespace tarv {

/// Between two points a press takes both, where the group says so.
CError* CControlSurface::pressPoint(int32_t point, const CSurfacePointer& pointer) {
    CSurfaceDrag::CMode mode =
        pointer.isAlt && isSliderMode_ ? CSurfaceDrag::CMode::Painting : CSurfaceDrag::CMode::Relative;
    if (point < 0 && !isSliderMode_ && editable_ && editable_->isActive() && editable_->isDragSegments()) {
        for (int32_t i = 0; i + 1 < editable_->count(); ++i) {
            if (placeOf(*editable_, i).x <= pointer.x && pointer.x < placeOf(*editable_, i + 1).x) {
                point = i;
                mode = CSurfaceDrag::CMode::Segment;
            }
        }
    }
    if (point < 0) {
        return nullptr;
    }
    dragged_ = editable_;
    isExportStale_ = true;
    drag_.begin(mode, point, pointer);
    valueBefore_ = dragged_->paramValue(dragged_->barRole(), 0);
    const CObjectWatch watch(*this);
    CError* error =
        beginGesture({moves(CRole::X) ? CRole::X : CRole::Y, moves(CRole::Y) ? CRole::Y : CRole::X}, "Point change");
    if (error || !watch.isAlive() || !drag_.isActive()) {
        return error;
    }
    if (mode == CSurfaceDrag::CMode::Painting) {
        return paintTo(pointer);
    }
    for (int32_t i = 0; i < drag_.pointCount(); ++i) {
        const CControlSurfaceGroup::CPoint& start = dragged_->point(point + i);
        drag_.setStart(i, {start.x, axisX_.position(start.x)}, {start.y, axisY_.position(start.y)});
        dragged_->hold(point + i);
    }
    return touchHeld();
}

/// Changes of one parameter join by themselves; those of several are one step by its own label.
CError* CControlSurface::beginGesture(std::initializer_list<CRole> roles, const char* label) {
    CParamBridge* first = nullptr;
    bool areSeveral = false;
    for (const CRole role : roles) {
        const CUIParam* param = editable_->param(role);
        CParamBridge* bridge = param && param->isActive() ? param->bridge() : nullptr;
        first = first ? first : bridge;
        areSeveral = areSeveral || (bridge && bridge != first);
    }
    return areSeveral ? gesture_.begin(*first, label) : gesture_.begin();
}

/// The host gets to know that the values are in a hand.
CError* CControlSurface::touchHeld() {
    const CObjectWatch watch(*this);
    for (const CRole role : {CRole::X, CRole::Y}) {
        CUIParam* param = moves(role) ? dragged_->param(role) : nullptr;
        CError* error = param ? gesture_.touch(*param, drag_.point(), drag_.pointCount()) : nullptr;
        if (error || !watch.isAlive() || !drag_.isActive()) {
            return error;
        }
    }
    return nullptr;
}

bool CControlSurface::moves(CRole role) const {
    if (isSliderMode_) {
        return role == dragged_->barRole();
    }
    return !(role == CRole::X ? dragged_->isFixedX() : dragged_->isFixedY());
}

/// From the values at the start, so that no rounding adds up.
void CControlSurface::moveHeld() {
    const CSurfaceLayout layout = layoutOf(*dragged_);
    const bool isRow = isSliderMode_ && !dragged_->isVertical();
    const double width = isRow ? layout.rangeLength() : innerBox().width();
    const double height = layout.rangeLength();
    const int32_t count = drag_.pointCount();
    for (int32_t k = 0; k < count; ++k) {
        // A segment's front point goes first, so that the neighbour makes room.
        const int32_t i = drag_.movedRight() > 0.0 ? count - 1 - k : k;
        if (moves(CRole::X) && width > 0.0) {
            setTo(CRole::X, drag_.point() + i, drag_.startX(i), drag_.movedRight() / width);
        }
        if (moves(CRole::Y) && height > 0.0) {
            setTo(CRole::Y, drag_.point() + i, drag_.startY(i), drag_.movedUp() / height);
        }
    }
}

void CControlSurface::setTo(CRole role, int32_t point, const CSurfaceDrag::CStart& start, double moved) {
    const CSurfaceAxis& axis = this->axis(role);
    const double value = moved == 0.0 ? start.value : axis.clamp(axis.value(start.position + moved));
    const double allowed = moved == 0.0 ? value : axis.clamp(dragged_->allowed(role, point, value));
    dragged_->setValue(role, point, allowed);
}

/// Each bar between the last place and this one takes the height of the line between both.
CError* CControlSurface::paintTo(const CSurfacePointer& pointer) {
    const CSurfaceLayout layout = layoutOf(*dragged_);
    const CSurfacePointer from = drag_.last();
    drag_.moveTo(pointer, 1.0);
    const int32_t first = layout.nearestColumn(from.x, from.y);
    const int32_t last = layout.nearestColumn(pointer.x, pointer.y);
    const CRole role = dragged_->barRole();
    const double start = layout.across(from.x, from.y);
    const double way = layout.across(pointer.x, pointer.y) - start;
    for (int32_t i = std::min(first, last); i >= 0 && i <= std::max(first, last); ++i) {
        const double part = i == last || way == 0.0 ? 1.0 : std::clamp((layout.middle(i) - start) / way, 0.0, 1.0);
        const double end = layout.along(pointer.x, pointer.y);
        const double begin = layout.along(from.x, from.y);
        // The bar that the stroke leaves keeps what it has, unless the stroke has just begun.
        if (i != first || first == last) {
            const double value = axis(role).value(layout.position(begin + (end - begin) * part));
            dragged_->hold(i);
            dragged_->setValue(role, i, axis(role).clamp(dragged_->allowed(role, i, axis(role).clamp(value))));
        }
    }
    return last >= 0 && !globalSettings().isTabletMode ? setHovered(last) : nullptr;
}

/// What was moved since the last time goes as one change.
CError* CControlSurface::timerTick() {
    const CObjectWatch watch(*this);
    const bool isPending = dragged_ && drag_.isActive() && dragged_->hasPending();
    CError* error = isPending ? dragged_->deliver(gesture_) : nullptr;
    error = error || !watch.isAlive() ? error : followRulers();
    error = error || !watch.isAlive() ? error : followGroups();
    return error || !watch.isAlive() || !isExportStale_ ? error : exportPoint();
}

/// What was moved stands, and is sent.
CError* CControlSurface::endDrag() {
    const bool wasActive = drag_.isActive();
    isExportStale_ = isExportStale_ || wasActive;
    drag_.end();
    if (!wasActive) {
        dragged_ = nullptr;
        return nullptr;
    }
    const CObjectWatch watch(*this);
    CError* error = dragged_ ? dragged_->deliver(gesture_) : nullptr;
    if (!watch.isAlive()) {
        return error;
    }
    CError* ended = gesture_.end();
    if (error) {
        delete ended;
    }
    error = error ? error : ended;
    if (watch.isAlive() && dragged_) {
        std::exchange(dragged_, nullptr)->release();
    }
    return error;
}

/// All is as before the press, and the button is held for nothing.
CError* CControlSurface::takeBackDrag() {
    if (!drag_.isActive() || !dragged_) {
        return nullptr;
    }
    drag_.stop();
    isExportStale_ = true;
    const CObjectWatch watch(*this);
    CUIParam* const param = dragged_->param(dragged_->barRole());
    const bool isSetting = isSliderMode_ && param && param->isActive() && !param->bridge();
    CError* error = isSetting ? gesture_.write(*param, valueBefore_) : nullptr;
    if (!watch.isAlive()) {
        return error;
    }
    CError* ended = gesture_.takeBack();
    if (error) {
        delete ended;
    }
    if (watch.isAlive() && dragged_) {
        dragged_->release();
    }
    return error ? error : ended;
}

/// Another group, a preset, a step of the history: the new values stand, and the button is held for nothing.
void CControlSurface::onGestureCancelled(CParamGesture&) {
    if (drag_.isActive()) {
        drag_.stop();
    }
    if (dragged_) {
        dragged_->release();
    }
}

CError* CControlSurface::cancelDragOf(CControlSurfaceGroup& group) {
    if (&group != dragged_ || !drag_.isActive()) {
        return nullptr;
    }
    drag_.stop();
    const CObjectWatch watch(*this);
    CError* error = gesture_.end();
    if (watch.isAlive() && dragged_) {
        dragged_->release();
    }
    return error;
}

/// One gesture, of a step in the history.
CError* CControlSurface::resetPoints(int32_t first, int32_t count) {
    const CRole role = isSliderMode_ ? editable_->barRole() : CRole::Y;
    CUIParam* param = editable_->param(role);
    CArray<double, 10> values;
    for (int32_t i = 0; i < count; ++i) {
        double value = 0.0;
        if (!param || !editable_->resetValue(role, first + i, value)) {
            return nullptr;
        }
        values.append(value);
    }
    const CObjectWatch watch(*this);
    CError* error = gesture_.begin();
    error = error || !watch.isAlive() ? error : gesture_.write(*param, values.data(), count, first);
    error = error || !watch.isAlive() ? error : gesture_.end();
    if (watch.isAlive() && editable_) {
        editable_->readValues();
    }
    return error;
}

/// Those behind it move up, and the count goes down, unless there are as few as there may be.
CError* CControlSurface::erasePoint(int32_t point) {
    CUIParam* counter = editable_->param(CRole::Count);
    if (!counter || !counter->isActive() || editable_->count() - 1.0 < counter->minimum()) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    CError* error = beginGesture({CRole::X, CRole::Y, CRole::BandWidth, CRole::Count}, "Point removal");
    if (error || !watch.isAlive()) {
        return error;
    }
    const int32_t count = editable_->count();
    for (int32_t i = point; i + 1 < count; ++i) {
        editable_->setValue(CRole::X, i, editable_->point(i + 1).x);
        editable_->setValue(CRole::Y, i, editable_->point(i + 1).y);
        editable_->setValue(CRole::BandWidth, i, editable_->point(i + 1).bandWidth);
    }
    error = editable_->deliver(gesture_);
    error = error || !watch.isAlive() ? error : gesture_.write(*counter, count - 1.0);
    return error || !watch.isAlive() ? error : gesture_.end();
}

}  // namespace tarv
