#include "UI/Controls/Lists/CRoutingLabels.h"

namespace tarv {

namespace {

constexpr const char* kNone = "no channels";

}  // namespace

CString CRoutingLabels::inputName(int32_t input) const {
    const bool isNamed = input >= 1 && input <= inputNames.count() && !inputNames[input - 1].isEmpty();
    return isNamed ? inputNames[input - 1] : CString("IN") + CString::fromInt(input);
}

bool CRoutingLabels::isShown(const CChannel& channel, CWhich which) const {
    return channel.input >= 1 && (which == CWhich::All || (channel.input <= hostInputs && !channel.isMuted));
}

bool CRoutingLabels::isUsed(int32_t group, CWhich which) const {
    for (const CChannel& channel : channels) {
        if (channel.group == group && isShown(channel, which)) {
            return true;
        }
    }
    return false;
}

/// As the coder of the engine pairs them: the first two of a number, of any groups; the first becomes mid.
CString CRoutingLabels::channelText(int32_t index) const {
    const int32_t pair = channels[index].pair;
    CArray<int32_t, 2> ends;
    for (int32_t i = 0; pair > 0 && i < channels.count() && ends.count() < 2; ++i) {
        if (channels[i].input >= 1 && channels[i].pair == pair) {
            ends.append(i);
        }
    }
    const int32_t place = ends.count() == 2 ? ends.indexOf(index) : -1;
    if (place < 0) {
        return inputName(channels[index].input);
    }
    return CString(place == 0 ? "M" : "S") + "[SUP]" + inputName(channels[ends[0]].input) +
           inputName(channels[ends[1]].input) + "[/SUP]";
}

CString CRoutingLabels::label(int32_t group, CWhich which) const {
    CString text;
    for (int32_t i = 0; i < channels.count(); ++i) {
        if (channels[i].group == group && isShown(channels[i], which)) {
            text += text.isEmpty() ? channelText(i) : CString(" ") + channelText(i);
        }
    }
    return text.isEmpty() ? CString(kNone) : text;
}

}  // namespace tarv
