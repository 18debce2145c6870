#include "UI/Views/CSectorMap.h"

#include <algorithm>
#include <cmath>

namespace tarv {

namespace {

// More than any screen has; the bitmaps refuse what they can't hold.
constexpr double kMaxLength = 1e6;

int32_t cellsOf(double length) {
    const auto pixels = static_cast<int32_t>(std::lround(std::clamp(length, 0.0, kMaxLength)));
    return pixels > 0 ? (pixels >> CSector::kBits) + 1 : 0;
}

}  // namespace

CSectorMap::~CSectorMap() {
    freeSectors();
}

void CSectorMap::freeSectors() {
    for (CSector* sector : sectors_) {
        delete sector;
    }
    sectors_.clear();
    dirty_.clear();
    columns_ = 0;
    rows_ = 0;
}

CError* CSectorMap::resizeSheets(int32_t count) {
    const int32_t width = count == 0 ? 0 : CSector::kSize;
    TARV_TRY(tiles_.resize(width, count * CSector::kSize));
    TARV_TRY(caches_.resize(width, count * CSector::kSize));
    if (scratch_.width() == 0) {
        TARV_TRY(scratch_.resize(CSector::kSize, CSector::kSize));
    }
    return nullptr;
}

CError* CSectorMap::resize(double width, double height) {
    const int32_t columns = cellsOf(height) == 0 ? 0 : cellsOf(width);
    const int32_t rows = columns == 0 ? 0 : cellsOf(height);
    if (CError* error = resizeSheets(columns * rows)) {
        freeSectors();
        TARV_TRY(error);
    }
    CArray<CSector*, 4> kept = sectors_;
    sectors_.clear();
    dirty_.clear();
    for (int32_t i = 0; i < columns * rows; ++i) {
        const int32_t column = i % columns;
        const int32_t row = i / columns;
        CSector* sector = nullptr;
        if (column < columns_ && row < rows_) {
            std::swap(sector, kept[row * columns_ + column]);
        } else {
            sector = new CSector(column, row);
        }
        sector->layOver(tiles_, caches_, i);
        sectors_.append(sector);
        sector->isListed = true;
        dirty_.append(i);
    }
    for (CSector* sector : kept) {
        delete sector;
    }
    columns_ = columns;
    rows_ = rows;
    for (CSectorView* view : views_) {
        joinSectors(*view);
    }
    return nullptr;
}

/// Enters a view into the tiles that it touches and that lack it.
void CSectorMap::joinSectors(CSectorView& view) {
    forEachIn(spanOf(CSector::pixelsOf(view.visibleRect())), [&](int32_t index) {
        if (!sectors_[index]->holds(view)) {
            sectors_[index]->insert(view);
        }
    });
}

CSectorMap::CSpan CSectorMap::spanOf(const CIntRect& pixels) const {
    const CIntRect seen = pixels.intersection({0, 0, columns_ << CSector::kBits, rows_ << CSector::kBits});
    if (seen.isEmpty()) {
        return {};
    }
    return {seen.left >> CSector::kBits, seen.top >> CSector::kBits, (seen.right - 1) >> CSector::kBits,
            (seen.bottom - 1) >> CSector::kBits};
}

void CSectorMap::markDirty(int32_t index, const CIntRect& pixels, const CSectorView* view) {
    sectors_[index]->invalidate(pixels, view);
    listDirty(index);
}

/// Enters a tile that is dirty into the list, once.
void CSectorMap::listDirty(int32_t index) {
    CSector& sector = *sectors_[index];
    if (!sector.isListed && sector.isDirty()) {
        sector.isListed = true;
        dirty_.append(index);
    }
}

void CSectorMap::updateView(CSectorView& view, const CViewRect& oldRect, const CViewRect& newRect) {
    if (oldRect.isEmpty() && !newRect.isEmpty()) {
        views_.append(&view);
    } else if (!oldRect.isEmpty() && newRect.isEmpty() && views_.indexOf(&view) >= 0) {
        views_.removeAt(views_.indexOf(&view));
    }
    const CIntRect oldPixels = CSector::pixelsOf(oldRect);
    const CSpan former = spanOf(oldPixels);
    const CSpan span = spanOf(CSector::pixelsOf(newRect));
    forEachIn(former, [&](int32_t index) { markDirty(index, oldPixels, &view); });
    if (former == span) {
        return;
    }
    forEachIn(span, [&](int32_t index) {
        if (!former.holds(index % columns_, index / columns_)) {
            sectors_[index]->insert(view);
        }
    });
    forEachIn(former, [&](int32_t index) {
        if (!span.holds(index % columns_, index / columns_)) {
            sectors_[index]->remove(view);
            listDirty(index);
        }
    });
}

void CSectorMap::removeView(CSectorView& view, const CViewRect& rect) {
    updateView(view, rect, {});
    // The view is about to be destroyed: nothing may keep it, also where the rectangle was not its last.
    if (const int32_t at = views_.indexOf(&view); at >= 0) {
        views_.removeAt(at);
    }
    for (int32_t i = 0; i < sectors_.count(); ++i) {
        if (sectors_[i]->holds(view)) {
            sectors_[i]->remove(view);
            markDirty(i, sectors_[i]->bounds(), nullptr);
        }
    }
}

void CSectorMap::invalidate(const CViewRect& rect, const CSectorView* view) {
    const CIntRect pixels = CSector::pixelsOf(rect);
    forEachIn(spanOf(pixels), [&](int32_t index) { markDirty(index, pixels, view); });
}

CSectorView* CSectorMap::viewAt(double x, double y, const CSectorView* below) const {
    const auto px = static_cast<int32_t>(std::lround(x));
    const auto py = static_cast<int32_t>(std::lround(y));
    const int32_t column = px >> CSector::kBits;
    const int32_t row = py >> CSector::kBits;
    if (px < 0 || py < 0 || column >= columns_ || row >= rows_) {
        return nullptr;
    }
    const CArray<CSectorView*, 8>& views = sector(column, row).views();
    int32_t i = views.count() - 1;
    if (below) {
        i = views.indexOf(const_cast<CSectorView*>(below)) - 1;
    }
    for (; i >= 0; --i) {
        CSectorView* view = views[i];
        if (view->isShown() && !view->isDecorative() && view->visibleRect().holds(px, py)) {
            return view;
        }
    }
    return nullptr;
}

}  // namespace tarv
