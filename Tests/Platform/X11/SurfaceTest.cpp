#include <random>

#include "Tests/Platform/X11/CXDesktop.h"

namespace tarv {
namespace {

constexpr int kWidth = 200, kHeight = 100;

/// Presents parts of a picture of noise by a seed and gives what the screen shows then.
std::vector<uint32_t> shown(CWindowSystem& system, CXClient& client, xcb_window_t parent) {
    CXRecorder recorder;
    CPlatformError error = 0;
    CSurfaceStep step{};
    CWindowRequest request;
    request.isChild = true;
    request.parent = parent;
    request.bounds = {0, 0, kWidth, kHeight};
    const auto window = system.createWindow(request, recorder, error);
    const auto surface = system.createSurface(kWidth, kHeight, step, error);
    if (!window || !surface)
        return {};
    window->show(true);
    system.serve();
    std::fill_n(surface->pixels(), kWidth * kHeight, 0xff000000);
    window->present(*surface, 0, 0, {0, 0, kWidth, kHeight});
    window->finishPresenting();
    std::mt19937 random(7);
    for (int i = 0; i < kWidth * kHeight; ++i)
        surface->pixels()[i] = random();
    // Parts that lie inside, reach beyond the picture, and beyond the window; a tile that is shown elsewhere.
    window->present(*surface, 0, 0, {10, 5, 60, 40});
    window->present(*surface, 100, 50, {90, 45, 300, 200});
    window->present(*surface, -20, -30, {0, 60, 150, 70});
    window->present(*surface, 500, 500, {0, 0, kWidth, kHeight});
    window->present(*surface, 0, 0, {});
    window->finishPresenting();
    // Read by now: another content of the pixels changes nothing on the screen.
    std::fill_n(surface->pixels(), kWidth * kHeight, 0);
    client.sync();
    return client.pixels(static_cast<xcb_window_t>(window->handle()), kWidth, kHeight);
}

/// The same by a plain loop.
std::vector<uint32_t> expected() {
    std::vector<uint32_t> noise(kWidth * kHeight), screen(kWidth * kHeight, 0);
    std::mt19937 random(7);
    for (uint32_t& pixel : noise)
        pixel = random() & 0xffffff;
    struct CPart {
        int x, y;
        CIntRect rect;
    };
    for (const CPart& part :
         {CPart{0, 0, {10, 5, 60, 40}}, CPart{100, 50, {90, 45, 300, 200}}, CPart{-20, -30, {0, 60, 150, 70}}})
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x) {
                const int fromX = x - part.x, fromY = y - part.y;
                if (x >= part.rect.left && x < part.rect.right && y >= part.rect.top && y < part.rect.bottom &&
                    fromX >= 0 && fromX < kWidth && fromY >= 0 && fromY < kHeight)
                    screen[static_cast<size_t>(y * kWidth + x)] = noise[static_cast<size_t>(fromY * kWidth + fromX)];
            }
    return screen;
}

class X11Surface : public CXDesktop {};

TEST_F(X11Surface, SharedAndPlainPicturesShowTheSamePixels) {
    const std::vector<uint32_t> reference = expected();
    EXPECT_EQ(shown(system, client, host), reference) << "shared memory";
    CX11Library::CFiles files = CX11Library::kFiles;
    files[1] = "libnone-shm.so.0";
    CX11System without(files);
    EXPECT_EQ(shown(without, client, host), reference) << "without the library";
    CXServer other({"-extension", "MIT-SHM"});
    const CScopedVariable name("DISPLAY", other.display().c_str());
    CXClient far(other.display());
    CX11System there;
    EXPECT_EQ(shown(there, far, far.makeWindow(0, 0, 300, 300)), reference) << "without the server's extension";
}

TEST_F(X11Surface, BeginsBlackAndLeavesNoSegmentBehind) {
    CSurfaceStep step{};
    CPlatformError error = 1;
    const auto surface = system.createSurface(128, 128, step, error);
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(error, 0u);
    EXPECT_EQ(surface->width(), 128);
    EXPECT_EQ(surface->height(), 128);
    for (int i = 0; i < 128 * 128; ++i)
        ASSERT_EQ(surface->pixels()[i], 0u);
}

TEST_F(X11Surface, OfNoSizeOrTooLargeAnOneFails) {
    for (const auto& [width, height] : {std::pair{0, 5}, {5, 0}, {-1, 5}, {40000, 1}}) {
        CSurfaceStep step = CSurfaceStep::None;
        CPlatformError error = 0;
        EXPECT_EQ(system.createSurface(width, height, step, error), nullptr);
        EXPECT_EQ(step, CSurfaceStep::Section);
        EXPECT_NE(error, 0u);
    }
}

TEST_F(X11Surface, ALargePictureWithoutSharedMemoryIsSentInPieces) {
    // 2000 x 3000 pixels are 24 MB: more than any request.
    CX11Library::CFiles files = CX11Library::kFiles;
    files[1] = "libnone-shm.so.0";
    CX11System without(files);
    CXRecorder recorder;
    CPlatformError error = 0;
    CSurfaceStep step{};
    CWindowRequest request;
    request.isChild = true;
    request.parent = host;
    request.bounds = {0, -2900, 2000, 100};
    const auto window = without.createWindow(request, recorder, error);
    const auto surface = without.createSurface(2000, 3000, step, error);
    ASSERT_TRUE(window && surface);
    window->show(true);
    without.serve();
    for (int y = 0; y < 3000; ++y)
        std::fill_n(surface->pixels() + y * 2000, 2000, static_cast<uint32_t>(y));
    window->present(*surface, 0, 0, {0, 0, 2000, 3000});
    window->finishPresenting();
    without.windowAt(0, 0);
    int32_t x = 0, y = 0;
    without.pointerPosition(x, y);
    const std::vector<uint32_t> pixels = client.pixels(host, 400, 300);
    ASSERT_FALSE(pixels.empty());
    for (const int row : {0, 1, 50, 99})
        EXPECT_EQ(pixels[static_cast<size_t>(row) * 400 + 3], static_cast<uint32_t>(2900 + row));
}

}  // namespace
}  // namespace tarv
