#include "CDefinitionReader.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace tarv {

namespace {

constexpr std::string_view kRootElement = "definitions";
constexpr std::string_view kTemplateElement = "template";
constexpr std::string_view kIncludeElement = "include";
constexpr std::string_view kNameAttribute = "name";
constexpr std::string_view kFileAttribute = "file";
// The program sets this one itself.
constexpr std::string_view kFullNameAttribute = "full-name";
// Characters with a meaning in paths and expressions: an object named with one could not be found.
constexpr std::string_view kPathCharacters = "./^${} \t\r\n";

std::string inQuotes(std::string_view text) {
    return "'" + std::string(text) + "'";
}

CDefinitionFailure checkName(const CXmlSource& source, pugi::xml_attribute attribute) {
    const std::string_view name = attribute.value();
    if (name.empty()) {
        return source.errorAt(attribute, "the name is empty");
    }
    const size_t bad = name.find_first_of(kPathCharacters);
    if (bad != std::string_view::npos) {
        return source.errorAt(attribute, "the name " + inQuotes(name) + " holds " + inQuotes(name.substr(bad, 1)) +
                                             ", which has a meaning in paths");
    }
    return std::nullopt;
}

/// Fails unless the element has the attributes given and no other.
CDefinitionFailure checkAttributes(const CXmlSource& source, pugi::xml_node element, std::string_view only) {
    for (pugi::xml_attribute attribute : element.attributes()) {
        if (attribute.name() != only) {
            return source.errorAt(attribute, "attribute " + inQuotes(attribute.name()) + " has no meaning in " +
                                                 inQuotes(element.name()));
        }
    }
    if (!element.attribute(only.data())) {
        return source.errorAt(element, inQuotes(element.name()) + " needs the attribute " + inQuotes(only));
    }
    return std::nullopt;
}

}  // namespace

CDefinitionFailure CDefinitionReader::read(const std::string& path, CDefinitionNode& root) {
    CXmlSource source;
    files_.push_back(path);
    if (auto failure = source.load(path)) {
        return failure;
    }
    return read(source, root);
}

CDefinitionFailure CDefinitionReader::read(const CXmlSource& source, CDefinitionNode& root) {
    const pugi::xml_node element = source.root();
    if (element.name() != kRootElement) {
        return source.errorAt(
            element, "the outermost element is " + inQuotes(element.name()) + ", not " + inQuotes(kRootElement));
    }
    if (element.first_attribute()) {
        return source.errorAt(element.first_attribute(), inQuotes(kRootElement) + " has no attributes");
    }
    open_.push_back(std::filesystem::weakly_canonical(source.path()).string());
    auto failure = readChildren(source, element, root);
    open_.pop_back();
    return failure;
}

CDefinitionFailure CDefinitionReader::readChildren(const CXmlSource& source, pugi::xml_node element,
                                                   CDefinitionNode& parent) {
    struct CElementRow {
        std::string_view name;
        CDefinitionFailure (CDefinitionReader::*read)(const CXmlSource&, pugi::xml_node, CDefinitionNode&);
    };
    static constexpr CElementRow kElements[] = {{kTemplateElement, &CDefinitionReader::readTemplate},
                                                {kIncludeElement, &CDefinitionReader::readInclude}};
    for (pugi::xml_node child : element.children()) {
        if (child.type() != pugi::node_element) {
            continue;
        }
        auto read = &CDefinitionReader::readObject;
        for (const CElementRow& row : kElements) {
            if (child.name() == row.name) {
                read = row.read;
            }
        }
        if (auto failure = (this->*read)(source, child, parent)) {
            return failure;
        }
    }
    return std::nullopt;
}

CDefinitionFailure CDefinitionReader::readObject(const CXmlSource& source, pugi::xml_node element,
                                                 CDefinitionNode& parent) {
    CDefinitionNode node;
    node.tag = element.name();
    node.place = source.placeOf(element);
    if (node.tag == kRootElement) {
        return source.errorAt(element, inQuotes(kRootElement) + " can only be the outermost element");
    }
    if (node.tag.find(':') == node.tag.size() - 1) {
        return source.errorAt(element, "nothing stands behind the colon of the tag " + inQuotes(node.tag));
    }
    node.name = node.tag.substr(node.tag.rfind(':') + 1);
    for (pugi::xml_attribute attribute : element.attributes()) {
        if (attribute.name() == kNameAttribute) {
            if (auto failure = checkName(source, attribute)) {
                return failure;
            }
            node.name = attribute.value();
        } else if (attribute.name() == kFullNameAttribute) {
            return source.errorAt(attribute, "the attribute 'full-name' is set by the program");
        } else {
            node.attributes.push_back({attribute.name(), attribute.value()});
        }
    }
    if (auto failure = readChildren(source, element, node)) {
        return failure;
    }
    parent.children.push_back(std::move(node));
    return std::nullopt;
}

CDefinitionFailure CDefinitionReader::readTemplate(const CXmlSource& source, pugi::xml_node element,
                                                   CDefinitionNode& parent) {
    CDefinitionNode node;
    node.tag = kTemplateElement;
    node.templateFlag = 1;
    node.place = source.placeOf(element);
    if (auto failure = checkAttributes(source, element, kNameAttribute)) {
        return failure;
    }
    if (auto failure = checkName(source, element.attribute(kNameAttribute.data()))) {
        return failure;
    }
    node.name = element.attribute(kNameAttribute.data()).value();
    if (auto failure = readChildren(source, element, node)) {
        return failure;
    }
    if (node.children.size() != 1 || node.children[0].isTemplate()) {
        return source.errorAt(element, "the template " + inQuotes(node.name) + " needs exactly one object as its body");
    }
    // The program names the instance; a name given here would be lost without a word.
    CDefinitionNode& body = node.children[0];
    const pugi::xml_node bodyElement = element.find_child([](pugi::xml_node child) { return child.attribute("name"); });
    if (bodyElement) {
        return source.errorAt(bodyElement.attribute("name"), "the body of a template takes its name from the instance");
    }
    body.name.clear();
    parent.children.push_back(std::move(node));
    return std::nullopt;
}

CDefinitionFailure CDefinitionReader::readInclude(const CXmlSource& source, pugi::xml_node element,
                                                  CDefinitionNode& parent) {
    if (auto failure = checkAttributes(source, element, kFileAttribute)) {
        return failure;
    }
    if (element.first_child()) {
        return source.errorAt(element, "an include holds nothing");
    }
    const pugi::xml_attribute attribute = element.attribute(kFileAttribute.data());
    const std::filesystem::path base = std::filesystem::path(source.path()).parent_path();
    const std::string path = (base / attribute.value()).lexically_normal().string();
    if (!std::filesystem::is_regular_file(path)) {
        return source.errorAt(attribute, "there is no file " + inQuotes(path));
    }
    if (std::ranges::find(open_, std::filesystem::weakly_canonical(path).string()) != open_.end()) {
        return source.errorAt(attribute, "the file " + inQuotes(path) + " includes itself");
    }
    return read(path, parent);
}

}  // namespace tarv
