#include "UI/Views/CSectorMap.h"

#include <algorithm>
#include <cmath>

namespace tarv {

namespace {

int32_t cellsOf(double length) {
    const auto pixels = static_cast<int32_t>(std::lround(std::max(length, 0.0)));
    return pixels > 0 ? (pixels >> CSector::kBits) + 1 : 0;
}

int32_t cellOf(double position, int32_t count) {
    return std::clamp(static_cast<int32_t>(std::lround(position)) >> CSector::kBits, 0, count - 1);
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

CError* CSectorMap::resize(double width, double height) {
    const int32_t columns = cellsOf(height) == 0 ? 0 : cellsOf(width);
    const int32_t rows = columns == 0 ? 0 : cellsOf(height);
    const int32_t count = columns * rows;
    CError* error = tiles_.resize(count == 0 ? 0 : CSector::kSize, count * CSector::kSize);
    if (!error) {
        error = caches_.resize(count == 0 ? 0 : CSector::kSize, count * CSector::kSize);
    }
    if (!error && scratch_.width() == 0) {
        error = scratch_.resize(CSector::kSize, CSector::kSize);
    }
    if (error) {
        freeSectors();
        TARV_TRY(error);
    }
    CArray<CSector*, 4> kept = sectors_;
    sectors_.clear();
    dirty_.clear();
    for (int32_t i = 0; i < count; ++i) {
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
    return nullptr;
}

CSectorMap::CSpan CSectorMap::spanOf(const CViewRect& rect) const {
    // What lies beside the grid has no part of it.
    const CViewRect grid{0.0, 0.0, static_cast<double>(columns_) * CSector::kSize,
                         static_cast<double>(rows_) * CSector::kSize};
    if (rect.intersection(grid).isEmpty()) {
        return {};
    }
    return {cellOf(rect.x, columns_), cellOf(rect.y, rows_), cellOf(rect.x - 1.0 + rect.width, columns_),
            cellOf(rect.y - 1.0 + rect.height, rows_)};
}

void CSectorMap::markDirty(int32_t index, const CViewRect& rect, const CSectorView* view) {
    CSector& sector = *sectors_[index];
    sector.invalidate(rect, view);
    if (!sector.isListed && sector.isDirty()) {
        sector.isListed = true;
        dirty_.append(index);
    }
}

void CSectorMap::updateView(CSectorView& view, const CViewRect& oldRect, const CViewRect& newRect) {
    const CSpan former = spanOf(oldRect);
    const CSpan span = spanOf(newRect);
    forEachIn(former, [&](int32_t index) { markDirty(index, oldRect, &view); });
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
            markDirty(index, oldRect, nullptr);
        }
    });
}

void CSectorMap::removeView(CSectorView& view, const CViewRect& rect) {
    updateView(view, rect, {});
    // The view is about to be destroyed: no tile may keep it, also where the grid has changed meanwhile.
    for (int32_t i = 0; i < sectors_.count(); ++i) {
        if (sectors_[i]->holds(view)) {
            sectors_[i]->remove(view);
            markDirty(i, sectors_[i]->rect(), nullptr);
        }
    }
}

void CSectorMap::invalidate(const CViewRect& rect, const CSectorView* view) {
    forEachIn(spanOf(rect), [&](int32_t index) { markDirty(index, rect, view); });
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
