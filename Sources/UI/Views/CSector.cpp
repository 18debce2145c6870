#include "UI/Views/CSector.h"

#include <algorithm>
#include <cmath>

namespace tarv {

namespace {

// From these on a view is drawn as it is, and below them not at all.
constexpr double kFullOpacity = 0.999;
constexpr double kLeastOpacity = 0.001;
constexpr double kLeastSize = 0.1;
// Farther than any pixel of a window, and near enough for sums.
constexpr double kFar = 1e9;

int32_t pixelOf(double position) {
    return static_cast<int32_t>(std::lround(std::clamp(position, -kFar, kFar)));
}

}  // namespace

CIntRect CSector::pixelsOf(const CViewRect& rect) {
    if (rect.isEmpty()) {
        return {};
    }
    return {pixelOf(rect.x), pixelOf(rect.y), pixelOf(rect.right()), pixelOf(rect.bottom())};
}

void CSector::layOver(CLinearBitmap& tiles, CLinearBitmap& caches, int32_t index) {
    tile_.layOver(tiles, index * kSize, kSize);
    cache_.layOver(caches, index * kSize, kSize);
    invalidate(bounds(), nullptr);
}

void CSector::insert(CSectorView& view) {
    int32_t at = views_.count();
    while (at > 0 && views_[at - 1]->stackingNumber() > view.stackingNumber()) {
        --at;
    }
    views_.insert(at, &view);
    cachedCount_ += at < cachedCount_ ? 1 : 0;
}

void CSector::remove(const CSectorView& view) {
    const int32_t index = views_.indexOf(const_cast<CSectorView*>(&view));
    if (index >= 0) {
        views_.removeAt(index);
        cachedCount_ -= index < cachedCount_ ? 1 : 0;
    }
}

bool CSector::holds(const CSectorView& view) const {
    return views_.indexOf(const_cast<CSectorView*>(&view)) >= 0;
}

/// Position of the lowest dynamic view that is drawn, or the count.
int32_t CSector::lowestDynamic() const {
    int32_t i = 0;
    while (i < views_.count() && !(views_[i]->isDynamic() && views_[i]->isShown())) {
        ++i;
    }
    return i;
}

/// Empty where the tile has nothing of it.
CIntRect CSector::toTile(const CIntRect& pixels) const {
    const CIntRect own = pixels.intersection(bounds());
    return own.isEmpty() ? CIntRect() : own.moved(-column_ * kSize, -row_ * kSize);
}

void CSector::invalidate(const CIntRect& pixels, const CSectorView* view) {
    const CIntRect own = toTile(pixels);
    dirtyTile_ = dirtyTile_.unionWith(own);
    // What was drawn into the tile alone leaves the cache as it is.
    const int32_t position = view ? views_.indexOf(const_cast<CSectorView*>(view)) : -1;
    if (position < cachedCount_) {
        dirtyCache_ = dirtyCache_.unionWith(own);
    }
}

/// The part of the cache that is to be drawn. Where the lowest dynamic view is another one than the last time, that
/// holds the views that go from the cache into the tile, or back. The composed picture is the same either way.
CIntRect CSector::takeDirtyCache(int32_t boundary) {
    for (int32_t i = std::min(boundary, cachedCount_); i < std::max(boundary, cachedCount_); ++i) {
        dirtyCache_ = dirtyCache_.unionWith(toTile(pixelsOf(views_[i]->visibleRect())));
    }
    cachedCount_ = boundary;
    return std::exchange(dirtyCache_, CIntRect());
}

CError* CSector::drawView(CSectorView& view, CLinearBitmap& target, CLinearBitmap& scratch,
                          const CIntRect& clip) const {
    const CViewRect& whole = view.wholeRect();
    const double opacity = view.effectiveOpacity();
    if (!view.isShown() || whole.width <= kLeastSize || whole.height <= kLeastSize || opacity < kLeastOpacity) {
        return nullptr;
    }
    CSectorTarget sector{&target, column_ * kSize, row_ * kSize,
                         clip.intersection(toTile(pixelsOf(view.visibleRect())))};
    if (sector.clip.isEmpty()) {
        return nullptr;
    }
    if (opacity >= kFullOpacity) {
        return view.drawInSector(sector);
    }
    scratch.copyRectFrom(target, sector.clip);
    sector.bitmap = &scratch;
    CError* error = view.drawInSector(sector);
    if (!error) {
        target.blendFrom(scratch, opacity, sector.clip);
    }
    return error;
}

}  // namespace tarv
