#pragma once

#include <memory>

#include "UI/Placement/CViewArea.h"
#include "UI/Views/CViewBaseState.h"

namespace tarv {

/// The place of a view: reads the attributes of placement into its CViewArea, each anew when it is set. Lengths are
/// multiplied by the editor's scale. Thread: that of the window.
class CViewBasePlacement : public CViewBaseState {
public:
    ~CViewBasePlacement() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    /// Fails for a view that is neither a root nor the child of a view, and for one whose root is missing.
    [[nodiscard]] CError* init() override;

    /// There from init on.
    CViewArea& area() const { return *area_; }
    bool hasArea() const { return area_ != nullptr; }
    /// The same for a setter that is about to run: without a place, init runs it again.
    bool isPlaced();
    /// The parent in the tree of views, or null.
    CViewBasePlacement* parentPlacement() const { return parentPlacement_; }
    /// `opacity`, held in 0 to 1.
    double opacity() const { return opacity_; }

    int64_t stackingNumber() const override { return stackingNumber_; }
    bool isShown() const override { return area_ && area_->isEffectivelyVisible(); }
    bool isDecorative() const override { return isDecorative_; }
    bool isDynamic() const override { return isDynamic_; }
    const CViewRect& visibleRect() const override { return area_->getVisibleRect(); }
    const CViewRect& wholeRect() const override { return area_->getWholeRect(); }
    double effectiveOpacity() const override { return effectiveOpacity_; }

    /// The setters of the attributes of the same names. Each fails on a text that it does not know.
    [[nodiscard]] virtual CError* attrUnclipLevel();
    [[nodiscard]] virtual CError* attrForceNonDynamic();
    [[nodiscard]] virtual CError* attrDynamic();
    [[nodiscard]] virtual CError* attrDecorative();
    [[nodiscard]] virtual CError* attrVisible();
    [[nodiscard]] virtual CError* attrNewInlineRow();
    [[nodiscard]] virtual CError* attrInlineVertical();
    [[nodiscard]] virtual CError* attrInlineAlignmentV();
    [[nodiscard]] virtual CError* attrInlineAlignmentH();
    [[nodiscard]] virtual CError* attrAlignmentV();
    [[nodiscard]] virtual CError* attrAlignmentH();
    [[nodiscard]] virtual CError* attrCompactHeight();
    [[nodiscard]] virtual CError* attrCompactWidth();
    [[nodiscard]] virtual CError* attrMinHeight();
    [[nodiscard]] virtual CError* attrMinWidth();
    [[nodiscard]] virtual CError* attrHeight();
    [[nodiscard]] virtual CError* attrWidth();
    [[nodiscard]] virtual CError* attrScrollerHeight();
    [[nodiscard]] virtual CError* attrScrollerWidth();
    [[nodiscard]] virtual CError* attrMinRatioY();
    [[nodiscard]] virtual CError* attrMinRatioX();
    [[nodiscard]] virtual CError* attrRatioY();
    [[nodiscard]] virtual CError* attrRatioX();
    [[nodiscard]] virtual CError* attrOffsetY();
    [[nodiscard]] virtual CError* attrOffsetX();
    [[nodiscard]] virtual CError* attrOpacity();
    [[nodiscard]] virtual CError* attrSpread();
    [[nodiscard]] virtual CError* attrInnerBorder();
    [[nodiscard]] virtual CError* attrOuterBorder();
    [[nodiscard]] virtual CError* attrPlacementMatch();
    [[nodiscard]] virtual CError* attrPlacement();

protected:
    /// Whether the view has the cells of one that scrolls. Called once, by init.
    virtual bool isScrollableView() const { return getAttrBool("is-scrollable"); }
    /// Whether a view without `is-decorative`, its own or an ancestor's, is decorative.
    virtual bool isDecorativeByClass() const { return false; }
    /// What follows the place of this view. Called by init.
    virtual CViewAreaUpdateHandler& areaHandler() = 0;

private:
    /// Fails with the message on a text that names no alignment.
    [[nodiscard]] CError* readAlignment(const char* attribute, const char* low, const char* high, const char* message,
                                        void (CViewArea::*setter)(int32_t));
    void readLength(const char* attribute, const char* fallback, void (CViewArea::*setter)(const CViewLength&));
    void readBorders(const char* attribute, bool isRounded, void (CViewArea::*setter)(const CViewBorders&));
    void readReal(const char* attribute, double fallback, double scale, void (CViewArea::*setter)(double));
    void inheritUnclipLevel();
    int64_t computeStackingNumber();
    void updateInherited();

    std::unique_ptr<CViewArea> area_;
    CViewBasePlacement* parentPlacement_ = nullptr;
    double opacity_ = 1.0;
    double effectiveOpacity_ = 1.0;
    int64_t stackingNumber_ = 0;
    int32_t childrenMade_ = 0;  ///< views ever made as children of this one
    bool isDecorative_ = false;
    bool isDynamic_ = false;
    bool isSetEarly_ = false;
};

}  // namespace tarv
