#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarv {

/// Where something stands in a source file. Lines and columns count from 1, columns in characters.
struct CSourcePlace {
    std::string file;
    int line = 0;
    int column = 0;
};

/// What is wrong with a source and where.
struct CDefinitionError {
    CSourcePlace place;
    std::string text;

    /// "file:line:column: error: text"; a part of the place that is not known is left out.
    std::string message() const;
};

/// Nothing on success.
using CDefinitionFailure = std::optional<CDefinitionError>;

struct CDefinitionAttribute {
    std::string name;
    std::string value;
};

/// One object of a definition tree as the compiled form holds it: UTF-8 texts, attributes and children in order.
/// A template definition (`templateFlag` not 0) has no attributes and exactly one child, its body.
struct CDefinitionNode {
    std::string tag;
    std::string name;
    uint32_t templateFlag = 0;
    std::string realTag;
    std::vector<CDefinitionAttribute> attributes;
    std::vector<CDefinitionNode> children;
    CSourcePlace place;
    bool isExpanded = false;  ///< templates in it have been resolved

    bool isTemplate() const { return templateFlag != 0; }
};

}  // namespace tarv
