// What a user has changed, as options that set it again.

#include "ChangedSettings.h"

#include <cstdio>

#include "CParameterText.h"

namespace tarv::host {

namespace {

std::string valueText(CVstHost& host, CParameterText& texts, int32_t index) {
    const float value = host.parameter(index);
    const std::string display = host.text(vst::kEffectGetParamDisplay, index);
    const std::string label = host.text(vst::kEffectGetParamLabel, index);
    const std::string text = display + label;
    float found = -1.0f;
    std::string error;
    const bool isOneWord = !text.empty() && text.find_first_of(" '\"\\$") == std::string::npos;
    if (isOneWord && texts.find(index, text, found, error) && found == value) {
        return text;
    }
    char number[32];
    // As many digits as a 32-bit float needs to come back.
    std::snprintf(number, sizeof number, "%.9g", static_cast<double>(value));
    return number;
}

}  // namespace

std::vector<float> settingsOf(const CVstHost& host) {
    std::vector<float> values;
    for (int32_t i = 0; i < host.effect()->numParams; ++i) {
        values.push_back(host.parameter(i));
    }
    return values;
}

std::string changedSettings(CVstHost& host, const std::vector<float>& before) {
    CParameterText texts(host);
    std::string options;
    for (int32_t i = 0; i < host.effect()->numParams; ++i) {
        if (static_cast<size_t>(i) < before.size() && host.parameter(i) == before[static_cast<size_t>(i)]) {
            continue;
        }
        options += options.empty() ? "--set " : " --set ";
        options += host.text(vst::kEffectGetParamName, i) + "=" + valueText(host, texts, i);
    }
    return options;
}

}  // namespace tarv::host
