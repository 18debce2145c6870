#pragma once

#include "Core/CObject.h"
#include "UI/Binding/CUIParamUpdateHandler.h"

namespace tarv {

class CControlSurface;
class CParamGesture;

/// A list of points of a surface (`ui:control-surface-group`), bound to parameters by children of the class
/// `ui:ui-param`, named after what they give: `ui-param-count`, `ui-param-x`, `ui-param-y`, `ui-param-bw`,
/// `ui-param-popup`, `ui-param-sel` (index of the selected point) and `ui-param-reset` (what a reset sets, otherwise
/// the parameter's default). Those of x, y, bw, popup and reset have the value of the first point; the others follow in
/// the elements behind it. A child `value-list` has the rows of the popup of `ui-param-popup`: a CValueList gives the
/// value of the chosen item, any other list its index. Values have the unit that a person reads. The editor's thread.
///
/// Attributes:
///   kind            `point` (default) or `anchor`
///   point-count     a fixed count; otherwise that of `ui-param-count`, without it 0
///   color           index in the surface's `color-swatch`; default 0
///   is-visible, is-editable   default true. One that isn't editable is for show: its bars are underlays
///   is-eraseable    a double click takes a point off the list of `ui-param-count`
///   is-fixed-x, is-fixed-y    the point doesn't move along that axis
///   is-sorted       points keep their order along x
///   min-distance    least distance along x between sorted points; negative (default): none
///   is-balanced     points stand evenly over the width; with is-fixed-y, bars fill the height
///   is-vertical     bars rise; "false": they grow to the right. Default true
///   is-drag-segments   a press between two points moves both; with the surface's `brush-set`, a line joins them
///   linked-group    name of the group whose hovered point this one follows, and that "Copy to" of its menu means
///   value-step      values are multiples of it; 0 (default): any
///   cs-point        key of an object that stands for a point: a child `point` for each one, with `index`, and from the
///                   surface's timer `x`, `y`, `bw`, `is-hovered` and `is-selected`
/// Sends `slider-count-changed` when there are more or fewer points.
class CControlSurfaceGroup : public CObject, public CUIParamUpdateHandler {
public:
    /// What a param of the group gives.
    enum class CRole : uint8_t { Count, X, Y, BandWidth, Popup, Selected, Reset };
    static constexpr int32_t kRoles = 7;

    struct CPoint {
        double x = 0.0;
        double y = 0.0;
        double bandWidth = 0.0;
        bool operator==(const CPoint&) const = default;
    };
    /// Counts of a parameter beyond are held to it.
    static constexpr int32_t kMaxPoints = 1024;

    ~CControlSurfaceGroup() override;
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* finishInit() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    int32_t count() const { return points_.count(); }
    const CPoint& point(int32_t index) const { return points_[index]; }
    /// What a bar shows: y, or x of a horizontal one.
    double barValue(int32_t index) const { return isVertical_ ? points_[index].y : points_[index].x; }
    CRole barRole() const { return isVertical_ ? CRole::Y : CRole::X; }

    bool isAnchor() const { return isAnchor_; }
    bool isVisible() const { return isVisible_; }
    bool isEditable() const { return isEditable_; }
    bool isEraseable() const { return getAttrBool("is-eraseable"); }
    bool isFixedX() const { return isFixedX_; }
    bool isFixedY() const { return isFixedY_; }
    bool isBalanced() const { return isBalanced_; }
    bool isVertical() const { return isVertical_; }
    bool isDragSegments() const { return isDragSegments_; }
    double valueStep() const { return valueStep_; }
    int32_t colorIndex() const { return colorIndex_; }
    const CString& linkedGroup() const { return getAttrString("linked-group"); }
    /// Null without one.
    CUIParam* param(CRole role) const { return params_[static_cast<int32_t>(role)]; }
    /// There is a value to show and to set.
    bool isActive() const;
    /// -1 for none.
    int32_t selectedPoint() const { return selected_; }

    /// Of the element that belongs to a point. 0.0 while there is no value.
    double paramValue(CRole role, int32_t index) const;
    /// Limits of the parameter; 0 to 1 without one.
    void paramRange(CRole role, double& low, double& high) const;
    /// What a reset of a point sets; false if nothing says it.
    bool resetValue(CRole role, int32_t index, double& value) const;

    /// The nearest value that the point may have, by value-step and the neighbours. The range is the axis's matter.
    double allowed(CRole role, int32_t index, double value) const;
    /// Shows the value at once and keeps it for deliver. While a point is held, it shows this and not what comes back.
    void setValue(CRole role, int32_t index, double value);
    void hold(int32_t index) { held_[index] = true; }
    /// What is kept is sent, as one change for neighbouring points. May destroy this object.
    [[nodiscard]] CError* deliver(CParamGesture& gesture);
    bool hasPending() const { return pendingCount_ > 0; }
    /// No point is held any more, and nothing is kept: each shows what the gesture and the parameter have.
    void release();
    /// The values are read anew.
    void readValues();

    /// The objects of the points follow them. May destroy this object.
    [[nodiscard]] CError* showObjects();
    void removeChild(CObject* child) override;

    [[nodiscard]] CError* onParamChanged(CUIParam& param) override;
    [[nodiscard]] CError* onParamActivity(CUIParam& param) override;
    [[nodiscard]] CError* onParamRangeChanged(CUIParam& param) override;
    void onParamRemoved(CUIParam& param) override;
    int32_t followedElements(const CUIParam& param) const override;

private:
    struct CPending {
        bool isX = false;
        bool isY = false;
        bool isBandWidth = false;
    };

    struct CPointObject {
        CObject* object = nullptr;
        CPoint point;
        bool isHovered = false;
        bool isSelected = false;
        bool isShown = false;
        bool operator==(const CPointObject&) const = default;
    };

    // CControlSurfaceGroupObjects.cpp
    [[nodiscard]] CError* objectKeyChanged();
    [[nodiscard]] CError* makeObjects();
    [[nodiscard]] CError* showObject(int32_t index);
    void removeLastObject();

    [[nodiscard]] CError* attributesChanged();
    [[nodiscard]] CError* countChanged();
    [[nodiscard]] CError* colorChanged();
    void readAttributes();
    int32_t wantedCount() const;
    [[nodiscard]] CError* updateCount();
    CPoint readPoint(int32_t index) const;
    void valuesRead(int32_t index, const CPoint& value);
    void readSelected();
    bool roleOf(const CUIParam& param, CRole& role) const;
    double& valueOf(CRole role, int32_t index);
    static bool& pendingOf(CPending& pending, CRole role);
    [[nodiscard]] CError* deliverRole(CRole role, CParamGesture& gesture);

    CControlSurface* surface_ = nullptr;
    CUIParam* params_[kRoles] = {};
    CArray<CPoint, 10> points_;
    CArray<bool, 10> held_;
    CArray<CPending, 10> pending_;
    CArray<double, 10> sending_;
    CArray<CPointObject, 1> objects_;
    int32_t pendingCount_ = 0;
    int32_t group_ = 0;  ///< of the values
    int32_t selected_ = -1;
    int32_t colorIndex_ = 0;
    double minDistance_ = -1.0;
    double valueStep_ = 0.0;
    bool isFinished_ = false;
    bool isAnchor_ = false;
    bool isVisible_ = true;
    bool isEditable_ = true;
    bool isFixedX_ = false;
    bool isFixedY_ = false;
    bool isSorted_ = false;
    bool isBalanced_ = false;
    bool isVertical_ = true;
    bool isDragSegments_ = false;
};

}  // namespace tarv
