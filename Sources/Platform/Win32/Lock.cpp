// The recursive lock of Windows.

#include "Platform/Lock.h"

#include <windows.h>

#include <new>

namespace tarv {

namespace {

CRITICAL_SECTION* sectionIn(unsigned char* storage) {
    return std::launder(reinterpret_cast<CRITICAL_SECTION*>(storage));
}

}  // namespace

static_assert(sizeof(CRITICAL_SECTION) <= 40 && alignof(CRITICAL_SECTION) <= 8);

CLock::CLock() {
    InitializeCriticalSectionAndSpinCount(new (storage_) CRITICAL_SECTION, kSpinCount);
}

CLock::~CLock() {
    DeleteCriticalSection(sectionIn(storage_));
}

void CLock::enter() {
    EnterCriticalSection(sectionIn(storage_));
}

bool CLock::tryEnter() {
    return TryEnterCriticalSection(sectionIn(storage_)) != 0;
}

void CLock::leave() {
    LeaveCriticalSection(sectionIn(storage_));
}

}  // namespace tarv
