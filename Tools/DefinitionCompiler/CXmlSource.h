#pragma once

#include <pugixml.hpp>
#include <string>
#include <vector>

#include "CDefinitionNode.h"

namespace tarv {

/// One parsed XML file that knows the place of everything in it.
class CXmlSource {
public:
    /// Reads and parses the file. Fails on anything that is not exactly one element with elements and comments in it.
    [[nodiscard]] CDefinitionFailure load(const std::string& path);
    /// The same for a text that is already in memory; `path` is only shown.
    [[nodiscard]] CDefinitionFailure parse(const std::string& path, std::string text);

    pugi::xml_node root() const { return root_; }
    const std::string& path() const { return path_; }
    CSourcePlace placeOf(pugi::xml_node node) const;
    CSourcePlace placeOf(pugi::xml_attribute attribute) const;
    CDefinitionError errorAt(pugi::xml_node node, const std::string& text) const { return {placeOf(node), text}; }
    CDefinitionError errorAt(pugi::xml_attribute attribute, const std::string& text) const {
        return {placeOf(attribute), text};
    }

private:
    CSourcePlace placeAt(size_t offset) const;
    CDefinitionFailure checkElement(pugi::xml_node element, int depth) const;
    CDefinitionFailure findRoot();

    std::string path_;
    std::string text_;    ///< as read, to count lines and columns
    std::string buffer_;  ///< parsed in place, so that a pointer into it is an offset
    pugi::xml_document document_;
    pugi::xml_node root_;
};

}  // namespace tarv
