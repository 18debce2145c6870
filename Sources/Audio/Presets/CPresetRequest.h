#pragma once

#include <cstdint>

namespace tarv {

/// How a preset is applied.
struct CPresetRequest {
    int32_t group = -1;           ///< the one group that takes the preset's group 0, or -1 for all as they are stored
    bool withPersistent = false;  ///< parameters that are persistent only, too (a host's session)
    bool isRecorded = true;       ///< as a step of the history
};

}  // namespace tarv
