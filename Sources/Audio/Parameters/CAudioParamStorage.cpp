#include "Audio/Parameters/CAudioParamStorage.h"

#include <algorithm>
#include <cmath>

namespace tarv {

namespace {

/// The number of groups to write: up to the last that holds a value.
int32_t storedGroupCount(const CAudioParamData& data) {
    int32_t count = data.groupCount();
    while (count > 0 && data.elementCount(count - 1) == 0) {
        --count;
    }
    return count;
}

CError* refuse(int32_t line, const CString& what, uint32_t count) {
    return addErrorLocation(nullptr, __FILE__, line, CString(), what, CString::fromInt(count));
}

}  // namespace

CError* CAudioParamStorage::save(COutputStream& stream, const CAudioParamInfo& info, const CAudioParamData& data) {
    const int32_t groups = storedGroupCount(data);
    TARV_TRY(stream.writeString(info.definitionPath()));
    TARV_TRY(stream.writeValue(kVersion));
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(data.elementSize())));
    TARV_TRY(stream.writeValue(data.isString() ? 1 : 0));
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(groups)));
    if (data.isString()) {
        TARV_TRY(saveTexts(stream, data, groups));
    }
    uint32_t textId = 1;
    for (int32_t group = 0; group < groups; ++group) {
        TARV_TRY(saveGroup(stream, data, group, textId));
    }
    return nullptr;
}

// Numbers the texts anew from 1 in the order of the elements, so that equal values give equal bytes.
CError* CAudioParamStorage::saveTexts(COutputStream& stream, const CAudioParamData& data, int32_t groups) {
    int32_t count = 0;
    for (int32_t group = 0; group < groups; ++group) {
        count += data.elementCount(group) * data.elementSize_;
    }
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(count)));
    uint32_t id = 1;
    for (int32_t group = 0; group < groups; ++group) {
        const CAudioParamData::CGroup& source = data.groups_[group];
        for (int32_t i = 0; i < source.elementCount * data.elementSize_; ++i) {
            const CString* text = data.getString(static_cast<int32_t>(source.values[i]));
            TARV_TRY(stream.writeValue(id++));
            TARV_TRY(stream.writeValue(CAudioParamDataItemString::kType));
            TARV_TRY(stream.writeString(text ? *text : CString()));
        }
    }
    return nullptr;
}

CError* CAudioParamStorage::saveGroup(COutputStream& stream, const CAudioParamData& data, int32_t group,
                                      uint32_t& textId) {
    const CAudioParamData::CGroup& source = data.groups_[group];
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(source.elementCount)));
    for (int32_t i = 0; i < source.elementCount * data.elementSize_; ++i) {
        if (data.isString()) {
            TARV_TRY(stream.writeValue(textId++));
        } else {
            TARV_TRY(stream.writeDouble(source.values[i]));
        }
    }
    return nullptr;
}

CError* CAudioParamStorage::loadHead(CInputStream& stream, const CAudioParamInfo& info, uint32_t& groupCount,
                                     bool& isForeign) {
    uint32_t version = 0;
    TARV_TRY(stream.readValue(version));
    if (version != kVersion) {
        isForeign = true;
        TARV_FAIL("@tarvstr_CAudioParamStorage_load_VersionError Unsupported data set version %1.",
                  CString::fromInt(version));
    }
    uint32_t elementSize = 0;
    uint32_t dataType = 0;
    TARV_TRY(stream.readValue(elementSize));
    TARV_TRY(stream.readValue(dataType));
    const uint32_t requiredType = info.isString() ? 1 : 0;
    if (elementSize != static_cast<uint32_t>(info.elementSize()) || dataType != requiredType) {
        isForeign = true;
        TARV_FAIL(
            "@tarvstr_CAudioParamStorage_load_FormatError Unsupported storage format (esize=%1, dtype=%2; should be: "
            "esize=%3, dtype=%4).",
            CString::fromInt(elementSize), CString::fromInt(dataType), CString::fromInt(info.elementSize()),
            CString::fromInt(requiredType));
    }
    TARV_TRY(stream.readValue(groupCount));
    if (groupCount > static_cast<uint32_t>(CAudioParamData::kGroupLimit)) {
        return refuse(__LINE__, "@tarvstr_CAudioParamStorage_load_GroupError Invalid group count %1.", groupCount);
    }
    return nullptr;
}

CError* CAudioParamStorage::load(CInputStream& stream, const CAudioParamInfo& info, CAudioParamData& data,
                                 CString* definitionPath, bool* isForeign) {
    const uint8_t* path = nullptr;
    uint32_t pathLength = 0;
    CByteBuffer room;
    uint32_t groupCount = 0;
    bool isOther = false;
    TARV_TRY(stream.viewString(path, pathLength, room));
    CError* error = loadHead(stream, info, groupCount, isOther);
    if (isForeign) {
        *isForeign = isOther;
    }
    TARV_TRY(error);
    CAudioParamData loaded;
    loaded.reset(info);
    if (info.isString()) {
        TARV_TRY(loaded.load(stream));
    }
    loaded.growGroups(static_cast<int32_t>(groupCount));
    for (int32_t group = 0; group < loaded.groupCount(); ++group) {
        TARV_TRY(loadGroup(stream, loaded, group));
    }
    loaded.strings_.dropUnused();
    data = std::move(loaded);
    if (definitionPath) {
        *definitionPath = CString::fromUtf8(reinterpret_cast<const char*>(path), pathLength);
    }
    return nullptr;
}

CError* CAudioParamStorage::loadGroup(CInputStream& stream, CAudioParamData& data, int32_t group) {
    uint32_t count = 0;
    TARV_TRY(stream.readValue(count));
    if (count > static_cast<uint32_t>(CAudioParamData::kElementLimit)) {
        return refuse(__LINE__, "@tarvstr_CAudioParamStorage_load_ElementError Invalid element count %1.", count);
    }
    for (int32_t element = 0; element < static_cast<int32_t>(count); ++element) {
        // Room grows with what was read, so that a record with a false count takes no memory for it.
        if ((element & (element + 1)) == 0) {
            data.reserveGroup(group, std::min<int32_t>(element * 2 + 1, static_cast<int32_t>(count)));
        }
        for (int32_t index = 0; index < data.elementSize_; ++index) {
            double& place = data.groups_[group].values[element * data.elementSize_ + index];
            if (data.isString()) {
                TARV_TRY(loadText(stream, data, place));
            } else {
                TARV_TRY(stream.readDouble(place));
            }
        }
        data.groups_[group].elementCount = element + 1;
    }
    return nullptr;
}

CError* CAudioParamStorage::loadText(CInputStream& stream, CAudioParamData& data, double& place) {
    uint32_t id = 0;
    TARV_TRY(stream.readValue(id));
    if (id > INT32_MAX || !data.strings_.use(static_cast<int32_t>(id))) {
        return refuse(__LINE__, "@tarvstr_CAudioParamStorage_load_StringError Unknown string %1 encountered.", id);
    }
    place = id;
    return nullptr;
}

}  // namespace tarv
