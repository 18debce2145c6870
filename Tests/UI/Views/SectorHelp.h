#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "Platform/ByHand/CWindowByHand.h"
#include "Platform/ByHand/CWindowSystemByHand.h"
#include "Tests/UI/Drawing/BitmapHelp.h"
#include "UI/Views/CSectorMap.h"

namespace tarv {

/// A view of the test: colours that depend on the view and on the pixel of the window, with holes that show what lies
/// below. Notes what was drawn.
class CPatternView final : public CSectorView {
public:
    CPatternView(uint32_t seed, int64_t stacking) : seed_(seed), stacking_(stacking) {}

    int64_t stackingNumber() const override { return stacking_; }
    bool isShown() const override { return isOn; }
    bool isDecorative() const override { return isPassed; }
    bool isDynamic() const override { return isMoving; }
    const CViewRect& visibleRect() const override { return visible; }
    const CViewRect& wholeRect() const override { return whole; }
    double effectiveOpacity() const override { return opacity; }

    /// The colour at a pixel of the window; false for a hole.
    bool patternAt(int32_t x, int32_t y, CPixel& pixel) const {
        const auto mixed =
            (static_cast<uint32_t>(x) * 73856093u) ^ (static_cast<uint32_t>(y) * 19349663u) ^ (seed_ * 83492791u);
        pixel = mixed & 0x00ffffff;
        return isSolid || ((x + y * 3) & 7) != 0;
    }

    CError* drawInSector(const CSectorTarget& target) override {
        if (isFailing) {
            return addErrorLocation(nullptr, __FILE__, __LINE__, CString(),
                                    "@tarvstr_CPatternView_draw_Always Refused.");
        }
        lastTarget = target.bitmap;
        ++drawCount;
        for (int32_t y = target.clip.top; y < target.clip.bottom; ++y) {
            for (int32_t x = target.clip.left; x < target.clip.right; ++x) {
                CPixel pixel = 0;
                ++drawnPixels;
                if (patternAt(target.originX + x, target.originY + y, pixel)) {
                    target.bitmap->row(y)[x] = pixel;
                }
            }
        }
        return nullptr;
    }

    CViewRect visible;
    CViewRect whole;
    double opacity = 1.0;
    bool isOn = true;
    bool isPassed = false;
    bool isMoving = false;
    bool isSolid = false;
    bool isFailing = false;
    const CLinearBitmap* lastTarget = nullptr;
    int32_t drawCount = 0;
    int64_t drawnPixels = 0;
    /// Only while the view is in no map.
    void setStacking(int64_t number) { stacking_ = number; }

private:
    uint32_t seed_;
    int64_t stacking_;
};

/// A window with a map of tiles, and views in it: what a window of the editor does with them, and no more.
class CSectorWindow {
public:
    explicit CSectorWindow(CWindowSystemByHand& system)
        : window_(system.desktop(), {.bounds = {0, 0, 1, 1}}, nullptr, true) {
        window_.show(true);
    }

    void resize(double width, double height) {
        EXPECT_GOOD(map.resize(width, height));
        window_.setBounds({0, 0, static_cast<int32_t>(std::lround(width)), static_cast<int32_t>(std::lround(height))});
    }
    /// The view's place changes, and it shows itself there.
    void place(CPatternView& view, const CViewRect& rect) {
        const CViewRect before = view.visible;
        view.visible = rect;
        view.whole = rect;
        map.updateView(view, before, rect);
        map.invalidate(rect, &view);
    }
    void look(CPatternView& view) { map.invalidate(view.visible, &view); }
    void remove(CPatternView& view) { map.removeView(view, view.visible); }
    /// Draws what is dirty and shows it; gives the pixels that were shown.
    int64_t tick() {
        int64_t shown = 0;
        map.render(
            [&](int32_t column, int32_t row, const CIntRect& rect, const CSurface& surface, int32_t surfaceRow) {
                const int32_t x = column * CSector::kSize;
                const int32_t y = row * CSector::kSize;
                window_.present(surface, x, y - surfaceRow, rect.moved(x, y));
                shown += int64_t{rect.width()} * rect.height();
            },
            [&](CSectorView&, CError* error) {
                ++failures;
                delete error;
            });
        window_.finishPresenting();
        return shown;
    }
    const CPictureByHand& picture() { return window_.picture(); }
    CWindowByHand& window() { return window_; }

    CSectorMap map;
    int32_t failures = 0;

private:
    CWindowByHand window_;
};

/// What the window must show: all views, each in whole, from the lowest up. Written from the rules alone.
inline CPictureByHand referencePicture(int32_t width, int32_t height, std::vector<const CPatternView*> views) {
    std::stable_sort(views.begin(), views.end(),
                     [](const auto* a, const auto* b) { return a->stackingNumber() < b->stackingNumber(); });
    CPictureByHand picture(width, height, 0);
    for (const CPatternView* view : views) {
        const CViewRect& rect = view->visible;
        if (!view->isOn || view->opacity < 0.001 || view->whole.width <= 0.1 || view->whole.height <= 0.1) {
            continue;
        }
        const auto left = static_cast<int32_t>(std::max(std::lround(rect.x), 0L));
        const auto top = static_cast<int32_t>(std::max(std::lround(rect.y), 0L));
        const auto right = static_cast<int32_t>(std::min<long>(std::lround(rect.x + rect.width), width));
        const auto bottom = static_cast<int32_t>(std::min<long>(std::lround(rect.y + rect.height), height));
        for (int32_t y = top; y < bottom; ++y) {
            for (int32_t x = left; x < right; ++x) {
                CPixel pixel = 0;
                CPixel& to = picture.at(x, y);
                if (!view->patternAt(x, y, pixel)) {
                    continue;
                }
                const int64_t alpha = alphaFormula(view->opacity);
                to = alpha >= 32640
                         ? pixel
                         : eachChannel(to, pixel, [&](int64_t d, int64_t s) { return effectiveFormula(d, s, alpha); });
            }
        }
    }
    return picture;
}

/// "" if both are the same, otherwise the first pixel that differs.
inline std::string difference(const CPictureByHand& is, const CPictureByHand& should) {
    if (is.width != should.width || is.height != should.height) {
        return "sizes differ";
    }
    for (int32_t y = 0; y < is.height; ++y) {
        for (int32_t x = 0; x < is.width; ++x) {
            if (is.at(x, y) != should.at(x, y)) {
                return std::to_string(x) + ',' + std::to_string(y) + " is " + std::to_string(is.at(x, y)) + " not " +
                       std::to_string(should.at(x, y));
            }
        }
    }
    return "";
}

/// A window with pattern views in it.
class CSectorTest : public testing::Test {
protected:
    CPatternView& add(int64_t stacking, const CViewRect& rect, bool isMoving = false) {
        views.push_back(std::make_unique<CPatternView>(static_cast<uint32_t>(views.size() + 1), stacking));
        views.back()->isMoving = isMoving;
        win.place(*views.back(), rect);
        return *views.back();
    }
    std::string differenceNow() {
        std::vector<const CPatternView*> all;
        for (const auto& view : views) {
            all.push_back(view.get());
        }
        return difference(win.picture(), referencePicture(win.picture().width, win.picture().height, all));
    }
    void forgetDrawn() {
        for (const auto& view : views) {
            view->drawnPixels = 0;
            view->drawCount = 0;
        }
    }

    CWindowSystemByHand system;
    CSectorWindow win{system};
    std::vector<std::unique_ptr<CPatternView>> views;
};

}  // namespace tarv
