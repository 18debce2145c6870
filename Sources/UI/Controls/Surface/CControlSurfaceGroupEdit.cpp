// Edits of a list of points: kept until they are sent, within its rules.

#include <algorithm>
#include <cmath>

#include "Core/CObjectWatch.h"
#include "UI/Binding/CParamGesture.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Controls/Surface/CControlSurface.h"
#include "UI/Controls/Surface/CControlSurfaceGroup.h"

namespace tarv {

double& CControlSurfaceGroup::valueOf(CRole role, int32_t index) {
    CPoint& point = points_[index];
    return role == CRole::X ? point.x : role == CRole::BandWidth ? point.bandWidth : point.y;
}

bool& CControlSurfaceGroup::pendingOf(CPending& pending, CRole role) {
    return role == CRole::X ? pending.isX : role == CRole::BandWidth ? pending.isBandWidth : pending.isY;
}

double CControlSurfaceGroup::allowed(CRole role, int32_t index, double value) const {
    if (valueStep_ > 0.0) {
        // Steps of a twentieth as they are written: 0.35, and not what the products of the step come to.
        const double perUnit = std::round(1.0 / valueStep_);
        const bool isPart = std::fabs(perUnit * valueStep_ - 1.0) < 1e-9;
        value = isPart ? std::round(value * perUnit) / perUnit : std::round(value / valueStep_) * valueStep_;
    }
    if (role == CRole::X && isSorted_) {
        const double distance = std::max(minDistance_, 0.0);
        const double low = index > 0 ? points_[index - 1].x + distance : -HUGE_VAL;
        const double high = index + 1 < points_.count() ? points_[index + 1].x - distance : HUGE_VAL;
        // Neighbours that are too near already leave the point where it is.
        return low <= high ? std::clamp(value, low, high) : points_[index].x;
    }
    return value;
}

void CControlSurfaceGroup::setValue(CRole role, int32_t index, double value) {
    double& shown = valueOf(role, index);
    if (shown == value) {
        return;
    }
    surface_->pointMoves(*this, index);
    shown = value;
    surface_->pointMoves(*this, index);
    bool& isPending = pendingOf(pending_[index], role);
    pendingCount_ += isPending ? 0 : 1;
    isPending = true;
}

CError* CControlSurfaceGroup::deliver(CParamGesture& gesture) {
    const CObjectWatch watch(*this);
    for (const CRole role : {CRole::X, CRole::Y, CRole::BandWidth}) {
        CError* error = pendingCount_ > 0 ? deliverRole(role, gesture) : nullptr;
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

/// Neighbours go together.
CError* CControlSurfaceGroup::deliverRole(CRole role, CParamGesture& gesture) {
    const CObjectWatch watch(*this);
    CUIParam* target = param(role);
    for (int32_t first = 0; first < points_.count(); ++first) {
        sending_.clear();
        while (first + sending_.count() < points_.count()) {
            const int32_t index = first + sending_.count();
            bool& isPending = pendingOf(pending_[index], role);
            if (!isPending) {
                break;
            }
            isPending = false;
            --pendingCount_;
            sending_.append(valueOf(role, index));
        }
        const int32_t count = sending_.count();
        CError* error = count > 0 && target ? gesture.write(*target, sending_.data(), count, first) : nullptr;
        if (error || !watch.isAlive()) {
            return error;
        }
        first += count;
    }
    return nullptr;
}

void CControlSurfaceGroup::release() {
    for (int32_t i = 0; i < points_.count(); ++i) {
        held_[i] = false;
        pending_[i] = {};
    }
    pendingCount_ = 0;
    readValues();
}

}  // namespace tarv
