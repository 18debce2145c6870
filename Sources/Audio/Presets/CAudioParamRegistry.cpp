#include "Audio/Presets/CAudioParamRegistry.h"

#include <algorithm>
#include <utility>

#include "Audio/Presets/CAudioRegistryAction.h"
#include "Audio/Stores/PackedStream.h"
#include "Core/CompressedBlock.h"
#include "Core/SystemText.h"

namespace tarv {

namespace {

constexpr const char* kRomName = "Factory ROM";

}  // namespace

CAudioParamRegistry::CAudioParamRegistry() : session_(codec_, *this) {}

CAudioParamRegistry::~CAudioParamRegistry() {
    if (nameParam_ && isLive(nameParam_)) {
        nameParam_->removeListener(*this);
    }
    if (collector_ && isLive(static_cast<CObject*>(collector_))) {
        collector_->removeRegistry(*this);
    }
    if (isMaster_ && undo_ && isLive(static_cast<CObject*>(undo_))) {
        undo_->setPrograms(nullptr);
    }
}

CError* CAudioParamRegistry::init() {
    TARV_TRY(CObject::init());
    CString hierarchy = getAttrString("hierarchy");
    if (hierarchy.isEmpty() || hierarchy.at(hierarchy.length() - 1) != '.') {
        hierarchy.appendChar('.');
    }
    isMaster_ = getAttrBool("is-master");
    isEnumerated_ = getAttrBool("is-enumerated");
    id_ = getAttrString("id");
    presetNaming_ = getAttrString("preset-naming");
    presetNameParam_ = getAttrString("preset-name-param");
    groupNamesParam_ = getAttrString("group-names-param");
    bankFile_ = getAttrString("file");
    undo_ = findObjectOf<CAudioParamUndo>(getAttrString("param-undo"));
    collector_ = findObjectOf<CAudioParamCollector>(getAttrString("param-collector"));
    if (!collector_) {
        TARV_FAIL(
            "@tarvstr_CAudioParamRegistry_init_NoParamCollector No parameter collector with the name '%1' defined.",
            getAttrString("param-collector"));
    }
    params_.init(*collector_, hierarchy, isMaster_);
    if (!presetNameParam_.isEmpty()) {
        nameParam_ = collector_->getParam(presetNameParam_);
        nameParam_->addListener(*this);
        session_.setNameParam(*nameParam_);
    }
    if (isMaster_) {
        if (CError* error = rom_.load(bankFile_)) {
            TARV_CONSUME(error);
        }
        rom_.setName(kRomName);
        session_.init(rom_, id_);
        if (undo_) {
            undo_->setPrograms(&session_);
        }
    }
    collector_->addRegistry(*this);
    return nullptr;
}

bool CAudioParamRegistry::offerParam(const CString& name, CAudioParam& param) {
    if (!params_.covers(name)) {
        return false;
    }
    takeParam(name, param);
    return true;
}

void CAudioParamRegistry::takeParam(const CString& name, CAudioParam& param) {
    if (isMaster_ && &param == nameParam_) {
        // From here on the name shown is that of the current program. No other thread uses the bank yet.
        session_.showName();
    }
    params_.add(name, param);
}

CString CAudioParamRegistry::groupName(int32_t group) const {
    const CAudioParam* names = groupNamesParam_.isEmpty() ? nullptr : collector_->findParam(groupNamesParam_);
    const CString name = names ? names->text(0, group) : CString();
    return name.isEmpty() ? CString::fromInt(group + 1) : name;
}

CString CAudioParamRegistry::romName(int32_t index) const {
    return index >= 0 && index < rom_.count() ? rom_.preset(index).displayName() : CString();
}

CString CAudioParamRegistry::activationLabel(int32_t group) const {
    return group < 0 ? presetNaming_ + " activate" : presetNaming_ + " (" + groupName(group) + ") activate";
}

CError* CAudioParamRegistry::requireMaster(const char* message) const {
    if (!isMaster_) {
        TARV_FAIL(message);
    }
    return nullptr;
}

CError* CAudioParamRegistry::requireIndex(int32_t index, int32_t first, const CAudioPresetBank& bank) const {
    if (index < first || index >= bank.count()) {
        TARV_FAIL("@tarvstr_CAudioParamRegistry_acquirePreset_PresetIndexError Invalid preset index %1 specified.",
                  CString::fromInt(index));
    }
    return nullptr;
}

void CAudioParamRegistry::onParamChanged(CAudioParam&, int32_t, int32_t, int32_t) {
    if (isMaster_ && session_.followName()) {
        notifyBridges(kProgramUpdate);
    }
}

CError* CAudioParamRegistry::activatePreset(CMemoryReader& stream, const CPresetRequest& request) {
    CAudioPreset preset;
    TARV_TRY(preset.load(stream));
    TARV_TRY(expectStreamEnd(stream));
    if (!preset.hasPrefix(id_)) {
        TARV_FAIL("@tarvstr_CAudioParamRegistry_activatePreset_IncompatiblePreset Incompatible preset.");
    }
    CAssignments assignments;
    TARV_TRY(codec_.decode(preset, request, assignments));
    applyPreset(preset, request, assignments);
    return nullptr;
}

// A step of an action that changes nothing would be dropped: this saves performing it.
bool CAudioParamRegistry::isActive(const CAudioPreset& preset, const CAssignments& assignments) const {
    return session_.slot().isSame(preset) &&
           std::all_of(assignments.begin(), assignments.end(), CAudioParamCollector::isAssigned);
}

void CAudioParamRegistry::applyPreset(CAudioPreset& preset, const CPresetRequest& request,
                                      const CAssignments& assignments) {
    CAudioRegistryAction action(session_, undo_);
    if (!isMaster_) {
        if (request.isRecorded) {
            action.record(activationLabel(request.group));
        }
        action.assign(assignments);
        return;
    }
    if (request.group >= 0) {
        // The slot takes the name only; its records are captured anew.
        session_.captureCurrent();
        const CString name = preset.name();
        preset.copyFrom(session_.slot());
        preset.setName(name);
    }
    if (request.isRecorded) {
        session_.captureName();
        if (isActive(preset, assignments)) {
            action.noteProgram();
            return;
        }
        auto programs = std::make_unique<CAudioProgramAction>(session_);
        programs->replace(session_.slot().identity().id, preset);
        action.perform(activationLabel(request.group), std::move(programs));
        action.assign(assignments);
        action.dropIdleStep();
        return;
    }
    session_.slot().take(preset);
    session_.markChanged(session_.slot());
    CAssignments name;
    session_.addNameShown(name);
    action.assign(assignments);
    action.assign(name);
    action.noteProgram();
}

CError* CAudioParamRegistry::acquirePreset(bool fromRom, int32_t index, int32_t group, COutputStream& stream,
                                           bool isPacked) {
    CAudioPreset preset(id_ + ":");
    {
        CAudioRegistryAction action(session_, undo_);  // a step of the history that is under way is ended first
        const CAudioPresetBank& bank = fromRom ? rom_ : session_.programs();
        TARV_TRY(requireIndex(index, fromRom && bank.count() == 0 ? 0 : -1, bank));
        if (index < 0 && !fromRom && isMaster_) {
            session_.captureName();
        }
        if (bank.count() > 0) {
            preset.copyFrom(bank.preset(index < 0 ? bank.selectedIndex() : index));
        }
        if (index < 0 && !fromRom) {
            codec_.capture(preset, true);
        }
    }
    if (group >= 0) {
        codec_.extractGroup(preset, group);
    }
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    TARV_TRY(preset.save(writer));
    TARV_TRY(writeStored(stream, bytes, kPresetBlockId, isPacked));
    return nullptr;
}

CError* CAudioParamRegistry::activateRomPreset(int32_t index) {
    TARV_TRY(requireMaster(
        "@tarvstr_CAudioParamRegistry_activateRomPreset_NonMasterRegistry Activating ROM preset in a non-master "
        "registry is an error."));
    CAudioRegistryAction action(session_, undo_);
    TARV_TRY(requireIndex(index, 0, rom_));
    CAssignments assignments;
    TARV_TRY(codec_.decode(rom_.preset(index), {}, assignments));
    CAudioPreset contents;
    contents.copyFrom(rom_.preset(index));
    auto programs = std::make_unique<CAudioProgramAction>(session_);
    programs->replace(session_.slot().identity().id, contents);
    action.perform("ROM preset activate", std::move(programs));
    action.assign(assignments);
    action.dropIdleStep();
    return nullptr;
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
    CAudioRegistryAction action(session_, undo_);
    bool isCompatible = loaded.count() > 0;
    for (int32_t i = 0; i < loaded.count(); ++i) {
        isCompatible = isCompatible && loaded.preset(i).hasPrefix(id_);
    }
    if (!isCompatible) {
        TARV_FAIL("@tarvstr_CAudioParamRegistry_activateBank_IncompatibleBank Incompatible bank.");
    }
    loaded.select(session_.programs().selectedIndex());
    CAssignments assignments;
    TARV_TRY(codec_.decode(loaded.preset(loaded.selectedIndex()), request, assignments));
    session_.identify(loaded);
    if (request.isRecorded) {
        auto programs = std::make_unique<CAudioProgramAction>(session_, request.withPersistent);
        programs->replaceAll(loaded);
        action.perform(activationLabel(-1), std::move(programs));
        return nullptr;
    }
    session_.replaceAll(loaded);
    session_.addNameShown(assignments);
    action.assign(assignments);
    session_.endProgramSteps(undo_);
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
        CAudioRegistryAction action(session_, undo_);  // a step of the history that is under way is ended first
        if (!fromRom) {
            session_.captureCurrent();
        }
        TARV_TRY((fromRom ? rom_ : session_.programs()).save(writer));
    }
    TARV_TRY(writeStored(stream, bytes, kBankBlockId, isPacked));
    return nullptr;
}

void CAudioParamRegistry::selectProgram(int32_t index) {
    CAudioRegistryAction action(session_, undo_);
    if (!hasProgram(index) || index == session_.programs().selectedIndex()) {
        return;
    }
    auto programs = std::make_unique<CAudioProgramAction>(session_);
    programs->select(session_.slot().identity().id, programId(index));
    action.perform(activationLabel(-1), std::move(programs));
}

void CAudioParamRegistry::addProgram(int32_t index, const CString& displayName) {
    if (!isMaster_) {
        return;
    }
    CAudioRegistryAction action(session_, undo_);
    if (index < 0 || index > session_.programs().count()) {
        return;
    }
    session_.captureCurrent();
    auto program = std::make_unique<CAudioPreset>();
    program->copyFrom(session_.slot());
    program->setName(id_ + ":");
    program->setDisplayName(displayName);
    session_.identify(*program);
    session_.markChanged(*program);
    auto programs = std::make_unique<CAudioProgramAction>(session_);
    programs->add(std::move(program), programId(index - 1));
    action.perform("Program add", std::move(programs));
}

void CAudioParamRegistry::deleteProgram(int32_t index) {
    CAudioRegistryAction action(session_, undo_);
    const int32_t count = session_.programs().count();
    if (!hasProgram(index) || count == 1) {
        return;
    }
    auto programs = std::make_unique<CAudioProgramAction>(session_);
    programs->remove(programId(index));
    if (index == session_.programs().selectedIndex()) {
        const int32_t next = index + 1 < count ? index + 1 : index - 1;
        programs->select(programId(index), programId(next));
    }
    action.perform("Program delete", std::move(programs));
}

void CAudioParamRegistry::renameProgram(int32_t index, const CString& displayName) {
    CAudioRegistryAction action(session_, undo_);
    if (!hasProgram(index)) {
        return;
    }
    session_.captureName();
    const CString before = programName(index);
    const CString after = withinUtf8Bytes(displayName, CAudioPreset::kMaxNameBytes);
    if (before == after) {
        return;
    }
    auto programs = std::make_unique<CAudioProgramAction>(session_);
    programs->rename(programId(index), before, after);
    action.perform("Program name change", std::move(programs));
}

void CAudioParamRegistry::replaceProgram(int32_t index) {
    CAudioRegistryAction action(session_, undo_);
    if (!hasProgram(index)) {
        return;
    }
    session_.captureCurrent();
    CAudioPreset contents;
    contents.copyFrom(session_.slot());
    contents.setName(session_.programs().preset(index).name());
    auto programs = std::make_unique<CAudioProgramAction>(session_);
    programs->replace(programId(index), contents);
    action.perform("Program replace", std::move(programs));
    action.dropIdleStep();
}

void CAudioParamRegistry::swapAB() {
    if (!isMaster_) {
        return;
    }
    CAudioRegistryAction action(session_, undo_);
    CAssignments assignments;
    if (session_.swapAlternate(assignments, undo_)) {
        action.assign(assignments);
        action.noteProgram();
    }
}

void CAudioParamRegistry::copyToAlternate() {
    if (isMaster_) {
        const CAudioRegistryAction action(session_, undo_);
        session_.copyToAlternate(undo_ ? undo_->undoCountMax() : 0);
    }
}

void CAudioParamRegistry::resetAll(const CString& label) {
    CAssignments assignments;
    codec_.addDefaults(assignments);
    CAudioRegistryAction action(session_, undo_);
    action.record(label);
    action.assign(assignments);
}

void CAudioParamRegistry::masterReset() {
    resetAll("Master reset");
}

void CAudioParamRegistry::reset() {
    resetAll(presetNaming_ + " reset");
}

}  // namespace tarv
