// The items of each mode.

#include <algorithm>
#include <cmath>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Audio/Converters/CAudioParamConverterEnum.h"
#include "Audio/Parameters/CAudioParamInfo.h"
#include "UI/Binding/CParamBridgeAudio.h"
#include "UI/Binding/CParamGroupSelector.h"
#include "UI/Controls/Lists/CNumberFormat.h"
#include "UI/Controls/Lists/CValueListAudio.h"

namespace tarv {

namespace {

using CWhich = CRoutingLabels::CWhich;

/// Whether the values of a parameter are states that are counted.
bool isCounted(const CParamBridgeAudio* bridge) {
    return !bridge || dynamic_cast<const CAudioParamConverterEnum*>(bridge->info()->converter(0));
}

int32_t numberOf(const CParamBridge* bridge, int32_t element) {
    return bridge ? static_cast<int32_t>(std::lround(bridge->value(0, element))) : 0;
}

}  // namespace

CString CValueListAudio::groupTitle(int32_t index) const {
    const CParamBridge* names = bridge(GroupNames);
    const CString name = names ? names->valueText(0, index, CAudioTextMode::Full) : CString();
    return typed(name.isEmpty() ? client_->groupName(index) : name);
}

CRoutingLabels CValueListAudio::routing() const {
    CRoutingLabels result;
    const CInterfaceCounts& counts = client_->engineState().counts;
    result.hostInputs = counts.inputs;
    result.channels.reserve(counts.internalChannels);
    for (int32_t i = 0; i < counts.internalChannels; ++i) {
        result.channels.append({numberOf(bridge(InRouting), i), numberOf(bridge(Grouping), i),
                                numberOf(bridge(MsPairs), i), numberOf(bridge(ChannelMute), i) != 0});
    }
    const CParamBridge* names = bridge(InChannelNames);
    const int32_t count = names ? names->elementCount(0) : 0;
    result.inputNames.reserve(count);
    for (int32_t i = 0; i < count; ++i) {
        result.inputNames.append(typed(names->valueText(0, i, CAudioTextMode::Full)));
    }
    return result;
}

void CValueListAudio::fillGroups(CItems& items) const {
    const CRoutingLabels labels = routing();
    const bool isRouted = bridge(InRouting) && bridge(InRouting)->isActive();
    for (int32_t i = 0; i < client_->engineState().counts.groups; ++i) {
        const bool isUnused = isRouted && !labels.isUsed(i, CWhich::All);
        items.append({groupTitle(i), static_cast<double>(i), selector_ ? group() == i : isUnused});
    }
}

void CValueListAudio::fillCurrentGroup(CItems& items) const {
    items.append({groupTitle(group()), static_cast<double>(group())});
}

void CValueListAudio::fillChannels(CItems& items) const {
    const CRoutingLabels labels = routing();
    for (int32_t i = 0; i < labels.channels.count(); ++i) {
        const int32_t input = labels.channels[i].input;
        const CString number = CString::fromInt(i + 1);
        items.append({input > 0 ? number + " " + labels.inputName(input) : number, static_cast<double>(i), input < 1});
    }
}

void CValueListAudio::fillInputs(CItems& items) const {
    const CRoutingLabels labels = routing();
    for (int32_t i = 1; i <= labels.hostInputs; ++i) {
        items.append({labels.inputName(i), static_cast<double>(i)});
    }
}

void CValueListAudio::fillOutputs(CItems& items) const {
    for (int32_t i = 1; i <= client_->engineState().counts.outputs; ++i) {
        items.append({outputName(i), static_cast<double>(i)});
    }
}

CString CValueListAudio::outputName(int32_t output) const {
    const CString number = CString::fromInt(output);
    const CString label = client_->outputLabel(output - 1);
    // A host that has no name for it gives its number.
    return label.isEmpty() || label == number ? CString("OUT") + number : typed(label);
}

CString CValueListAudio::numberText(double value) const {
    const CString& id = getAttrString("format-id");
    const CParamBridgeAudio* param = content();
    const bool hasUnit = id == CString("automation-string");
    const bool isShort = id == CString("knob-circle");
    if (param && (hasUnit || isShort || id == CString("normal"))) {
        const CAudioParamConverter& converter = *param->info()->converter(0);
        CString text;
        converter.valueToText(text, *param->info(), 0, converter.shownToValue(value),
                              isShort ? CAudioTextMode::Short : CAudioTextMode::Full);
        return hasUnit && !converter.label().isEmpty() ? text + " " + converter.label() : text;
    }
    const CString& format = getAttrString("format");
    return CNumberFormat::text(format.isEmpty() ? CString("%.0f") : format, value);
}

void CValueListAudio::fillNumbers(CItems& items) const {
    const CParamBridgeAudio* param = content();
    const bool hasOwnRange = !getAttrString("min-value").isEmpty() && !getAttrString("max-value").isEmpty();
    if (!param && !hasOwnRange) {
        return;
    }
    const double from = getAttrRealOr("min-value", param ? param->minimum() : 0.0);
    const double to = getAttrRealOr("max-value", param ? param->maximum() : 0.0);
    const int32_t wanted = getAttrIntOr("value-count", -1);
    if (wanted < 0 || (isCounted(param) && !hasOwnRange)) {
        for (int32_t i = 0; i < itemLimit() && from + i <= to; ++i) {
            items.append({numberText(from + i), from + i});
        }
        return;
    }
    for (int32_t i = 0; i < itemLimit(); ++i) {
        const double part = wanted > 1 ? static_cast<double>(i) / (wanted - 1) : 0.0;
        const double value = hasOwnRange ? from + part * (to - from) : onCurve(from, to, part);
        items.append({numberText(value), value});
    }
}

/// What stands at `part` (0 to 1) of the way between two values on the curve of the parameter.
double CValueListAudio::onCurve(double from, double to, double part) const {
    const CAudioParamInfo& info = *content()->info();
    const CAudioParamConverter& converter = *info.converter(0);
    // The ends exactly, since they may have been given.
    if (part == 0.0 || part == 1.0) {
        return part == 0.0 ? from : to;
    }
    const double first = converter.valueToNorm(info, 0, converter.shownToValue(from));
    const double last = converter.valueToNorm(info, 0, converter.shownToValue(to));
    return converter.valueToShown(converter.normToValue(info, 0, first + part * (last - first)));
}

void CValueListAudio::fillRoutingLabels(CItems& items) const {
    const CRoutingLabels labels = routing();
    const CString& labelMode = getAttrString("routing-label-mode");
    const CWhich which = labelMode.startsWith("active") ? CWhich::Active : CWhich::All;
    const int32_t count = client_->engineState().counts.groups;
    for (int32_t i = selector_ ? group() : 0; i < (selector_ ? group() + 1 : count); ++i) {
        if (labelMode != CString("active-groups") || labels.isUsed(i, which)) {
            items.append({labels.label(i, which), static_cast<double>(i), !labels.isUsed(i, which)});
        }
    }
}

void CValueListAudio::fillStates(CItems& items) const {
    const CParamBridgeAudio* param = content();
    for (int32_t i = 0; param && i < itemLimit() && param->minimum() + i <= param->maximum(); ++i) {
        const double value = param->minimum() + i;
        CString title;
        param->info()->converter(0)->valueToText(title, *param->info(), 0, value, CAudioTextMode::Full);
        items.append({title, value});
    }
}

void CValueListAudio::fillElements(CItems& items) const {
    const CParamBridgeAudio* param = content();
    if (!param) {
        return;
    }
    const int32_t stored = param->elementCount(group());
    const int32_t count = getAttrIntOr("value-count", stored > 0 ? stored : param->elementCount(0));
    for (int32_t i = 0; i < std::min(count, itemLimit()); ++i) {
        const double value = param->info()->isString() ? i : param->value(group(), i);
        const bool isNumber = !param->info()->isString() && !getAttrString("format").isEmpty();
        const CString text = param->valueText(group(), i, CAudioTextMode::Full);
        items.append({isNumber ? numberText(value) : typed(text), value});
    }
}

CValueList::CItem CValueListAudio::missingItem(double value) const {
    const CString& name = getAttrString("mode");
    const int32_t number = static_cast<int32_t>(std::lround(value));
    const bool isInput = name == CString("audio-ins");
    if (number < 1 && (isInput || name == CString("audio-outs"))) {
        return {kEmptyTitle, value, false};
    }
    if (client_ && isInput) {
        return {routing().inputName(number), value, true};
    }
    if (client_ && name == CString("audio-outs")) {
        return {outputName(number), value, true};
    }
    if (client_ && number >= 0 && name == CString("audio-groups")) {
        return {groupTitle(number), value, true};
    }
    return CValueList::missingItem(value);
}

}  // namespace tarv
