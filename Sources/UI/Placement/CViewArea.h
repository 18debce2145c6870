#pragma once

#include <memory>

#include "UI/Placement/CViewAreaNet.h"
#include "UI/Placement/CViewLengths.h"
#include "UI/Placement/CViewRect.h"
#include "UI/Placement/CViewRows.h"
#include "UI/Placement/CViewScroll.h"

namespace tarv {

/// What follows a view's place. Called in a flush; may add, change and destroy views, also its own.
class CViewAreaUpdateHandler {
public:
    virtual ~CViewAreaUpdateHandler() = default;
    /// The rectangles have changed: the part that may be visible, and the whole (of a view that scrolls, its content).
    [[nodiscard]] virtual CError* onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) = 0;
    /// All rectangles of the flush are up to date.
    [[nodiscard]] virtual CError* onAreaNotify() = 0;
};

/// The cells of a view, in the order in which they are made. The last six are those of a view that scrolls.
enum class CViewCell : uint8_t {
    X,
    Y,
    Width,
    Height,
    InnerBottom,
    InnerLeft,
    InnerRight,
    InnerTop,
    OuterBottom,
    OuterLeft,
    OuterRight,
    OuterTop,
    LayoutChildCount,  ///< visible children from `inline` to `right`
    ContentWidth,
    ContentHeight,
    MinWidth,
    MinHeight,
    RegionX,  ///< region: the space that the parent offers
    RegionY,
    RegionWidth,
    RegionHeight,
    BaseWidth,  ///< base: what a percentage and `balanced` refer to
    BaseHeight,
    OffsetX,  ///< 0 to 1
    OffsetY,
    RatioX,  ///< visible part of the content, at most 1
    RatioY,
    ScrollerWidth,
    ScrollerHeight
};
inline constexpr int32_t kViewCells = 23;
inline constexpr int32_t kScrollableViewCells = 29;

/// What the network keeps at each view; no one else writes it.
struct CViewAreaMarks {
    bool isRelayoutListed = false;
    bool isChangeListed = false;
    bool isNotifyListed = false;
    bool isPending = false;  ///< its rectangles are to be computed in this flush
};

/// The place of one view: its cells, its attributes as numbers, and the rectangles that come of them, in device pixels
/// of the window. Setters change a cell at once or ask for a relayout; rectangles follow with the next flush of the
/// network. A parent outlives its children. Thread: that of the window.
class CViewArea : public CHeapObject {
public:
    /// The root: it makes the network, and stands as `full` in nothing.
    CViewArea(CViewAreaUpdateHandler& handler, bool isScrollable);
    /// The last child of a parent.
    CViewArea(CViewAreaUpdateHandler& handler, CViewArea& parent, bool isScrollable);
    ~CViewArea();
    CViewArea(const CViewArea&) = delete;
    CViewArea& operator=(const CViewArea&) = delete;

    /// False if the window has no cells left; such a view has no place, and its owner fails.
    bool isValid() const { return isValid_; }

    CViewAreaNet& net() const { return *net_; }
    CViewArea* parent() const { return parent_; }
    CViewArea& root() const { return *root_; }
    const CArray<CViewArea*, 4>& children() const { return children_; }
    bool isScrollable() const { return isScrollable_; }
    bool isScrollerElement() const { return isScrollerElement_; }
    /// Own flag and those of all ancestors.
    bool isEffectivelyVisible() const { return isEffectivelyVisible_; }
    CViewPlacement placement() const { return placement_; }
    CViewLengthMode widthMode() const { return width_.mode; }
    CViewLengthMode heightMode() const { return height_.mode; }
    int32_t alignmentH() const { return alignmentH_; }
    int32_t alignmentV() const { return alignmentV_; }
    int32_t inlineAlignmentH() const { return inlineAlignmentH_; }
    int32_t inlineAlignmentV() const { return inlineAlignmentV_; }
    bool isInlineVertical() const { return isInlineVertical_; }
    bool isNewInlineRow() const { return isNewInlineRow_; }
    bool isContentWidthAuto() const { return isContentWidthAuto_; }
    bool isContentHeightAuto() const { return isContentHeightAuto_; }
    int32_t unclipLevel() const { return unclipLevel_; }
    CViewArea* matchTarget() const { return matchTarget_; }

    CViewCellId cell(CViewCell index) const { return cells_[static_cast<int32_t>(index)]; }
    float value(CViewCell index) const { return net_->value(cell(index)); }
    /// The box, as the cells hold it.
    CViewRect box() const;
    /// As of the last flush.
    const CViewRect& getVisibleRect() const { return visibleRect_; }
    const CViewRect& getWholeRect() const { return wholeRect_; }

    /// A scroller placement below a parent that does not scroll is logged and counts as `inline`. The root's stays.
    void setPlacement(CViewPlacement placement);
    /// The view that `match` follows, of the same window; null for none. When the target dies, the last box stays.
    void setMatchTarget(CViewArea* target);
    void setWidth(const CViewLength& length);
    void setHeight(const CViewLength& length);
    void setMinWidth(const CViewLength& length);
    void setMinHeight(const CViewLength& length);
    /// The size of the content in device pixels, instead of that of the children.
    void setCompactWidth(double width);
    void setCompactHeight(double height);
    void setOuterBorders(const CViewBorders& borders);
    void setInnerBorders(const CViewBorders& borders);
    void setSpread(const CViewBorders& spread);
    /// What the pictures of the view reach beyond its box, in device pixels: the spread is at least this.
    void setOverhang(const CViewBorders& overhang);
    /// In effect: the spread, or the overhang where it is larger.
    CViewBorders spread() const;
    void setAlignmentH(int32_t alignment);
    void setAlignmentV(int32_t alignment);
    void setInlineAlignmentH(int32_t alignment);
    void setInlineAlignmentV(int32_t alignment);
    void setInlineVertical(bool isVertical);
    void setNewInlineRow(bool isNew);
    void setVisible(bool isVisible);
    /// How many ancestors do not clip this view; -1: all but the root.
    void setUnclipLevel(int32_t level);
    /// The following are ignored by a view that does not scroll. Offsets are held in 0 to 1, ratios from the least one
    /// to 1.
    void setOffsetX(double offset);
    void setOffsetY(double offset);
    void setRatioX(double ratio);
    void setRatioY(double ratio);
    void setMinRatioX(double ratio);
    void setMinRatioY(double ratio);
    void setScrollerWidth(double width);
    void setScrollerHeight(double height);

    /// Joins the notify list: the view's look has changed.
    void requestNotify() { net_->addNotify(*this); }

    /// The rest is called by the network's flush and by what it calls.
    void relayout();
    /// Makes the size that of the attributes, also where a target gives it.
    void writeOwnSize();
    [[nodiscard]] CError* updateRectangles();
    [[nodiscard]] CError* notify() { return handler_.onAreaNotify(); }
    /// The rectangles of a parent that may still wait in this flush.
    [[nodiscard]] CError* updateIfPending() { return marks.isPending ? updateRectangles() : nullptr; }
    CViewRowList& rows() { return rows_; }
    CViewAreaMarks marks;

private:
    bool allocCells();
    void relayoutParent();
    void forceUpdate();
    void applyVisibility();
    void applyScrollerElement();
    void applyWidth();
    void applyHeight();
    void leaveMatch();
    CViewRect spreadOut(const CViewRect& rect) const;
    void markDescendants();
    void setBorderCells(CViewCell first, const CViewBorders& borders);

    CViewAreaUpdateHandler& handler_;
    CViewArea* parent_ = nullptr;
    CViewArea* root_ = nullptr;
    std::unique_ptr<CViewAreaNet> ownedNet_;
    CViewAreaNet* net_ = nullptr;
    CArray<CViewArea*, 4> children_;
    CViewCellId cells_[kScrollableViewCells];
    int32_t cellCount_ = 0;
    CViewRowList rows_;

    CViewLength width_;
    CViewLength height_;
    CViewLength minWidth_{CViewLengthMode::Fixed, 0.0};
    CViewLength minHeight_{CViewLengthMode::Fixed, 0.0};
    CViewBorders spread_;
    CViewBorders overhang_;
    CViewPlacement placement_ = CViewPlacement::Inline;
    int32_t alignmentH_ = 0;
    int32_t alignmentV_ = 0;
    int32_t inlineAlignmentH_ = 0;
    int32_t inlineAlignmentV_ = 0;
    int32_t unclipLevel_ = 0;
    CViewScroll scroll_;
    CViewArea* matchTarget_ = nullptr;
    CArray<CViewArea*, 1> followers_;
    bool isValid_ = false;
    bool isScrollable_ = false;
    bool isScrollerElement_ = false;
    bool isVisible_ = true;
    bool isEffectivelyVisible_ = true;
    bool isInlineVertical_ = false;
    bool isNewInlineRow_ = false;
    bool isContentWidthAuto_ = true;
    bool isContentHeightAuto_ = true;
    bool isForced_ = true;

    CViewRect visibleRect_;
    CViewRect wholeRect_;
};

}  // namespace tarv
