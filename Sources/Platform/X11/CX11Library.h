#pragma once

#include <xcb/randr.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>
// The header of the keyboard extension names a field by a word of C++.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <array>
#include <string>

#include "Platform/X11/X11Functions.h"

namespace tarv {

/// The libraries that this backend calls, opened when they are first needed: the product loads where they are missing.
/// Members are named as the functions. Loaded once for the process, under the lock of its owner.
class CX11Library {
public:
    static constexpr int kFileCount = 6;
    /// Names of the files, in the order of X11Functions.h.
    using CFiles = std::array<const char*, kFileCount>;
    static constexpr CFiles kFiles = {"libxcb.so.1",     "libxcb-shm.so.0",   "libxcb-randr.so.0",
                                      "libxcb-xkb.so.1", "libxkbcommon.so.0", "libxkbcommon-x11.so.0"};

    /// Other names than the system's are for tests.
    explicit CX11Library(const CFiles& files = kFiles) : files_(files) {}
    CX11Library(const CX11Library&) = delete;
    CX11Library& operator=(const CX11Library&) = delete;
    ~CX11Library();

    /// False with a reason for the log if a library that must be there is missing. A second call returns at once after
    /// a success, and tries again after a failure.
    bool load(std::u16string& reason);
    /// Pictures in shared memory can be asked for.
    bool hasSharedMemory() const { return libraries_[1] != nullptr; }
    /// Monitors can be asked for.
    bool hasMonitors() const { return libraries_[2] != nullptr; }

#define TARV_MEMBER(name) decltype(&::name) name = nullptr;
    TARV_ALL_X11_FUNCTIONS(TARV_MEMBER)
#undef TARV_MEMBER

private:
    void unload();

    const CFiles files_;
    void* libraries_[kFileCount] = {};
    bool isLoaded_ = false;
};

}  // namespace tarv
