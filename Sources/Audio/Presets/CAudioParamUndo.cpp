#include "Audio/Presets/CAudioParamUndo.h"

#include <algorithm>
#include <utility>

namespace tarv {

void CAudioParamUndoStep::add(CAudioParam& param, CAudioParamData before, CAudioParamData after) {
    const auto found = values.find(&param);
    if (found == values.end()) {
        values.emplace(&param, CValues{std::move(before), std::move(after)});
    } else {
        found->second.after = std::move(after);
    }
}

void CAudioParamUndoList::swap(CAudioParamUndoList& other) {
    using CSteps = CArray<CAudioParamUndoStep*, 4>;
    std::swap(static_cast<CSteps&>(steps), static_cast<CSteps&>(other.steps));
    std::swap(position, other.position);
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
    if (list_.steps.isEmpty() || !step.coalesce || step.deed) {
        return false;
    }
    CAudioParamUndoStep& last = *list_.steps.last();
    if (!last.coalesce || step.coalesceKey == CAudioParamUndoStep::kNoKey || last.coalesceKey != step.coalesceKey ||
        last.deed) {
        return false;
    }
    const bool isPart = std::all_of(step.values.begin(), step.values.end(), [&last](const auto& entry) {
        return last.values.find(entry.first) != last.values.end();
    });
    if (isPart) {
        for (auto& [param, values] : step.values) {
            last.values.find(param)->second.after = std::move(values.after);
        }
    }
    return isPart;
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
        tellIfChanged();
    }
}

void CAudioParamUndo::tellIfChanged() {
    bool isChanged = false;
    {
        CLockScope scope(lock_);
        isChanged = std::exchange(isUntold_, false);
    }
    if (isChanged) {
        historyChanged();
    }
}

bool CAudioParamUndo::addUnderLock(std::unique_ptr<CAudioParamUndoStep> step) {
    if (record_ && !step->deed) {
        for (auto& [param, values] : step->values) {
            record_->add(*param, std::move(values.before), std::move(values.after));
        }
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

void CAudioParamUndo::CTouched::add(CAudioUndoDeed& deed) {
    if (witnesses.indexOf(&deed.witness()) < 0) {
        witnesses.append(&deed.witness());
    }
}

void CAudioParamUndo::assignAll(CAudioParamUndoStep& step, CAudioParamData CAudioParamUndoStep::CValues::*which,
                                CTouched& touched) {
    for (auto& [param, values] : step.values) {
        if (param->collector().assign({param, values.*which}) && touched.params.indexOf(param) < 0) {
            touched.params.append(param);
        }
    }
}

void CAudioParamUndo::walkTo(int32_t index, CTouched& touched) {
    for (; list_.position > index; --list_.position) {
        CAudioParamUndoStep& step = *list_.steps[list_.position - 1];
        if (step.deed) {
            step.deed->undo();
            touched.add(*step.deed);
        }
        assignAll(step, &CAudioParamUndoStep::CValues::before, touched);
    }
    for (; list_.position < index; ++list_.position) {
        CAudioParamUndoStep& step = *list_.steps[list_.position];
        if (step.deed) {
            step.deed->redo();
            touched.add(*step.deed);
        }
        assignAll(step, &CAudioParamUndoStep::CValues::after, touched);
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
        param->tellAll();
    }
    for (CAudioUndoDeed::CWitness* witness : touched.witnesses) {
        witness->deedsChanged();
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

}  // namespace tarv
