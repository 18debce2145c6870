#pragma once

#include "Core/CError.h"
#include "Platform/Pointer.h"

namespace tarv {

/// The state of mouse and keyboard at one moment, in pixels of the window.
struct CHIDInfo {
    int32_t x = 0;
    int32_t y = 0;
    CInputModifiers modifiers;
};

/// Follows mouse and keyboard while a press is held.
class CHIDInfoUpdateHandler {
public:
    virtual ~CHIDInfoUpdateHandler() = default;
    [[nodiscard]] virtual CError* onHIDUpdate(const CHIDInfo& info) = 0;
};

}  // namespace tarv
