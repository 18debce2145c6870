#include "CXmlSource.h"

#include <fstream>
#include <iterator>
#include <set>
#include <string_view>

#include "XmlTextCheck.h"

namespace tarv {

namespace {

// Everything is kept, so that what has no place in a definition can be refused and not only overlooked.
constexpr unsigned kParseFlags = pugi::parse_full | pugi::parse_fragment;
// All readers work by recursion. Room for the raw form of the deepest tree that can be dumped, with its attributes.
constexpr int kDepthMax = 202;
constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

bool isSilent(pugi::xml_node node) {
    return node.type() == pugi::node_comment || node.type() == pugi::node_declaration;
}

}  // namespace

CDefinitionFailure CXmlSource::load(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return CDefinitionError{{path}, "the file can't be opened"};
    }
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (file.bad()) {
        return CDefinitionError{{path}, "the file can't be read"};
    }
    return parse(path, std::move(text));
}

CDefinitionFailure CXmlSource::parse(const std::string& path, std::string text) {
    path_ = path;
    text_ = std::move(text);
    if (text_.starts_with(kByteOrderMark)) {
        text_.erase(0, kByteOrderMark.size());
    }
    if (auto fault = findTextFault(text_)) {
        return CDefinitionError{placeAt(fault->offset), fault->text};
    }
    buffer_ = text_;
    const pugi::xml_parse_result result =
        document_.load_buffer_inplace(buffer_.data(), buffer_.size(), kParseFlags, pugi::encoding_utf8);
    if (!result) {
        return CDefinitionError{placeAt(static_cast<size_t>(result.offset)),
                                std::string("malformed XML: ") + result.description()};
    }
    return findRoot();
}

CDefinitionFailure CXmlSource::findRoot() {
    for (pugi::xml_node node : document_) {
        if (isSilent(node)) {
            continue;
        }
        if (node.type() != pugi::node_element) {
            return errorAt(node, "only one element may stand here");
        }
        if (root_) {
            return errorAt(node, "a second element '" + std::string(node.name()) + "' stands behind the first");
        }
        root_ = node;
    }
    if (!root_) {
        return CDefinitionError{placeAt(0), "the file holds no element"};
    }
    return checkElement(root_, 0);
}

CDefinitionFailure CXmlSource::checkElement(pugi::xml_node element, int depth) const {
    if (depth > kDepthMax) {
        return errorAt(element, "the elements are nested too deeply");
    }
    std::set<std::string_view> names;
    for (pugi::xml_attribute attribute : element.attributes()) {
        if (!names.insert(attribute.name()).second) {
            return errorAt(attribute, "attribute '" + std::string(attribute.name()) + "' is given twice");
        }
    }
    for (pugi::xml_node child : element) {
        if (isSilent(child)) {
            continue;
        }
        if (child.type() != pugi::node_element) {
            return errorAt(child, "only elements may stand in '" + std::string(element.name()) + "', no text");
        }
        if (auto failure = checkElement(child, depth + 1)) {
            return failure;
        }
    }
    return std::nullopt;
}

CSourcePlace CXmlSource::placeOf(pugi::xml_node node) const {
    const ptrdiff_t offset = node.offset_debug();
    // The parser counts from the name of an element; a reader looks for its bracket.
    return placeAt(offset < 0 ? 0 : static_cast<size_t>(offset) - (node.type() == pugi::node_element ? 1 : 0));
}

CSourcePlace CXmlSource::placeOf(pugi::xml_attribute attribute) const {
    return placeAt(static_cast<size_t>(attribute.name() - buffer_.data()));
}

CSourcePlace CXmlSource::placeAt(size_t offset) const {
    CSourcePlace place{path_, 1, 1};
    for (size_t i = 0; i < offset && i < text_.size(); ++i) {
        const auto byte = static_cast<uint8_t>(text_[i]);
        if (byte == '\n') {
            ++place.line;
            place.column = 1;
        } else if ((byte & 0xc0) != 0x80) {
            ++place.column;
        }
    }
    return place;
}

}  // namespace tarv
