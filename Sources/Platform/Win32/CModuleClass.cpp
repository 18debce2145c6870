// Window classes that go with their last window.

#include "Platform/Win32/CModuleClass.h"

#include <cwchar>

#include "Platform/Win32/Module.h"

namespace tarv {

namespace {

/// Holds the lock for a scope.
class CExclusiveScope {
public:
    explicit CExclusiveScope(SRWLOCK& lock) : lock_(lock) { AcquireSRWLockExclusive(&lock_); }
    ~CExclusiveScope() { ReleaseSRWLockExclusive(&lock_); }
    CExclusiveScope(const CExclusiveScope&) = delete;
    CExclusiveScope& operator=(const CExclusiveScope&) = delete;

private:
    SRWLOCK& lock_;
};

}  // namespace

CModuleClass::CModuleClass(const wchar_t* prefix, WNDPROC procedure, UINT style)
    : procedure_(procedure), style_(style) {
    swprintf(name_, kNameUnits, L"%ls-%p", prefix, static_cast<void*>(ownModule()));
}

CModuleClass::~CModuleClass() {
    unregister();
}

CPlatformError CModuleClass::acquire() {
    const CExclusiveScope scope(lock_);
    if (!atom_) {
        WNDCLASSEXW windowClass{};
        windowClass.cbSize = sizeof(windowClass);
        windowClass.style = style_;
        windowClass.lpfnWndProc = procedure_;
        windowClass.hInstance = ownModule();
        windowClass.lpszClassName = name_;
        atom_ = RegisterClassExW(&windowClass);
        if (!atom_) {
            return GetLastError();
        }
    }
    ++users_;
    return 0;
}

void CModuleClass::release() {
    const CExclusiveScope scope(lock_);
    if (--users_ == 0) {
        unregister();
    }
}

// Fails while a window is in the middle of its end; the next release or the destructor makes it good.
void CModuleClass::unregister() {
    if (atom_ && UnregisterClassW(name_, ownModule())) {
        atom_ = 0;
    }
}

}  // namespace tarv
