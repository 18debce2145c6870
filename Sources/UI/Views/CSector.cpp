#include "UI/Views/CSector.h"

#include <algorithm>
#include <cmath>

namespace tarv {

namespace {

// From these on a view is drawn as it is, and below them not at all.
constexpr double kFullOpacity = 0.999;
constexpr double kLeastOpacity = 0.001;
constexpr double kLeastSize = 0.1;

}  // namespace

void CSector::layOver(CLinearBitmap& tiles, CLinearBitmap& caches, int32_t index) {
    tile_.layOver(tiles, index * kSize, kSize);
    cache_.layOver(caches, index * kSize, kSize);
    invalidate(rect(), nullptr);
}

void CSector::insert(CSectorView& view) {
    int32_t at = views_.count();
    while (at > 0 && views_[at - 1]->stackingNumber() > view.stackingNumber()) {
        --at;
    }
    views_.insert(at, &view);
}

void CSector::remove(const CSectorView& view) {
    const int32_t index = views_.indexOf(const_cast<CSectorView*>(&view));
    if (index >= 0) {
        views_.removeAt(index);
    }
    if (boundary_ == &view) {
        // Another view, perhaps at the same address, must not pass for it.
        boundary_ = nullptr;
        invalidate(rect(), nullptr);
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

void CSector::invalidate(const CViewRect& rect, const CSectorView* view) {
    const CViewRect own = rect.intersection(this->rect());
    dirtyTile_ = dirtyTile_.unionWith(own);
    // What lies in the tile alone leaves the cache as it is. A view that has left may have been in either.
    const int32_t position = view ? views_.indexOf(const_cast<CSectorView*>(view)) : -1;
    if (position < 0 || position < lowestDynamic()) {
        dirtyCache_ = dirtyCache_.unionWith(own);
    }
}

CIntRect CSector::toTile(const CViewRect& rect) const {
    const auto within = [](double position, int32_t cell) {
        return std::clamp(static_cast<int32_t>(std::lround(position)) - cell * kSize, 0, kSize);
    };
    if (rect.isEmpty()) {
        return {};
    }
    return {within(rect.x, column_), within(rect.y, row_), within(rect.right(), column_), within(rect.bottom(), row_)};
}

/// The part of the cache that is to be drawn; all of it if other views belong into it than the last time.
CIntRect CSector::takeDirtyCache(int32_t boundary) {
    const CSectorView* first = boundary < views_.count() ? views_[boundary] : nullptr;
    CIntRect dirty = toTile(dirtyCache_);
    if (first != boundary_) {
        boundary_ = first;
        dirty = {0, 0, kSize, kSize};
    }
    dirtyCache_ = {};
    return dirty;
}

CIntRect CSector::takeDirtyTile(const CIntRect& cache) {
    CIntRect dirty = toTile(dirtyTile_);
    if (!cache.isEmpty()) {
        dirty = dirty.isEmpty() ? cache
                                : CIntRect{std::min(dirty.left, cache.left), std::min(dirty.top, cache.top),
                                           std::max(dirty.right, cache.right), std::max(dirty.bottom, cache.bottom)};
    }
    dirtyTile_ = {};
    return dirty;
}

CError* CSector::drawView(CSectorView& view, CLinearBitmap& target, CLinearBitmap& scratch,
                          const CIntRect& clip) const {
    const CViewRect& whole = view.wholeRect();
    const double opacity = view.effectiveOpacity();
    if (!view.isShown() || whole.width <= kLeastSize || whole.height <= kLeastSize || opacity < kLeastOpacity) {
        return nullptr;
    }
    CSectorTarget sector{&target, column_ * kSize, row_ * kSize, clip.intersection(toTile(view.visibleRect()))};
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
