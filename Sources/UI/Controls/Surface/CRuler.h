#pragma once

#include "UI/Controls/Surface/CSurfaceLayout.h"
#include "UI/Controls/Surface/CSurfaceLines.h"
#include "UI/Text/CDynamicList.h"
#include "UI/Views/CView.h"

namespace tarv {

class CControlSurface;
class CMinMax;

/// The scale beside a view (`ui:ruler`): ticks, labels, and lines across the view that it rules. A label is a child of
/// a template, so that it may be a readout, which shows and edits a value. With `titles` there is one for each of its
/// items, otherwise one at each multiple of `step-major` in the range of `min-max`; without either there is nothing.
/// Labels are kept and used again. `placement` `left` and `right` make it upright. Takes its pictures from the set
/// `ruler`. Thread: that of the window.
///
/// Attributes:
///   min-max               path of the range
///   ruled-view            path of the view; a surface gives its columns and its range, of another one the box counts
///   step-major, step-minor   of labels, and of ticks; default 6 and 3
///   titles                path of a CDynamicList with the texts of the labels
///   is-labels-linear      labels stand in columns of equal width; otherwise at their values, if there is a range
///   is-show-labels, is-show-hairlines, is-hairline-inward   default true; a hairline that isn't inward crosses the
///                         ruler instead of the view
///   label-format          of one number, as CNumberFormat; default "%.0f"
///   label-shift           from tick to label, at scale 1.0; default 3
///   label-size            height of a label, at scale 1.0; default 13
///   label-text-align, label-unclip-level   given to the labels; default `center`, 1
///   label-tag             template of a label; default `ui:ruler-label`
///   label-gap             between two labels before they take their short form, at scale 1.0; default 2
///   ruler-size            thickness, at scale 1.0; default 25
///   bridge, group-selector, tab-group, accept-chars, virtual-keyboard-minus-char   given to labels where they are
///                         there, as full names; a label gets the `element` of its position
/// The label of a hovered point has the state `hilite`. Labels that don't fit beside each other have numbers in
/// thousands (readouts their short text, `format-id` `brief`), and if these don't fit either, only every second
/// one and the hovered one show.
class CRuler : public CView {
public:
    ~CRuler() override;
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* finishInit() override;
    void removeChild(CObject* child) override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    bool isVertical() const { return side_ == CSide::Left || side_ == CSide::Right; }
    /// Lines across the ruled view, as they stand now.
    const CSurfaceLines& lines() const { return lines_; }
    /// Device pixels that a label needs beyond either end of the ruled view.
    int32_t margin() const;
    int32_t labelCount() const { return labels_.count(); }
    CView* label(int32_t index) const { return labels_[index]; }

    // Of a surface that marks its hovered point here.
    void surfaceJoined(CControlSurface& surface);
    void surfaceGone(CControlSurface& surface);
    /// -1 for none.
    void setHovered(CControlSurface& surface, int32_t point);

    /// The label takes a typed value.
    bool isEditable(int32_t index) const;
    /// Opens its edit. May destroy this view.
    [[nodiscard]] CError* edit(int32_t index);

    [[nodiscard]] CError* attrWidth() override;
    [[nodiscard]] CError* attrHeight() override;
    [[nodiscard]] CError* attrPlacement() override;
    [[nodiscard]] CError* onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) override;

protected:
    [[nodiscard]] CError* draw() override;
    [[nodiscard]] bool animate(double now) override;
    void imageRangeChanged() override;

private:
    /// Of the view that it rules.
    enum class CSide : uint8_t { Left, Right, Above, Below };
    enum CTick : int32_t { Major, Minor, Zero, kTicks };

    [[nodiscard]] CError* sourcesChanged();
    [[nodiscard]] CError* sizeChanged();
    /// What labels are made of has changed: others take their places.
    [[nodiscard]] CError* labelsChanged();
    [[nodiscard]] CError* update();
    [[nodiscard]] CError* placeChanged();
    [[nodiscard]] CError* bind();
    [[nodiscard]] CError* readTexts();
    /// Destroys the labels from `count` on. False if this ruler goes with one of them.
    bool cutLabels(int32_t count);
    [[nodiscard]] CError* updateLabels();
    [[nodiscard]] CError* makeLabel(int32_t index);
    [[nodiscard]] CError* updateLines();
    void addPath(CAttributeMap& attributes, const char* name) const;
    [[nodiscard]] CError* setTexts(bool isShort);
    [[nodiscard]] CError* setReadoutForms(bool isShort);
    bool hasReadouts() const;
    void followReadouts();
    bool fits(int32_t pitch, double gap) const;
    [[nodiscard]] CError* chooseTexts(int32_t pitch);
    void placeLabels();
    void placeLabel(int32_t index, const CSurfaceLayout& layout);
    void showSome(bool isEverySecond);
    void markHovered();
    CView* ruledView() const;
    CSurfaceLayout layout() const;
    bool isInColumns() const;
    void drawTick(double value, const CSurfaceLayout& layout);
    int32_t tickLength() const;
    CIntRect box() const;

    CSide side_ = CSide::Above;
    const CMinMax* minMax_ = nullptr;
    bool isBound_ = false;
    bool isFinished_ = false;
    bool isShort_ = false;
    CString readoutForm_;        ///< of readouts, where they are not short
    double readoutWidth_ = 0.0;  ///< of all their texts
    int32_t fittedPitch_ = 0;    ///< of the columns that the texts were chosen for
    int32_t tries_ = 0;
    int32_t hovered_ = -1;
    CArray<double, 16> values_;  ///< of the labels, where they stand at values
    CArray<double, 16> minors_;
    CDynamicListRows texts_;  ///< of the labels
    CArray<CView*, 10> labels_;
    CArray<CControlSurface*, 2> surfaces_;
    CSurfaceLines lines_;
    const CImage* ticks_[kTicks] = {};
};

}  // namespace tarv
