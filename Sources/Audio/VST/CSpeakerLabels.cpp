// Labels channels from the speakers that a host describes.

#include "Audio/VST/CSpeakerLabels.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace tarv {

namespace {

// Indexed by the speaker's type.
constexpr const char* kTypeNames[] = {"M",  "L",  "R",  "C",   "Lfe", "Ls",  "Rs",  "Lc",  "Rc",  "S",
                                      "Sl", "Sr", "Tm", "Tfl", "Tfc", "Tfr", "Trl", "Trc", "Trr", "Lfe2"};

CString labelOf(const vst::SpeakerProperties& speaker, int32_t number) {
    const auto nameLength = static_cast<int32_t>(strnlen(speaker.name, sizeof speaker.name));
    if (nameLength > 0) {
        return CString(speaker.name, nameLength);
    }
    if (speaker.type >= 0 && speaker.type < static_cast<int32_t>(std::size(kTypeNames))) {
        return kTypeNames[speaker.type];
    }
    return CString::fromInt(number);
}

}  // namespace

void CSpeakerLabels::assign(const vst::SpeakerArrangement& host) {
    labelCount = std::clamp(host.numChannels, 0, vst::kMaxSpeakers);
    arrangement = {};
    arrangement.type = host.type;
    arrangement.numChannels = labelCount;
    for (int32_t i = 0; i < labelCount; ++i) {
        arrangement.speakers[i] = host.speakers[i];
        labels[i] = labelOf(host.speakers[i], i + 1);
    }
}

}  // namespace tarv
