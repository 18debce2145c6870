#pragma once

#include "Core/CString.h"

namespace tarv {

/// How a change is entered in the history of the engine.
struct CInterfaceUndo {
    bool isRecorded = true;
    CString label;        ///< empty: made by the engine from the parameter's and the group's name
    int32_t key = -1;     ///< all changes of one gesture have the same; -1: a separate step
    bool isHeld = false;  ///< for the host the edit goes on until CAudioInterfaceClient::endEdit of the key
};

}  // namespace tarv
