// A list of points: its attributes, and its values as the parameters have them.

#include "UI/Controls/Surface/CControlSurfaceGroup.h"

#include <algorithm>
#include <cmath>

#include "Core/CNotifyServer.h"
#include "Core/CObjectWatch.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Controls/Surface/CControlSurface.h"

namespace tarv {

namespace {

constexpr const char* kRoleNames[CControlSurfaceGroup::kRoles] = {
    "ui-param-count", "ui-param-x", "ui-param-y", "ui-param-bw", "ui-param-popup", "ui-param-sel", "ui-param-reset"};

constexpr const char* kAttributes[] = {"kind",        "is-visible",       "is-editable", "is-fixed-x",
                                       "is-fixed-y",  "is-sorted",        "is-balanced", "min-distance",
                                       "is-vertical", "is-drag-segments", "value-step"};

}  // namespace

CControlSurfaceGroup::~CControlSurfaceGroup() {
    if (surface_) {
        surface_->groupGone(*this);
    }
}

CError* CControlSurfaceGroup::initClass(CClassDescriptor& descriptor) {
    for (const char* name : kAttributes) {
        descriptor.addHandler<&CControlSurfaceGroup::attributesChanged>(name);
    }
    descriptor.addHandler<&CControlSurfaceGroup::countChanged>("point-count");
    descriptor.addHandler<&CControlSurfaceGroup::colorChanged>("color");
    descriptor.addHandler<&CControlSurfaceGroup::objectKeyChanged>("cs-point");
    return nullptr;
}

CError* CControlSurfaceGroup::init() {
    TARV_TRY(CObject::init());
    surface_ = dynamic_cast<CControlSurface*>(parent());
    if (!surface_) {
        TARV_FAIL("@tarvstr_CControlSurfaceGroup_init_InvalidParent Parent is not a CControlSurface object.");
    }
    surface_->groupAdded(*this);
    readAttributes();
    return nullptr;
}

CError* CControlSurfaceGroup::finishInit() {
    TARV_TRY(CObject::finishInit());
    for (int32_t i = 0; i < kRoles; ++i) {
        params_[i] = dynamic_cast<CUIParam*>(findChild(kRoleNames[i]));
    }
    if (param(CRole::Popup) && !findChild("value-list")) {
        TARV_FAIL("@tarvstr_CControlSurfaceGroup_finishInit_NoValueList Control surface popup value list not found");
    }
    surface_->groupColorsChanged();
    isFinished_ = true;
    const CObjectWatch watch(*this);
    CError* error = updateCount();
    return error || !watch.isAlive() ? error : makeObjects();
}

void CControlSurfaceGroup::readAttributes() {
    static const CString kAnchor("anchor");
    isAnchor_ = getAttrString("kind") == kAnchor;
    isVisible_ = getAttrBoolOr("is-visible", true);
    isEditable_ = getAttrBoolOr("is-editable", true);
    isFixedX_ = getAttrBool("is-fixed-x");
    isFixedY_ = getAttrBool("is-fixed-y");
    isSorted_ = getAttrBool("is-sorted");
    isBalanced_ = getAttrBool("is-balanced");
    isVertical_ = getAttrBoolOr("is-vertical", true);
    isDragSegments_ = getAttrBool("is-drag-segments");
    minDistance_ = getAttrRealOr("min-distance", -1.0);
    const double step = getAttrReal("value-step");
    valueStep_ = std::isfinite(step) && step > 0.0 ? step : 0.0;
    colorIndex_ = getAttrInt("color");
}

CError* CControlSurfaceGroup::attributesChanged() {
    readAttributes();
    return surface_ ? surface_->groupChanged(*this) : nullptr;
}

CError* CControlSurfaceGroup::countChanged() {
    return updateCount();
}

CError* CControlSurfaceGroup::colorChanged() {
    colorIndex_ = getAttrInt("color");
    if (surface_) {
        surface_->groupColorsChanged();
    }
    return nullptr;
}

bool CControlSurfaceGroup::roleOf(const CUIParam& param, CRole& role) const {
    for (int32_t i = 0; i < kRoles; ++i) {
        if (param.name() == CString(kRoleNames[i])) {
            role = static_cast<CRole>(i);
            return true;
        }
    }
    return false;
}

int32_t CControlSurfaceGroup::followedElements(const CUIParam& param) const {
    const bool isList = &param != this->param(CRole::Count) && &param != this->param(CRole::Selected);
    return isList ? std::max(points_.count(), 1) : 1;
}

bool CControlSurfaceGroup::isActive() const {
    const CUIParam* bars = param(barRole());
    return bars && bars->isActive();
}

int32_t CControlSurfaceGroup::wantedCount() const {
    double count = getAttrReal("point-count");
    if (!hasAttr("point-count") || getAttrString("point-count").isEmpty()) {
        const CUIParam* counter = param(CRole::Count);
        count = counter && counter->isActive() ? counter->getValue() : points_.count();
    }
    return static_cast<int32_t>(std::clamp(std::round(std::isnan(count) ? 0.0 : count), 0.0, double{kMaxPoints}));
}

CError* CControlSurfaceGroup::updateCount() {
    if (!surface_) {
        return nullptr;
    }
    const int32_t count = wantedCount();
    const bool isOther = count != points_.count();
    if (isOther) {
        const CObjectWatch watch(*this);
        CError* error = surface_->cancelDragOf(*this);
        if (error || !watch.isAlive()) {
            return error;
        }
        points_.resize(count);
        held_.resize(count);
        pending_.resize(count);
    }
    readValues();
    if (!isOther) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    CError* error = isFinished_ ? makeObjects() : nullptr;
    error = error || !watch.isAlive() ? error : surface_->groupChanged(*this);
    static const CString kEvent("slider-count-changed");
    if (error || !watch.isAlive() || !notifyServer() || !notifyServer()->hasListeners(fullName(), kEvent)) {
        return error;
    }
    CAttributeMap none;
    return sendEvent(kEvent, none, false);
}

double CControlSurfaceGroup::paramValue(CRole role, int32_t index) const {
    const CUIParam* source = param(role);
    if (!source || !source->isActive()) {
        return 0.0;
    }
    if (index > 0 && !source->bridge()) {
        return 0.0;  // a setting is one value
    }
    return surface_ ? surface_->gesture().value(*source, index) : 0.0;
}

void CControlSurfaceGroup::paramRange(CRole role, double& low, double& high) const {
    const CUIParam* source = param(role);
    low = source ? source->minimum() : 0.0;
    high = source ? source->maximum() : 0.0;
    if (!(low < high)) {
        low = 0.0;
        high = 1.0;
    }
}

bool CControlSurfaceGroup::resetValue(CRole role, int32_t index, double& value) const {
    const CUIParam* reset = param(CRole::Reset);
    if (reset && reset->isActive() && role == barRole()) {
        value = paramValue(CRole::Reset, index);
        return true;
    }
    const CUIParam* source = param(role);
    return source && source->defaultValue(index, value);
}

/// What a source gave last stands after the source has become inactive.
CControlSurfaceGroup::CPoint CControlSurfaceGroup::readPoint(int32_t index) const {
    const auto read = [&](CRole role, double last) {
        const CUIParam* source = param(role);
        return source && !source->isActive() ? last : paramValue(role, index);
    };
    const CPoint& last = points_[index];
    return {read(CRole::X, last.x), read(CRole::Y, last.y), read(CRole::BandWidth, last.bandWidth)};
}

void CControlSurfaceGroup::readValues() {
    for (int32_t i = 0; i < points_.count(); ++i) {
        const CPoint value = readPoint(i);
        if (!held_[i] && !(points_[i] == value)) {
            valuesRead(i, value);
        }
    }
}

void CControlSurfaceGroup::valuesRead(int32_t index, const CPoint& value) {
    if (surface_) {
        surface_->pointMoves(*this, index);
    }
    points_[index] = value;
    if (surface_) {
        surface_->pointMoves(*this, index);
    }
}

void CControlSurfaceGroup::readSelected() {
    const CUIParam* source = param(CRole::Selected);
    const int32_t selected =
        source && source->isActive() ? static_cast<int32_t>(std::clamp(source->getValue(), -1.0, 1e6)) : -1;
    if (selected != selected_) {
        selected_ = selected;
        if (surface_) {
            surface_->requestRedraw();
        }
    }
}

CError* CControlSurfaceGroup::onParamChanged(CUIParam& changed) {
    CRole role = CRole::Count;
    if (!roleOf(changed, role)) {
        return nullptr;
    }
    params_[static_cast<int32_t>(role)] = &changed;
    if (role == CRole::Count) {
        return updateCount();
    }
    if (role == CRole::Selected) {
        readSelected();
        return nullptr;
    }
    // The values of another channel group end a drag: what is held belongs to the former one.
    if (role == barRole() && changed.group() != group_) {
        group_ = changed.group();
        const CObjectWatch watch(*this);
        CError* error = surface_ ? surface_->cancelDragOf(*this) : nullptr;
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    readValues();
    return nullptr;
}

CError* CControlSurfaceGroup::onParamActivity(CUIParam& changed) {
    CRole role = CRole::Count;
    if (!roleOf(changed, role)) {
        return nullptr;
    }
    params_[static_cast<int32_t>(role)] = &changed;
    group_ = role == barRole() ? changed.group() : group_;
    if (changed.isActive()) {
        return nullptr;  // range and value follow
    }
    const CObjectWatch watch(*this);
    CError* error = surface_ ? surface_->cancelDragOf(*this) : nullptr;
    if (error || !watch.isAlive()) {
        return error;
    }
    TARV_TRY(updateCount());
    return watch.isAlive() && surface_ ? surface_->groupChanged(*this) : nullptr;
}

CError* CControlSurfaceGroup::onParamRangeChanged(CUIParam& changed) {
    CRole role = CRole::Count;
    if (roleOf(changed, role)) {
        params_[static_cast<int32_t>(role)] = &changed;
    }
    return surface_ ? surface_->groupChanged(*this) : nullptr;
}

void CControlSurfaceGroup::onParamRemoved(CUIParam& removed) {
    for (CUIParam*& held : params_) {
        held = held == &removed ? nullptr : held;
    }
}

}  // namespace tarv
