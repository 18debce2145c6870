#include "RawForm.h"

#include <charconv>
#include <string_view>

#include "XmlTextCheck.h"

namespace tarv {

namespace {

constexpr std::string_view kRootElement = "raw";
constexpr std::string_view kNodeElement = "node";
constexpr std::string_view kTemplateElement = "template";
constexpr std::string_view kAttributeElement = "attribute";
constexpr char kHexDigits[] = "0123456789abcdef";

bool isXmlText(std::string_view text) {
    for (size_t offset = 0; offset < text.size();) {
        uint32_t codePoint = 0;
        if (!decodeUtf8(text, offset, codePoint) || !isKeptCharacter(codePoint)) {
            return false;
        }
    }
    return true;
}

std::string escaped(std::string_view text) {
    struct CEscape {
        char character;
        std::string_view entity;
    };
    static constexpr CEscape kEscapes[] = {{'&', "&amp;"}, {'<', "&lt;"},   {'>', "&gt;"},  {'"', "&quot;"},
                                           {'\t', "&#9;"}, {'\n', "&#10;"}, {'\r', "&#13;"}};
    std::string out;
    for (char c : text) {
        std::string_view shown(&c, 1);
        for (const CEscape& escape : kEscapes) {
            if (c == escape.character) {
                shown = escape.entity;
            }
        }
        out += shown;
    }
    return out;
}

void putText(std::string& out, const char* name, std::string_view text) {
    out += std::string(" ") + name;
    if (isXmlText(text)) {
        out += "=\"" + escaped(text) + "\"";
        return;
    }
    out += "-hex=\"";
    for (char c : text) {
        const auto byte = static_cast<uint8_t>(c);
        out += kHexDigits[byte >> 4];
        out += kHexDigits[byte & 15];
    }
    out += "\"";
}

void putNode(std::string& out, const CDefinitionNode& node, int depth) {
    const std::string indent(static_cast<size_t>(depth) * 2, ' ');
    const std::string element(node.isTemplate() ? kTemplateElement : kNodeElement);
    out += indent + "<" + element;
    putText(out, "tag", node.tag);
    putText(out, "name", node.name);
    if (node.isTemplate()) {
        out += " flag=\"" + std::to_string(node.templateFlag) + "\"";
        putText(out, "real-tag", node.realTag);
    }
    if (node.attributes.empty() && node.children.empty()) {
        out += "/>\n";
        return;
    }
    out += ">\n";
    for (const CDefinitionAttribute& attribute : node.attributes) {
        out += indent + "  <" + std::string(kAttributeElement);
        putText(out, "name", attribute.name);
        putText(out, "value", attribute.value);
        out += "/>\n";
    }
    for (const CDefinitionNode& child : node.children) {
        putNode(out, child, depth + 1);
    }
    out += indent + "</" + element + ">\n";
}

bool hexToBytes(std::string_view hex, std::string& bytes) {
    if (hex.size() % 2 != 0) {
        return false;
    }
    for (size_t i = 0; i < hex.size(); i += 2) {
        unsigned value = 0;
        const auto parsed = std::from_chars(hex.data() + i, hex.data() + i + 2, value, 16);
        if (parsed.ec != std::errc() || parsed.ptr != hex.data() + i + 2) {
            return false;
        }
        bytes.push_back(static_cast<char>(value));
    }
    return true;
}

CDefinitionFailure readText(const CXmlSource& source, pugi::xml_node element, const char* name, std::string& text) {
    if (const pugi::xml_attribute plain = element.attribute(name)) {
        text = plain.value();
        return std::nullopt;
    }
    const pugi::xml_attribute hex = element.attribute((std::string(name) + "-hex").c_str());
    if (!hex) {
        return source.errorAt(element, "attribute '" + std::string(name) + "' is missing");
    }
    if (!hexToBytes(hex.value(), text)) {
        return source.errorAt(hex, "pairs of hexadecimal digits are expected");
    }
    return std::nullopt;
}

CDefinitionFailure readNode(const CXmlSource& source, pugi::xml_node element, CDefinitionNode& node);

CDefinitionFailure readTemplate(const CXmlSource& source, pugi::xml_node element, CDefinitionNode& node) {
    if (auto failure = readText(source, element, "real-tag", node.realTag)) {
        return failure;
    }
    node.templateFlag = element.attribute("flag").as_uint(0);
    if (node.templateFlag == 0) {
        return source.errorAt(element, "a template needs a flag that is not 0");
    }
    const pugi::xml_node body = element.find_child([](pugi::xml_node n) { return n.type() == pugi::node_element; });
    if (!body || element.find_child([&](pugi::xml_node n) { return n.type() == pugi::node_element && n != body; })) {
        return source.errorAt(element, "a template needs exactly one node");
    }
    return readNode(source, body, node.children.emplace_back());
}

CDefinitionFailure readAttribute(const CXmlSource& source, pugi::xml_node element, CDefinitionNode& node) {
    if (!node.children.empty()) {
        return source.errorAt(element, "attributes stand before the children");
    }
    CDefinitionAttribute& attribute = node.attributes.emplace_back();
    if (auto failure = readText(source, element, "name", attribute.name)) {
        return failure;
    }
    return readText(source, element, "value", attribute.value);
}

CDefinitionFailure readNode(const CXmlSource& source, pugi::xml_node element, CDefinitionNode& node) {
    const bool isTemplate = element.name() == kTemplateElement;
    if (!isTemplate && element.name() != kNodeElement) {
        return source.errorAt(element, "'node' or 'template' is expected, not '" + std::string(element.name()) + "'");
    }
    node.isExpanded = true;
    node.place = source.placeOf(element);
    if (auto failure = readText(source, element, "tag", node.tag)) {
        return failure;
    }
    if (auto failure = readText(source, element, "name", node.name)) {
        return failure;
    }
    if (isTemplate) {
        return readTemplate(source, element, node);
    }
    for (pugi::xml_node child : element.children()) {
        if (child.type() != pugi::node_element) {
            continue;
        }
        auto failure = child.name() == kAttributeElement ? readAttribute(source, child, node)
                                                         : readNode(source, child, node.children.emplace_back());
        if (failure) {
            return failure;
        }
    }
    return std::nullopt;
}

}  // namespace

std::string writeRawForm(const CDefinitionNode& root) {
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<raw>\n";
    putNode(out, root, 1);
    return out + "</raw>\n";
}

bool isRawForm(const CXmlSource& source) {
    return source.root().name() == kRootElement;
}

CDefinitionFailure readRawForm(const CXmlSource& source, CDefinitionNode& root) {
    pugi::xml_node element;
    for (pugi::xml_node child : source.root().children()) {
        if (child.type() == pugi::node_element) {
            if (element) {
                return source.errorAt(child, "a compiled tree has one root");
            }
            element = child;
        }
    }
    if (!element) {
        return source.errorAt(source.root(), "the root node is missing");
    }
    return readNode(source, element, root);
}

}  // namespace tarv
