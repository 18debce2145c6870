#include "Audio/Presets/CAudioParamUndoList.h"

#include <utility>

namespace tarv {

void CAudioParamUndoList::append(std::unique_ptr<CAudioParamUndoStep> step, int32_t limit) {
    const bool isMerged = position_ > 0 && steps_[position_ - 1]->mergeGesture(*step);
    if (isMerged && steps_.count() == position_) {
        return;
    }
    forgetDeleted();
    while (steps_.count() > position_) {
        redone_.insert(0, steps_.last());
        steps_.removeLast();
    }
    if (isMerged) {
        return;
    }
    steps_.append(step.release());
    if (steps_.count() > limit) {
        oldest_.reset(steps_[0]);
        steps_.removeAt(0);
    }
    position_ = steps_.count();
    if (steps_.isEmpty() || steps_.last()->coalesceKey == CAudioParamUndoStep::kNoKey) {
        forgetDeleted();
    }
}

bool CAudioParamUndoList::isNewestOf(int32_t key) const {
    const bool isAtEnd = position_ > 0 && position_ == steps_.count();
    return isAtEnd && key != CAudioParamUndoStep::kNoKey && steps_[position_ - 1]->coalesceKey == key;
}

void CAudioParamUndoList::dropNewest() {
    delete steps_.last();
    steps_.removeLast();
    if (oldest_) {
        steps_.insert(0, oldest_.release());
        ++position_;
    }
    steps_.append(redone_.data(), redone_.count());
    redone_.clear();
}

void CAudioParamUndoList::forgetDeleted() {
    redone_.deleteAll();
    oldest_.reset();
}

void CAudioParamUndoList::swap(CAudioParamUndoList& other) {
    using CSteps = CArray<CAudioParamUndoStep*, 4>;
    std::swap(static_cast<CSteps&>(steps_), static_cast<CSteps&>(other.steps_));
    std::swap(position_, other.position_);
    forgetDeleted();
    other.forgetDeleted();
}

void CAudioParamUndoList::endActions() {
    forgetDeleted();
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
    forgetDeleted();
    for (CAudioParamUndoStep* step : steps_) {
        if (step->programId == fromProgram) {
            step->programId = toProgram;
        }
    }
}

}  // namespace tarv
