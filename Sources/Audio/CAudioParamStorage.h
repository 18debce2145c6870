#pragma once

#include "Audio/CAudioParamInfo.h"

namespace tarv {

/// The saved form of one parameter's value, one record: definition path, version, element size, data type, group count,
/// texts (string data only), groups. Little-endian, real units.
class CAudioParamStorage {
public:
    static constexpr uint32_t kVersion = 1;

    /// Writes the groups that hold values.
    [[nodiscard]] static CError* save(COutputStream& stream, const CAudioParamInfo& info, const CAudioParamData& data);
    /// Reads a record into `data`, which takes its shape and defaults from `info` and then holds the record's groups
    /// and nothing else. On failure `data` is as it was. `definitionPath` gives the record's path.
    [[nodiscard]] static CError* load(CInputStream& stream, const CAudioParamInfo& info, CAudioParamData& data,
                                      CString* definitionPath = nullptr);

private:
    [[nodiscard]] static CError* saveGroup(COutputStream& stream, const CAudioParamData& data, int32_t group);
    [[nodiscard]] static CError* loadHead(CInputStream& stream, const CAudioParamInfo& info, uint32_t& groupCount);
    [[nodiscard]] static CError* loadGroup(CInputStream& stream, CAudioParamData& data, int32_t group);
    [[nodiscard]] static CError* loadText(CInputStream& stream, CAudioParamData& data, double& place);
};

}  // namespace tarv
