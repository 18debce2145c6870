#include "CTextSource.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>

namespace tarv {

CDefinitionFailure readFile(const std::string& path, std::string& bytes) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return CDefinitionError{{path}, "the file can't be opened"};
    }
    bytes.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    if (file.bad()) {
        return CDefinitionError{{path}, "the file can't be read"};
    }
    return std::nullopt;
}

CDefinitionFailure CTextSource::load(const std::string& path) {
    std::string text;
    if (auto failure = readFile(path, text)) {
        return failure;
    }
    parse(path, text);
    return std::nullopt;
}

void CTextSource::parse(const std::string& path, std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    path_ = path;
    lines_.clear();
    for (int number = 1; !text.empty(); ++number) {
        std::string_view rest = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), rest.size() + 1));
        CTextLine line{{path, number, 1}, {}};
        for (size_t start = 0; (start = rest.find_first_not_of(kBlanks, start)) != rest.npos && rest[start] != '#';) {
            const size_t end = std::min(rest.size(), rest.find_first_of(kBlanks, start));
            line.words.emplace_back(rest.substr(start, end - start));
            start = end;
        }
        if (!line.words.empty()) {
            lines_.push_back(std::move(line));
        }
    }
}

CDefinitionFailure CKeySource::take(const CTextSource& source, const std::vector<std::string_view>& keys) {
    path_ = source.path();
    for (const CTextLine& line : source.lines()) {
        if (line.words.size() < 3 || line.words[1] != "=") {
            return CDefinitionError{line.place, "'key = value' is expected, with blanks around the sign"};
        }
        const std::string& key = line.words[0];
        if (!keys.empty() && std::find(keys.begin(), keys.end(), key) == keys.end()) {
            return CDefinitionError{line.place, "'" + key + "' has no meaning here"};
        }
        if (find(key)) {
            return CDefinitionError{line.place, "'" + key + "' is given twice"};
        }
        lines_.push_back(line);
    }
    return std::nullopt;
}

const CTextLine* CKeySource::find(std::string_view key) const {
    for (const CTextLine& line : lines_) {
        if (line.words[0] == key) {
            return &line;
        }
    }
    return nullptr;
}

CDefinitionFailure CKeySource::getText(std::string_view key, std::string& text) const {
    const CTextLine* line = find(key);
    if (!line) {
        return CDefinitionError{{path_}, "'" + std::string(key) + "' is missing"};
    }
    text.clear();
    for (size_t i = 2; i < line->words.size(); ++i) {
        text += (i > 2 ? " " : "") + line->words[i];
    }
    return std::nullopt;
}

CDefinitionFailure CKeySource::getNumber(std::string_view key, double low, double high, double& value) const {
    std::string text;
    if (auto failure = getText(key, text)) {
        return failure;
    }
    if (!parseNumber(text, value) || value < low || value > high) {
        char range[64];
        std::snprintf(range, sizeof(range), "%g to %g", low, high);
        return CDefinitionError{find(key)->place,
                                "'" + std::string(key) + "' is a number from " + range + ", not '" + text + "'"};
    }
    return std::nullopt;
}

bool parseNumber(std::string_view text, double& value) {
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return !text.empty() && result.ec == std::errc() && result.ptr == end && std::isfinite(value);
}

}  // namespace tarv
