#include "Audio/Presets/CAudioParamUndoList.h"

#include <utility>

namespace tarv {

void CAudioParamUndoList::append(std::unique_ptr<CAudioParamUndoStep> step, int32_t limit) {
    while (steps_.count() > position_) {
        delete steps_.last();
        steps_.removeLast();
    }
    if (steps_.isEmpty() || !steps_.last()->mergeGesture(*step)) {
        steps_.append(step.release());
        if (steps_.count() > limit) {
            delete steps_[0];
            steps_.removeAt(0);
        }
    }
    position_ = steps_.count();
}

void CAudioParamUndoList::swap(CAudioParamUndoList& other) {
    using CSteps = CArray<CAudioParamUndoStep*, 4>;
    std::swap(static_cast<CSteps&>(steps_), static_cast<CSteps&>(other.steps_));
    std::swap(position_, other.position_);
}

void CAudioParamUndoList::endActions() {
    for (int32_t i = steps_.count() - 1; i >= 0; --i) {
        CAudioParamUndoStep& step = *steps_[i];
        step.action.reset();
        step.programId = 0;
        if (step.isEmpty()) {
            delete &step;
            steps_.removeAt(i);
            position_ -= i < position_ ? 1 : 0;
        }
    }
}

void CAudioParamUndoList::moveValues(uint64_t fromProgram, uint64_t toProgram) {
    for (CAudioParamUndoStep* step : steps_) {
        if (step->programId == fromProgram) {
            step->programId = toProgram;
        }
    }
}

}  // namespace tarv
