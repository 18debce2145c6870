#pragma once

#include "Audio/VST/Vst2.h"
#include "Core/CString.h"

namespace tarv {

/// A speaker arrangement of the host and what its channels are called.
struct CSpeakerLabels {
    /// Takes over what fits: a host states how many speakers follow, which need not be true.
    void assign(const vst::SpeakerArrangement& host);

    vst::SpeakerArrangement arrangement{};
    /// One for each channel up to vst::kMaxSpeakers: the host's name, else the usual one of the speaker's type, else
    /// the channel's number from 1.
    CString labels[vst::kMaxSpeakers];
    int32_t labelCount = 0;
};

}  // namespace tarv
