// What an open editor holds of Windows, and threads that do not serve theirs.

#include <windows.h>

#include <atomic>
#include <thread>

#include "Tests/Host/Editor/HostEditorTest.h"

namespace tarv::host {
namespace {

class EditorResources : public HostEditorTest {};

TEST_F(EditorResources, AnOpenEditorHasThreeWindows) {
    ASSERT_TRUE(open());
    close();
    const CHeldThings closed = CHostDesk::held();
    ASSERT_TRUE(open());
    const CHeldThings held = CHostDesk::held();
    // The one that is seen, that of posts, and that of timers. The first stands in the host's, where only the other two
    // are counted.
    EXPECT_EQ(held.windows, closed.windows + 2);
    EXPECT_EQ(desk.childCount(parent), 1);
    close();
    EXPECT_EQ(CHostDesk::held().windows, closed.windows);
}

TEST_F(EditorResources, AThreadThatNeverServesItsWindowsHoldsUpNobody) {
    std::atomic<bool> isOpened{false};
    std::atomic<bool> mayEnd{false};
    bool wasOpen = false;
    void* const window = parent;
    // As a host that opens editors on a thread for work in the background.
    std::thread worker([&] {
        wasOpen = open(effect, window);
        isOpened = true;
        while (!mayEnd) {
            Sleep(1);
        }
        // It looks at its messages once, at last.
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            DispatchMessageW(&message);
        }
    });
    ASSERT_TRUE(desk.until([&] { return isOpened.load(); })) << "making a child asks the parent's thread";
    EXPECT_TRUE(wasOpen);
    const DWORD start = GetTickCount();
    desk.serve();
    effect.dispatch(vst::kEffectVendorSpecific, 0x73744341, 0x57686565, nullptr, 1.0f);
    EXPECT_FALSE(open()) << "it is open";
    close();
    desk.serve();
    EXPECT_LT(GetTickCount() - start, 1000u);
    EXPECT_EQ(desk.childCount(parent), 1) << "its windows are destroyed on their thread";
    mayEnd = true;
    EXPECT_TRUE(desk.until([&] { return desk.childCount(parent) == 0; }));
    worker.join();
    EXPECT_TRUE(open());
    close();
}

}  // namespace
}  // namespace tarv::host
