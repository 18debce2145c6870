#pragma once

#include <string>
#include <vector>

#include "CDefinitionNode.h"

namespace tarv {

/// One named byte range that the library carries.
struct CPackedResource {
    std::string name;
    std::string file;
};

/// Reads a table of resources: `<resources>` with one `<resource name="..."/>` for each row, in table order, with
/// `file`, a path below `fileRoot`.
[[nodiscard]] CDefinitionFailure readResourceTable(const std::string& path, const std::string& fileRoot,
                                                   std::vector<CPackedResource>& resources);

/// Assembler source with each range behind a 32-bit count of its bytes, labelled tarvResource0, tarvResource1...
std::string resourceAssembly(const std::vector<CPackedResource>& resources);

/// C++ source with the rows {range, name} in the same order, ended by a null row.
std::string resourceRows(const std::vector<CPackedResource>& resources);

}  // namespace tarv
