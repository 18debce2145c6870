// Between the parameters of a registry and presets.

#include <algorithm>
#include <utility>

#include "Audio/Parameters/CAudioParamStorage.h"
#include "Audio/Presets/CAudioRegistryAction.h"
#include "Audio/Stores/PackedStream.h"
#include "Core/CompressedBlock.h"

namespace tarv {

namespace {

/// A parameter that was stored under another key before.
constexpr struct {
    const char* param;
    const char* formerKey;
} kFormerKeys[] = {{"plugin.modMain.oversampling", "io-params.oversampling"}};

/// Whether a record is known to be what the parameter holds already, byte for byte.
bool isPresent(const CAudioPreset::CBytes& record, const CAudioParam& param) {
    CLockScope scope(param.lock());
    const CByteBuffer* present = param.currentRecord();
    return present && present->count() == record.count && std::equal(present->begin(), present->end(), record.data);
}

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

bool CAudioParamRegistry::isStored(const CAudioParam& param, bool withPersistent) const {
    return param.isDefined() && (param.info().isStorable() || (withPersistent && param.info().isPersistent()));
}

const char* CAudioParamRegistry::formerKeyOf(const CAudioParam& param) const {
    for (const auto& row : kFormerKeys) {
        if (isMaster_ && param.fullName() == row.param) {
            return row.formerKey;
        }
    }
    return nullptr;
}

CError* CAudioParamRegistry::requirePrefix(const CAudioPreset& preset) const {
    if (!preset.hasPrefix(id_)) {
        TARV_FAIL("@tarvstr_CAudioParamRegistry_activatePreset_IncompatiblePreset Incompatible preset.");
    }
    return nullptr;
}

CError* CAudioParamRegistry::decodeRecord(CMemoryReader& reader, const CAudioPreset& preset, int32_t index,
                                          const CAudioParamInfo& info, CAudioParamData& data, bool& isForeign) {
    const CAudioPreset::CBytes record = preset.record(index);
    reader.open(record.data, static_cast<uint32_t>(record.count));
    CError* error = CAudioParamStorage::load(reader, info, data, nullptr, &isForeign);
    if (isForeign) {
        TARV_CONSUME(error);
        return nullptr;
    }
    if (!error) {
        error = expectStreamEnd(reader);
    }
    if (error) {
        return addErrorLocation(error, __FILE__, __LINE__, info.definitionPath(), CString());
    }
    data.clampTo(info);
    return nullptr;
}

CError* CAudioParamRegistry::decodeEntry(CMemoryReader& reader, const CAudioPreset& preset, int32_t& nextIndex,
                                         const CEntry& entry, const CPresetRequest& request, CAssignments& assignments,
                                         bool* isUsed) const {
    const CAudioParam& param = *entry.param;
    if (!isStored(param, request.withPersistent) || (request.group >= 0 && param.info().isSingleGroup())) {
        return nullptr;
    }
    int32_t index = preset.find(entry.keyBytes, nextIndex);
    if (index >= 0) {
        nextIndex = index + 1;
    } else if (entry.formerKey) {
        index = preset.find(entry.formerKey);
    }
    if (index >= 0) {
        isUsed[index] = true;
        if (request.group < 0 && isPresent(preset.record(index), param)) {
            return nullptr;
        }
    }
    CAssignment assignment{entry.param, {}, request.group};
    bool isForeign = index < 0;
    if (index >= 0) {
        TARV_TRY(decodeRecord(reader, preset, index, param.info(), assignment.data, isForeign));
    }
    if (isForeign) {
        if (entry.formerKey || !param.info().isStorable()) {
            return nullptr;  // the present value stays
        }
        assignment.data.resetWithDefaults(param.info(), 0);
    }
    assignments.append(std::move(assignment));
    return nullptr;
}

// Keys of parameters that lie under the hierarchy and belong to another registry.
CError* CAudioParamRegistry::decodeOthers(CMemoryReader& reader, const CAudioPreset& preset,
                                          const CPresetRequest& request, CAssignments& assignments,
                                          const bool* isUsed) const {
    for (int32_t i = 0; i < preset.recordCount(); ++i) {
        CAudioParam* param = isUsed[i] ? nullptr : collector_->findParam(hierarchy_ + preset.keyText(i));
        if (!param || !isStored(*param, request.withPersistent) ||
            (request.group >= 0 && param->info().isSingleGroup())) {
            continue;
        }
        CAssignment assignment{param, {}, request.group};
        bool isForeign = false;
        TARV_TRY(decodeRecord(reader, preset, i, param->info(), assignment.data, isForeign));
        if (!isForeign) {
            assignments.append(std::move(assignment));
        }
    }
    return nullptr;
}

CError* CAudioParamRegistry::decode(const CAudioPreset& preset, const CPresetRequest& request,
                                    CAssignments& assignments) const {
    CArray<bool, 32> isUsed;
    isUsed.resize(preset.recordCount());
    assignments.reserve(32);
    CMemoryReader reader;  // one for all records
    int32_t nextIndex = 0;
    for (const CEntry* entry : entries()) {
        TARV_TRY(decodeEntry(reader, preset, nextIndex, *entry, request, assignments, isUsed.data()));
    }
    TARV_TRY(decodeOthers(reader, preset, request, assignments, isUsed.data()));
    return nullptr;
}

bool CAudioParamRegistry::capture(CAudioPreset& preset, bool withPersistent) const {
    bool isChanged = false;
    CByteBuffer record;
    for (const CEntry* entry : entries()) {
        const CAudioParam& param = *entry->param;
        if (!isStored(param, withPersistent)) {
            continue;
        }
        {
            CLockScope scope(param.lock());
            record = param.storedRecord();
        }
        isChanged = preset.setRecord(entry->keyBytes, record) || isChanged;
        if (entry->formerKey) {
            preset.removeRecord(entry->formerKey);
        }
    }
    return isChanged;
}

void CAudioParamRegistry::extractGroup(CAudioPreset& preset, int32_t group) const {
    CAudioPreset part(preset.name());
    CMemoryReader reader;
    for (const CEntry* entry : entries()) {
        const int32_t index = preset.find(entry->keyBytes);
        if (index < 0 || !entry->param->isDefined() || entry->param->info().isSingleGroup()) {
            continue;
        }
        const CAudioParamInfo& info = entry->param->info();
        CAudioParamData data;
        bool isForeign = false;
        if (CError* error = decodeRecord(reader, preset, index, info, data, isForeign)) {
            TARV_CONSUME(error);
            continue;
        }
        if (isForeign) {
            continue;
        }
        CByteBuffer record;
        CBufferWriter writer(record);
        TARV_CONSUME(CAudioParamStorage::save(writer, info, data.onlyGroup(group, info)));
        part.setRecord(entry->keyBytes, record);
    }
    preset.take(part);
}

void CAudioParamRegistry::addNameShown(const CString& displayName, CAssignments& assignments) const {
    if (nameParam_ && nameParam_->isDefined() && nameParam_->info().isString() &&
        nameParam_->text(0, 0) != displayName) {
        assignments.append({nameParam_, textValue(nameParam_->info(), displayName), -1});
    }
}

void CAudioParamRegistry::addDefaults(CAssignments& assignments) const {
    for (const CEntry* entry : entries()) {
        if (isStored(*entry->param, false)) {
            CAssignment assignment{entry->param, {}, -1};
            assignment.data.resetWithDefaults(entry->param->info(), 0);
            assignments.append(std::move(assignment));
        }
    }
}

CString CAudioParamRegistry::activationLabel(int32_t group) const {
    return group < 0 ? presetNaming_ + " activate" : presetNaming_ + " (" + groupName(group) + ") activate";
}

CError* CAudioParamRegistry::activatePreset(CMemoryReader& stream, const CPresetRequest& request) {
    CAudioPreset preset;
    TARV_TRY(preset.load(stream));
    TARV_TRY(expectStreamEnd(stream));
    TARV_TRY(requirePrefix(preset));
    CAssignments assignments;
    TARV_TRY(decode(preset, request, assignments));
    CAction action(*this);
    if (!isMaster_) {
        if (request.isRecorded) {
            action.record(activationLabel(request.group));
        }
        action.assign(assignments);
        return nullptr;
    }
    if (request.group >= 0) {
        // The slot takes the name only; its records are captured anew.
        captureCurrent();
        const CString name = preset.name();
        preset.copyFrom(slot());
        preset.setName(name);
    }
    if (request.isRecorded) {
        auto programs = std::make_unique<CProgramAction>(*this);
        programs->replace(slot().identity().id, preset);
        action.carryOut(activationLabel(request.group), std::move(programs));
        action.assign(assignments);
        action.dropIdleStep();
    } else {
        addNameShown(preset.displayName(), assignments);
        slot().take(preset);
        markChanged(slot());
        action.assign(assignments);
        action.noteProgram();
    }
    return nullptr;
}

CError* CAudioParamRegistry::acquirePreset(bool fromRom, int32_t index, int32_t group, COutputStream& stream,
                                           bool isPacked) {
    CAudioPreset preset(id_ + ":");
    {
        CAction action(*this);  // a step of the history that is under way comes to its end first
        const CAudioPresetBank& bank = fromRom ? rom_ : session_;
        if (index < -1 || index >= bank.count() || (index == -1 && fromRom && bank.count() == 0)) {
            TARV_FAIL("@tarvstr_CAudioParamRegistry_acquirePreset_PresetIndexError Invalid preset index %1 specified.",
                      CString::fromInt(index));
        }
        if (index < 0 && !fromRom && isMaster_) {
            nameCurrent();
        }
        if (bank.count() > 0) {
            preset.copyFrom(bank.preset(index < 0 ? bank.selectedIndex() : index));
        }
        if (index < 0 && !fromRom) {
            capture(preset, true);
        }
    }
    if (group >= 0) {
        extractGroup(preset, group);
    }
    if (!isPacked) {
        TARV_TRY(preset.save(stream));
        return nullptr;
    }
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    TARV_TRY(preset.save(writer));
    TARV_TRY(stream.writeCompressedData(bytes, kPresetBlockId));
    return nullptr;
}

void CAudioParamRegistry::resetAll(const CString& label) {
    CAssignments assignments;
    addDefaults(assignments);
    CAction action(*this);
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
