#include "Audio/Graph/CAudioBypassEvaluator.h"

#include <cmath>

namespace tarv {

bool CAudioBypassEvaluator::evaluate() {
    const double value = std::round(slot_.data.value(0, 0));
    const bool isPaired = !def_.andCondition().param.isEmpty();
    const double andValue = isPaired ? std::round(andSlot_.data.value(0, 0)) : 0.0;
    const bool isDifferent = value != value_ || andValue != andValue_;
    value_ = value;
    andValue_ = andValue;
    isActive_ =
        def_.condition().interval.contains(value) && (!isPaired || def_.andCondition().interval.contains(andValue));
    isActive_ = isActive_ != def_.isInverted();
    return isDifferent;
}

}  // namespace tarv
