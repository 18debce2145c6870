#include "Audio/Presets/CAudioParamUndoStep.h"

#include <algorithm>
#include <utility>

namespace tarv {

void CAudioParamUndoStep::add(CAudioParam& param, const CAudioParamData& before, const CAudioParamData& after) {
    add(param, CAudioUndoValues(before, after));
}

void CAudioParamUndoStep::add(CAudioParam& param, CAudioUndoValues&& difference) {
    if (!difference.isEmpty()) {
        values[&param].add(std::move(difference));
    }
}

void CAudioParamUndoStep::addValues(CAudioParamUndoStep& later) {
    for (auto& [param, difference] : later.values) {
        add(*param, std::move(difference));
    }
}

bool CAudioParamUndoStep::mergeGesture(CAudioParamUndoStep& later) {
    const bool isSameGesture = coalesce && later.coalesce && coalesceKey != kNoKey &&
                               coalesceKey == later.coalesceKey && programId == later.programId &&
                               !action == !later.action;
    if (!isSameGesture) {
        return false;
    }
    const bool isPart = std::all_of(later.values.begin(), later.values.end(),
                                    [this](const auto& entry) { return values.find(entry.first) != values.end(); });
    if (!isPart || (action && !action->merge(*later.action))) {
        return false;
    }
    addValues(later);
    return true;
}

bool CAudioParamUndoStep::mergePart(CAudioParamUndoStep& part) {
    if (!isEmpty() && programId != part.programId) {
        return false;
    }
    if (part.action && action && !action->merge(*part.action)) {
        return false;
    }
    if (part.action && !action) {
        action = std::move(part.action);
    }
    programId = part.programId;
    addValues(part);
    return true;
}

}  // namespace tarv
