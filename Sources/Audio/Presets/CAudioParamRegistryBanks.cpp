// The banks of a master, and its alternate state.

#include <utility>

#include "Audio/Presets/CAudioRegistryAction.h"
#include "Audio/Stores/PackedStream.h"
#include "Core/CompressedBlock.h"

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
}

CError* CAudioParamRegistry::requireMaster(const char* message) const {
    if (!isMaster_) {
        TARV_FAIL(message);
    }
    return nullptr;
}

// The slot follows the parameter of the name. Its listener comes when all locks are free, which is too late where the
// history goes on from a step of that parameter to one of the bank.
void CAudioParamRegistry::nameCurrent() {
    if (nameParam_ && nameParam_->isDefined()) {
        isNameUntold_ = renameSlot(session_.selectedIndex(), nameParam_->text(0, 0)) || isNameUntold_;
    }
}

void CAudioParamRegistry::captureCurrent() {
    nameCurrent();
    capture(slot(), true);
}

void CAudioParamRegistry::exchangeBank(CAudioPresetBank& bank) {
    CLockScope scope(bankLock_);
    captureCurrent();
    session_.swap(bank);
}

void CAudioParamRegistry::moveSelection(int32_t index) {
    CLockScope scope(bankLock_);
    captureCurrent();
    session_.select(index);
}

bool CAudioParamRegistry::renameSlot(int32_t index, const CString& displayName) {
    CLockScope scope(bankLock_);
    if (index < 0 || index >= session_.count() || session_.preset(index).displayName() == displayName) {
        return false;
    }
    session_.preset(index).setDisplayName(displayName);
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
    const int32_t current = session_.selectedIndex();
    if (index < 0 || index >= session_.count() || index == current) {
        return;
    }
    CAssignments assignments;
    if (CError* error = decode(session_.preset(index), {}, assignments)) {
        TARV_CONSUME(error);
        return;
    }
    addNameShown(session_.preset(index).displayName(), assignments);
    moveSelection(index);
    action.record(activationLabel(-1), std::make_unique<CSelectDeed>(*this, current, index));
    action.assign(assignments);
    action.noteProgram();
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
    auto deed = std::make_unique<CBankDeed>(*this);
    CAudioPreset preset;
    preset.copyFrom(slot());
    preset.setName(id_ + ":" + displayName);
    session_.insert(index, preset);
    action.record("Program add", std::move(deed));
    action.noteProgram();
}

void CAudioParamRegistry::deleteProgram(int32_t index) {
    CAction action(*this);
    if (index < 0 || index >= session_.count() || session_.count() == 1) {
        return;
    }
    captureCurrent();
    auto deed = std::make_unique<CBankDeed>(*this);
    const bool isCurrent = index == session_.selectedIndex();
    CAssignments assignments;
    if (isCurrent) {
        const CAudioPreset& next = session_.preset(index + 1 < session_.count() ? index + 1 : index - 1);
        if (CError* error = decode(next, {}, assignments)) {
            TARV_CONSUME(error);
            return;
        }
        addNameShown(next.displayName(), assignments);
    }
    session_.remove(index);
    action.record("Program delete", std::move(deed));
    action.assign(assignments);
    action.noteProgram();
}

void CAudioParamRegistry::renameProgram(int32_t index, const CString& displayName) {
    CAction action(*this);
    if (index < 0 || index >= session_.count() || session_.preset(index).displayName() == displayName) {
        return;
    }
    std::unique_ptr<CAudioUndoDeed> deed;
    CAssignments assignments;
    if (index == session_.selectedIndex()) {
        addNameShown(displayName, assignments);
    }
    // The current slot follows the parameter of the name, and so its history.
    if (assignments.isEmpty()) {
        deed = std::make_unique<CRenameDeed>(*this, index, session_.preset(index).displayName(), displayName);
    }
    renameSlot(index, displayName);
    action.record("Program name change", std::move(deed));
    action.assign(assignments);
    action.noteProgram();
}

void CAudioParamRegistry::replaceProgram(int32_t index) {
    CAction action(*this);
    if (index < 0 || index >= session_.count()) {
        return;
    }
    captureCurrent();
    auto deed = std::make_unique<CBankDeed>(*this);
    const CString name = session_.preset(index).name();
    session_.preset(index).copyFrom(slot());
    session_.preset(index).setName(name);
    action.record("Program replace", std::move(deed));
    action.noteProgram();
}

CError* CAudioParamRegistry::activateBank(CMemoryReader& stream, const CPresetRequest& request) {
    TARV_TRY(requireMaster(
        "@tarvstr_CAudioParamRegistry_activateBank_NonMasterRegistry Activating bank in a non-master registry is an "
        "error."));
    CAudioPresetBank loaded;
    TARV_TRY(loaded.load(stream));
    TARV_TRY(expectStreamEnd(stream));
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
    addNameShown(current.displayName(), assignments);
    if (request.isRecorded) {
        captureCurrent();
        action.record(activationLabel(-1), std::make_unique<CBankDeed>(*this));
    }
    loaded.setName(kSessionName);
    session_.take(loaded);
    action.assign(assignments);
    action.noteProgram();
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
    addNameShown(rom_.preset(index).displayName(), assignments);
    slot().copyFrom(rom_.preset(index));
    action.record("ROM preset activate");
    action.assign(assignments);
    action.noteProgram();
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
    CAudioPreset fresh(slot().name());
    capture(fresh, false);
    if (!alternate_) {
        alternate_ = std::make_unique<CAlternate>();
        alternate_->preset.copyFrom(fresh);
    }
    CAssignments assignments;
    if (CError* error = decode(alternate_->preset, {}, assignments)) {
        TARV_CONSUME(error);
        return;
    }
    addNameShown(alternate_->preset.displayName(), assignments);
    alternate_->preset.take(fresh);
    action.assign(assignments);
    action.noteProgram();
    isAlternate_ = !isAlternate_;
    if (undo_) {
        undo_->swapList(alternate_->history);
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
    capture(alternate_->preset, false);
}

}  // namespace tarv
