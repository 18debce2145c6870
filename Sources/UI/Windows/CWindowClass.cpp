#include "UI/Windows/CWindowClass.h"

#include "Core/CString.h"

namespace tarv {

CWindowClass::~CWindowClass() {
    if (system_) {
        system_->releaseClass(kind_);
    }
}

CError* CWindowClass::init(CWindowKind kind) {
    CWindowSystem* system = windowSystem();
    const CPlatformError error = system ? system->acquireClass(kind) : 0;
    if (error && kind == CWindowKind::Seen) {
        TARV_FAIL("@tarvstr_CWindowClass_init_RegClassError Unable to register window class (error %1).",
                  CString::fromInt(error));
    }
    if (error) {
        TARV_FAIL("@tarvstr_CWindowClass_init_RegBridgeClassError Unable to register bridge window class (error %1).",
                  CString::fromInt(error));
    }
    system_ = system;
    kind_ = kind;
    return nullptr;
}

}  // namespace tarv
