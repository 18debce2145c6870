#pragma once

#include <string>
#include <vector>

#include "CDefinitionNode.h"

namespace tarv {

/// Compiles a source (definitions, or the raw form, of which nothing is expanded) to the bytes of a compiled tree.
/// `sharedPath` names a further source whose top-level templates may be used, or is empty. `files` gets every file
/// read.
[[nodiscard]] CDefinitionFailure compileDefinitions(const std::string& path, const std::string& sharedPath,
                                                    std::string& bytes, std::vector<std::string>& files);

/// Sets an attribute of a compiled tree: `setting` is "path.of.names.attribute=value". The object must be there.
[[nodiscard]] CDefinitionFailure setInTree(std::string& bytes, const std::string& setting);

/// Prints the compressed block of a file in the raw form.
[[nodiscard]] CDefinitionFailure dumpDefinitions(const std::string& path, std::string& raw);

/// Packs bytes into a compressed block as the program reads it. `id` has four characters.
[[nodiscard]] CDefinitionFailure packBlock(const std::string& bytes, const char* id, std::string& block);

/// Writes a file whole or not at all.
[[nodiscard]] CDefinitionFailure writeFile(const std::string& path, const std::string& bytes);

}  // namespace tarv
