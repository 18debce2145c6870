#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Core/CObject.h"

namespace tarv {

/// One node of a definition as a test writes it down.
struct CTestNode {
    std::string tag;
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes = {};
    std::vector<CTestNode> children = {};
    /// For a template definition (made by testTemplate): what it makes, and the one node of its body.
    std::string realTag = {};
    std::vector<CTestNode> body = {};
};

/// Definition of the template `name`, which makes objects of the class `realTag` with these attributes and children.
inline CTestNode testTemplate(const std::string& name, const std::string& realTag,
                              std::vector<std::pair<std::string, std::string>> attributes = {},
                              std::vector<CTestNode> children = {}) {
    CTestNode definition{"template", name};
    definition.realTag = realTag;
    definition.body.push_back(CTestNode{realTag, "", std::move(attributes), std::move(children)});
    return definition;
}

inline void appendCount(std::string& bytes, size_t count) {
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<char>(count >> shift & 255));
    }
}

inline void appendText(std::string& bytes, const std::string& text) {
    appendCount(bytes, text.size());
    bytes += text;
}

inline void appendNode(std::string& bytes, const CTestNode& node) {
    appendText(bytes, node.tag);
    appendText(bytes, node.name);
    appendCount(bytes, node.body.empty() ? 0 : 1);
    if (!node.body.empty()) {
        std::string body;
        appendNode(body, node.body[0]);
        appendText(bytes, node.realTag);
        appendText(bytes, body);
        return;
    }
    appendCount(bytes, node.attributes.size());
    for (const auto& attribute : node.attributes) {
        appendText(bytes, attribute.first);
        appendText(bytes, attribute.second);
    }
    appendCount(bytes, node.children.size());
    for (const CTestNode& child : node.children) {
        appendNode(bytes, child);
    }
}

/// The compiled form of a whole tree with these top-level objects.
inline std::string compiledTree(const std::vector<CTestNode>& children) {
    CTestNode root;
    root.children = children;
    std::string bytes;
    appendNode(bytes, root);
    return bytes;
}

/// Loads a compiled tree into an object, usually a root.
[[nodiscard]] inline CError* loadCompiled(CObject& object, const std::string& bytes) {
    const auto* data = reinterpret_cast<const uint8_t*>(bytes.data());
    CTreeCursor cursor{data, data + bytes.size()};
    return object.createFromBinary(cursor, true, true, false, false);
}

/// Builds these objects as children of `object`, through the compiled form.
[[nodiscard]] inline CError* loadTree(CObject& object, const std::vector<CTestNode>& children) {
    return loadCompiled(object, compiledTree(children));
}

}  // namespace tarv
