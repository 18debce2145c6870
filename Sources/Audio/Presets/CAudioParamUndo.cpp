#include "Audio/Presets/CAudioParamUndo.h"

#include <algorithm>
#include <utility>

namespace tarv {

CError* CAudioParamUndo::init() {
    TARV_TRY(CObject::init());
    undoCountMax_ = getAttrInt("undo-count-max");
    return nullptr;
}

void CAudioParamUndo::historyChanged() {
    CAttributeMap none;
    TARV_CONSUME(sendEvent("undo-history-changed", none, false));
}

void CAudioParamUndo::addStep(std::unique_ptr<CAudioParamUndoStep> step, bool isLocked) {
    if (step->isEmpty()) {
        return;
    }
    {
        CLockScope scope(lock_);
        isNotificationDue_ = addUnderLock(std::move(step)) || isNotificationDue_;
    }
    if (!isLocked) {
        notifyIfChanged();
    }
}

void CAudioParamUndo::notifyIfChanged() {
    bool isChanged = false;
    {
        CLockScope scope(lock_);
        isChanged = std::exchange(isNotificationDue_, false);
    }
    if (isChanged) {
        historyChanged();
    }
}

bool CAudioParamUndo::addUnderLock(std::unique_ptr<CAudioParamUndoStep> step) {
    const bool isPart = record_ && !step->action;
    if (programs_) {
        programs_->adoptStep(*step);
    }
    if (isPart && record_->mergePart(*step)) {
        return false;
    }
    closeRecord();
    list_.append(std::move(step), undoCountMax_);
    return true;
}

bool CAudioParamUndo::closeRecord() {
    const bool isStep = record_ && !record_->isEmpty();
    if (isStep) {
        list_.append(std::move(record_), undoCountMax_);
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
    while (list_.position() > index) {
        moveOver(list_.stepBack(), CAudioUndoValues::CSide::Before, touched);
    }
    while (list_.position() < index) {
        moveOver(list_.stepForth(), CAudioUndoValues::CSide::After, touched);
    }
}

void CAudioParamUndo::move(int32_t target, bool isRelative) {
    CTouched touched;
    bool isOther = false;
    {
        CLockScope scope(lock_);
        isOther = closeRecord();
        const int32_t count = list_.count();
        const int64_t index = isRelative ? std::clamp<int64_t>(int64_t{list_.position()} + target, 0, count) : target;
        if (index >= 0 && index <= count && index != list_.position()) {
            isOther = true;
            walkTo(static_cast<int32_t>(index), touched);
        }
    }
    touched.notify();
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

void CAudioParamUndo::takeBack(int32_t key) {
    CTouched touched;
    bool isOther = false;
    {
        CLockScope scope(lock_);
        isOther = closeRecord();
        if (list_.isNewestOf(key)) {
            isOther = true;
            moveOver(list_.stepBack(), CAudioUndoValues::CSide::Before, touched);
            list_.dropNewest();
        }
    }
    touched.notify();
    if (isOther) {
        historyChanged();
    }
}

CArray<CString, 4> CAudioParamUndo::getStepLabels(int32_t* position) const {
    CLockScope scope(lock_);
    CArray<CString, 4> labels;
    labels.append(kStartLabel);
    for (int32_t i = 0; i < list_.count(); ++i) {
        labels.append(list_.step(i).label);
    }
    if (position) {
        *position = list_.position();
    }
    return labels;
}

void CAudioParamUndo::swapList(CAudioParamUndoList& other) {
    closeRecord();
    list_.swap(other);
    isNotificationDue_ = true;
}

void CAudioParamUndo::setPrograms(CAudioUndoPrograms* programs) {
    CLockScope scope(lock_);
    programs_ = programs;
}

void CAudioParamUndo::endActions(CAudioParamUndoList* other) {
    closeRecord();
    const int32_t count = list_.count();
    list_.endActions();
    if (other) {
        other->endActions();
    }
    isNotificationDue_ = isNotificationDue_ || list_.count() != count;
}

void CAudioParamUndo::moveValues(uint64_t fromProgram, uint64_t toProgram) {
    list_.moveValues(fromProgram, toProgram);
}

}  // namespace tarv
