#include "UI/Placement/CViewLengths.h"

#include <algorithm>
#include <cmath>

namespace tarv {

namespace {

constexpr double kPercent = 0.01;

// In the order of CViewPlacement, from 1 on.
const char* const kPlacements[] = {"inline",  "full",           "top",   "bottom",     "left",       "right",
                                   "overlay", "window-overlay", "match", "scroller-h", "scroller-v", "scroller-p"};

/// The sides that a letter chooses.
double* sideOf(CViewBorders& borders, uint16_t letter) {
    switch (letter) {
        case 'B':
        case 'b':
            return &borders.bottom;
        case 'L':
        case 'l':
            return &borders.left;
        case 'R':
        case 'r':
            return &borders.right;
        case 'T':
        case 't':
            return &borders.top;
        default:
            return nullptr;
    }
}

void applyItem(CViewBorders& borders, const CString& item, double scale, bool isRounded) {
    bool adds = false;
    double* chosen[4] = {};
    int32_t chosenCount = 0;
    int32_t at = 0;
    for (; at < item.length(); ++at) {
        if (item.at(at) == '*') {
            adds = true;
        } else if (double* side = sideOf(borders, item.at(at))) {
            if (std::find(chosen, chosen + chosenCount, side) == chosen + chosenCount) {
                chosen[chosenCount++] = side;
            }
        } else {
            break;
        }
    }
    if (chosenCount == 0) {
        for (double* side : {&borders.bottom, &borders.left, &borders.right, &borders.top}) {
            chosen[chosenCount++] = side;
        }
    }
    if (at < item.length() && item.at(at) == '+') {
        ++at;
    }
    const double scaled = CString::toDouble(item.substring(at)) * scale;
    const double value = isRounded ? std::round(scaled) : scaled;
    for (int32_t i = 0; i < chosenCount; ++i) {
        *chosen[i] = adds ? *chosen[i] + value : value;
    }
}

}  // namespace

bool parsePlacement(const CString& text, CViewPlacement& placement) {
    const auto* found = std::find_if(std::begin(kPlacements), std::end(kPlacements),
                                     [&](const char* name) { return text == CString(name); });
    if (found == std::end(kPlacements)) {
        return false;
    }
    placement = static_cast<CViewPlacement>(found - std::begin(kPlacements) + 1);
    return true;
}

CViewLength parseLength(const CString& text, double scale) {
    if (text == CString("full")) {
        return {CViewLengthMode::Percentage, 1.0};
    }
    if (text == CString("balanced")) {
        return {CViewLengthMode::Balanced, 0.0};
    }
    if (text == CString("compact") || text.isEmpty()) {
        return {};
    }
    if (text.at(text.length() - 1) == '%') {
        const double part = CString::toDouble(text.substring(0, text.length() - 1)) * kPercent;
        return {CViewLengthMode::Percentage, std::clamp(part, 0.0, 1.0)};
    }
    return {CViewLengthMode::Fixed, std::max(CString::toDouble(text), 0.0) * scale};
}

CViewBorders parseBorders(const CString& text, double scale, bool isRounded) {
    CViewBorders borders;
    for (const CString& item : text.split(' ')) {
        applyItem(borders, item, scale, isRounded);
    }
    return borders;
}

bool parseAlignment(const CString& text, const char* low, const char* high, int32_t& alignment) {
    if (text == CString(low)) {
        alignment = -1;
    } else if (text == CString("center")) {
        alignment = 0;
    } else if (text == CString(high)) {
        alignment = 1;
    } else {
        return false;
    }
    return true;
}

}  // namespace tarv
