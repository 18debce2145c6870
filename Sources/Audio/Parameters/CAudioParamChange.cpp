#include "Audio/Parameters/CAudioParamChange.h"

#include <algorithm>

#include "Audio/Parameters/CAudioParam.h"
#include "Audio/Parameters/CAudioParamChangePool.h"

namespace tarv {

void CAudioParamChange::shape(CAudioParam& target, int32_t targetGroup, int32_t firstElement, int32_t elementCount,
                              bool isResizing) {
    param = &target;
    group = targetGroup;
    first = firstElement;
    count = std::clamp(elementCount, 0, CAudioParamData::kElementLimit);
    resize = isResizing ? 1 : 0;
    elementSize = target.info().elementSize();
    isString = target.info().isString() ? 1 : 0;
    values.resize(count * elementSize);
}

void CAudioParamChange::fillElement(const CAudioParamInfo& info, const CAudioParamData& present, int32_t index,
                                    double value) {
    for (int32_t i = 0; i < info.elementSize(); ++i) {
        values[i] = i == index ? info.clamp(i, value) : present.value(group, first, i);
    }
}

void CAudioParamChange::release() {
    if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        pool_->giveBack(this);
    }
}

}  // namespace tarv
