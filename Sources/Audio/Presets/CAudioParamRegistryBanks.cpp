// The banks of a master, and its alternate state.

#include <utility>

#include "Audio/Presets/CAudioRegistryAction.h"
#include "Audio/Stores/PackedStream.h"
#include "Core/CompressedBlock.h"
#include "Core/SystemText.h"

namespace tarv {

namespace {

constexpr const char* kRomName = "Factory ROM";
constexpr const char* kSessionName = "Session Bank";
constexpr const char* kDefaultName = "Default";

}  // namespace

void CAudioParamRegistry::initBanks() {
    if (CError* error = rom_.load(bankFile_)) {
        TARV_CONSUME(error);
        rom_.copyFrom(session_);
    } else {
        session_.copyPresets(rom_);
    }
    rom_.setName(kRomName);
    session_.setName(kSessionName);
    if (session_.count() == 0) {
        session_.append().setName(id_ + ":" + kDefaultName);
    }
    identify(session_);
}

void CAudioParamRegistry::identify(CAudioPresetBank& bank) {
    for (int32_t i = 0; i < bank.count(); ++i) {
        bank.preset(i).identity().id = ++lastProgramId_;
    }
}

CError* CAudioParamRegistry::requireMaster(const char* message) const {
    if (!isMaster_) {
        TARV_FAIL(message);
    }
    return nullptr;
}

// The slot follows the parameter of the name. Its listener is called when all locks are free, which is too late where
// the history goes on from a step of that parameter to one of the bank.
void CAudioParamRegistry::nameCurrent() {
    if (nameParam_ && nameParam_->isDefined()) {
        isNamePending_ = renameSlot(session_.selectedIndex(), nameParam_->text(0, 0)) || isNamePending_;
    }
}

void CAudioParamRegistry::captureCurrent() {
    nameCurrent();
    if (capture(slot(), true)) {
        markChanged(slot());
    }
}

void CAudioParamRegistry::markChanged(CAudioPreset& program) {
    program.identity().changedAt[isAlternate_ ? 1 : 0] = ++changeClock_;
}

// What is stored in a program that is current in the other state only is that state's value from then on: coming back
// to it must not bring back what was replaced.
void CAudioParamRegistry::followStore(const CAudioPreset& program) {
    if (alternate_ && alternate_->programId == program.identity().id && &program != &slot()) {
        alternate_->preset.copyFrom(program);
    }
}

uint64_t CAudioParamRegistry::currentProgramId() const {
    return programId(currentProgram());
}

uint64_t CAudioParamRegistry::programId(int32_t index) const {
    CLockScope scope(bankLock_);
    return index >= 0 && index < session_.count() ? session_.preset(index).identity().id : 0;
}

// A name that was set as a parameter is a program's name: the step takes it back by the program's identity.
void CAudioParamRegistry::adoptStep(CAudioParamUndoStep& step) {
    CLockScope scope(bankLock_);
    step.programId = slot().identity().id;
    const auto found = step.values.find(nameParam_);
    if (found == step.values.end()) {
        return;
    }
    const CString* before = found->second.firstText(CAudioUndoValues::CSide::Before);
    const CString* after = found->second.firstText(CAudioUndoValues::CSide::After);
    if (before && after && !step.action) {
        nameCurrent();
        auto action = std::make_unique<CProgramAction>(*this);
        action->rename(step.programId, *before, *after);
        step.action = std::move(action);
    }
    step.values.erase(found);
}

bool CAudioParamRegistry::renameSlot(int32_t index, const CString& displayName) {
    CLockScope scope(bankLock_);
    if (index < 0 || index >= session_.count() || session_.preset(index).displayName() == displayName) {
        return false;
    }
    session_.preset(index).setDisplayName(displayName);
    markChanged(session_.preset(index));
    return true;
}

int32_t CAudioParamRegistry::programCount() const {
    CLockScope scope(bankLock_);
    return session_.count();
}

int32_t CAudioParamRegistry::currentProgram() const {
    CLockScope scope(bankLock_);
    return session_.selectedIndex();
}

CString CAudioParamRegistry::programName(int32_t index) const {
    CLockScope scope(bankLock_);
    return index >= 0 && index < session_.count() ? session_.preset(index).displayName() : CString();
}

int32_t CAudioParamRegistry::romCount() const {
    CLockScope scope(bankLock_);
    return rom_.count();
}

CString CAudioParamRegistry::romName(int32_t index) const {
    CLockScope scope(bankLock_);
    return index >= 0 && index < rom_.count() ? rom_.preset(index).displayName() : CString();
}

CString CAudioParamRegistry::bankName(bool ofRom) const {
    CLockScope scope(bankLock_);
    return (ofRom ? rom_ : session_).name();
}

bool CAudioParamRegistry::isAlternate() const {
    CLockScope scope(bankLock_);
    return isAlternate_;
}

void CAudioParamRegistry::selectProgram(int32_t index) {
    CAction action(*this);
    if (index < 0 || index >= session_.count() || index == session_.selectedIndex()) {
        return;
    }
    auto programs = std::make_unique<CProgramAction>(*this);
    programs->select(slot().identity().id, programId(index));
    action.carryOut(activationLabel(-1), std::move(programs));
}

void CAudioParamRegistry::addProgram(int32_t index, const CString& displayName) {
    if (!isMaster_) {
        return;
    }
    CAction action(*this);
    if (index < 0 || index > session_.count()) {
        return;
    }
    captureCurrent();
    auto program = std::make_unique<CAudioPreset>();
    program->copyFrom(slot());
    program->setName(id_ + ":");
    program->setDisplayName(displayName);
    program->identity().id = ++lastProgramId_;
    markChanged(*program);
    auto programs = std::make_unique<CProgramAction>(*this);
    programs->add(std::move(program), programId(index - 1));
    action.carryOut("Program add", std::move(programs));
}

void CAudioParamRegistry::deleteProgram(int32_t index) {
    CAction action(*this);
    if (index < 0 || index >= session_.count() || session_.count() == 1) {
        return;
    }
    auto programs = std::make_unique<CProgramAction>(*this);
    programs->remove(programId(index));
    if (index == session_.selectedIndex()) {
        const int32_t next = index + 1 < session_.count() ? index + 1 : index - 1;
        programs->select(programId(index), programId(next));
    }
    action.carryOut("Program delete", std::move(programs));
}

void CAudioParamRegistry::renameProgram(int32_t index, const CString& displayName) {
    CAction action(*this);
    if (index < 0 || index >= session_.count()) {
        return;
    }
    nameCurrent();
    const CString before = session_.preset(index).displayName();
    const CString after = withinUtf8Bytes(displayName, CAudioPreset::kMaxNameBytes);
    if (before == after) {
        return;
    }
    auto programs = std::make_unique<CProgramAction>(*this);
    programs->rename(programId(index), before, after);
    action.carryOut("Program name change", std::move(programs));
}

void CAudioParamRegistry::replaceProgram(int32_t index) {
    CAction action(*this);
    if (index < 0 || index >= session_.count()) {
        return;
    }
    captureCurrent();
    CAudioPreset contents;
    contents.copyFrom(slot());
    contents.setName(session_.preset(index).name());
    auto programs = std::make_unique<CProgramAction>(*this);
    programs->replace(programId(index), contents);
    action.carryOut("Program replace", std::move(programs));
    action.dropIdleStep();
}

CError* CAudioParamRegistry::activateBank(CMemoryReader& stream, const CPresetRequest& request) {
    TARV_TRY(requireMaster(
        "@tarvstr_CAudioParamRegistry_activateBank_NonMasterRegistry Activating bank in a non-master registry is an "
        "error."));
    CAudioPresetBank loaded;
    TARV_TRY(loaded.load(stream));
    TARV_TRY(expectStreamEnd(stream));
    TARV_TRY(replaceBank(loaded, request));
    return nullptr;
}

CError* CAudioParamRegistry::replaceBank(CAudioPresetBank& loaded, const CPresetRequest& request) {
    CAction action(*this);
    bool isCompatible = loaded.count() > 0;
    for (int32_t i = 0; i < loaded.count(); ++i) {
        isCompatible = isCompatible && loaded.preset(i).hasPrefix(id_);
    }
    if (!isCompatible) {
        TARV_FAIL("@tarvstr_CAudioParamRegistry_activateBank_IncompatibleBank Incompatible bank.");
    }
    loaded.select(session_.selectedIndex());
    const CAudioPreset& current = loaded.preset(loaded.selectedIndex());
    CAssignments assignments;
    TARV_TRY(decode(current, request, assignments));
    identify(loaded);
    if (!request.isRecorded) {
        addNameShown(current.displayName(), assignments);
        loaded.setName(kSessionName);
        session_.take(loaded);
        action.assign(assignments);
        action.endProgramSteps();
        action.noteProgram();
        return nullptr;
    }
    auto programs = std::make_unique<CProgramAction>(*this, request.withPersistent);
    programs->select(slot().identity().id, current.identity().id);
    for (int32_t i = 0; i < session_.count(); ++i) {
        programs->remove(programId(i));
    }
    for (uint64_t predecessor = 0; loaded.count() > 0;) {
        const uint64_t id = loaded.preset(0).identity().id;
        programs->add(loaded.takeOut(0), predecessor);
        predecessor = id;
    }
    action.carryOut(activationLabel(-1), std::move(programs));
    return nullptr;
}

CError* CAudioParamRegistry::activateRomPreset(int32_t index) {
    TARV_TRY(requireMaster(
        "@tarvstr_CAudioParamRegistry_activateRomPreset_NonMasterRegistry Activating ROM preset in a non-master "
        "registry is an error."));
    CAction action(*this);
    if (index < 0 || index >= rom_.count()) {
        TARV_FAIL("@tarvstr_CAudioParamRegistry_acquirePreset_PresetIndexError Invalid preset index %1 specified.",
                  CString::fromInt(index));
    }
    CAssignments assignments;
    TARV_TRY(decode(rom_.preset(index), {}, assignments));
    CAudioPreset contents;
    contents.copyFrom(rom_.preset(index));
    auto programs = std::make_unique<CProgramAction>(*this);
    programs->replace(slot().identity().id, contents);
    action.carryOut("ROM preset activate", std::move(programs));
    action.assign(assignments);
    action.dropIdleStep();
    return nullptr;
}

CError* CAudioParamRegistry::acquireBank(bool fromRom, COutputStream& stream, bool isPacked) {
    TARV_TRY(requireMaster(
        "@tarvstr_CAudioParamRegistry_acquirePreset_NonMasterRegistry Acquiring bank in a non-master registry is an "
        "error."));
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    {
        CAction action(*this);  // a step of the history that is under way comes to its end first
        if (!fromRom) {
            captureCurrent();
        }
        TARV_TRY((fromRom ? rom_ : session_).save(writer));
    }
    if (isPacked) {
        TARV_TRY(stream.writeCompressedData(bytes, kBankBlockId));
    } else {
        TARV_TRY(stream.write(bytes.data(), bytes.count()));
    }
    return nullptr;
}

void CAudioParamRegistry::swapAB() {
    if (!isMaster_) {
        return;
    }
    CAction action(*this);
    captureCurrent();
    const uint64_t present = slot().identity().id;
    CAudioPreset fresh(slot().name());
    capture(fresh, false);
    if (!alternate_) {
        alternate_ = std::make_unique<CAlternate>();
        alternate_->preset.copyFrom(fresh);
        alternate_->programId = present;
    }
    CAssignments assignments;
    if (CError* error = decode(alternate_->preset, {}, assignments)) {
        TARV_CONSUME(error);
        return;
    }
    const int32_t next = session_.indexOf(alternate_->programId);
    if (next >= 0) {
        session_.select(next);
    }
    addNameShown(slot().displayName(), assignments);
    alternate_->preset.take(fresh);
    const uint64_t former = std::exchange(alternate_->programId, present);
    action.assign(assignments);
    action.noteProgram();
    isAlternate_ = !isAlternate_;
    if (undo_) {
        undo_->swapList(alternate_->history);
        if (next < 0) {
            undo_->moveValues(former, present);
        }
    }
}

void CAudioParamRegistry::copyToAlternate() {
    if (!isMaster_) {
        return;
    }
    CLockScope scope(bankLock_);
    if (!alternate_) {
        alternate_ = std::make_unique<CAlternate>();
    }
    alternate_->preset.clear();
    alternate_->preset.setName(slot().name());
    alternate_->programId = slot().identity().id;
    capture(alternate_->preset, false);
}

}  // namespace tarv
