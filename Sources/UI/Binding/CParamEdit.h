#pragma once

#include <cstdint>

namespace tarv {

/// How a change belongs to others and to the history.
struct CParamEdit {
    CParamEdit(int32_t gesture = -1) : key(gesture) {}
    /// Part of a gesture that goes on.
    static CParamEdit held(int32_t gesture) {
        CParamEdit edit(gesture);
        edit.isHeld = true;
        return edit;
    }
    /// No step of the history.
    static CParamEdit unrecorded() {
        CParamEdit edit;
        edit.isRecorded = false;
        return edit;
    }

    int32_t key;          ///< all changes of one gesture have the same; -1: a gesture of its own
    bool isHeld = false;  ///< for the host the edit goes on until the gesture ends; otherwise it ends with the change
    bool isRecorded = true;  ///< as a step of the history
};

}  // namespace tarv
