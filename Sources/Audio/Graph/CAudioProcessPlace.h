#pragma once

#include <cstdint>

#include "Core/CString.h"

namespace tarv {

class CAudioGraph;
class CAudioProcessBase;
class CAudioProcessDefBase;

/// The place of a process in the graph.
struct CAudioProcessPlace {
    CAudioGraph* graph = nullptr;
    CAudioProcessBase* parent = nullptr;
    const CAudioProcessDefBase* def = nullptr;
    /// Full tree path, the base of all name resolution.
    CString path;
    /// Name in the parent; empty for an instance of a stack, which has its stack's path.
    CString name;
    /// Position in the innermost stack, -1 outside.
    int32_t stackIndex = -1;
};

}  // namespace tarv
