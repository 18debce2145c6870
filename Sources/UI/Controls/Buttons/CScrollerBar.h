#pragma once

#include "UI/Views/CView.h"

namespace tarv {

/// A scroll bar (`ui:scroller-bar`) of the view at `scrolled-view`, by default the nearest ancestor that scrolls; along
/// its height with `is-vertical`. It shows the view's offset and ratio and writes them. Attributes:
///   image-set            by default `shared::is.scroller`: ranges `Track`, `Button`, `ButtonActive` (under the
///                        pointer), `ButtonPushed`, each with `V` or `H` behind the first word. The track has
///                        the view's colour, the button that of the first colour slot, if there is one
///   is-show-real-range   the button is as short as the ratio says; otherwise long enough to be held
///   is-resizeable        the ratio may be changed
///   is-snapshots-enabled a double click switches between two places
///   is-pan               a press drags the content instead of the button
/// A press beside the button goes on by what is seen, again and again while it is held. Each notch of the wheel goes on
/// by a tenth of it. Events that it handles: `scroll` (`offset`: 0 to 1 - ratio), `scroll-by` (`pixels` of the
/// content), `scroll-start` (`pixels` a second, until `scroll-stop`), `scroll-timer` (one step of that, of a tenth of a
/// second), `change-ratio-by` (`factor`, about the middle of what is seen), `switch-snapshot`, `update-scroller`. It
/// sends `scroll-start`, `scroll` (`offset`) and `scroll-stop` around a drag. Thread: that of the window.
class CScrollerBar : public CView {
public:
    ~CScrollerBar() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    [[nodiscard]] CError* init() override;
    /// Fails for a path where no view that scrolls stands.
    [[nodiscard]] CError* finishInit() override;

    bool isInputView() const override { return true; }
    /// While nothing is hidden, what lies below gets the input.
    bool isDecorative() const override { return CView::isDecorative() || buttonRect().isEmpty(); }
    [[nodiscard]] CError* mousePress(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseMove(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseRelease(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseCancel(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseTakeBack(CAttributeMap& params) override;
    bool isTakenBack() const override { return true; }
    [[nodiscard]] CError* mouseWheel(CAttributeMap& params) override;
    [[nodiscard]] CError* autoClick(CAttributeMap& params) override;
    [[nodiscard]] CError* setInputState(CInputState state, bool isSet) override;

    /// The button, in pixels of the window; empty where nothing is hidden.
    CViewRect buttonRect() const;

protected:
    [[nodiscard]] CError* draw() override;
    [[nodiscard]] bool animate(double now) override;

private:
    static constexpr int32_t kButtonArea = CView::kOwnAreas;
    struct CPlace {
        double offset = 0.0;
        double ratio = 1.0;
    };

    [[nodiscard]] CError* scroll(CAttributeMap& params);
    [[nodiscard]] CError* scrollBy(CAttributeMap& params);
    [[nodiscard]] CError* scrollStart(CAttributeMap& params);
    [[nodiscard]] CError* scrollStop();
    [[nodiscard]] CError* scrollTimer();
    [[nodiscard]] CError* changeRatioBy(CAttributeMap& params);
    [[nodiscard]] CError* switchSnapshot();
    [[nodiscard]] CError* updateScroller();

    bool isVertical() const { return getAttrBool("is-vertical"); }
    CView* scrolled() const;
    CPlace place() const;
    [[nodiscard]] CError* setOffset(double offset);
    [[nodiscard]] CError* setRatio(double ratio);
    /// Pixels of the whole content.
    double contentLength() const;
    double along(const CAttributeMap& params) const;
    [[nodiscard]] CError* pageTowards(double position);
    [[nodiscard]] CError* endDrag();
    [[nodiscard]] CError* sendOffset(const char* event);
    void drawRange(const CString& name, int32_t area, int32_t colorIndex);

    CAttributeMap sent_;
    CPlace snapshot_;
    bool hasSnapshot_ = false;
    double pressAt_ = 0.0;
    double pressOffset_ = 0.0;
    bool isDragged_ = false;
    bool isPaging_ = false;
    bool isPushed_ = false;
    double speed_ = 0.0;  ///< pixels of the content a second; 0 at rest
    double lastTime_ = -1.0;
};

}  // namespace tarv
