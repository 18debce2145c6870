#include "UI/Placement/CViewClip.h"

namespace tarv {

namespace {

CViewRect withoutInnerBorders(const CViewArea& area, const CViewRect& rect) {
    const double left = area.value(CViewCell::InnerLeft);
    const double top = area.value(CViewCell::InnerTop);
    return {rect.x + left, rect.y + top, rect.width - left - area.value(CViewCell::InnerRight),
            rect.height - top - area.value(CViewCell::InnerBottom)};
}

/// What a parent leaves of a rectangle of its child.
CViewRect clipByParent(const CViewArea& child, const CViewArea& parent, const CViewRect& rect) {
    if (child.isScrollerElement() && parent.isScrollable()) {
        CViewRect widened = parent.getVisibleRect();
        if (!widened.isEmpty()) {
            widened.width += parent.value(CViewCell::ScrollerWidth);
            widened.height += parent.value(CViewCell::ScrollerHeight);
        }
        return rect.intersection(widened);
    }
    const bool isOverlay = child.placement() == CViewPlacement::Overlay;
    const CViewRect inner = isOverlay ? parent.getWholeRect() : withoutInnerBorders(parent, parent.getWholeRect());
    return rect.intersection(inner).intersection(parent.getVisibleRect());
}

}  // namespace

CError* clipByAncestors(CViewArea& area, CViewRect& rect) {
    CViewArea& root = area.root();
    int32_t level = area.unclipLevel();
    CViewArea* view = &area;
    if (level == -1 && view != &root) {
        TARV_TRY(root.updateIfPending());
        rect = rect.intersection(root.getVisibleRect());
        return nullptr;
    }
    for (CViewArea* parent = view->parent(); parent; view = parent, parent = view->parent(), --level) {
        if (view->placement() == CViewPlacement::WindowOverlay) {
            TARV_TRY(root.updateIfPending());
            rect = rect.intersection(root.getVisibleRect());
            return nullptr;
        }
        TARV_TRY(parent->updateIfPending());
        if (level <= 0) {
            rect = parent->isEffectivelyVisible() ? clipByParent(*view, *parent, rect) : CViewRect();
        }
    }
    return nullptr;
}

}  // namespace tarv
