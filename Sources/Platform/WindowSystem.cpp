// The backend of windows that is in use.

#include "Platform/WindowSystem.h"

#include "Platform/Lock.h"

namespace tarv {

namespace {

CWindowSystem* chosen = nullptr;

struct CReason {
    CLock lock;
    std::u16string text;
};

CReason& lastReason() {
    static CReason reason;
    return reason;
}

}  // namespace

CWindowSystem* windowSystem() {
    return chosen ? chosen : systemWindows();
}

void setWindowSystem(CWindowSystem* system) {
    chosen = system;
}

std::u16string noWindowsReason() {
    const CLockScope scope(lastReason().lock);
    return lastReason().text;
}

void noteNoWindows(const std::u16string& reason) {
    const CLockScope scope(lastReason().lock);
    lastReason().text = reason;
}

}  // namespace tarv
