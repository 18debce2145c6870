#pragma once

#include <utility>

#include "UI/Drawing/CTileBitmap.h"
#include "UI/Views/CSectorView.h"

namespace tarv {

/// A square tile of a window: the views that touch it, in stacking order, a cache of the static ones at the bottom, and
/// the composed picture.
class CSector : public CHeapObject {
public:
    static constexpr int32_t kBits = 7;
    static constexpr int32_t kSize = 1 << kBits;

    CSector(int32_t column, int32_t row) : column_(column), row_(row) {}
    /// In the map's list of dirty tiles; the map's own.
    bool isListed = false;
    int32_t column() const { return column_; }
    int32_t row() const { return row_; }
    /// In pixels of the window.
    CIntRect bounds() const { return CIntRect{0, 0, kSize, kSize}.moved(column_ * kSize, row_ * kSize); }
    /// The whole pixels of a rectangle: each edge rounded half away from zero.
    static CIntRect pixelsOf(const CViewRect& rect);

    /// Lets the composed picture and the cache lie in rows of two sheets; what they held is dirty.
    void layOver(CLinearBitmap& tiles, CLinearBitmap& caches, int32_t index);
    const CLinearBitmap& tile() const { return tile_; }

    void insert(CSectorView& view);
    void remove(const CSectorView& view);
    bool holds(const CSectorView& view) const;
    /// From the lowest up; those of one number in the order of their joining.
    const CArray<CSectorView*, 8>& views() const { return views_; }

    /// Pixels of the window that are to be drawn anew, for the sake of one view, or of all with null.
    void invalidate(const CIntRect& pixels, const CSectorView* view);
    bool isDirty() const { return !dirtyTile_.isEmpty() || !dirtyCache_.isEmpty(); }
    /// Draws what is dirty. `drawn` is the part of the tile that changed, in its own pixels. Failures of views are
    /// handed to `report`, which owns them, and leave the view out; its part stays dirty. What is invalidated meanwhile
    /// stays dirty, too.
    template <class Report>
    void draw(CLinearBitmap& scratch, CIntRect& drawn, Report&& report);

private:
    int32_t lowestDynamic() const;
    CIntRect toTile(const CIntRect& pixels) const;
    [[nodiscard]] CError* drawView(CSectorView& view, CLinearBitmap& target, CLinearBitmap& scratch,
                                   const CIntRect& clip) const;
    CIntRect takeDirtyCache(int32_t boundary);
    template <class Report>
    void drawViews(int32_t first, int32_t last, CLinearBitmap& target, CLinearBitmap& scratch, const CIntRect& clip,
                   Report& report);

    int32_t column_;
    int32_t row_;
    CArray<CSectorView*, 8> views_;
    CTileBitmap tile_;
    CTileBitmap cache_;
    // In pixels of the tile.
    CIntRect dirtyTile_;
    CIntRect dirtyCache_;
    // So many of the lowest views are in the cache; those above are drawn into the tile.
    int32_t cachedCount_ = 0;
};

template <class Report>
void CSector::drawViews(int32_t first, int32_t last, CLinearBitmap& target, CLinearBitmap& scratch,
                        const CIntRect& clip, Report& report) {
    for (int32_t i = first; i < last; ++i) {
        if (CError* error = drawView(*views_[i], target, scratch, clip)) {
            invalidate(clip.moved(column_ * kSize, row_ * kSize), views_[i]);
            report(*views_[i], error);
        }
    }
}

template <class Report>
void CSector::draw(CLinearBitmap& scratch, CIntRect& drawn, Report&& report) {
    const int32_t boundary = lowestDynamic();
    const CIntRect cacheRect = takeDirtyCache(boundary);
    drawn = std::exchange(dirtyTile_, CIntRect());
    if (!cacheRect.isEmpty()) {
        cache_.clearRect(cacheRect);
        drawViews(0, boundary, cache_, scratch, cacheRect, report);
    }
    if (!drawn.isEmpty()) {
        tile_.copyRectFrom(cache_, drawn);
        drawViews(boundary, views_.count(), tile_, scratch, drawn, report);
    }
}

}  // namespace tarv
