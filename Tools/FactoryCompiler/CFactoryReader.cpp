#include "CFactoryReader.h"

#include <charconv>
#include <cmath>
#include <string_view>

namespace tarv {

namespace {

// 20 / ln 10: a gain of x dB is the factor exp(x / kDecibelsPerNeper).
constexpr double kDecibelsPerNeper = 8.685889638065037;
constexpr int kGroupCount = 8;

std::vector<std::string> splitText(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    while (true) {
        const size_t end = text.find(separator);
        pieces.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return pieces;
        }
        text.remove_prefix(end + 1);
    }
}

CDefinitionFailure readNumbers(const CXmlSource& source, pugi::xml_attribute attribute, bool isDecibels,
                               std::vector<double>& numbers) {
    for (const std::string& word : splitText(attribute.value(), ' ')) {
        double number = 0.0;
        const auto parsed = std::from_chars(word.data(), word.data() + word.size(), number);
        if (parsed.ec != std::errc() || parsed.ptr != word.data() + word.size() || !std::isfinite(number)) {
            return source.errorAt(attribute, "'" + word + "' is no number");
        }
        numbers.push_back(isDecibels ? std::exp(number / kDecibelsPerNeper) : number);
    }
    return std::nullopt;
}

CDefinitionFailure readGroups(const CXmlSource& source, pugi::xml_node element, CFactoryRecord& record) {
    const std::string_view unit = element.attribute("unit").value();
    if (!unit.empty() && unit != "dB") {
        return source.errorAt(element.attribute("unit"), "the only unit is 'dB'");
    }
    for (int group = 0; group < kGroupCount; ++group) {
        const pugi::xml_attribute attribute = element.attribute(("group" + std::to_string(group)).c_str());
        if (!attribute) {
            break;
        }
        if (auto failure = readNumbers(source, attribute, unit == "dB", record.groups.emplace_back())) {
            return failure;
        }
    }
    return std::nullopt;
}

/// Refuses a misspelt attribute and a group behind a gap.
CDefinitionFailure checkAttributes(const CXmlSource& source, pugi::xml_node element, const CFactoryRecord& record) {
    for (pugi::xml_attribute attribute : element.attributes()) {
        const std::string_view name = attribute.name();
        bool isKnown = name == "key" || name == "definition" || name == (record.isString ? "texts" : "unit");
        for (size_t group = 0; group < record.groups.size(); ++group) {
            isKnown = isKnown || name == "group" + std::to_string(group);
        }
        if (!isKnown) {
            return source.errorAt(attribute, "attribute '" + std::string(name) + "' has no meaning here");
        }
    }
    return std::nullopt;
}

CDefinitionFailure readRecord(const CXmlSource& source, pugi::xml_node element, CFactoryRecordMap& records) {
    const std::string key = element.attribute("key").value();
    CFactoryRecord record;
    record.definition = element.attribute("definition").value();
    if (key.empty() || record.definition.empty()) {
        return source.errorAt(element, "a record needs 'key' and 'definition'");
    }
    if (const pugi::xml_attribute texts = element.attribute("texts")) {
        record.isString = true;
        record.texts = splitText(texts.value(), ',');
    } else if (auto failure = readGroups(source, element, record)) {
        return failure;
    }
    if (auto failure = checkAttributes(source, element, record)) {
        return failure;
    }
    if (!record.isString && record.groups.empty()) {
        return source.errorAt(element, "the record '" + key + "' holds no value");
    }
    if (!records.emplace(key, std::move(record)).second) {
        return source.errorAt(element, "the key '" + key + "' is given twice");
    }
    return std::nullopt;
}

CDefinitionFailure readPreset(const CXmlSource& source, pugi::xml_node element, CFactoryPreset& preset) {
    preset.name = element.attribute("name").value();
    if (preset.name.find(':') == std::string::npos) {
        return source.errorAt(element, "a preset's name begins with the id of its registry and a colon");
    }
    for (pugi::xml_node child : element.children()) {
        if (child.type() != pugi::node_element) {
            continue;
        }
        if (std::string_view(child.name()) != "record") {
            return source.errorAt(child, "'record' is expected, not '" + std::string(child.name()) + "'");
        }
        if (auto failure = readRecord(source, child, preset.records)) {
            return failure;
        }
    }
    return std::nullopt;
}

}  // namespace

CDefinitionFailure readFactorySource(const CXmlSource& source, CFactorySource& result) {
    const pugi::xml_node root = source.root();
    result.isBank = std::string_view(root.name()) == "bank";
    if (!result.isBank && std::string_view(root.name()) != "list") {
        return source.errorAt(root, "the outermost element is 'bank' or 'list'");
    }
    result.name = root.attribute("name").value();
    CFactoryRecordMap common;
    for (pugi::xml_node child : root.children()) {
        if (child.type() != pugi::node_element) {
            continue;
        }
        const std::string_view name = child.name();
        if (name != "record" && name != "preset") {
            return source.errorAt(child, "'record' or 'preset' is expected, not '" + std::string(name) + "'");
        }
        auto failure = name == "record" ? readRecord(source, child, common)
                                        : readPreset(source, child, result.presets.emplace_back());
        if (failure) {
            return failure;
        }
    }
    for (CFactoryPreset& preset : result.presets) {
        preset.records.insert(common.begin(), common.end());
    }
    return std::nullopt;
}

}  // namespace tarv
