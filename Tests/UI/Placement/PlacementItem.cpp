// Sizes by the rules of placement: from the content up.

#include "Tests/UI/Placement/PlacementItem.h"

#include <algorithm>

namespace tarv {

float lead(const CViewBorders& b, int axis) {
    return static_cast<float>(axis == kH ? b.left : b.top);
}
float trail(const CViewBorders& b, int axis) {
    return static_cast<float>(axis == kH ? b.right : b.bottom);
}
float both(const CViewBorders& b, int axis) {
    return lead(b, axis) + trail(b, axis);
}
bool isDocked(const CItem& item) {
    return item.isShown && item.p->placement >= CViewPlacement::Full && item.p->placement <= CViewPlacement::Right;
}
bool isAtEnd(const CItem& item, int axis) {
    const CViewPlacement low = axis == kH ? CViewPlacement::Left : CViewPlacement::Top;
    const CViewPlacement high = axis == kH ? CViewPlacement::Right : CViewPlacement::Bottom;
    return item.p->placement == low || item.p->placement == high;
}
float scroller(const CItem& item, int axis) {
    if (!item.p->isScrollable) {
        return 0.0f;
    }
    return static_cast<float>(axis == kH ? item.p->scrollerWidth : item.p->scrollerHeight);
}

std::vector<std::vector<CItem*>> rowsOf(const CItem& item) {
    std::vector<std::vector<CItem*>> rows;
    bool isOpen = false;
    for (CItem* child : item.children) {
        if (child->p->placement != CViewPlacement::Inline) {
            continue;
        }
        isOpen = isOpen && !child->p->isNewRow;
        if (child->isShown) {
            if (!isOpen) {
                rows.emplace_back();
                isOpen = true;
            }
            rows.back().push_back(child);
        }
    }
    return rows;
}

namespace {

float extentOf(const CItem& item, int axis, float base) {
    return sizeOf(item, axis, base) + both(item.p->outer, axis);
}

/// Size of the content, of children that need no base.
float contentOf(const CItem& item, int axis) {
    const double fixed = axis == kH ? item.p->compactWidth : item.p->compactHeight;
    if (fixed >= 0.0) {
        return static_cast<float>(fixed);
    }
    const auto rows = rowsOf(item);
    const int main = item.p->isVertical ? kV : kH;
    float inlineSize = 0.0f;
    for (const auto& row : rows) {
        float length = 0.0f;
        float thickness = 0.0f;
        for (size_t i = 0; i < row.size(); ++i) {
            const float extent = extentOf(*row[i], axis, 0.0f);
            length += extent;
            thickness = i == 0 ? extent : std::max(thickness, extent);
        }
        if (axis == main) {
            inlineSize = &row == &rows.front() ? length : std::max(inlineSize, length);
        } else {
            inlineSize += thickness;
        }
    }
    const CItem* last = nullptr;
    for (const CItem* child : item.children) {
        if (rows.empty() && isDocked(*child)) {
            last = child;
        }
    }
    bool hasSum = !rows.empty();
    float sum = inlineSize;
    std::vector<float> terms;
    for (const CItem* child : item.children) {
        if (!isDocked(*child)) {
            continue;
        }
        const bool isAcross = isAtEnd(*child, 1 - axis);
        if (!isAcross || child == last) {
            sum += extentOf(*child, axis, 0.0f);
            hasSum = true;
        }
        if (isAcross) {
            terms.push_back(extentOf(*child, axis, 0.0f));
        }
    }
    if (hasSum) {
        terms.push_back(sum);
    }
    return terms.empty() ? 0.0f : *std::max_element(terms.begin(), terms.end());
}

float plainSize(const CItem& item, const CViewLength& length, int axis, float base) {
    switch (length.mode) {
        case CViewLengthMode::Fixed:
            return static_cast<float>(length.value);
        case CViewLengthMode::Compact:
            return contentOf(item, axis) + both(item.p->inner, axis) + scroller(item, axis);
        case CViewLengthMode::Percentage:
            return base * static_cast<float>(length.value) - both(item.p->outer, axis);
        case CViewLengthMode::Balanced: {
            if (!item.parent) {
                return 0.0f;
            }
            int count = 0;
            for (const CItem* sibling : item.parent->children) {
                count += sibling->isShown && sibling->p->placement <= CViewPlacement::Right;
            }
            return (count > 0 ? base / static_cast<float>(count) : base) - both(item.p->outer, axis);
        }
    }
    return 0.0f;
}

}  // namespace

float sizeOf(const CItem& item, int axis, float base) {
    const CViewLength& length = axis == kH ? item.p->width : item.p->height;
    const CViewLength& least = axis == kH ? item.p->minWidth : item.p->minHeight;
    return std::max(plainSize(item, length, axis, base), plainSize(item, least, axis, base));
}

}  // namespace tarv
