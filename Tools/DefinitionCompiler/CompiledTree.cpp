#include "CompiledTree.h"

namespace tarv {

namespace {

// Deeper trees are refused: nothing that a person writes comes near, and the reader works by recursion.
constexpr int kDepthMax = 200;

void putValue(std::string& out, size_t value) {
    for (int shift = 0; shift < 32; shift += 8) {
        out.push_back(static_cast<char>(value >> shift & 0xff));
    }
}

void putString(std::string& out, const std::string& text) {
    putValue(out, text.size());
    out += text;
}

void putNode(std::string& out, const CDefinitionNode& node) {
    putString(out, node.tag);
    putString(out, node.name);
    putValue(out, node.templateFlag);
    if (node.isTemplate()) {
        std::string body;
        putNode(body, node.children[0]);
        putString(out, node.realTag);
        putString(out, body);
        return;
    }
    putValue(out, node.attributes.size());
    for (const CDefinitionAttribute& attribute : node.attributes) {
        putString(out, attribute.name);
        putString(out, attribute.value);
    }
    putValue(out, node.children.size());
    for (const CDefinitionNode& child : node.children) {
        putNode(out, child);
    }
}

/// Walks the bytes of a compiled tree; after a fault every read gives nothing.
class CTreeCursor {
public:
    explicit CTreeCursor(std::string_view bytes) : bytes_(bytes) {}

    bool isFailed() const { return !fault_.empty(); }
    bool isAtEnd() const { return position_ == bytes_.size(); }
    CDefinitionError error() const { return {{}, fault_ + " (byte " + std::to_string(position_) + ")"}; }

    uint32_t value(const char* what) {
        const std::string_view bytes = take(4, what);
        uint32_t value = 0;
        for (size_t i = bytes.size(); i-- > 0;) {
            value = value << 8 | static_cast<uint8_t>(bytes[i]);
        }
        return value;
    }

    std::string string(const char* what) {
        const uint32_t length = value(what);
        return std::string(take(length, what));
    }

    void fail(const std::string& fault) {
        if (!isFailed()) {
            fault_ = fault;
        }
    }

private:
    std::string_view take(size_t count, const char* what) {
        if (isFailed() || count > bytes_.size() - position_) {
            fail(std::string("the tree ends within ") + what);
            return {};
        }
        position_ += count;
        return bytes_.substr(position_ - count, count);
    }

    std::string_view bytes_;
    size_t position_ = 0;
    std::string fault_;
};

void parseNode(CTreeCursor& cursor, CDefinitionNode& node, int depth);

void parseTemplate(CTreeCursor& cursor, CDefinitionNode& node, int depth) {
    node.realTag = cursor.string("a real tag");
    const std::string body = cursor.string("the body of a template");
    if (cursor.isFailed()) {
        return;
    }
    CTreeCursor bodyCursor(body);
    parseNode(bodyCursor, node.children.emplace_back(), depth + 1);
    if (bodyCursor.isFailed()) {
        cursor.fail("the body of the template '" + node.name + "' is damaged");
    } else if (!bodyCursor.isAtEnd()) {
        cursor.fail("bytes follow the body of the template '" + node.name + "'");
    }
}

void parseNode(CTreeCursor& cursor, CDefinitionNode& node, int depth) {
    if (depth > kDepthMax) {
        return cursor.fail("the tree is nested too deeply");
    }
    node.isExpanded = true;
    node.tag = cursor.string("a tag");
    node.name = cursor.string("a name");
    node.templateFlag = cursor.value("a template flag");
    if (node.isTemplate()) {
        return parseTemplate(cursor, node, depth);
    }
    const uint32_t attributeCount = cursor.value("an attribute count");
    for (uint32_t i = 0; i < attributeCount && !cursor.isFailed(); ++i) {
        CDefinitionAttribute attribute;
        attribute.name = cursor.string("an attribute's name");
        attribute.value = cursor.string("an attribute's value");
        node.attributes.push_back(std::move(attribute));
    }
    const uint32_t childCount = cursor.value("a child count");
    for (uint32_t i = 0; i < childCount && !cursor.isFailed(); ++i) {
        parseNode(cursor, node.children.emplace_back(), depth + 1);
    }
}

}  // namespace

std::string serializeTree(const CDefinitionNode& root) {
    std::string bytes;
    putNode(bytes, root);
    return bytes;
}

CDefinitionFailure parseTree(std::string_view bytes, CDefinitionNode& root) {
    CTreeCursor cursor(bytes);
    parseNode(cursor, root, 0);
    if (!cursor.isFailed() && !cursor.isAtEnd()) {
        cursor.fail("bytes follow the tree");
    }
    return cursor.isFailed() ? CDefinitionFailure(cursor.error()) : std::nullopt;
}

}  // namespace tarv
