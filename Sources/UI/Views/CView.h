#pragma once

#include "UI/Drawing/CFramePieces.h"
#include "UI/Resources/CDataSetObject.h"
#include "UI/Views/CViewBasePlacement.h"
#include "UI/Views/CViewColor.h"

namespace tarv {

/// A view (`ui:view`): how it is drawn, and when. Draws the picture of its range if it has an `image-set` (a range of
/// nine as a frame that stretches over the view), otherwise its colour if `color` is set; subclasses override draw.
/// What the pictures of the range reach beyond the box widens the spread, but for a root view. Positions are pixels of
/// the window. Thread: that of the window.
class CView : public CViewBasePlacement, public CViewAreaUpdateHandler {
public:
    ~CView() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    [[nodiscard]] CError* init() override;

    /// Areas to draw in. Those from kOwnAreas on belong to the class of the view.
    static constexpr int32_t kVisibleArea = 0;
    static constexpr int32_t kWholeArea = 1;
    /// The whole rectangle without the spread: where pictures stand.
    static constexpr int32_t kBoxArea = 2;
    static constexpr int32_t kOwnAreas = 3;

    /// The whole view is drawn anew at the next render tick.
    void requestRedraw() override;
    /// A part of it is; with several, each. A redraw of the whole view counts more.
    void requestRedraw(const CViewRect& part);
    /// Takes the view, and all views below it, out of the tiles, and puts them back: around a change of the grid. The
    /// views of a root do so by themselves when its size changes and the event `update-window-bounds` is sent.
    void leaveSectors();
    void joinSectors();

    [[nodiscard]] CError* advanceViews() override;
    [[nodiscard]] CError* placeViews() override;
    [[nodiscard]] CError* onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) override;
    [[nodiscard]] CError* onAreaNotify() override;
    [[nodiscard]] CError* drawInSector(const CSectorTarget& target) override;

    /// Null without one; then nothing of a colour is drawn. A view without `palette` has that of its parent. Where none
    /// of the name exists, that of `palette-fallback` is taken, which is logged; without it, that is an error.
    const CPalette* palette() const { return palette_; }
    /// Null without one.
    const CImageSet* imageSet() const { return imageSet_; }
    const CBrushSet* brushSet() const { return brushSet_; }
    /// Picture of the range, or the first one of a frame, at the present frame of its animation; null for none.
    const CImage* currentImage() const;
    /// The same where the animation begins.
    const CImage* firstImage() const { return imageSet_ && hasRange_ ? imageSet_->getImage(firstImage_) : nullptr; }
    int32_t colorSlotCount() const { return colorSlots().count(); }
    /// A colour as it is shown now: 0 the view's own, then the slots. A wrong index is logged and counts as 0. Null for
    /// a colour that the palette lacks. A text `^` means the parent's own colour, `^n` its slot n.
    const CColor* color(int32_t index) const;
    void colorSlotsChanged() override;
    /// A view that is disabled has the colour `Disabled` for its own, if the palette has it.
    void disabledChanged() override;

protected:
    /// Draws by the operations below, at full strength and in the present tile alone. Allocates nothing.
    [[nodiscard]] virtual CError* draw();

    /// Further colours that the class of the view draws by, beside the slots: how many, and the text of each, which is
    /// read as that of a slot. The class calls classColorsChanged where one of them has another text.
    virtual int32_t classColorCount() const { return 0; }
    virtual CString classColorText(int32_t index) const { return (void)index, CString(); }
    void classColorsChanged();
    /// In 0..classColorCount-1; null for a colour that the palette lacks.
    const CColor* classColor(int32_t index) const;

    /// Area 0 is logged, since what it holds depends on what is clipped.
    void drawFilledRect(int32_t area, int32_t colorIndex = 0, double opacity = 1.0);
    void drawInvertedRect(int32_t area);
    /// The picture of the range, aligned in the area by `image-alignment`.
    void drawImage(int32_t area, int32_t colorIndex = 0, double opacity = 1.0);
    /// The range stretched over the area: its nine pieces, or its picture repeated. A frame may draw beyond the area.
    void drawStretched(int32_t area, int32_t colorIndex = 0, double opacity = 1.0);
    /// The same, of a frame the middle alone.
    void drawMiddle(int32_t area, int32_t colorIndex = 0, double opacity = 1.0);
    /// The range is one of nine pictures, or of several times nine.
    bool isFrameRange() const;
    /// `image-alignment` says where the picture stands.
    bool isImageAligned() const { return isImageAligned_; }
    /// With its nominal top left corner at x, y; with `isScaled` both are multiplied by the editor's scale.
    void drawImageLayer(const CImageLayer& layer, int32_t x, int32_t y, int32_t area, const CColor& color,
                        double opacity, bool isScaled);
    /// Where a picture stands in an area: `image-alignment` holds `left` or `right` and `top` or `bottom`, joined by
    /// `-`; what is missing is centred.
    void getAlignedImageCoords(int32_t area, const CImage& image, int32_t& x, int32_t& y);

    const CViewRect& areaRect(int32_t area) const { return areas_[area]; }
    void setAreaRect(int32_t area, const CViewRect& rect);
    /// What of an area lies in the present tile, in its pixels.
    CIntRect areaClip(int32_t area) const;
    /// A whole area in pixels of the present tile.
    CIntRect areaBox(int32_t area) const;
    const CSectorTarget& target() const { return target_; }

    /// Also the event `view-area-update` when the rectangles change; otherwise it is sent to commands alone.
    void askForAreaUpdates() { wantsAreaUpdates_ = true; }
    /// The colours and the range follow the states of the view.
    void lookChanged(double morphSeconds) override;
    /// Other pictures are drawn from now on.
    virtual void imageRangeChanged() {}
    [[nodiscard]] bool animate(double now) override;
    CViewAreaUpdateHandler& areaHandler() override { return *this; }

private:
    [[nodiscard]] CError* attrColor();
    [[nodiscard]] CError* attrImageSet();
    [[nodiscard]] CError* attrImageSetRange();
    [[nodiscard]] CError* attrBrushSet();
    [[nodiscard]] CError* attrImageAlignment();
    [[nodiscard]] CError* attrGradient();
    [[nodiscard]] CError* updatePalette();
    [[nodiscard]] CError* findPalette(const CString& name, const CPalette*& palette) const;
    [[nodiscard]] CError* gradientTimer();
    [[nodiscard]] CError* sendEventIfWanted(const char* name, bool isWanted);
    void setPalette(const CPalette* palette);
    void updateImageRange();
    void findImageRange();
    void updateOverhang();
    void drawPieces(const CFramePieces& pieces, int32_t area, int32_t colorIndex, double opacity, uint32_t frame);
    void resolveColors(double morphSeconds);
    bool resolveColor(int32_t index, CViewColor& color);
    CString colorText(int32_t index) const;
    const CColor* shownColor(int32_t index) const;
    CString colorBase(const CString& text) const;
    void colorShownChanged();
    void updateGradient();
    void stepFrames(uint32_t count);
    double gradientFps() const;

    CArray<CViewRect, 2> areas_;
    CViewRect joinedRect_;
    CArray<CViewRect, 4> partialRects_;
    CSectorTarget target_;
    bool needsFullRedraw_ = true;
    bool wantsAreaUpdates_ = false;
    CAttributeMap sent_;

    const CPalette* palette_ = nullptr;
    const CImageSet* imageSet_ = nullptr;
    const CBrushSet* brushSet_ = nullptr;
    bool hasRange_ = false;
    uint32_t firstImage_ = 0;
    uint32_t lastImage_ = 0;
    bool isImageAligned_ = false;
    int32_t imageAlignmentH_ = 0;
    int32_t imageAlignmentV_ = 0;

    CArray<CViewColor, 1> colors_;
    CViewMorphTime colorMorph_;
    bool isColorMorphing_ = false;
    uint32_t frame_ = 0;
    double nextFrameTime_ = 0.0;
    bool hasFrameTime_ = false;
    bool isGradientRunning_ = false;
};

}  // namespace tarv
