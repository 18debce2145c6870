#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

#include "Platform/WindowSystem.h"
#include "Tests/Platform/Win32/CTestWindows.h"

namespace tarv {
namespace {

std::unique_ptr<CSurface> make(int32_t width, int32_t height, CSurfaceStep& step, CPlatformError& error) {
    step = CSurfaceStep::None;
    error = 0;
    return windowSystem()->createSurface(width, height, step, error);
}

TEST(Win32Surface, HasRowsFromTheTopWithoutGaps) {
    CSurfaceStep step;
    CPlatformError error;
    const auto surface = make(3, 2, step, error);
    ASSERT_TRUE(surface);
    EXPECT_EQ(step, CSurfaceStep::None);
    EXPECT_EQ(error, 0u);
    EXPECT_EQ(surface->width(), 3);
    EXPECT_EQ(surface->height(), 2);
    surface->pixels()[0] = 0x102030;
    surface->pixels()[5] = 0x405060;
    // As the system itself reads them, by way of a window.
    CHostWindow host;
    CNotes notes;
    const auto window = openChild(host, notes);
    window->present(*surface, 10, 20, {10, 20, 13, 22});
    window->finishPresenting();
    const HWND handle = reinterpret_cast<HWND>(window->handle());
    const HDC context = GetDC(handle);
    EXPECT_EQ(GetPixel(context, 10, 20), static_cast<COLORREF>(RGB(0x10, 0x20, 0x30)));
    EXPECT_EQ(GetPixel(context, 12, 21), static_cast<COLORREF>(RGB(0x40, 0x50, 0x60)));
    ReleaseDC(handle, context);
}

TEST(Win32Surface, AbsurdSizesFailInTheStepOfTheSection) {
    struct CSize {
        int32_t width;
        int32_t height;
    };
    for (const CSize& size : {CSize{0, 1}, CSize{1, 0}, CSize{-5, 5}, CSize{5, -5}, CSize{INT32_MIN, INT32_MIN},
                              CSize{INT32_MAX, INT32_MAX}, CSize{1 << 20, 1 << 20}}) {
        CSurfaceStep step;
        CPlatformError error;
        EXPECT_FALSE(make(size.width, size.height, step, error)) << size.width << " x " << size.height;
        EXPECT_EQ(step, CSurfaceStep::Section) << size.width << " x " << size.height;
    }
    CSurfaceStep step;
    CPlatformError error;
    EXPECT_FALSE(make(5, -5, step, error));
    EXPECT_EQ(error, static_cast<CPlatformError>(ERROR_INVALID_PARAMETER));
}

/// Takes all handles of graphics that a process may have.
class CGdiHunger {
public:
    CGdiHunger() {
        while (const HPEN pen = CreatePen(PS_SOLID, 1, static_cast<COLORREF>(taken_.size()))) {
            taken_.push_back(pen);
        }
    }
    ~CGdiHunger() { giveBack(taken_.size()); }
    CGdiHunger(const CGdiHunger&) = delete;
    CGdiHunger& operator=(const CGdiHunger&) = delete;

    void giveBack(size_t count) {
        for (; count > 0 && !taken_.empty(); --count) {
            DeleteObject(taken_.back());
            taken_.pop_back();
        }
    }
    /// How many more the system gives now.
    size_t room() {
        const size_t before = taken_.size();
        while (const HPEN pen = CreatePen(PS_SOLID, 1, static_cast<COLORREF>(taken_.size()))) {
            taken_.push_back(pen);
        }
        const size_t found = taken_.size() - before;
        giveBack(found);
        return found;
    }

private:
    std::vector<HPEN> taken_;
};

TEST(Win32Surface, AStepThatFailsFreesWhatWasMadeBefore) {
    CGdiHunger hunger;
    CSurfaceStep step;
    CPlatformError error;
    EXPECT_FALSE(make(4, 4, step, error));
    EXPECT_EQ(step, CSurfaceStep::Context);
    // One handle more at each turn: first the context fails, then the section behind it, until all is there.
    bool hasSectionFailed = false;
    bool isMade = false;
    for (size_t room = 1; room < 16 && !isMade; ++room) {
        hunger.giveBack(1);
        ASSERT_EQ(hunger.room(), room);
        isMade = make(4, 4, step, error) != nullptr;
        hasSectionFailed = hasSectionFailed || (!isMade && step == CSurfaceStep::Section);
        EXPECT_EQ(hunger.room(), room) << "a step leaves something behind";
    }
    EXPECT_TRUE(hasSectionFailed);
    EXPECT_TRUE(isMade);
}

}  // namespace
}  // namespace tarv
