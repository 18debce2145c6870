// Searches a plug-in's display for the position of a text.

#include "CParameterText.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>

namespace tarv::host {

namespace {

constexpr int32_t kScanSteps = 1024;
// A position is a 32-bit float: more halvings find nothing.
constexpr int32_t kHalvings = 26;

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    const size_t first = text.find_first_not_of(' ');
    const size_t last = text.find_last_not_of(' ');
    return first == std::string::npos ? std::string() : text.substr(first, last - first + 1);
}

std::string shown(double number) {
    std::string text = std::to_string(number);
    text.erase(text.find_last_not_of('0') + 1);
    return text.back() == '.' ? text.substr(0, text.size() - 1) : text;
}

}  // namespace

bool parseNumber(const std::string& text, double& number, std::string& unit) {
    const std::string t = lowered(text);
    size_t i = 0;
    const bool negative = !t.empty() && t[0] == '-';
    i += !t.empty() && (t[0] == '-' || t[0] == '+');
    double sum = 0.0;
    double weight = 1.0;
    bool inFraction = false;
    size_t digits = 0;
    for (; i < t.size(); ++i) {
        if ((t[i] == '.' || t[i] == ',') && !inFraction) {
            inFraction = true;
        } else if (std::isdigit(static_cast<unsigned char>(t[i]))) {
            sum = sum * 10.0 + (t[i] - '0');
            weight *= inFraction ? 10.0 : 1.0;
            ++digits;
        } else {
            break;
        }
    }
    if (digits == 0) {
        return false;
    }
    number = (negative ? -sum : sum) / weight;
    unit = lowered(t.substr(i));
    if (!unit.empty() && unit[0] == 'k') {
        number *= 1000.0;
        unit.erase(0, 1);
    }
    return true;
}

CParameterText::CParameterText(CVstHost& host)
    : host_(host), hasDisplayRequest_(host.canDo(vst::kCanCockosExtensions, vst::kCockosExtensionsAnswer)) {}

bool CParameterText::find(int32_t index, const std::string& text, float& value, std::string& error) {
    double number = 0.0;
    std::string unit;
    const bool isNumber = parseNumber(text, number, unit);
    const bool isPlain = isNumber && unit.empty() && lowered(text).find('k') == std::string::npos;
    if (isPlain) {
        value = static_cast<float>(number);
        error = "'" + text + "' has no unit, so it must lie from 0 to 1";
        return number >= 0.0 && number <= 1.0;
    }
    if (askPlugin(index, text, value)) {
        return true;
    }
    const std::string label = host_.text(vst::kEffectGetParamLabel, index);
    if (isNumber && !label.empty() && unit == lowered(label)) {
        return findNumber(index, number, value, error);
    }
    if (findWord(index, text, value)) {
        return true;
    }
    error = "'" + text + "' is no value of this parameter";
    error += label.empty() ? ", which reads '" + displayAt(index, 0.0f) + "' to '" + displayAt(index, 1.0f) + "'"
                           : ", whose unit is " + label;
    return false;
}

bool CParameterText::askPlugin(int32_t index, const std::string& text, float& value) {
    const float before = host_.parameter(index);
    if (!host_.dispatch(vst::kEffectString2Parameter, index, 0, const_cast<char*>(text.c_str()))) {
        return false;
    }
    value = host_.parameter(index);
    host_.setParameter(index, before);
    return true;
}

bool CParameterText::findWord(int32_t index, const std::string& word, float& value) {
    // A display is cut to the interface's length, so a longer word is cut likewise.
    const std::string wanted = lowered(word).substr(0, vst::kMaxParamText - 1);
    int32_t first = -1;
    int32_t last = -1;
    for (int32_t i = 0; i <= kScanSteps; ++i) {
        if (lowered(displayAt(index, static_cast<float>(i) / kScanSteps)) == wanted) {
            first = first < 0 ? i : first;
            last = i;
        }
    }
    if (first < 0) {
        return false;
    }
    // The outer states of a list have only half a stretch: their true place is the end.
    const int32_t sum = first == 0 ? 0 : last == kScanSteps ? 2 * kScanSteps : first + last;
    value = static_cast<float>(sum) / (2 * kScanSteps);
    return true;
}

bool CParameterText::findNumber(int32_t index, double number, float& value, std::string& error) {
    double least = 0.0;
    double most = 0.0;
    if (!numberAt(index, 0.0f, least) || !numberAt(index, 1.0f, most)) {
        error = "this parameter shows no numbers";
        return false;
    }
    if (number < least || number > most) {
        error = shown(number) + " lies outside " + shown(least) + " to " + shown(most);
        return false;
    }
    double above = 0.0;
    double below = 0.0;
    const double upperEdge = edge(index, number, false);
    numberAt(index, static_cast<float>(upperEdge), above);
    if (above == number) {
        value = static_cast<float>(middle(index, number));
        return true;
    }
    numberAt(index, std::nextafter(static_cast<float>(upperEdge), -1.0f), below);
    const double from = middle(index, below);
    const double to = middle(index, above);
    value = static_cast<float>(from + (to - from) * (number - below) / (above - below));
    return true;
}

std::string CParameterText::displayAt(int32_t index, float value) {
    if (hasDisplayRequest_) {
        char buffer[256] = {};
        host_.dispatch(vst::kEffectVendorSpecific, vst::kCockosDisplayRequest, index, buffer, value);
        buffer[sizeof buffer - 1] = 0;
        return buffer;
    }
    const float before = host_.parameter(index);
    host_.setParameter(index, value);
    const std::string text = host_.text(vst::kEffectGetParamDisplay, index);
    host_.setParameter(index, before);
    return text;
}

bool CParameterText::numberAt(int32_t index, float value, double& number) {
    std::string unit;
    return parseNumber(displayAt(index, value), number, unit);
}

double CParameterText::edge(int32_t index, double number, bool beyond) {
    float low = 0.0f;
    float high = 1.0f;
    const auto reached = [&](float position) {
        double there = -std::numeric_limits<double>::infinity();
        numberAt(index, position, there);
        return beyond ? there > number : there >= number;
    };
    if (reached(low)) {
        return low;
    }
    for (int32_t i = 0; i < kHalvings; ++i) {
        const float half = low + (high - low) * 0.5f;
        (reached(half) ? high : low) = half;
    }
    return high;
}

double CParameterText::middle(int32_t index, double number) {
    const double first = edge(index, number, false);
    const double last = edge(index, number, true);
    if (first == 0.0 || last == 1.0) {
        return first == 0.0 ? 0.0 : 1.0;
    }
    return (first + last) * 0.5;
}

}  // namespace tarv::host
