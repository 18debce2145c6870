// Reads attributes of SVG elements: names, words, properties and lengths.

#include <algorithm>
#include <sstream>

#include "CSvgSource.h"
#include "CTextSource.h"

namespace tarv {

namespace {

/// The last value of a property in a `style` attribute.
std::string styleProperty(const std::string& style, const std::string& name) {
    std::istringstream entries(style);
    std::string value;
    for (std::string entry; std::getline(entries, entry, ';');) {
        const size_t colon = entry.find(':');
        if (colon == entry.npos) {
            continue;
        }
        std::istringstream key(entry.substr(0, colon)), text(entry.substr(colon + 1));
        std::string word;
        if (key >> word && word == name && text >> word) {
            value = word;
        }
    }
    return value;
}

}  // namespace

std::string svgName(pugi::xml_node node) {
    const std::string name = node.name();
    if (name.starts_with("svg:")) {
        return name.substr(4);
    }
    return name.find(':') == name.npos ? name : "";
}

std::vector<std::string> svgWords(pugi::xml_attribute attribute) {
    std::istringstream text(attribute.value());
    std::vector<std::string> words;
    for (std::string word; text >> word;) {
        words.push_back(word);
    }
    return words;
}

std::string svgProperty(pugi::xml_node node, const std::string& name) {
    for (; node.type() == pugi::node_element; node = node.parent()) {
        std::string value = styleProperty(node.attribute("style").value(), name);
        if (value.empty()) {
            value = node.attribute(name.c_str()).value();
        }
        if (!value.empty() && value != "inherit") {
            return value;
        }
    }
    return "";
}

bool svgLength(pugi::xml_attribute attribute, double& value) {
    value = 0;
    std::string text = attribute.value();
    if (text.ends_with("px")) {
        text.resize(text.size() - 2);
    }
    return !attribute || parseNumber(text, value);
}

}  // namespace tarv
