#pragma once

#include "UI/Text/CTextView.h"

namespace tarv {

/// A text of one line a paragraph that slides where it does not fit (`ui:textview-auto-scroll`). When the text or the
/// width of the view changes, and on the event `auto-scroll-start`, it stands for `auto-scroll-pause` seconds (1.5),
/// goes to its end with `auto-scroll-speed` pixels a second (30 at scale 1.0), stands again and goes back, as often as
/// `auto-scroll-rounds` says (1; 0 for ever). At rest nothing is drawn. Time is that of the window's ticks, and steps
/// are whole pixels.
///
/// The views `auto-scroll-arrow-left` and `auto-scroll-arrow-right`, children of this view or of its parent, are shown
/// while the text does not fit, and have the state `active` while it goes on at their side. Thread: that of the window.
class CTextViewAutoScroll : public CTextView {
public:
    ~CTextViewAutoScroll() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    [[nodiscard]] CError* finishInit() override;
    [[nodiscard]] CError* onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) override;

protected:
    [[nodiscard]] bool animate(double now) override;
    void layoutChanged() override;
    bool isWrapping() const override { return false; }
    bool isAtTop() const override { return isList(); }
    bool isScrollableView() const override { return true; }

private:
    [[nodiscard]] CError* start();
    double distance() const;
    double positionAt(double seconds, bool& isOver) const;
    void slideTo(double pixels);
    /// May destroy this view.
    void updateArrows();
    void showArrow(const char* name, bool isMore);

    double begin_ = 0.0;
    double position_ = 0.0;  ///< whole pixels that are cut off at the left
    double lastWidth_ = -1.0;
    bool isSliding_ = false;
    bool isWaiting_ = false;  ///< for the first tick, whose time is the beginning
};

}  // namespace tarv
