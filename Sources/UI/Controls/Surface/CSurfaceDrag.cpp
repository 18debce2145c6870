#include "UI/Controls/Surface/CSurfaceDrag.h"

#include <cmath>

namespace tarv {

CSurfacePointer CSurfacePointer::of(CAttributeMap& params) {
    static const CString kX("actual-x");
    static const CString kY("actual-y");
    static const CString kAlt("is-alt");
    static const CString kCtrl("is-ctrl");
    static const CString kShift("is-shift");
    return {static_cast<int32_t>(std::lround(params[kX].asReal())),
            static_cast<int32_t>(std::lround(params[kY].asReal())), params[kAlt].asBool(), params[kCtrl].asBool(),
            params[kShift].asBool()};
}

void CSurfaceDrag::begin(CMode mode, int32_t point, const CSurfacePointer& pointer) {
    mode_ = mode;
    point_ = point;
    last_ = pointer;
    movedRight_ = 0.0;
    movedUp_ = 0.0;
}

void CSurfaceDrag::setStart(int32_t offset, const CStart& x, const CStart& y) {
    starts_[offset][0] = x;
    starts_[offset][1] = y;
}

void CSurfaceDrag::moveTo(const CSurfacePointer& pointer, double precision) {
    movedRight_ += (pointer.x - last_.x) * precision;
    movedUp_ += (last_.y - pointer.y) * precision;
    last_ = pointer;
}

}  // namespace tarv
