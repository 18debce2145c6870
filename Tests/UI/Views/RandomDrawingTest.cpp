// Random changes of the views of a window: what dirty tiles draw equals one full redraw, pixel by pixel.

#include <random>

#include "Tests/UI/Views/SectorHelp.h"

namespace tarv {
namespace {

class RandomDrawing : public testing::Test {
protected:
    static constexpr int32_t kViews = 14;

    int32_t random(int32_t low, int32_t high) { return std::uniform_int_distribution<int32_t>(low, high)(generator); }
    /// In eighths of pixels, some of it beside the window, some of it empty.
    CViewRect randomRect() {
        const auto eighths = [&](int32_t low, int32_t high) { return random(low * 8, high * 8) / 8.0; };
        const bool isSmall = random(0, 2) > 0;
        return {eighths(-60, 320), eighths(-60, 300), random(0, 15) == 0 ? 0.0 : eighths(0, isSmall ? 60 : 350),
                eighths(0, isSmall ? 60 : 350)};
    }
    /// No two views have the same: the order of joining differs from tile to tile.
    int64_t freshNumber() {
        int64_t number = 0;
        do {
            number = random(-500, 500) * int64_t{10000000};
        } while (std::any_of(views.begin(), views.end(), [&](const auto& v) { return v->stackingNumber() == number; }));
        return number;
    }
    void add() {
        views.push_back(std::make_unique<CPatternView>(generator(), freshNumber()));
        views.back()->isMoving = random(0, 2) == 0;
        win.place(*views.back(), randomRect());
    }
    void changeLook(CPatternView& view) {
        constexpr double kOpacities[] = {1.0, 0.9995, 0.998, 0.5, 0.0};
        view.opacity = kOpacities[random(0, 4)];
        win.look(view);
    }
    void restack(CPatternView& view) {
        const CViewRect rect = view.visible;
        win.place(view, {});
        view.setStacking(freshNumber());
        win.place(view, rect);
    }
    void resize() { win.resize(random(0, 20) == 0 ? 0 : random(1, 330), random(1, 300)); }
    void change() {
        const int32_t index = random(0, static_cast<int32_t>(views.size()) - 1);
        CPatternView& view = *views[static_cast<size_t>(index)];
        const CViewRect rect = view.visible;
        switch (random(0, 9)) {
            case 0:
                win.place(view, randomRect());
                break;
            case 1:
                win.place(view,
                          {rect.x + random(-16, 16) / 8.0, rect.y + random(-16, 16) / 8.0, rect.width, rect.height});
                break;
            case 2:
                win.place(view, {rect.x, rect.y, rect.width * 0.5, rect.height + 3.5});
                break;
            case 3:
                changeLook(view);
                break;
            case 4:
                // The flag changes no pixel, so that nothing is marked.
                view.isMoving = !view.isMoving;
                break;
            case 5:
                restack(view);
                break;
            case 6:
                view.isOn = !view.isOn;
                win.look(view);
                break;
            case 7:
                win.remove(view);
                views.erase(views.begin() + index);
                break;
            case 8:
                win.map.invalidate(randomRect(), random(0, 1) == 0 ? &view : nullptr);
                break;
            default:
                resize();
        }
        while (views.size() < kViews) {
            add();
        }
    }
    std::vector<const CPatternView*> all() const {
        std::vector<const CPatternView*> found;
        for (const auto& view : views) {
            found.push_back(view.get());
        }
        return found;
    }
    /// One map that draws the same views once.
    CPictureByHand drawnAtOnce(int32_t width, int32_t height) {
        CSectorWindow fresh(system);
        fresh.resize(width, height);
        for (const auto& view : views) {
            fresh.map.updateView(*view, {}, view->visible);
        }
        fresh.tick();
        return fresh.picture();
    }

    std::mt19937 generator{20261};
    CWindowSystemByHand system;
    CSectorWindow win{system};
    std::vector<std::unique_ptr<CPatternView>> views;
};

TEST_F(RandomDrawing, ByDirtyTilesEqualsOneFullRedraw) {
    win.resize(300, 260);
    for (int32_t i = 0; i < kViews; ++i) {
        add();
    }
    win.tick();
    for (int32_t round = 0; round < 1000; ++round) {
        for (int32_t i = random(1, 4); i > 0; --i) {
            change();
        }
        win.tick();
        const CPictureByHand& is = win.picture();
        ASSERT_EQ(difference(is, referencePicture(is.width, is.height, all())), "") << "round " << round;
        if (round % 10 == 0) {
            ASSERT_EQ(difference(is, drawnAtOnce(is.width, is.height)), "") << "round " << round;
        }
        ASSERT_EQ(win.tick(), 0);
    }
}

}  // namespace
}  // namespace tarv
