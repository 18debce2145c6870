// The rules of placement once more, as a recursion from the root down: places from the
// region down, then what the ancestors leave visible.

#include "Tests/UI/Placement/PlacementReference.h"

#include <algorithm>
#include <cmath>

#include "Tests/UI/Placement/PlacementItem.h"

namespace tarv {

namespace {

struct CSpace {
    float pos[2];
    float size[2];
};

CSpace regionOf(const CItem& item, bool isInner) {
    CSpace space{};
    for (int axis : {kH, kV}) {
        float size = item.size[axis];
        float pos = item.pos[axis];
        if (item.p->isScrollable) {
            const float offset = static_cast<float>(axis == kH ? item.p->offsetX : item.p->offsetY);
            const float ratio = static_cast<float>(axis == kH ? item.p->ratioX : item.p->ratioY);
            size -= scroller(item, axis);
            pos -= offset * size / ratio;
            size /= ratio;
        }
        if (isInner) {
            pos += lead(item.p->inner, axis);
            size = size - lead(item.p->inner, axis) - trail(item.p->inner, axis);
        }
        space.pos[axis] = pos;
        space.size[axis] = size;
    }
    return space;
}

float rounded(CItem& item, float value) {
    item.halfDistance = std::min(item.halfDistance, std::abs(std::abs(value - std::floor(value)) - 0.5));
    return std::round(value);
}

void stand(CItem& item, int axis, float unrounded) {
    item.pos[axis] = rounded(item, unrounded);
}

void placeChildren(CItem& item);

/// The share of free space that an alignment gives.
float aligned(float space, int32_t alignment) {
    return alignment == -1 ? 0.0f : alignment == 0 ? space * 0.5f : space;
}

/// Leaves the space for the inline children in `run`.
void placeDocked(CItem& item, CSpace& run) {
    float base[2] = {0, 0};
    const CItem* previous = nullptr;
    for (CItem* child : item.children) {
        if (!isDocked(*child)) {
            continue;
        }
        const CPlacing& p = *child->p;
        if (!previous || p.placement == CViewPlacement::Full || previous->p->placement != p.placement ||
            previous->p->width.mode != p.width.mode || previous->p->height.mode != p.height.mode) {
            base[kH] = run.size[kH];
            base[kV] = run.size[kV];
        }
        for (int axis : {kH, kV}) {
            child->size[axis] = sizeOf(*child, axis, base[axis]);
            const float extent = child->size[axis] + both(p.outer, axis);
            const CViewPlacement low = axis == kH ? CViewPlacement::Left : CViewPlacement::Top;
            float extra = 0.0f;
            if (!isAtEnd(*child, axis)) {
                extra = aligned(run.size[axis] - extent, axis == kH ? p.alignmentH : p.alignmentV);
            } else if (p.placement != low) {
                extra = run.size[axis] - rounded(*child, extent);
            }
            stand(*child, axis, run.pos[axis] + lead(p.outer, axis) + extra);
            if (isAtEnd(*child, axis)) {
                run.size[axis] -= extent;
                if (p.placement == low) {
                    run.pos[axis] += extent;
                }
            }
        }
        previous = child;
    }
}

void placeInline(CItem& item, CSpace run) {
    const auto rows = rowsOf(item);
    const int main = item.p->isVertical ? kV : kH;
    const int cross = 1 - main;
    const float base[2] = {run.size[kH], run.size[kV]};
    std::vector<float> lengths;
    std::vector<float> thicknesses;
    float allThickness = 0.0f;
    for (const auto& row : rows) {
        float length = 0.0f;
        float thickness = -1e20f;
        for (CItem* child : row) {
            child->size[kH] = sizeOf(*child, kH, base[kH]);
            child->size[kV] = sizeOf(*child, kV, base[kV]);
            length += child->size[main] + both(child->p->outer, main);
            thickness = std::max(thickness, child->size[cross] + both(child->p->outer, cross));
        }
        lengths.push_back(length);
        thicknesses.push_back(thickness);
        allThickness += thickness;
    }
    const int32_t crossAlignment = cross == kH ? item.p->inlineAlignmentH : item.p->inlineAlignmentV;
    const int32_t mainAlignment = main == kH ? item.p->inlineAlignmentH : item.p->inlineAlignmentV;
    const float crossFree = aligned(run.size[cross] - allThickness, crossAlignment);
    run.pos[cross] += crossAlignment == 0 && !rows.empty() ? rounded(item, crossFree) : crossFree;
    for (size_t r = 0; r < rows.size(); ++r) {
        float at = run.pos[main] + aligned(run.size[main] - lengths[r], mainAlignment);
        for (CItem* child : rows[r]) {
            const CViewBorders& outer = child->p->outer;
            stand(*child, main, at + lead(outer, main));
            at = child->pos[main] + child->size[main] + trail(outer, main);
            const float free = thicknesses[r] - (child->size[cross] + both(outer, cross));
            const int32_t own = cross == kH ? child->p->alignmentH : child->p->alignmentV;
            stand(*child, cross, run.pos[cross] + lead(outer, cross) + aligned(free, own));
        }
        run.pos[cross] += thicknesses[r];
        run.size[cross] -= thicknesses[r];
    }
}

void placeFloat(CItem& item, CItem& child, const CItem& root) {
    const CViewPlacement placement = child.p->placement;
    const bool isScroller = placement >= CViewPlacement::ScrollerH;
    CSpace space = regionOf(item, false);
    if (placement == CViewPlacement::WindowOverlay) {
        space = {{root.pos[0], root.pos[1]}, {root.size[0], root.size[1]}};
    } else if (isScroller) {
        space = {{item.pos[0], item.pos[1]}, {item.size[0], item.size[1]}};
    }
    for (int axis : {kH, kV}) {
        const CViewPlacement along = axis == kH ? CViewPlacement::ScrollerH : CViewPlacement::ScrollerV;
        if (placement == along) {
            space.size[axis] -= scroller(item, axis);
        }
        child.size[axis] = sizeOf(child, axis, space.size[axis]);
        if (!isScroller) {
            stand(child, axis, space.pos[axis] + lead(child.p->outer, axis));
        } else {
            child.pos[axis] =
                placement == along ? space.pos[axis] : space.pos[axis] + space.size[axis] - child.size[axis];
        }
    }
}

CItem& rootOf(CItem& item) {
    return item.parent ? rootOf(*item.parent) : item;
}

void placeChildren(CItem& item) {
    CSpace run = regionOf(item, true);
    placeDocked(item, run);
    placeInline(item, run);
    for (CItem* child : item.children) {
        if (child->isShown && child->p->placement >= CViewPlacement::Overlay &&
            child->p->placement != CViewPlacement::Match) {
            placeFloat(item, *child, rootOf(item));
        }
    }
    for (CItem* child : item.children) {
        if (child->isShown && child->p->placement != CViewPlacement::Match) {
            placeChildren(*child);
        }
    }
}

CViewRect grown(const CViewRect& rect, const CViewBorders& spread) {
    if (rect.isEmpty()) {
        return rect;
    }
    return {rect.x - spread.left, rect.y - spread.top, rect.width + spread.left + spread.right,
            rect.height + spread.top + spread.bottom};
}

CViewRect boxOf(const CItem& item) {
    return {item.pos[0], item.pos[1], item.size[0], item.size[1]};
}

/// What the ancestors from `parent` up leave of a rectangle.
CViewRect clipped(const CItem& view, int32_t level, const CViewRect& rect, const CItem& root) {
    if (!view.parent) {
        return rect;
    }
    const CItem& parent = *view.parent;
    if (view.p->placement == CViewPlacement::WindowOverlay) {
        return rect.intersection(root.visible);
    }
    CViewRect left = rect;
    if (level <= 0) {
        if (!parent.isShown) {
            return {};
        }
        CViewRect frame = parent.visible;
        if (view.isScrollerPart && parent.p->isScrollable) {
            if (frame.isEmpty()) {
                return {};
            }
            frame.width += parent.p->scrollerWidth;
            frame.height += parent.p->scrollerHeight;
        } else {
            CViewRect inner = parent.whole;
            if (view.p->placement != CViewPlacement::Overlay) {
                inner.x += parent.p->inner.left;
                inner.y += parent.p->inner.top;
                inner.width -= parent.p->inner.left + parent.p->inner.right;
                inner.height -= parent.p->inner.top + parent.p->inner.bottom;
            }
            left = left.intersection(inner);
        }
        left = left.intersection(frame);
    }
    return clipped(parent, level - 1, left, root);
}

void findRectangles(CItem& item, const CItem& root) {
    if (item.isShown) {
        CViewRect scrolled = boxOf(item);
        if (item.p->isScrollable) {
            const double width = scrolled.width - item.p->scrollerWidth;
            const double height = scrolled.height - item.p->scrollerHeight;
            scrolled = {scrolled.x - item.p->offsetX * width / item.p->ratioX,
                        scrolled.y - item.p->offsetY * height / item.p->ratioY, width / item.p->ratioX,
                        height / item.p->ratioY};
        }
        item.whole = grown(scrolled, item.p->spread);
        item.visible = grown(boxOf(item), item.p->spread);
        if (item.p->unclipLevel == -1 && item.parent) {
            item.visible = item.visible.intersection(root.visible);
        } else {
            item.visible = clipped(item, item.p->unclipLevel, item.visible, root);
        }
    }
    for (CItem* child : item.children) {
        findRectangles(*child, root);
    }
}

void collect(const CPlacingNode& node, CItem* parent, std::vector<std::unique_ptr<CItem>>& all) {
    all.push_back(std::make_unique<CItem>());
    CItem* item = all.back().get();
    item->p = &node.placing;
    item->parent = parent;
    item->isShown = node.placing.isVisible && (!parent || parent->isShown);
    item->isScrollerPart = node.placing.placement >= CViewPlacement::ScrollerH || (parent && parent->isScrollerPart);
    if (parent) {
        parent->children.push_back(item);
    }
    for (const CPlacingNode& child : node.children) {
        collect(child, item, all);
    }
}

}  // namespace

std::vector<CReferenceView> placeByRules(const CPlacingNode& root) {
    std::vector<std::unique_ptr<CItem>> items;
    collect(root, nullptr, items);
    CItem& top = *items.front();
    top.size[kH] = sizeOf(top, kH, 0.0f);
    top.size[kV] = sizeOf(top, kV, 0.0f);
    placeChildren(top);
    // Those that match another take its box when it has one; what is in them is placed in it.
    for (auto& item : items) {
        if (item->p->placement == CViewPlacement::Match && item->parent && item->isShown && item->p->match >= 0) {
            const CItem& target = *items[static_cast<size_t>(item->p->match)];
            std::copy_n(target.pos, 2, item->pos);
            std::copy_n(target.size, 2, item->size);
            placeChildren(*item);
        }
    }
    findRectangles(top, top);
    std::vector<CReferenceView> result;
    for (const auto& item : items) {
        result.push_back({boxOf(*item), item->whole, item->visible, item->halfDistance});
    }
    return result;
}

}  // namespace tarv
