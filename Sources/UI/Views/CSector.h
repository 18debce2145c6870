#pragma once

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
    CViewRect rect() const {
        return {static_cast<double>(column_) * kSize, static_cast<double>(row_) * kSize, kSize, kSize};
    }

    /// Lets the composed picture and the cache lie in rows of two sheets; what they held is dirty.
    void layOver(CLinearBitmap& tiles, CLinearBitmap& caches, int32_t index);
    const CLinearBitmap& tile() const { return tile_; }

    void insert(CSectorView& view);
    void remove(const CSectorView& view);
    bool holds(const CSectorView& view) const;
    /// From the lowest up; those of one number in the order of their joining.
    const CArray<CSectorView*, 8>& views() const { return views_; }

    /// A part of the window that is to be drawn anew, for the sake of one view, or of all with null.
    void invalidate(const CViewRect& rect, const CSectorView* view);
    bool isDirty() const { return !dirtyTile_.isEmpty() || !dirtyCache_.isEmpty(); }
    /// Draws what is dirty. `drawn` is the part of the tile that changed, in its own pixels. Failures of views are
    /// handed to `report`, which owns them, and leave the view out.
    template <class Report>
    void draw(CLinearBitmap& scratch, CIntRect& drawn, Report&& report);

private:
    int32_t lowestDynamic() const;
    CIntRect toTile(const CViewRect& rect) const;
    [[nodiscard]] CError* drawView(CSectorView& view, CLinearBitmap& target, CLinearBitmap& scratch,
                                   const CIntRect& clip) const;
    CIntRect takeDirtyCache(int32_t boundary);
    CIntRect takeDirtyTile(const CIntRect& cache);

    int32_t column_;
    int32_t row_;
    CArray<CSectorView*, 8> views_;
    CTileBitmap tile_;
    CTileBitmap cache_;
    CViewRect dirtyTile_;
    CViewRect dirtyCache_;
    // The view from which on everything is drawn into the tile; null: the cache holds all.
    const CSectorView* boundary_ = nullptr;
};

template <class Report>
void CSector::draw(CLinearBitmap& scratch, CIntRect& drawn, Report&& report) {
    const int32_t boundary = lowestDynamic();
    const CIntRect cacheRect = takeDirtyCache(boundary);
    if (!cacheRect.isEmpty()) {
        cache_.clearRect(cacheRect);
        for (int32_t i = 0; i < boundary; ++i) {
            if (CError* error = drawView(*views_[i], cache_, scratch, cacheRect)) {
                report(*views_[i], error);
            }
        }
    }
    drawn = takeDirtyTile(cacheRect);
    if (drawn.isEmpty()) {
        return;
    }
    tile_.copyRectFrom(cache_, drawn);
    for (int32_t i = boundary; i < views_.count(); ++i) {
        if (CError* error = drawView(*views_[i], tile_, scratch, drawn)) {
            report(*views_[i], error);
        }
    }
}

}  // namespace tarv
