// Keeps the arrangements that a host sets.

#include "Audio/VST/CHostSpeakers.h"

#include <utility>

namespace tarv {

void CHostSpeakers::set(const vst::SpeakerArrangement& input, const vst::SpeakerArrangement& output, CLock& lock) {
    // Built outside the lock, which the audio thread may wait for.
    CSpeakerLabels newInputs;
    CSpeakerLabels newOutputs;
    newInputs.assign(input);
    newOutputs.assign(output);
    CLockScope scope(lock);
    std::swap(inputs_, newInputs);
    std::swap(outputs_, newOutputs);
    isSet_ = true;
}

bool CHostSpeakers::get(vst::SpeakerArrangement** input, vst::SpeakerArrangement** output) {
    *input = isSet_ ? &inputs_.arrangement : nullptr;
    *output = isSet_ ? &outputs_.arrangement : nullptr;
    return isSet_;
}

}  // namespace tarv
