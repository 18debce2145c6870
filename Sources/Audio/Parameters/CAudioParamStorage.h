#pragma once

#include "Audio/Parameters/CAudioParamInfo.h"

namespace tarv {

/// The saved form of one parameter's value, one record: definition path, version, element size, data type, group count,
/// texts (string data only), groups. Little-endian, real units.
class CAudioParamStorage {
public:
    static constexpr uint32_t kVersion = 1;

    /// Writes the groups that hold values.
    [[nodiscard]] static CError* save(COutputStream& stream, const CAudioParamInfo& info, const CAudioParamData& data);
    /// Reads a record into `data`, which takes its shape and defaults from `info` and then holds the record's groups
    /// and nothing else, as they were written: the caller clamps them. On failure `data` is as it was.
    /// `definitionPath` gets the record's path. On failure `isForeign` is true if the record is intact as far as it was
    /// read, but of another version or format.
    [[nodiscard]] static CError* load(CInputStream& stream, const CAudioParamInfo& info, CAudioParamData& data,
                                      CString* definitionPath = nullptr, bool* isForeign = nullptr);

private:
    [[nodiscard]] static CError* saveTexts(COutputStream& stream, const CAudioParamData& data, int32_t groups);
    [[nodiscard]] static CError* saveGroup(COutputStream& stream, const CAudioParamData& data, int32_t group,
                                           uint32_t& textId);
    [[nodiscard]] static CError* loadHead(CInputStream& stream, const CAudioParamInfo& info, uint32_t& groupCount,
                                          bool& isForeign);
    [[nodiscard]] static CError* loadGroup(CInputStream& stream, CAudioParamData& data, int32_t group);
    [[nodiscard]] static CError* loadText(CInputStream& stream, CAudioParamData& data, double& place);
};

}  // namespace tarv
