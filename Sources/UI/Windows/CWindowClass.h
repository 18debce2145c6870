#pragma once

#include "Core/CError.h"
#include "Platform/WindowSystem.h"

namespace tarv {

/// Holds one class of the system's windows for its life: registered for the first holder in the process, unregistered
/// when the last has gone, since a class outlives the library that made it. Nothing where there is no window system.
class CWindowClass {
public:
    CWindowClass() = default;
    ~CWindowClass();
    CWindowClass(const CWindowClass&) = delete;
    CWindowClass& operator=(const CWindowClass&) = delete;

    /// Of windows that are seen, or of those that posts arrive at.
    [[nodiscard]] CError* init(CWindowKind kind);

private:
    CWindowSystem* system_ = nullptr;
    CWindowKind kind_ = CWindowKind::Seen;
};

}  // namespace tarv
