#include "Tests/Platform/Win32/CTestWindows.h"

namespace tarv {
namespace {

constexpr uint32_t kRed = 0xff0000;
constexpr uint32_t kGreen = 0x00ff00;

class Win32Present : public testing::Test {
protected:
    CHostWindow host;
    CNotes notes;
    std::unique_ptr<CPlatformWindow> child = openChild(host, notes);
    std::unique_ptr<CSurface> surface;

    void SetUp() override {
        CSurfaceStep step;
        CPlatformError error;
        surface = windowSystem()->createSurface(64, 64, step, error);
        ASSERT_TRUE(surface);
        fill(kRed);
        notes.take();
    }
    HWND window() const { return reinterpret_cast<HWND>(child->handle()); }
    void fill(uint32_t color) { std::fill_n(surface->pixels(), 64 * 64, color); }
    /// As 0xRRGGBB.
    uint32_t pixel(int x, int y) const {
        const HDC context = GetDC(window());
        const COLORREF found = GetPixel(context, x, y);
        ReleaseDC(window(), context);
        return uint32_t{GetRValue(found)} << 16 | uint32_t{GetGValue(found)} << 8 | GetBValue(found);
    }
};

TEST_F(Win32Present, OutsideOfAPaintOnlyThePartIsShown) {
    const uint32_t before = pixel(0, 0);
    child->present(*surface, 10, 20, {20, 30, 40, 50});
    child->finishPresenting();
    EXPECT_EQ(pixel(20, 30), kRed);
    EXPECT_EQ(pixel(39, 49), kRed);
    EXPECT_EQ(pixel(19, 30), before);
    EXPECT_EQ(pixel(40, 49), before);
    EXPECT_EQ(pixel(39, 50), before);
}

TEST_F(Win32Present, ThePartOfTheSurfaceIsThatOfTheWindow) {
    surface->pixels()[64 * 3 + 2] = kGreen;
    child->present(*surface, 10, 20, {12, 23, 13, 24});
    child->finishPresenting();
    EXPECT_EQ(pixel(12, 23), kGreen);
}

TEST_F(Win32Present, APaintAsksForWhatIsDirtyAndShowsItBeforeTheReturn) {
    notes.draw = [this](const CIntRect& dirty) { child->present(*surface, 0, 0, dirty); };
    child->invalidate({5, 6, 15, 26});
    pump();
    EXPECT_EQ(notes.take(), (CLines{"paint 5,6 10x20"}));
    EXPECT_EQ(pixel(5, 6), kRed);
    EXPECT_EQ(pixel(14, 25), kRed);
    pump();
    EXPECT_TRUE(notes.take().empty()) << "a window at rest is not painted";
}

TEST_F(Win32Present, WithinAPaintOtherPartsAreShownToo) {
    notes.draw = [this](const CIntRect&) { child->present(*surface, 0, 0, {0, 0, 64, 64}); };
    child->invalidate({0, 0, 4, 4});
    pump();
    EXPECT_EQ(pixel(0, 0), kRed);
    EXPECT_EQ(pixel(63, 63), kRed) << "the system's own context would clip it";
}

TEST_F(Win32Present, APaintOfNothingAsksForNothing) {
    SendMessageW(window(), WM_PAINT, 0, 0);
    EXPECT_TRUE(notes.take().empty());
    child->present(*surface, 0, 0, {10, 10, 10, 20});
}

TEST_F(Win32Present, ThePixelsMayBeWrittenAgainAfterTheEnd) {
    child->present(*surface, 0, 0, {0, 0, 64, 64});
    child->finishPresenting();
    fill(kGreen);
    EXPECT_EQ(pixel(30, 30), kRed);
}

TEST_F(Win32Present, TheBackgroundIsNotErased) {
    child->present(*surface, 0, 0, {0, 0, 64, 64});
    child->finishPresenting();
    InvalidateRect(window(), nullptr, TRUE);
    pump();
    EXPECT_EQ(pixel(30, 30), kRed);
}

}  // namespace
}  // namespace tarv
