#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "UI/Controls/Surface/CControlSurface.h"
#include "UI/Views/CFrame.h"
#include "UI/Views/CPicture.h"
#include "UI/Views/CSector.h"

namespace tarv {

/// Counts a ratio and its limit; above it, the benchmark ends as an error, and `./bench` with 1.
inline void checkLimit(benchmark::State& state, const char* name, double ratio, double limit) {
    state.counters[name] = ratio;
    state.counters[std::string(name) + "_limit"] = limit;
    if (ratio > limit) {
        state.SkipWithError(
            (std::string(name) + " " + std::to_string(ratio) + " is above its limit " + std::to_string(limit)).c_str());
    }
}

/// A plain copy of pixels between two buffers: the measure of what draws as many.
class CPlainCopy {
public:
    explicit CPlainCopy(int64_t pixels) : source_(static_cast<size_t>(pixels), 0x123456), target_(source_.size()) {}
    void run() {
        std::copy(source_.begin(), source_.end(), target_.begin());
        benchmark::DoNotOptimize(target_.data());
        benchmark::ClobberMemory();
    }

private:
    std::vector<CPixel> source_;
    std::vector<CPixel> target_;
};

inline int64_t pixelsOf(const CViewRect& rect) {
    const CIntRect pixels = CSector::pixelsOf(rect);
    return pixels.isEmpty() ? 0 : int64_t{pixels.width()} * pixels.height();
}

/// Pixels that the pictures and colours of a view and of all below it cover, clipped; of a surface its rectangle, once.
inline int64_t drawnPixels(const CView& view) {
    int64_t pixels = 0;
    if (view.isShown() && dynamic_cast<const CControlSurface*>(&view)) {
        pixels += pixelsOf(view.visibleRect());
    } else if (view.isShown() && view.imageSet()) {
        uint32_t first = 0;
        uint32_t last = 0;
        const bool isStretched =
            view.imageSet()->findRange(view.imageRange(), first, last) && last - first + 1 == CFramePieces::kPieces;
        const bool isRepeated = view.getAttrString("image-alignment").isEmpty() && dynamic_cast<const CPicture*>(&view);
        const CImage* image = view.currentImage();
        const int64_t own = image ? int64_t{image->getWidth()} * image->getHeight() : 0;
        pixels += isStretched || isRepeated ? pixelsOf(view.visibleRect()) : own;
    } else if (view.isShown() && !view.getAttrString("color").isEmpty()) {
        pixels += pixelsOf(view.visibleRect());
    }
    for (const CObject* child : view.children()) {
        const auto* below = dynamic_cast<const CView*>(child);
        pixels += below ? drawnPixels(*below) : 0;
    }
    return pixels;
}

}  // namespace tarv
