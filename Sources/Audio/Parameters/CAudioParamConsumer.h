#pragma once

#include "Audio/Parameters/CAudioParamQueue.h"

namespace tarv {

/// A process's own copy of one parameter. A private parameter has no `param` and data from the definition; an unset
/// slot has data that is not valid. Audio thread.
struct CAudioParamSlot {
    CAudioParam* param = nullptr;
    CAudioParamData data;
    uint8_t changed = 0;
};

/// Link between a parameter and a slot of a process. Audio thread, or the thread that builds the graph.
struct CAudioParamConsumer {
    CAudioParamSlot* slot = nullptr;
    CAudioParamQueue* queue = nullptr;
    uint8_t* changedFlag = nullptr;
    int32_t group = -1;    ///< -1 and -2: all
    int32_t element = -1;  ///< -1: all
    CAudioParamConsumer* next = nullptr;

    /// Whether a change is meant for this consumer.
    bool wants(const CAudioParamChange& change) const;
    /// Puts a change into the process's queue and sets the process's flag.
    void take(CAudioParamChange& change) {
        queue->append(change, slot);
        *changedFlag = 1;
    }
};

}  // namespace tarv
