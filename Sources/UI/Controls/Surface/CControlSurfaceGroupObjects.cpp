// Objects of the definitions that stand for points.

#include <algorithm>

#include "Core/CObjectWatch.h"
#include "UI/Controls/Surface/CControlSurface.h"
#include "UI/Controls/Surface/CControlSurfaceGroup.h"

namespace tarv {

/// Others, of another key.
CError* CControlSurfaceGroup::objectKeyChanged() {
    if (!isFinished_) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    while (watch.isAlive() && !objects_.isEmpty()) {
        removeLastObject();
    }
    return watch.isAlive() ? makeObjects() : nullptr;
}

void CControlSurfaceGroup::removeLastObject() {
    CObject* last = objects_.last().object;
    objects_.removeLast();
    delete last;
}

/// One for each point, kept as long as there are as many.
CError* CControlSurfaceGroup::makeObjects() {
    const CString key = getAttrString("cs-point");
    const int32_t count = key.isEmpty() ? 0 : points_.count();
    const CObjectWatch watch(*this);
    while (watch.isAlive() && objects_.count() > count) {
        removeLastObject();
    }
    while (watch.isAlive() && objects_.count() < count) {
        CAttributeMap attributes;
        attributes["index"] = CAttributeValue::fromInt(objects_.count());
        CObject* made = nullptr;
        CError* error = createChild(made, key, "point", false, &attributes);
        if (error || !watch.isAlive()) {
            return error;
        }
        objects_.append({made, {}, false, false, false});
    }
    return watch.isAlive() ? showObjects() : nullptr;
}

CError* CControlSurfaceGroup::showObjects() {
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < std::min(objects_.count(), points_.count()); ++i) {
        CError* error = showObject(i);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

CError* CControlSurfaceGroup::showObject(int32_t index) {
    static const CString kNames[] = {"x", "y", "bw", "is-hovered", "is-selected"};
    CPointObject& shown = objects_[index];
    const CPointObject now{shown.object, points_[index], surface_->isHovered(*this, index),
                           surface_->isMarked(*this, index), true};
    if (shown == now) {
        return nullptr;
    }
    shown = now;
    const CAttributeValue values[] = {CAttributeValue::fromReal(now.point.x), CAttributeValue::fromReal(now.point.y),
                                      CAttributeValue::fromReal(now.point.bandWidth),
                                      CAttributeValue::fromBool(now.isHovered),
                                      CAttributeValue::fromBool(now.isSelected)};
    const CObjectWatch watch(*now.object);
    for (int32_t i = 0; i < 5; ++i) {
        CError* error = now.object->setAttribute(kNames[i], values[i]);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

void CControlSurfaceGroup::removeChild(CObject* child) {
    CObject::removeChild(child);
    for (int32_t i = objects_.count() - 1; i >= 0; --i) {
        if (objects_[i].object == child) {
            objects_.removeAt(i);
        }
    }
}

}  // namespace tarv
