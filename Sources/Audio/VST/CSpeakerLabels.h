#pragma once

#include "Audio/VST/Vst2.h"
#include "Core/CString.h"

namespace tarv {

/// A copy of a host's speaker arrangement, and a label for each channel.
struct CSpeakerLabels {
    /// Copies at most vst::kMaxSpeakers speakers, whatever count the host states.
    void assign(const vst::SpeakerArrangement& host);

    vst::SpeakerArrangement arrangement{};
    /// One for each channel up to vst::kMaxSpeakers: the host's name, else the usual name of the speaker's type,
    /// else the channel's number from 1.
    CString labels[vst::kMaxSpeakers];
    int32_t labelCount = 0;
};

}  // namespace tarv
