#include "CPaletteRules.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace tarv {

namespace {

constexpr double kLift = 1.0 / 12;  // of the lightness, when the pointer is over something
constexpr double kBarBend = 0.7;    // bars stay warm a long way down
constexpr std::pair<std::string_view, std::string_view> kStates[] = {
    {"active", "Active"}, {"error", "Error"}, {"activeerror", "ActiveError"},
    {"hilite", "Hilite"}, {"0", "0"},         {"1", "1"},
};
constexpr std::string_view kRamps[] = {"down", "bar", "flat", "lit"};

std::vector<std::string> splitAt(const std::string& text, char separator) {
    std::vector<std::string> parts(1);
    for (char c : text) {
        if (c == separator) {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

CDefinitionError faultIn(const CTextLine& line, const std::string& text) {
    return {line.place, "colour '" + line.words[0] + "': " + text};
}

/// "25%" as 0.25.
bool parsePercent(std::string_view text, double& value) {
    if (!text.ends_with('%') || !parseNumber(text.substr(0, text.size() - 1), value) || value < 0 || value > 100) {
        return false;
    }
    value /= 100;
    return true;
}

std::string replaceAll(std::string text, std::string_view from, const std::string& to) {
    for (size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

}  // namespace

struct CPaletteRules::CRule {
    struct CState {
        std::string_view suffix;
        CRgb color;
    };

    const CTextLine* line = nullptr;
    CRgb color;
    CRgb edge;
    std::string ramp;
    double opacity = 1.0;
    bool hasHover = false;
    std::vector<CState> states;
};

CDefinitionFailure CPaletteRules::apply(CPaletteSource& palette) {
    palette_ = &palette;
    for (const CTextLine& line : source_.lines()) {
        auto failure = line.words[0] == "base"     ? applyBase(line)
                       : line.words[0] == "dark"   ? applyDark(line)
                       : line.words[0] == "frames" ? applyFrames(line)
                                                   : applyRepeated(line);
        if (failure) {
            return failure;
        }
    }
    return std::nullopt;
}

CDefinitionFailure CPaletteRules::applyBase(const CTextLine& line) {
    CRgb color;
    if (line.words.size() != 4 || line.words[2] != "=" || !parseColor(line.words[3], color)) {
        return CDefinitionError{line.place, "'base KEY = RRGGBB' is expected"};
    }
    base_.emplace(line.words[1], color);
    return std::nullopt;
}

CDefinitionFailure CPaletteRules::applyDark(const CTextLine& line) {
    if (line.words.size() != 2) {
        return CDefinitionError{line.place, "'dark KEY' is expected"};
    }
    return findBase(line, line.words[1], dark_);
}

CDefinitionFailure CPaletteRules::applyFrames(const CTextLine& line) {
    double count = 0, low = 0;
    if (line.words.size() < 4 || !parseNumber(line.words[1], count) || count < 2 || count > 256 ||
        count != std::floor(count) || !parsePercent(line.words[2], low)) {
        return CDefinitionError{line.place, "'frames COUNT LOW% NAME...' is expected, with a count from 2 to 256"};
    }
    for (size_t i = 3; i < line.words.size(); ++i) {
        const auto found = palette_->colors.find(line.words[i]);
        if (found == palette_->colors.end() || palette_->frameCounts.count(line.words[i])) {
            return CDefinitionError{line.place, "'" + line.words[i] + "' is no colour without frames above this line"};
        }
        const CPaletteColor color = found->second;
        for (int frame = 0; frame < static_cast<int>(count); ++frame) {
            const double light = low + (1 - low) * (1 + std::cos(2 * std::numbers::pi * frame / count)) / 2;
            palette_->colors[line.words[i] + "|" + std::to_string(frame)] = {color.opacity,
                                                                             shadedRamp(color.ramp, light)};
        }
        palette_->frameCounts[line.words[i]] = static_cast<uint32_t>(count);
    }
    return std::nullopt;
}

CDefinitionFailure CPaletteRules::applyRepeated(const CTextLine& line) {
    const std::string& name = line.words[0];
    const size_t open = name.find('[');
    if (open == name.npos) {
        return applyColor(line);
    }
    if (name.size() < open + 5 || name[open + 2] != '-' || name[open + 4] != ']' || name[open + 1] < '0' ||
        name[open + 1] > name[open + 3] || name[open + 3] > '9') {
        return faultIn(line, "a repetition is one of the form [1-9]");
    }
    for (char digit = name[open + 1]; digit <= name[open + 3]; ++digit) {
        CTextLine one{line.place, {name.substr(0, open) + digit + name.substr(open + 5)}};
        for (size_t i = 1; i < line.words.size(); ++i) {
            one.words.push_back(replaceAll(line.words[i], "#", std::string(1, digit)));
        }
        if (auto failure = applyColor(one)) {
            return failure;
        }
    }
    return std::nullopt;
}

CDefinitionFailure CPaletteRules::applyColor(const CTextLine& line) {
    CRule rule;
    if (auto failure = parseRule(line, rule)) {
        return failure;
    }
    const std::string& name = line.words[0];
    if (auto failure = addColor(rule, name, rule.color, rule.edge)) {
        return failure;
    }
    if (rule.hasHover) {
        const CRgb hover = movedLightness(rule.color, kLift);
        if (auto failure = addColor(rule, name + "_Hover", hover, movedLightness(rule.edge, kLift))) {
            return failure;
        }
    }
    for (const CRule::CState& state : rule.states) {
        const std::string stateName = name + "_" + std::string(state.suffix);
        const CRgb hover = movedLightness(state.color, kLift);
        if (auto failure = addColor(rule, stateName, state.color, hover)) {
            return failure;
        }
        if (!rule.hasHover) {
            continue;
        }
        if (auto failure = addColor(rule, stateName + "Hover", hover, movedLightness(hover, kLift))) {
            return failure;
        }
    }
    return std::nullopt;
}

CDefinitionFailure CPaletteRules::parseRule(const CTextLine& line, CRule& rule) const {
    if (line.words.size() < 4 || line.words[1] != "=") {
        return faultIn(line, "'NAME = COLOUR RAMP ...' is expected");
    }
    rule.line = &line;
    if (auto failure = evaluate(line, line.words[2], rule.color)) {
        return failure;
    }
    rule.edge = movedLightness(rule.color, kLift);
    rule.ramp = line.words[3];
    if (rule.ramp.starts_with("lit=")) {
        if (auto failure = evaluate(line, rule.ramp.substr(4), rule.edge)) {
            return failure;
        }
        rule.ramp = "lit";
    }
    if (std::find(std::begin(kRamps), std::end(kRamps), rule.ramp) == std::end(kRamps)) {
        return faultIn(line, "a ramp is down, bar, flat, lit or lit=COLOUR, not '" + rule.ramp + "'");
    }
    return parseStates(line, rule);
}

CDefinitionFailure CPaletteRules::parseStates(const CTextLine& line, CRule& rule) const {
    for (size_t i = 4; i < line.words.size(); ++i) {
        const std::string& word = line.words[i];
        if (word == "hover") {
            rule.hasHover = true;
            continue;
        }
        if (word.ends_with('%') && word.find('=') == word.npos) {
            if (!parsePercent(word, rule.opacity)) {
                return faultIn(line, "'" + word + "' is no opacity from 0% to 100%");
            }
            continue;
        }
        const size_t sign = std::min(word.find('='), word.size());
        const auto* state = std::find_if(std::begin(kStates), std::end(kStates),
                                         [&](const auto& row) { return row.first == word.substr(0, sign); });
        if (state == std::end(kStates) || sign == word.size()) {
            return faultIn(line, "'" + word + "' is neither an opacity nor a state with its colour");
        }
        CRgb color;
        if (auto failure = evaluate(line, word.substr(sign + 1), color)) {
            return failure;
        }
        rule.states.push_back({state->second, color});
    }
    return std::nullopt;
}

CDefinitionFailure CPaletteRules::addColor(const CRule& rule, const std::string& name, CRgb color, CRgb edge) {
    CPaletteColor entry{rule.opacity, {}};
    if (rule.ramp == "flat") {
        entry.ramp = flatRamp(color);
    } else if (rule.ramp == "lit") {
        entry.ramp = litRamp(color, edge, kFaceStep, dark_);
    } else {
        entry.ramp = darkRamp(color, rule.ramp == "bar" ? kBarBend : 1.0, dark_);
    }
    if (!palette_->colors.emplace(name, entry).second) {
        return CDefinitionError{rule.line->place, "colour '" + name + "' is there already"};
    }
    return std::nullopt;
}

CDefinitionFailure CPaletteRules::evaluate(const CTextLine& line, const std::string& text, CRgb& color) const {
    const std::vector<std::string> parts = splitAt(text, '/');
    if (auto failure = findBase(line, parts[0], color)) {
        return failure;
    }
    for (size_t i = 1; i < parts.size(); ++i) {
        if (auto failure = applyOperation(line, parts[i], color)) {
            return failure;
        }
    }
    return std::nullopt;
}

CDefinitionFailure CPaletteRules::findBase(const CTextLine& line, const std::string& key, CRgb& color) const {
    const CBaseColors* colors = &base_;
    std::string name = key;
    if (key.starts_with('@')) {
        const std::vector<std::string> parts = splitAt(key.substr(1), '.');
        if (parts.size() != 2) {
            return faultIn(line, "another palette's colour is '@PALETTE.KEY', not '" + key + "'");
        }
        if (auto failure = findPalette_(parts[0], colors)) {
            return failure;
        }
        name = parts[1];
    }
    const auto found = colors->find(name);
    if (found == colors->end()) {
        return faultIn(line, "there is no base colour '" + key + "'");
    }
    color = found->second;
    return std::nullopt;
}

CDefinitionFailure CPaletteRules::applyOperation(const CTextLine& line, const std::string& text, CRgb& color) const {
    const std::vector<std::string> parts = splitAt(text, ':');
    double share = 0;
    if (text == "lighter" || text == "darker") {
        color = movedLightness(color, text == "lighter" ? kLift : -kLift);
        return std::nullopt;
    }
    if (parts.size() == 2 && parts[0] == "shade" && parsePercent(parts[1], share)) {
        color = shaded(color, share);
        return std::nullopt;
    }
    if (parts.size() == 3 && parts[0] == "mix" && parsePercent(parts[2], share)) {
        CRgb other;
        if (auto failure = findBase(line, parts[1], other)) {
            return failure;
        }
        color = mixed(color, other, share);
        return std::nullopt;
    }
    return faultIn(line, "an operation is lighter, darker, shade:P% or mix:KEY:P%, not '" + text + "'");
}

}  // namespace tarv
