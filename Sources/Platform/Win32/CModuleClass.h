#pragma once

#include <windows.h>

#include "Platform/File.h"

namespace tarv {

/// A window class of this module. Its name holds the module's address: two versions of the library in one process have
/// one each. Registered for the first window and unregistered after the last, since a class outlives the module that
/// made it, with a procedure that is no longer there. Any thread.
class CModuleClass {
public:
    CModuleClass(const wchar_t* prefix, WNDPROC procedure, UINT style);
    /// Unregisters what a window left that was still going when it was released.
    ~CModuleClass();
    CModuleClass(const CModuleClass&) = delete;
    CModuleClass& operator=(const CModuleClass&) = delete;

    /// Before a window is made; 0, or the system's number of the registration.
    [[nodiscard]] CPlatformError acquire();
    /// After a window was destroyed, or could not be made.
    void release();
    const wchar_t* name() const { return name_; }
    /// 0 while no window needs the class.
    ATOM atom() const { return atom_; }

private:
    void unregister();

    static constexpr int kNameUnits = 64;
    wchar_t name_[kNameUnits];
    WNDPROC procedure_;
    UINT style_;
    SRWLOCK lock_ = SRWLOCK_INIT;  // needs no end: windows may be closed while the library is being unloaded
    ATOM atom_ = 0;
    int users_ = 0;
};

}  // namespace tarv
