#pragma once

#include "Audio/VST/CSpeakerLabels.h"
#include "Platform/Lock.h"

namespace tarv {

/// The speaker arrangements that the host set for the effect's inputs and outputs.
class CHostSpeakers {
public:
    /// Copies both arrangements, under `lock`. [main thread, suspended]
    void set(const vst::SpeakerArrangement& input, const vst::SpeakerArrangement& output, CLock& lock);
    /// Gives the copies, which stay valid until the next set; nulls and false before the first. [main thread,
    /// suspended]
    bool get(vst::SpeakerArrangement** input, vst::SpeakerArrangement** output);

    /// Labels of the channels, under the lock of `set`.
    const CSpeakerLabels& inputs() const { return inputs_; }
    const CSpeakerLabels& outputs() const { return outputs_; }

private:
    bool isSet_ = false;
    CSpeakerLabels inputs_;
    CSpeakerLabels outputs_;
};

}  // namespace tarv
