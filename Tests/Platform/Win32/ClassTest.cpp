// Window classes: names of the module, held and refused.

#include <gtest/gtest.h>
#include <windows.h>

#include <cwchar>
#include <string>
#include <utility>

#include "Platform/WindowSystem.h"
#include "Tests/Platform/Win32/CTestWindows.h"

namespace tarv {
namespace {

bool isRegistered(const wchar_t* name) {
    WNDCLASSEXW found{};
    found.cbSize = sizeof(found);
    return GetClassInfoExW(GetModuleHandleW(nullptr), name, &found) != 0;
}

TEST(Win32Class, AClassIsHeldWithoutAWindowToo) {
    for (const auto& [kind, prefix] : {std::pair{CWindowKind::Seen, L"TarveloWindow"},
                                       {CWindowKind::Posts, L"TarveloEvents"},
                                       {CWindowKind::Timers, L"TarveloTimers"}}) {
        wchar_t name[64];
        swprintf(name, 64, L"%ls-%p", prefix, static_cast<void*>(GetModuleHandleW(nullptr)));
        EXPECT_FALSE(isRegistered(name));
        ASSERT_EQ(windowSystem()->acquireClass(kind), 0u);
        ASSERT_EQ(windowSystem()->acquireClass(kind), 0u);
        EXPECT_TRUE(isRegistered(name));
        windowSystem()->releaseClass(kind);
        EXPECT_TRUE(isRegistered(name));
        windowSystem()->releaseClass(kind);
        EXPECT_FALSE(isRegistered(name));
    }
}

TEST(Win32Class, AClassThatTheSystemRefusesGivesItsNumber) {
    for (const auto& [kind, prefix] : {std::pair{CWindowKind::Seen, L"TarveloWindow"},
                                       {CWindowKind::Posts, L"TarveloEvents"},
                                       {CWindowKind::Timers, L"TarveloTimers"}}) {
        wchar_t name[64];
        swprintf(name, 64, L"%ls-%p", prefix, static_cast<void*>(GetModuleHandleW(nullptr)));
        // Another one has the name.
        WNDCLASSEXW taken{};
        taken.cbSize = sizeof(taken);
        taken.lpfnWndProc = &DefWindowProcW;
        taken.hInstance = GetModuleHandleW(nullptr);
        taken.lpszClassName = name;
        ASSERT_NE(RegisterClassExW(&taken), 0);
        EXPECT_EQ(windowSystem()->acquireClass(kind), DWORD{ERROR_CLASS_ALREADY_EXISTS});
        CHostWindow host;
        CNotes notes;
        CPlatformError error = 0;
        if (kind == CWindowKind::Seen) {
            CWindowRequest request;
            request.isChild = true;
            request.parent = host.handle();
            EXPECT_EQ(windowSystem()->createWindow(request, notes, error), nullptr);
            EXPECT_EQ(error, DWORD{ERROR_CLASS_ALREADY_EXISTS});
        }
        EXPECT_NE(UnregisterClassW(name, GetModuleHandleW(nullptr)), 0);
        EXPECT_EQ(windowSystem()->acquireClass(kind), 0u);
        windowSystem()->releaseClass(kind);
    }
}

}  // namespace
}  // namespace tarv
