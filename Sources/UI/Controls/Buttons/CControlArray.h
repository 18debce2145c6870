#pragma once

#include "UI/Binding/CParamGesture.h"
#include "UI/Binding/CUIParamUpdateHandler.h"
#include "UI/Controls/Lists/CValueList.h"
#include "UI/Views/CView.h"

namespace tarv {

class CParamBridge;
class CUIParam;

/// Controls of one template, one for each element of a parameter (`ui:control-array`). Its declared params:
///   ui-param-count             how many there are, unless `object-count` says so; without both, as many as the titles
///                              of `object-title-list`, if that is another list than that of the values, otherwise as
///                              many as `ui-param-values` has elements
///   ui-param-values            the elements from its own on are the values of the controls
///   ui-param-selected-object   position of the selected control: it has the state `active`, and a release on another
///                              one selects that, unless the controls have a list of values
/// Attributes:
///   object-tag                 template of a control, a view
///   object-count, max-item-count   how many controls, and the most of them; -1: no such limit
///   element-width              width of each
///   object-value-list          path of the value list that a control chooses from: a release on it (of a button,
///                              otherwise of the mouse) opens the list, and each notch of the wheel goes on by an entry
///   object-title-list          path of a value list with the titles of the controls, or the titles themselves with
///                              `separator-char` (by default ";") between
///   object-color, object-text-color   of the controls, one for all or one each with `separator-char` between
///   object-state-path          path, from a control, of the view that gets its states; by default the control
///   is-hide-reserve            hides controls titled "Reserve"
/// A control has the attributes `object-index` (from 0), `object-index-incr` (from 1), `object-title`, `object-value`,
/// `object-value-title` (its title in the list; without a list its text) and `selected-object`, and gets the event
/// `object-update` with all of them as parameters when one has changed. A value that the list has not, or has dimmed,
/// gives the state `dimmed`. Without its values the array is disabled. Thread: that of the window.
class CControlArray : public CView, public CUIParamUpdateHandler {
public:
    ~CControlArray() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    /// Fails without `object-tag`.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* finishInit() override;
    void removeChild(CObject* child) override;

    int32_t objectCount() const { return objects_.count(); }
    CView& object(int32_t index) const { return *objects_[index]; }

    [[nodiscard]] CError* onParamChanged(CUIParam& param) override;
    [[nodiscard]] CError* onParamActivity(CUIParam& param) override;
    void onParamRemoved(CUIParam& param) override;
    [[nodiscard]] CError* mouseWheel(CAttributeMap& params) override;

private:
    enum CRole { Count, Values, Selected, kRoleCount };

    [[nodiscard]] CError* updateAll();
    [[nodiscard]] CError* listsChanged();
    [[nodiscard]] CError* widthChanged();
    [[nodiscard]] CError* statePathChanged();
    [[nodiscard]] CError* updateOnce();
    [[nodiscard]] CError* objectReleased(CAttributeMap& params);
    [[nodiscard]] CError* popupResult(CAttributeMap& params);
    /// Makes and removes controls. Fails for a template of anything but a view.
    [[nodiscard]] CError* changeObjectCount();
    [[nodiscard]] CError* makeObject(int32_t index);
    [[nodiscard]] CError* updateObjects();
    [[nodiscard]] CError* updateObject(int32_t index);
    [[nodiscard]] CError* showObject(CView& shown, CAttributeMap& wanted, bool isDimmed, bool isSelected);
    [[nodiscard]] CError* showState(CView& shown, const char* name, bool isSet) const;
    [[nodiscard]] CError* openList(int32_t index);
    [[nodiscard]] CError* setObjectValue(int32_t index, double value);
    void findParams();
    int32_t wantedCount() const;
    CValueList::CItem titleOf(int32_t index) const;
    CValueList::CItem valueItemOf(int32_t index) const;
    CString listed(const char* attribute, int32_t index) const;
    double valueOf(int32_t index) const;
    CParamBridge* bridge() const;
    const CValueList* list(const char* attribute) const;
    int32_t indexOfSender(const CAttributeMap& params) const;
    int32_t objectAt(double x, double y) const;
    uint16_t separator() const;

    CArray<CView*, 8> objects_;
    CUIParam* params_[kRoleCount] = {};
    CParamGesture gesture_;
    double wheelRest_ = 0.0;  ///< of a notch, on the control below
    int32_t wheeled_ = -1;
    CString statePath_;  ///< of the views that have the states
    bool isUpdating_ = false;
    bool isStale_ = false;
};

}  // namespace tarv
