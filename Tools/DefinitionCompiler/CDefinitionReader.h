#pragma once

#include <string>
#include <vector>

#include "CDefinitionNode.h"
#include "CXmlSource.h"

namespace tarv {

/// Reads the source form of definitions: `<definitions>` with one element for each object. The element's name is the
/// tag, its attribute `name` the object's name (without it, the tag behind its last colon), the other attributes are
/// the object's in order. `<include file="..."/>` puts the objects of another such file in its place, by a path
/// relative to the file it stands in; `<template name="..."><tag .../></template>` defines a template whose body is the
/// one element in it.
class CDefinitionReader {
public:
    /// Reads a file with all that it includes into `root`, whose children are the top-level objects.
    [[nodiscard]] CDefinitionFailure read(const std::string& path, CDefinitionNode& root);
    /// Reads a file that is already parsed.
    [[nodiscard]] CDefinitionFailure read(const CXmlSource& source, CDefinitionNode& root);

    /// All files read, in the order of reading.
    const std::vector<std::string>& files() const { return files_; }

private:
    CDefinitionFailure readChildren(const CXmlSource& source, pugi::xml_node element, CDefinitionNode& parent);
    CDefinitionFailure readObject(const CXmlSource& source, pugi::xml_node element, CDefinitionNode& parent);
    CDefinitionFailure readTemplate(const CXmlSource& source, pugi::xml_node element, CDefinitionNode& parent);
    CDefinitionFailure readInclude(const CXmlSource& source, pugi::xml_node element, CDefinitionNode& parent);

    std::vector<std::string> files_;
    std::vector<std::string> open_;  ///< canonical paths of the files that are being read, outermost first
};

}  // namespace tarv
