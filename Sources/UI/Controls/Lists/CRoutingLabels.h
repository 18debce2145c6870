#pragma once

#include "Core/CString.h"

namespace tarv {

/// What the channels of the engine receive, and the texts for it.
class CRoutingLabels {
public:
    struct CChannel {
        int32_t input = 0;  ///< of the host, from 1; 0: the channel does not exist
        int32_t group = 0;  ///< from 0
        int32_t pair = 0;   ///< channels with the same number are coded as mid and side; 0: as they are
        bool isMuted = false;
    };
    /// Which channels a label has.
    enum class CWhich { All, Active };

    CArray<CChannel, 8> channels;
    CArray<CString, 16> inputNames;  ///< of the inputs from 1 on, with marks
    int32_t hostInputs = 0;

    /// Name of a host's input from 1 on: "IN3" without one.
    CString inputName(int32_t input) const;
    /// Whether a channel of the group exists; with Active, one whose input the host has and that is not muted.
    bool isUsed(int32_t group, CWhich which) const;
    /// The inputs that a group receives, such as "L R", or "M[SUP]LR[/SUP]" and "S[SUP]LR[/SUP]" of a coded pair, with
    /// blanks between; "no channels" without one.
    CString label(int32_t group, CWhich which) const;

private:
    bool isShown(const CChannel& channel, CWhich which) const;
    CString channelText(int32_t index) const;
};

}  // namespace tarv
