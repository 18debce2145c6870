#include "UI/Placement/CViewArea.h"

#include <algorithm>
#include <limits>

#include "Core/Log.h"
#include "UI/Placement/CViewClip.h"
#include "UI/Placement/CViewRelayout.h"
#include "UI/Placement/CViewSizes.h"

namespace tarv {

namespace {

constexpr double kSameRect = std::numeric_limits<double>::epsilon();

bool isScroller(CViewPlacement placement) {
    return placement >= CViewPlacement::ScrollerH;
}

}  // namespace

CViewArea::CViewArea(CViewAreaUpdateHandler& handler, bool isScrollable)
    : handler_(handler),
      root_(this),
      ownedNet_(std::make_unique<CViewAreaNet>()),
      net_(ownedNet_.get()),
      placement_(CViewPlacement::Full),
      isScrollable_(isScrollable) {
    isValid_ = allocCells();
}

CViewArea::CViewArea(CViewAreaUpdateHandler& handler, CViewArea& parent, bool isScrollable)
    : handler_(handler),
      parent_(&parent),
      root_(parent.root_),
      net_(parent.net_),
      isScrollable_(isScrollable),
      isScrollerElement_(parent.isScrollerElement_),
      isEffectivelyVisible_(parent.isEffectivelyVisible_) {
    parent.children_.append(this);
    isValid_ = allocCells();
    relayoutParent();
}

CViewArea::~CViewArea() {
    for (CViewArea* follower : followers_) {
        follower->matchTarget_ = nullptr;
        follower->relayoutParent();
    }
    leaveMatch();
    net_->forget(*this);
    for (int32_t i = 0; i < cellCount_; ++i) {
        net_->freeCell(cells_[i]);
    }
    if (parent_) {
        const int32_t index = parent_->children_.indexOf(this);
        parent_->children_.removeAt(index);
        relayoutParent();
    }
}

bool CViewArea::allocCells() {
    const int32_t count = isScrollable_ ? kScrollableViewCells : kViewCells;
    for (; cellCount_ < count; ++cellCount_) {
        const CViewCellId id = net_->allocCell(this);
        if (id == kNoViewCell) {
            logLine("Too many views in one window");
            return false;
        }
        cells_[cellCount_] = id;
    }
    if (isScrollable_) {
        net_->setValue(cell(CViewCell::RatioX), 1.0f);
        net_->setValue(cell(CViewCell::RatioY), 1.0f);
    }
    applyWidth();
    applyHeight();
    net_->addRelayout(*this);
    net_->addChanged(*this);
    return true;
}

CViewRect CViewArea::box() const {
    return {value(CViewCell::X), value(CViewCell::Y), value(CViewCell::Width), value(CViewCell::Height)};
}

void CViewArea::relayoutParent() {
    if (parent_) {
        net_->addRelayout(*parent_);
    }
}

void CViewArea::setPlacement(CViewPlacement placement) {
    if (!parent_) {
        return;
    }
    if (isScroller(placement) && !parent_->isScrollable_) {
        logLine(CString("Invalid placement ") + CString::fromInt(static_cast<int32_t>(placement)) +
                ", parent view does not support scrolling");
        placement = CViewPlacement::Inline;
    }
    if (placement_ == placement) {
        return;
    }
    const bool wasMatch = placement_ == CViewPlacement::Match;
    placement_ = placement;
    applyScrollerElement();
    if (wasMatch) {
        writeOwnSize();
    }
    forceUpdate();
    relayoutParent();
}

void CViewArea::applyScrollerElement() {
    isScrollerElement_ = isScroller(placement_) || (parent_ && parent_->isScrollerElement_);
    for (CViewArea* child : children_) {
        child->applyScrollerElement();
    }
}

void CViewArea::setMatchTarget(CViewArea* target) {
    if (target == matchTarget_ || (target && target->net_ != net_)) {
        return;
    }
    leaveMatch();
    matchTarget_ = target;
    if (target) {
        target->followers_.append(this);
    }
    relayoutParent();
}

void CViewArea::leaveMatch() {
    if (matchTarget_) {
        CArray<CViewArea*, 1>& followers = matchTarget_->followers_;
        followers.removeAt(followers.indexOf(this));
        matchTarget_ = nullptr;
    }
}

void CViewArea::setWidth(const CViewLength& length) {
    if (width_ != length) {
        // The mode decides which docked children share a base.
        if (width_.mode != length.mode) {
            relayoutParent();
        }
        width_ = length;
        applyWidth();
    }
}

void CViewArea::setHeight(const CViewLength& length) {
    if (height_ != length) {
        if (height_.mode != length.mode) {
            relayoutParent();
        }
        height_ = length;
        applyHeight();
    }
}

void CViewArea::applyWidth() {
    if (placement_ != CViewPlacement::Match || !matchTarget_) {
        writeViewSize(*this, width_, 0);
    }
}

void CViewArea::applyHeight() {
    if (placement_ != CViewPlacement::Match || !matchTarget_) {
        writeViewSize(*this, height_, 1);
    }
}

void CViewArea::writeOwnSize() {
    writeViewSize(*this, width_, 0);
    writeViewSize(*this, height_, 1);
}

void CViewArea::setMinWidth(const CViewLength& length) {
    minWidth_ = length;
    writeViewMinimum(*this, length, 0);
}

void CViewArea::setMinHeight(const CViewLength& length) {
    minHeight_ = length;
    writeViewMinimum(*this, length, 1);
}

void CViewArea::setCompactWidth(double width) {
    isContentWidthAuto_ = false;
    net_->setValue(cell(CViewCell::ContentWidth), static_cast<float>(width));
}

void CViewArea::setCompactHeight(double height) {
    isContentHeightAuto_ = false;
    net_->setValue(cell(CViewCell::ContentHeight), static_cast<float>(height));
}

/// For what decides about rectangles, here or below, without a change of the box.
void CViewArea::forceUpdate() {
    isForced_ = true;
    net_->addChanged(*this);
}

void CViewArea::setBorderCells(CViewCell first, const CViewBorders& borders) {
    const double sides[] = {borders.bottom, borders.left, borders.right, borders.top};
    for (int32_t i = 0; i < 4; ++i) {
        net_->setValue(cells_[static_cast<int32_t>(first) + i], static_cast<float>(sides[i]));
    }
}

void CViewArea::setOuterBorders(const CViewBorders& borders) {
    setBorderCells(CViewCell::OuterBottom, borders);
}

void CViewArea::setInnerBorders(const CViewBorders& borders) {
    setBorderCells(CViewCell::InnerBottom, borders);
    forceUpdate();
}

void CViewArea::setSpread(const CViewBorders& spread) {
    spread_ = spread;
    forceUpdate();
}

void CViewArea::setOverhang(const CViewBorders& overhang) {
    if (!(overhang == overhang_)) {
        overhang_ = overhang;
        forceUpdate();
    }
}

CViewBorders CViewArea::spread() const {
    return {std::max(spread_.bottom, overhang_.bottom), std::max(spread_.left, overhang_.left),
            std::max(spread_.right, overhang_.right), std::max(spread_.top, overhang_.top)};
}

void CViewArea::setUnclipLevel(int32_t level) {
    unclipLevel_ = level;
    forceUpdate();
}

void CViewArea::setAlignmentH(int32_t alignment) {
    if (alignmentH_ != alignment) {
        alignmentH_ = alignment;
        relayoutParent();
    }
}

void CViewArea::setAlignmentV(int32_t alignment) {
    if (alignmentV_ != alignment) {
        alignmentV_ = alignment;
        relayoutParent();
    }
}

void CViewArea::setInlineAlignmentH(int32_t alignment) {
    inlineAlignmentH_ = alignment;
    net_->addRelayout(*this);
}

void CViewArea::setInlineAlignmentV(int32_t alignment) {
    inlineAlignmentV_ = alignment;
    net_->addRelayout(*this);
}

void CViewArea::setInlineVertical(bool isVertical) {
    isInlineVertical_ = isVertical;
    net_->addRelayout(*this);
}

void CViewArea::setNewInlineRow(bool isNew) {
    isNewInlineRow_ = isNew;
    relayoutParent();
}

void CViewArea::setVisible(bool isVisible) {
    isVisible_ = isVisible;
    applyVisibility();
}

void CViewArea::applyVisibility() {
    const bool isVisible = isVisible_ && (!parent_ || parent_->isEffectivelyVisible_);
    if (isVisible == isEffectivelyVisible_) {
        return;
    }
    isEffectivelyVisible_ = isVisible;
    forceUpdate();
    relayoutParent();
    for (CViewArea* child : children_) {
        child->applyVisibility();
    }
}

void CViewArea::setOffsetX(double offset) {
    scroll_.setOffset(*this, 0, offset);
}

void CViewArea::setOffsetY(double offset) {
    scroll_.setOffset(*this, 1, offset);
}

void CViewArea::setRatioX(double ratio) {
    scroll_.setRatio(*this, 0, ratio);
}

void CViewArea::setRatioY(double ratio) {
    scroll_.setRatio(*this, 1, ratio);
}

void CViewArea::setMinRatioX(double ratio) {
    scroll_.setMinRatio(*this, 0, ratio);
}

void CViewArea::setMinRatioY(double ratio) {
    scroll_.setMinRatio(*this, 1, ratio);
}

void CViewArea::setScrollerWidth(double width) {
    scroll_.setThickness(*this, 0, width);
    forceUpdate();
}

void CViewArea::setScrollerHeight(double height) {
    scroll_.setThickness(*this, 1, height);
    forceUpdate();
}

void CViewArea::relayout() {
    CViewRelayout(*this).run();
}

CViewRect CViewArea::spreadOut(const CViewRect& rect) const {
    if (rect.isEmpty()) {
        return rect;
    }
    const CViewBorders sides = spread();
    return {rect.x - sides.left, rect.y - sides.top, rect.width + sides.left + sides.right,
            rect.height + sides.top + sides.bottom};
}

CError* CViewArea::updateRectangles() {
    marks.isPending = false;
    CViewRect visible;
    CViewRect whole;
    const bool isVisible = isEffectivelyVisible_;
    if (isVisible) {
        whole = spreadOut(scroll_.contentOf(*this));
        visible = spreadOut(box());
        if (CError* error = clipByAncestors(*this, visible)) {
            net_->addChanged(*this);
            return error;
        }
        if (!isForced_ && visible.isNear(visibleRect_, kSameRect) && whole.isNear(wholeRect_, kSameRect)) {
            return nullptr;
        }
    }
    const bool isOther = isForced_ || visible != visibleRect_ || whole != wholeRect_;
    visibleRect_ = visible;
    wholeRect_ = whole;
    isForced_ = false;
    if (isOther) {
        markDescendants();
    }
    if (isVisible) {
        net_->addNotify(*this);
    }
    if (CError* error = handler_.onAreaChanged(visible, whole)) {
        // The next flush hands the rectangles over again.
        isForced_ = true;
        net_->addChanged(*this);
        return error;
    }
    return nullptr;
}

/// What an ancestor shows decides about the visible part of those below, also where no cell of theirs has changed.
void CViewArea::markDescendants() {
    for (CViewArea* child : children_) {
        if (!child->marks.isPending) {
            net_->addChanged(*child);
        }
        child->markDescendants();
    }
}

}  // namespace tarv
