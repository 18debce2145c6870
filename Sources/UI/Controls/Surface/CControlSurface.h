#pragma once

#include <initializer_list>

#include "UI/Binding/CParamGesture.h"
#include "UI/Controls/Buttons/CWheelSteps.h"
#include "UI/Controls/Surface/CControlSurfaceGroup.h"
#include "UI/Controls/Surface/CSurfaceAxis.h"
#include "UI/Controls/Surface/CSurfaceDrag.h"
#include "UI/Controls/Surface/CSurfaceLayout.h"
#include "UI/Controls/Surface/CSurfaceLines.h"
#include "UI/Drawing/CFramePieces.h"
#include "UI/Text/CDynamicList.h"
#include "UI/Views/CView.h"

namespace tarv {

class CColorSwatch;
class CRuler;
class CValueList;

/// An editor of lists of points (`ui:control-surface`), its children of the class CControlSurfaceGroup. In slider mode
/// a point is a bar from the axis's zero to the value; a group that isn't editable shows flat underlays behind them.
/// Takes its pictures from the set `csurface`. Thread: that of the window.
///
/// Attributes:
///   is-slider-mode            points are bars
///   min-max, min-max-x, min-max-y, min-max-y-alt   paths of CMinMax: `min-max` is that of bars, and of y where
///                             `min-max-y` says nothing. Without one an axis has the range of the group's parameter
///   color-swatch              path of the colours by group; without it `Custom1` and so on
///   control-points-alpha      opacity of points; default 0.75
///   control-bars-alpha        opacity of bars and underlays over their pits; default 1
///   is-show-hairlines         adds the child `hairlines` of the template `ui:control-surface-hairlines`
///   is-point-number-shown     adds children `point-num` of the template `ui:control-surface-point-num`, one a point
///   is-use-margins            the bars leave the room that labels of the rulers need at the ends
///   update-fps                changes are sent so often; default 40
///   ruler                     blank-separated paths of rulers that mark the hovered point
///   editable-group            name of the group that takes the mouse; by default the first editable one
///   is-export-x, is-export-y, is-export-bw   the hovered point is exported to `curpos-x`, `curpos-y` (with
///                             `min-max-y-alt` also `curpos-y-alt`) and `curpos-bw`
///   hovered-point, curpos-band-sel   set by the surface: the point under the pointer, the selected one; -1 for none.
///                             The latter is set with one of the exports
///   curpos-show-values, curpos-show-labels   adds the child `curpos` of the template `ui:control-surface-curpos`, a
///   text
///                             view, which shows what is exported of the hovered point: values with their units, labels
///                             (`title` of the param, otherwise X, Y, BW), or both
///   curpos-alignment          of `curpos`: `top` (default) or `bottom`
///   curpos-active-color       its colour while a point is held; default that of the template
/// `curpos-show-spectrum` is for a display of the data; the surface doesn't read it.
///
/// By hand: a press takes a bar without a jump, and it follows the pointer, finer with Shift, finer still with Ctrl and
/// Shift; with Alt each bar that is passed takes the pointer's height. Ctrl and press, and a double click, reset. The
/// wheel and, after a press, the arrow keys move a bar by CWheelSteps; Left and Right go to a neighbour,
/// Escape ends that. A press marks its bar where the view is focusable, until the focus goes. A right press marks its
/// point and opens the rows of `value-list`, or a menu. The menu copies to the group of the linked list: by the event
/// `copy-group` with its `index`, sent to `copy-target`, otherwise the bars alone.
class CControlSurface : public CView, public CDynamicList, private CParamGesture::COwner {
public:
    ~CControlSurface() override;
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* finishInit() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    bool isInputView() const override { return editable_ != nullptr; }
    bool grabsKeys() const override { return editable_ != nullptr; }
    CViewRole role() const override;
    CString readableValue() const override;
    [[nodiscard]] CError* mouseEnter(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseExit(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseMove(CAttributeMap& params) override;
    [[nodiscard]] CError* mousePress(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseRelease(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseCancel(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseTakeBack(CAttributeMap& params) override;
    [[nodiscard]] CError* mousePressR(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseWheel(CAttributeMap& params) override;
    [[nodiscard]] CError* keyPress(CAttributeMap& params) override;
    [[nodiscard]] CError* focusLost(CAttributeMap& params) override;
    void disabledChanged() override;
    void removeChild(CObject* child) override;
    [[nodiscard]] CError* onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) override;

    bool isSliderMode() const { return isSliderMode_; }
    int32_t groupCount() const { return groups_.count(); }
    CControlSurfaceGroup& group(int32_t index) const { return *groups_[index]; }
    /// The group that takes the mouse, or null.
    CControlSurfaceGroup* editableGroup() const { return editable_; }
    /// Null for a name that no group has.
    CControlSurfaceGroup* groupNamed(const CString& name) const;
    /// Columns of a group as they stand now.
    CSurfaceLayout layoutOf(const CControlSurfaceGroup& group) const;
    /// The same of the group that rulers stand by: the editable one, otherwise the first.
    CSurfaceLayout layout() const;
    const CSurfaceAxis& axis(CControlSurfaceGroup::CRole role) const;
    CParamGesture& gesture() { return gesture_; }
    const CParamGesture& gesture() const { return gesture_; }
    bool isDragging() const { return drag_.isActive(); }
    /// -1 for none.
    int32_t hoveredPoint() const { return hovered_; }
    int32_t selectedPoint() const { return selected_; }
    /// A point is lit; of a list that isn't edited, one that is linked to the edited one.
    bool isHovered(const CControlSurfaceGroup& group, int32_t index) const;
    /// A point has the frame of the selected one.
    bool isMarked(const CControlSurfaceGroup& group, int32_t index) const;
    /// Pixels of a point, where it is no bar.
    CSurfacePlace placeOf(const CControlSurfaceGroup& group, int32_t index) const;
    /// Pixels of the bar of a point.
    CIntRect barRect(const CControlSurfaceGroup& group, int32_t index) const;
    /// The same by the columns of that group.
    CIntRect barRect(const CControlSurfaceGroup& group, int32_t index, const CSurfaceLayout& layout) const;
    /// What a point takes on the screen, with its glow.
    CViewRect shownRect(const CControlSurfaceGroup& group, int32_t index) const;

    /// Lines that a ruler puts across this view, in place of those it gave before; none takes them away.
    void setLines(const CRuler& ruler, const CSurfaceLines& lines);
    const CSurfaceLineSets& lineSets() const { return lines_; }

    // Of a group. Those that give an error may destroy this view.
    void groupAdded(CControlSurfaceGroup& group);
    void groupGone(CControlSurfaceGroup& group);
    /// Its attributes, count or range are others.
    [[nodiscard]] CError* groupChanged(CControlSurfaceGroup& group);
    void groupColorsChanged();
    /// Before and after a point has another value.
    void pointMoves(const CControlSurfaceGroup& group, int32_t index);
    [[nodiscard]] CError* cancelDragOf(CControlSurfaceGroup& group);
    // Of a ruler; both know each other until one of them goes.
    void rulerJoined(CRuler& ruler);
    void rulerGone(const CRuler& ruler);

protected:
    [[nodiscard]] CError* draw() override;
    int32_t classColorCount() const override;
    CString classColorText(int32_t index) const override;
    void imageRangeChanged() override;

private:
    using CRole = CControlSurfaceGroup::CRole;
    enum CPart : int32_t {
        Pit,
        Bar,
        BarDown,
        BarRight,
        Underlay,
        UnderlayDown,
        Select,
        SelectBG,
        Point,
        Anchor,
        kParts
    };
    struct CPartRange {
        uint32_t first = 0;
        uint32_t last = 0;
        bool isFound = false;
    };
    enum CSurfaceColor : int32_t {
        kPit,
        kPitHover,
        kSelectLine,
        kSelectBG,
        kUnderlay,
        kDisabled,
        kPointOff,
        kOwnColors
    };

    // Attributes and parts; CControlSurface.cpp.
    [[nodiscard]] CError* settingsChanged();
    [[nodiscard]] CError* barsAlphaChanged();
    [[nodiscard]] CError* axesChanged();
    [[nodiscard]] CError* hairlinesChanged();
    [[nodiscard]] CError* numbersChanged();
    [[nodiscard]] CError* updateFps();
    [[nodiscard]] CError* hairlinesUpdate(CAttributeMap& params);
    [[nodiscard]] CError* findAxis(const char* attribute, const CMinMax*& found);
    [[nodiscard]] CError* findSwatch();
    [[nodiscard]] CError* makeNumbers();
    [[nodiscard]] CError* mappingChanged();
    [[nodiscard]] CError* followGroups();
    [[nodiscard]] CError* viewUpdated();
    void updateAxes();
    void findEditable();
    void findRulers();
    [[nodiscard]] CError* rulersChanged();
    bool readMargins();
    [[nodiscard]] CError* followRulers();
    [[nodiscard]] CError* notifyRulers();
    void placeNumbers();

    // CControlSurfaceInput.cpp
    [[nodiscard]] CError* stepPoint(int32_t point, double notches, const CSurfacePointer& pointer);
    bool canSelect() const;
    [[nodiscard]] CError* select(int32_t point);
    [[nodiscard]] CError* hoverAt(int32_t x, int32_t y);
    [[nodiscard]] CError* setHovered(int32_t point);
    [[nodiscard]] CError* showHovered();
    [[nodiscard]] CError* exportPoint();
    [[nodiscard]] CError* exportPositions();
    int32_t pointAt(int32_t x, int32_t y) const;
    double precisionOf(const CSurfacePointer& pointer) const;

    // CControlSurfaceDrag.cpp
    void onGestureCancelled(CParamGesture& gesture) override;
    [[nodiscard]] CError* pressPoint(int32_t point, const CSurfacePointer& pointer);
    [[nodiscard]] CError* beginGesture(std::initializer_list<CRole> roles, const char* label);
    [[nodiscard]] CError* touchHeld();
    void moveHeld();
    void setTo(CRole role, int32_t point, const CSurfaceDrag::CStart& start, double moved);
    [[nodiscard]] CError* paintTo(const CSurfacePointer& pointer);
    [[nodiscard]] CError* timerTick();
    [[nodiscard]] CError* endDrag();
    [[nodiscard]] CError* takeBackDrag();
    [[nodiscard]] CError* resetPoints(int32_t first, int32_t count);
    [[nodiscard]] CError* erasePoint(int32_t point);
    bool moves(CRole role) const;

    // CControlSurfaceCursor.cpp
    [[nodiscard]] CError* cursorChanged();
    [[nodiscard]] CError* showCursor();
    CString cursorText() const;

    // CControlSurfaceMenu.cpp
    [[nodiscard]] CError* generateSubList(const CString& parentId, CDynamicListRows& rows) override;
    [[nodiscard]] CError* popupResult(CAttributeMap& params);
    const CValueList* popupValues() const;
    [[nodiscard]] CError* setPopupValue(int32_t row);
    [[nodiscard]] CError* copyToLinked();
    [[nodiscard]] CError* markMenuPoint();
    [[nodiscard]] CError* inputEvent(const CString& name, CAttributeMap& params) override;
    [[nodiscard]] bool animate(double now) override;
    const CUIParam* copyTarget() const;
    CRuler* typingRuler(int32_t point);

    // CControlSurfaceDrawing.cpp
    bool isInClip(const CIntRect& column) const;
    void drawPits(const CControlSurfaceGroup& group, const CSurfaceLayout& layout);
    void drawBars(const CControlSurfaceGroup& group, int32_t groupIndex, const CSurfaceLayout& layout);
    const CBrush* lineBrush(const CControlSurfaceGroup& group) const;
    void drawLines(const CControlSurfaceGroup& group, const CColor& color);
    void drawPoints(const CControlSurfaceGroup& group, int32_t groupIndex);
    void drawBar(const CControlSurfaceGroup& group, int32_t index, const CSurfaceLayout& layout, const CColor& color);
    void drawUnderlay(const CControlSurfaceGroup& group, int32_t index, const CSurfaceLayout& layout,
                      const CColor& color);
    void drawPart(CPart part, const CIntRect& box, const CColor& color, double opacity, const CIntRect& clip);
    const CColor* groupColor(int32_t groupIndex, bool isHovered) const;
    bool isLinked(const CControlSurfaceGroup& group) const;
    const CImage* pointImage(const CControlSurfaceGroup& group) const;
    CIntRect innerBox() const;
    void redrawColumn(int32_t point);

    CArray<CControlSurfaceGroup*, 4> groups_;
    CControlSurfaceGroup* editable_ = nullptr;
    CControlSurfaceGroup* dragged_ = nullptr;  ///< whose points a press has taken; null behind its end
    const CMinMax* minMax_ = nullptr;
    const CMinMax* minMaxX_ = nullptr;
    const CMinMax* minMaxY_ = nullptr;
    const CMinMax* minMaxYAlt_ = nullptr;
    CSurfaceAxis axisX_;
    CSurfaceAxis axisY_;
    const CColorSwatch* swatch_ = nullptr;
    CPartRange parts_[kParts];
    COverhang overhang_;
    CArray<CString, 4> colorNames_;  ///< by group
    double pointOpacity_ = 0.75;
    double barOpacity_ = 1.0;
    bool isSliderMode_ = false;
    bool isUsingMargins_ = false;
    bool areRulersFound_ = false;  ///< all of the list stand
    int32_t rulerTries_ = 0;
    int32_t marginX_ = 0;  ///< at both ends
    int32_t marginY_ = 0;
    bool isFinished_ = false;
    CArray<CRuler*, 4> rulers_;  ///< those that mark the hovered point
    CArray<CRuler*, 4> joined_;  ///< all that know this view
    CArray<CView*, 10> numbers_;
    CView* cursor_ = nullptr;
    CString cursorColor_;  ///< of its template
    CSurfaceLineSets lines_;
    bool isListStale_ = false;    ///< a group has gone
    bool isExportStale_ = false;  ///< the hovered point has another value, or a hand takes or leaves it
    CSurfaceDrag drag_;
    double valueBefore_ = 0.0;  ///< of the first bar, at the press
    CParamGesture gesture_{this};
    int32_t hovered_ = -1;
    int32_t selected_ = -1;
    CWheelSteps wheel_;
    int32_t menuPoint_ = -1;
    /// Open: the menu takes the keys from the marked column. Closed: they are about to come back, until `menuEnd_`.
    enum class CMenuMark : uint8_t { None, Open, Closed };
    CMenuMark menuMark_ = CMenuMark::None;
    double menuEnd_ = 0.0;
};

}  // namespace tarv
