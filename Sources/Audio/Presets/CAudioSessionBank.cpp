#include "Audio/Presets/CAudioSessionBank.h"

#include <utility>

#include "Audio/Presets/CAudioProgramAction.h"

namespace tarv {

namespace {

constexpr const char* kName = "Session Bank";
constexpr const char* kDefaultName = "Default";

/// A whole value of one text.
CAudioParamData textValue(const CAudioParamInfo& info, const CString& text) {
    CAudioParamData pool;
    CAudioParamChange change;
    change.isString = 1;
    change.resize = 1;
    change.count = 1;
    change.values.append(pool.addString(text));
    change.sourcePool = &pool;
    CAudioParamData value;
    value.reset(info);
    value.apply(change);
    return value;
}

}  // namespace

CAudioSessionBank::CAudioSessionBank(const CAudioPresetCodec& codec, CAudioUndoAction::CObserver& observer)
    : codec_(codec), observer_(observer) {}

void CAudioSessionBank::init(const CAudioPresetBank& presets, const CString& prefix) {
    programs_.copyPresets(presets);
    programs_.setName(kName);
    if (programs_.count() == 0) {
        programs_.append().setName(prefix + ":" + kDefaultName);
    }
    identify(programs_);
}

int32_t CAudioSessionBank::count() const {
    CLockScope scope(lock_);
    return programs_.count();
}

int32_t CAudioSessionBank::current() const {
    CLockScope scope(lock_);
    return programs_.selectedIndex();
}

CString CAudioSessionBank::programName(int32_t index) const {
    CLockScope scope(lock_);
    return index >= 0 && index < programs_.count() ? programs_.preset(index).displayName() : CString();
}

uint64_t CAudioSessionBank::programId(int32_t index) const {
    CLockScope scope(lock_);
    return index >= 0 && index < programs_.count() ? programs_.preset(index).identity().id : 0;
}

CString CAudioSessionBank::name() const {
    CLockScope scope(lock_);
    return programs_.name();
}

bool CAudioSessionBank::isAlternate() const {
    CLockScope scope(lock_);
    return isAlternate_;
}

void CAudioSessionBank::addNameShown(CAssignments& assignments) const {
    const CString shown = programs_.preset(programs_.selectedIndex()).displayName();
    if (nameParam_ && nameParam_->isDefined() && nameParam_->info().isString() && nameParam_->text(0, 0) != shown) {
        assignments.append({nameParam_, textValue(nameParam_->info(), shown), -1});
    }
}

void CAudioSessionBank::showName() {
    CAssignments assignments;
    addNameShown(assignments);
    for (const CAudioParamCollector::CAssignment& assignment : assignments) {
        assignment.param->collector().assign(assignment);
    }
}

// The listener of the name's parameter is called when all locks are free, which is too late where the history goes on
// from a step of that parameter to one of the bank.
void CAudioSessionBank::captureName() {
    if (nameParam_ && nameParam_->isDefined()) {
        isNamePending_ = rename(programs_.selectedIndex(), nameParam_->text(0, 0)) || isNamePending_;
    }
}

bool CAudioSessionBank::followName() {
    CLockScope scope(lock_);
    const bool isRenamed = rename(programs_.selectedIndex(), nameParam_->text(0, 0)) || isNamePending_;
    isNamePending_ = false;
    return isRenamed;
}

void CAudioSessionBank::captureCurrent() {
    captureName();
    if (codec_.capture(slot(), true)) {
        markChanged(slot());
    }
}

bool CAudioSessionBank::rename(int32_t index, const CString& displayName) {
    if (index < 0 || index >= programs_.count() || programs_.preset(index).displayName() == displayName) {
        return false;
    }
    programs_.preset(index).setDisplayName(displayName);
    markChanged(programs_.preset(index));
    return true;
}

void CAudioSessionBank::identify(CAudioPresetBank& bank) {
    for (int32_t i = 0; i < bank.count(); ++i) {
        identify(bank.preset(i));
    }
}

void CAudioSessionBank::replaceAll(CAudioPresetBank& bank) {
    bank.setName(kName);
    programs_.take(bank);
}

void CAudioSessionBank::markChanged(CAudioPreset& program) {
    program.identity().changedAt[isAlternate_ ? 1 : 0] = nextTime();
}

// Otherwise a swap back to that state would restore what was replaced.
void CAudioSessionBank::contentsReplaced(CAudioPreset& program) {
    markChanged(program);
    if (alternate_ && alternate_->programId == program.identity().id && &program != &slot()) {
        alternate_->preset.copyFrom(program);
    }
}

bool CAudioSessionBank::isOthersWork(const CAudioPreset& program, uint64_t since) const {
    return program.identity().changedAt[isAlternate_ ? 0 : 1] > since;
}

// A name that was set as a parameter is a program's name: the step becomes an action that renames that program.
void CAudioSessionBank::adoptStep(CAudioParamUndoStep& step) {
    CLockScope scope(lock_);
    step.programId = slot().identity().id;
    const auto found = step.values.find(nameParam_);
    if (found == step.values.end()) {
        return;
    }
    const CString* before = found->second.firstText(CAudioUndoValues::CSide::Before);
    const CString* after = found->second.firstText(CAudioUndoValues::CSide::After);
    if (before && after && !step.action) {
        captureName();
        auto action = std::make_unique<CAudioProgramAction>(*this);
        action->rename(step.programId, *before, *after);
        step.action = std::move(action);
    }
    step.values.erase(found);
}

/// The step by which the alternate state becomes the current one, in its own history; null if it can't be read. Its
/// values belong to the program that is overwritten: taking it back selects that program first.
std::unique_ptr<CAudioParamUndoStep> CAudioSessionBank::copyStep() {
    CAssignments former;
    if (CError* error = codec_.decode(alternate_->preset, {}, former)) {
        TARV_CONSUME(error);
        return nullptr;
    }
    auto step = std::make_unique<CAudioParamUndoStep>(isAlternate_ ? "Copy from B" : "Copy from A");
    for (const CAudioParamCollector::CAssignment& assignment : former) {
        CAudioParamData present;
        {
            CLockScope scope(assignment.param->lock());
            present = assignment.param->userData();
        }
        if (assignment.param != nameParam_) {
            step->add(*assignment.param, assignment.data, present);
        }
    }
    step->programId = slot().identity().id;
    const uint64_t overwritten = alternate_->programId;
    if (overwritten != step->programId && programs_.indexOf(overwritten) >= 0) {
        auto selection = std::make_unique<CAudioProgramAction>(*this);
        selection->select(overwritten, step->programId);
        step->action = std::move(selection);
        step->programId = overwritten;
    }
    return step;
}

void CAudioSessionBank::copyToAlternate(int32_t historyLimit) {
    if (!alternate_) {
        // At first it is the same as the current one.
        alternate_ = std::make_unique<CAlternate>();
    } else if (historyLimit > 0) {
        std::unique_ptr<CAudioParamUndoStep> step = copyStep();
        if (step && !step->isEmpty()) {
            alternate_->history.append(std::move(step), historyLimit);
        }
    }
    alternate_->preset.clear();
    alternate_->preset.setName(slot().name());
    alternate_->programId = slot().identity().id;
    codec_.capture(alternate_->preset, false);
}

bool CAudioSessionBank::swapAlternate(CAssignments& assignments, CAudioParamUndo* undo) {
    captureCurrent();
    const uint64_t present = slot().identity().id;
    CAudioPreset fresh(slot().name());
    codec_.capture(fresh, false);
    if (!alternate_) {
        copyToAlternate(0);
    }
    CAlternate& other = *alternate_;
    if (CError* error = codec_.decode(other.preset, {}, assignments)) {
        TARV_CONSUME(error);
        return false;
    }
    const int32_t next = programs_.indexOf(other.programId);
    if (next >= 0) {
        programs_.select(next);
    }
    addNameShown(assignments);
    other.preset.take(fresh);
    const uint64_t former = std::exchange(other.programId, present);
    isAlternate_ = !isAlternate_;
    if (undo) {
        undo->swapList(other.history);
        if (next < 0) {
            undo->moveValues(former, present);
        }
    }
    return true;
}

void CAudioSessionBank::endProgramSteps(CAudioParamUndo* undo) {
    if (undo) {
        undo->endActions(alternate_ ? &alternate_->history : nullptr);
    }
}

}  // namespace tarv
