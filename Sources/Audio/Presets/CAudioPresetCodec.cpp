#include "Audio/Presets/CAudioPresetCodec.h"

#include <algorithm>
#include <utility>

#include "Audio/Parameters/CAudioParamStorage.h"
#include "Audio/Stores/PackedStream.h"

namespace tarv {

namespace {

/// Whether a record is known to be the parameter's present value, byte for byte.
bool isPresent(const CAudioPreset::CBytes& record, const CAudioParam& param) {
    CLockScope scope(param.lock());
    const CByteBuffer* present = param.currentRecord();
    return present && present->count() == record.count && std::equal(present->begin(), present->end(), record.data);
}

CError* decodeRecord(CMemoryReader& reader, const CAudioPreset& preset, int32_t index, const CAudioParamInfo& info,
                     CAudioParamData& data, bool& isForeign) {
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

}  // namespace

/// One preset while it is decoded.
struct CAudioPresetCodec::CReading {
    const CAudioPreset& preset;
    const CPresetRequest& request;
    CAssignments& assignments;
    CMemoryReader reader;  ///< one for all records
    int32_t nextIndex = 0;
    CArray<bool, 32> isUsed;

    /// Whether the request covers a parameter.
    bool wants(const CAudioParam& param) const {
        return CAudioRegistryParam::isStored(param, request.withPersistent) &&
               (request.group < 0 || !param.info().isSingleGroup());
    }
    /// The index of an entry's record, or -1.
    int32_t find(const CAudioRegistryParam& entry) {
        int32_t index = preset.find(entry.keyBytes, nextIndex);
        if (index >= 0) {
            nextIndex = index + 1;
        } else if (entry.formerKey) {
            index = preset.find(entry.formerKey);
        }
        return index;
    }
};

CError* CAudioPresetCodec::decodeEntry(CReading& reading, const CAudioRegistryParam& entry) {
    const CAudioParam& param = *entry.param;
    if (!reading.wants(param)) {
        return nullptr;
    }
    const int32_t index = reading.find(entry);
    if (index >= 0) {
        reading.isUsed[index] = true;
        if (reading.request.group < 0 && isPresent(reading.preset.record(index), param)) {
            return nullptr;
        }
    }
    CAssignment assignment{entry.param, {}, reading.request.group};
    bool isForeign = index < 0;
    if (index >= 0) {
        TARV_TRY(decodeRecord(reading.reader, reading.preset, index, param.info(), assignment.data, isForeign));
    }
    if (isForeign) {
        if (entry.formerKey || !param.info().isStorable()) {
            return nullptr;  // the present value stays
        }
        assignment.data.resetWithDefaults(param.info(), 0);
    }
    reading.assignments.append(std::move(assignment));
    return nullptr;
}

// Keys of parameters that lie under the hierarchy and belong to another registry.
CError* CAudioPresetCodec::decodeOthers(CReading& reading) const {
    for (int32_t i = 0; i < reading.preset.recordCount(); ++i) {
        CAudioParam* param = reading.isUsed[i] ? nullptr : params_.findAny(reading.preset.keyText(i));
        if (!param || !reading.wants(*param)) {
            continue;
        }
        CAssignment assignment{param, {}, reading.request.group};
        bool isForeign = false;
        TARV_TRY(decodeRecord(reading.reader, reading.preset, i, param->info(), assignment.data, isForeign));
        if (!isForeign) {
            reading.assignments.append(std::move(assignment));
        }
    }
    return nullptr;
}

CError* CAudioPresetCodec::decode(const CAudioPreset& preset, const CPresetRequest& request,
                                  CAssignments& assignments) const {
    CReading reading{preset, request, assignments, {}, 0, {}};
    reading.isUsed.resize(preset.recordCount());
    assignments.reserve(32);
    for (const CAudioRegistryParam* entry : params_.entries()) {
        TARV_TRY(decodeEntry(reading, *entry));
    }
    TARV_TRY(decodeOthers(reading));
    return nullptr;
}

bool CAudioPresetCodec::capture(CAudioPreset& preset, bool withPersistent) const {
    bool isChanged = false;
    int32_t place = -1;
    for (const CAudioRegistryParam* entry : params_.entries()) {
        const CAudioParam& param = *entry->param;
        if (!CAudioRegistryParam::isStored(param, withPersistent)) {
            continue;
        }
        {
            CLockScope scope(param.lock());
            isChanged = preset.setRecord(entry->keyBytes, param.storedRecord(), ++place) || isChanged;
        }
        if (entry->formerKey) {
            preset.removeRecord(entry->formerKey);
        }
    }
    return isChanged;
}

void CAudioPresetCodec::extractGroup(CAudioPreset& preset, int32_t group) const {
    CAudioPreset part(preset.name());
    CMemoryReader reader;
    for (const CAudioRegistryParam* entry : params_.entries()) {
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

void CAudioPresetCodec::addDefaults(CAssignments& assignments) const {
    for (const CAudioRegistryParam* entry : params_.entries()) {
        if (CAudioRegistryParam::isStored(*entry->param, false)) {
            CAssignment assignment{entry->param, {}, -1};
            assignment.data.resetWithDefaults(entry->param->info(), 0);
            assignments.append(std::move(assignment));
        }
    }
}

}  // namespace tarv
