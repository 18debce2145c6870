#include "Audio/Presets/CAudioParamUndo.h"

#include <algorithm>
#include <utility>

namespace tarv {

void CAudioUndoAction::CTouched::add(CAudioParam& param) {
    if (params.indexOf(&param) < 0) {
        params.append(&param);
    }
}

void CAudioUndoAction::CTouched::add(CObserver& observer) {
    if (observers.indexOf(&observer) < 0) {
        observers.append(&observer);
    }
}

void CAudioParamUndoStep::add(CAudioParam& param, const CAudioParamData& before, const CAudioParamData& after) {
    add(param, CAudioUndoValues(before, after));
}

void CAudioParamUndoStep::add(CAudioParam& param, CAudioUndoValues&& difference) {
    if (!difference.isEmpty()) {
        values[&param].add(std::move(difference));
    }
}

void CAudioParamUndoList::swap(CAudioParamUndoList& other) {
    using CSteps = CArray<CAudioParamUndoStep*, 4>;
    std::swap(static_cast<CSteps&>(steps), static_cast<CSteps&>(other.steps));
    std::swap(position, other.position);
}

void CAudioParamUndoList::endActions() {
    for (int32_t i = steps.count() - 1; i >= 0; --i) {
        CAudioParamUndoStep& step = *steps[i];
        step.action.reset();
        step.programId = 0;
        if (step.isEmpty()) {
            delete &step;
            steps.removeAt(i);
            position -= i < position ? 1 : 0;
        }
    }
}

CError* CAudioParamUndo::init() {
    TARV_TRY(CObject::init());
    undoCountMax_ = getAttrInt("undo-count-max");
    return nullptr;
}

void CAudioParamUndo::historyChanged() {
    CAttributeMap none;
    TARV_CONSUME(sendEvent("undo-history-changed", none, false));
}

bool CAudioParamUndo::mergeIntoLast(CAudioParamUndoStep& step) {
    if (list_.steps.isEmpty() || !step.coalesce || step.coalesceKey == CAudioParamUndoStep::kNoKey) {
        return false;
    }
    CAudioParamUndoStep& last = *list_.steps.last();
    if (!last.coalesce || last.coalesceKey != step.coalesceKey || last.programId != step.programId ||
        !last.action != !step.action) {
        return false;
    }
    const bool isPart = std::all_of(step.values.begin(), step.values.end(), [&last](const auto& entry) {
        return last.values.find(entry.first) != last.values.end();
    });
    if (!isPart || (step.action && !last.action->merge(*step.action))) {
        return false;
    }
    for (auto& [param, values] : step.values) {
        last.add(*param, std::move(values));
    }
    return true;
}

void CAudioParamUndo::append(std::unique_ptr<CAudioParamUndoStep> step) {
    while (list_.steps.count() > list_.position) {
        delete list_.steps.last();
        list_.steps.removeLast();
    }
    if (!mergeIntoLast(*step)) {
        list_.steps.append(step.release());
        if (list_.steps.count() > undoCountMax_) {
            delete list_.steps[0];
            list_.steps.removeAt(0);
        }
    }
    list_.position = list_.steps.count();
}

void CAudioParamUndo::addStep(std::unique_ptr<CAudioParamUndoStep> step, bool isLocked) {
    if (step->isEmpty()) {
        return;
    }
    {
        CLockScope scope(lock_);
        isUntold_ = addUnderLock(std::move(step)) || isUntold_;
    }
    if (!isLocked) {
        notifyIfChanged();
    }
}

void CAudioParamUndo::notifyIfChanged() {
    bool isChanged = false;
    {
        CLockScope scope(lock_);
        isChanged = std::exchange(isUntold_, false);
    }
    if (isChanged) {
        historyChanged();
    }
}

// Also of an action that came from values. Not of another program's.
bool CAudioParamUndo::addToRecord(CAudioParamUndoStep& step) {
    if (!record_->isEmpty() && record_->programId != step.programId) {
        return false;
    }
    if (step.action && record_->action && !record_->action->merge(*step.action)) {
        return false;
    }
    if (step.action && !record_->action) {
        record_->action = std::move(step.action);
    }
    record_->programId = step.programId;
    for (auto& [param, values] : step.values) {
        record_->add(*param, std::move(values));
    }
    return true;
}

bool CAudioParamUndo::addUnderLock(std::unique_ptr<CAudioParamUndoStep> step) {
    const bool isPart = record_ && !step->action;
    if (programs_) {
        programs_->adoptStep(*step);
    }
    if (isPart && addToRecord(*step)) {
        return false;
    }
    closeRecord();
    append(std::move(step));
    return true;
}

bool CAudioParamUndo::closeRecord() {
    const bool isStep = record_ && !record_->isEmpty();
    if (isStep) {
        append(std::move(record_));
    }
    record_.reset();
    return isStep;
}

void CAudioParamUndo::beginRecord(std::unique_ptr<CAudioParamUndoStep> record) {
    bool isChanged = false;
    {
        CLockScope scope(lock_);
        isChanged = closeRecord();
        record_ = std::move(record);
    }
    if (isChanged) {
        historyChanged();
    }
}

void CAudioParamUndo::endRecord() {
    bool isChanged = false;
    {
        CLockScope scope(lock_);
        isChanged = closeRecord();
    }
    if (isChanged) {
        historyChanged();
    }
}

bool CAudioParamUndo::isForCurrent(const CAudioParamUndoStep& step) const {
    return step.programId == 0 || !programs_ || programs_->currentProgramId() == step.programId;
}

void CAudioParamUndo::moveOver(CAudioParamUndoStep& step, CAudioUndoValues::CSide side, CTouched& touched) {
    if (step.action) {
        side == CAudioUndoValues::CSide::Before ? step.action->undo(touched) : step.action->redo(touched);
    }
    if (!isForCurrent(step)) {
        return;
    }
    for (auto& [param, values] : step.values) {
        if (values.assignTo(*param, side)) {
            touched.add(*param);
        }
    }
}

void CAudioParamUndo::walkTo(int32_t index, CTouched& touched) {
    for (; list_.position > index; --list_.position) {
        moveOver(*list_.steps[list_.position - 1], CAudioUndoValues::CSide::Before, touched);
    }
    for (; list_.position < index; ++list_.position) {
        moveOver(*list_.steps[list_.position], CAudioUndoValues::CSide::After, touched);
    }
}

void CAudioParamUndo::move(int32_t target, bool isRelative) {
    CTouched touched;
    bool isOther = false;
    {
        CLockScope scope(lock_);
        isOther = closeRecord();
        const int32_t count = list_.steps.count();
        const int64_t index = isRelative ? std::clamp<int64_t>(int64_t{list_.position} + target, 0, count) : target;
        if (index >= 0 && index <= count && index != list_.position) {
            isOther = true;
            walkTo(static_cast<int32_t>(index), touched);
        }
    }
    for (CAudioParam* param : touched.params) {
        param->notifyAll();
    }
    for (CAudioUndoAction::CObserver* observer : touched.observers) {
        observer->actionsMoved();
    }
    if (isOther) {
        historyChanged();
    }
}

void CAudioParamUndo::undo(int32_t count) {
    move(-std::max(0, count), true);
}

void CAudioParamUndo::redo(int32_t count) {
    move(std::max(0, count), true);
}

void CAudioParamUndo::selectStep(int32_t index) {
    move(index, false);
}

CArray<CString, 4> CAudioParamUndo::getStepLabels(int32_t* position) const {
    CLockScope scope(lock_);
    CArray<CString, 4> labels;
    labels.append(kStartLabel);
    for (const CAudioParamUndoStep* step : list_.steps) {
        labels.append(step->label);
    }
    if (position) {
        *position = list_.position;
    }
    return labels;
}

void CAudioParamUndo::swapList(CAudioParamUndoList& other) {
    closeRecord();
    list_.swap(other);
    isUntold_ = true;
}

void CAudioParamUndo::setPrograms(CAudioUndoPrograms* programs) {
    CLockScope scope(lock_);
    programs_ = programs;
}

void CAudioParamUndo::endActions(CAudioParamUndoList* other) {
    closeRecord();
    const int32_t count = list_.steps.count();
    list_.endActions();
    if (other) {
        other->endActions();
    }
    isUntold_ = isUntold_ || list_.steps.count() != count;
}

void CAudioParamUndo::moveValues(uint64_t fromProgram, uint64_t toProgram) {
    for (CAudioParamUndoStep* step : list_.steps) {
        if (step->programId == fromProgram) {
            step->programId = toProgram;
        }
    }
}

}  // namespace tarv
