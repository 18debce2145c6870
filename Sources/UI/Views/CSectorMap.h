#pragma once

#include "UI/Drawing/CLinearBitmapDC.h"
#include "UI/Views/CSector.h"

namespace tarv {

/// The tiles of one window: which views touch them, what of them is dirty, and their pictures. A view joins at its
/// first rectangle that is not empty and leaves with an empty one. A view keeps its stacking number meanwhile. Thread:
/// that of the window. Only resize, and what gets more views than ever, allocate.
class CSectorMap : public CHeapObject {
public:
    CSectorMap() = default;
    ~CSectorMap();
    CSectorMap(const CSectorMap&) = delete;
    CSectorMap& operator=(const CSectorMap&) = delete;

    /// For a window of that many pixels, rounded: (width >> 7) + 1 columns, and rows likewise. New tiles get the views
    /// that touch them; all is dirty. A size of 0 leaves no tile. On failure there are none, until a resize succeeds.
    [[nodiscard]] CError* resize(double width, double height);
    int32_t columns() const { return columns_; }
    int32_t rows() const { return rows_; }
    bool isEmpty() const { return sectors_.isEmpty(); }
    const CSector& sector(int32_t column, int32_t row) const { return *sectors_[row * columns_ + column]; }

    /// The visible rectangle of a view has changed: the old place is dirty, and the view joins and leaves tiles. Its
    /// new place becomes dirty by invalidate.
    void updateView(CSectorView& view, const CViewRect& oldRect, const CViewRect& newRect);
    /// A view goes; `rect` is its last visible rectangle.
    void removeView(CSectorView& view, const CViewRect& rect);
    /// What lies in a rectangle is to be drawn anew, for the sake of one view, or of all with null.
    void invalidate(const CViewRect& rect, const CSectorView* view);

    /// The topmost view at a point of the window, rounded, that is shown and not decorative; with `below`, the next one
    /// under that view. Null for none.
    CSectorView* viewAt(double x, double y, const CSectorView* below = nullptr) const;

    /// Calls `visit(view)` for the views of all tiles that a rectangle touches, from the lowest up in each tile; for
    /// one that touches several of them more than once.
    template <class Visit>
    void forEachView(const CIntRect& rect, Visit&& visit) const;

    /// What drawing has cost since the last reset: 500 for each picture, and its pixels.
    int64_t load() const { return load_; }
    void addLoad(int64_t load) { load_ += load; }
    void resetLoad() { load_ = 0; }

    /// Something is to be drawn.
    bool isDirty() const { return !dirty_.isEmpty(); }
    /// Draws the dirty tiles, and calls `show(column, row, rect, surface, surfaceRow)` for each that changed: `rect` in
    /// pixels of the tile, whose rows begin at `surfaceRow` of the surface. What becomes dirty meanwhile, and the part
    /// of a view that failed, waits for the next call.
    template <class Show, class Report>
    void render(Show&& show, Report&& report);
    /// Calls `show` for each tile that a rectangle of the window touches, with what it touches.
    template <class Show>
    void present(const CIntRect& rect, Show&& show) const;

private:
    /// Tiles from first to last, without those; empty if first is behind last.
    struct CSpan {
        int32_t firstColumn = 0;
        int32_t firstRow = 0;
        int32_t lastColumn = -1;
        int32_t lastRow = -1;

        bool holds(int32_t column, int32_t row) const {
            return column >= firstColumn && column <= lastColumn && row >= firstRow && row <= lastRow;
        }
        bool operator==(const CSpan&) const = default;
    };
    CSpan spanOf(const CIntRect& pixels) const;
    template <class Visit>
    void forEachIn(const CSpan& span, Visit&& visit) {
        for (int32_t row = span.firstRow; row <= span.lastRow; ++row) {
            for (int32_t column = span.firstColumn; column <= span.lastColumn; ++column) {
                visit(row * columns_ + column);
            }
        }
    }
    void markDirty(int32_t index, const CIntRect& pixels, const CSectorView* view);
    void listDirty(int32_t index);
    [[nodiscard]] CError* resizeSheets(int32_t count);
    void joinSectors(CSectorView& view);
    void freeSectors();

    int32_t columns_ = 0;
    int32_t rows_ = 0;
    int64_t load_ = 0;
    CArray<CSector*, 4> sectors_;
    // All that have a rectangle, also beside the grid, in the order of their joining.
    CArray<CSectorView*, 16> views_;
    CArray<int32_t, 16> dirty_;
    CLinearBitmapDC tiles_;
    CLinearBitmap caches_;
    CLinearBitmap scratch_;
};

template <class Show, class Report>
void CSectorMap::render(Show&& show, Report&& report) {
    const int32_t count = dirty_.count();
    for (int32_t i = 0; i < count; ++i) {
        const int32_t index = dirty_[i];
        CSector& sector = *sectors_[index];
        CIntRect drawn;
        sector.isListed = false;
        sector.draw(scratch_, drawn, report);
        listDirty(index);
        if (!drawn.isEmpty()) {
            show(sector.column(), sector.row(), drawn, *tiles_.surface(), index * CSector::kSize);
        }
    }
    for (int32_t i = count; i < dirty_.count(); ++i) {
        dirty_[i - count] = dirty_[i];
    }
    dirty_.resize(dirty_.count() - count);
}

template <class Visit>
void CSectorMap::forEachView(const CIntRect& rect, Visit&& visit) const {
    const CSpan span = spanOf(rect);
    for (int32_t row = span.firstRow; row <= span.lastRow; ++row) {
        for (int32_t column = span.firstColumn; column <= span.lastColumn; ++column) {
            for (CSectorView* view : sector(column, row).views()) {
                visit(*view);
            }
        }
    }
}

template <class Show>
void CSectorMap::present(const CIntRect& rect, Show&& show) const {
    for (int32_t i = 0; i < sectors_.count(); ++i) {
        const CSector& sector = *sectors_[i];
        const CIntRect seen = rect.intersection(sector.bounds());
        if (!seen.isEmpty()) {
            show(sector.column(), sector.row(), seen.moved(-sector.bounds().left, -sector.bounds().top),
                 *tiles_.surface(), i * CSector::kSize);
        }
    }
}

}  // namespace tarv
