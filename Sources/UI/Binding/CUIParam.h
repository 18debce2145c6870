#pragma once

#include "Audio/Parameters/CAudioParamConverter.h"
#include "Core/CObject.h"
#include "UI/Binding/CParamEdit.h"

namespace tarv {

class CParamBridge;
class CSharedAttribute;
class CUIParamUpdateHandler;

/// Binds the control above it, a CUIParamUpdateHandler, to one value (`ui:ui-param`): an element of the parameter
/// behind `bridge`, in the group of `group-selector` (without one, group 0), or the setting at `shared-attribute`.
/// Numbers are in the unit that a person reads (dB, Hz, %). The flag `is-active` says whether there is a value; without
/// a source a param stays inactive. A bridge may be destroyed before its params, a setting may not. The editor's
/// thread.
class CUIParam : public CObject {
public:
    ~CUIParam() override;
    /// Finds the source. Fails for a path where none stands, and below an object that is no handler.
    [[nodiscard]] CError* init() override;
    /// From here on the handler is called; an active param begins with onParamActivity, onParamRangeChanged and
    /// onParamChanged.
    [[nodiscard]] CError* finishInit() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    /// Index of the value within the parameter, from 0.
    virtual int32_t getElement() const;
    /// Text of the value without its unit; empty while inactive.
    virtual CString getValueText(CAudioTextMode mode) const;
    /// Sets the value, which comes back by onParamChanged; what is out of range is clamped. A gesture
    /// of its own, unless `edit` is one of a CParamGesture. Without effect while inactive. May destroy the param with
    /// its editor.
    [[nodiscard]] virtual CError* setValue(double value, const CParamEdit& edit = {});
    /// 0.0 while inactive. A setting that is true is 1.0, one that is no number is 0.0.
    virtual double getValue() const;
    /// What a reset sets: the default of the element `offset` behind this one, or of the setting; false while inactive
    /// and for a setting that is no number.
    bool defaultValue(int32_t offset, double& value) const;

    /// Sets the value to what a person typed: a name of a state, or a number with or without "+" and the unit. A text
    /// parameter takes each text, a setting a number. `isTaken` becomes false, and nothing changes, if it cannot be
    /// read or while inactive.
    [[nodiscard]] CError* setValueText(const CString& text, bool& isTaken, const CParamEdit& edit = {});
    /// Sets the value to what it is before anything is set. A setting takes its `def-value`.
    [[nodiscard]] CError* reset(const CParamEdit& edit = {});
    /// What a reset sets; 0.0 while inactive, and for a setting that is no number.
    double defaultValue() const;
    /// The unit, empty without one.
    CString unit() const;

    /// Index within the handler.
    int32_t index() const { return getAttrInt("index"); }
    int32_t group() const { return group_; }
    bool isActive() const { return isActive_; }
    /// Limits, the smaller one first; both 0.0 while inactive and for a setting without a range.
    double minimum() const;
    double maximum() const;
    /// Null without one.
    CParamBridge* bridge() const { return bridge_; }

private:
    friend class CParamBridge;
    friend class CUIParamUpdateHandler;
    using COperation = CError* (CUIParamUpdateHandler::*)(CUIParam&);

    [[nodiscard]] CError* bindBridge();
    [[nodiscard]] CError* bindGroupSelector();
    [[nodiscard]] CError* bindSharedAttribute();
    [[nodiscard]] CError* attrElement();
    [[nodiscard]] CError* groupChanged(CAttributeMap& params);
    /// The group or the element was set; `isOther`: to another one.
    [[nodiscard]] CError* moved(bool isOther);
    [[nodiscard]] CError* call(COperation operation);
    // Of the bridge. Each may end with this object destroyed.
    [[nodiscard]] CError* setActive(bool isActive);
    [[nodiscard]] CError* rangeChanged();
    [[nodiscard]] CError* valueChanged();
    void bridgeGone();
    int32_t followedElements() const;

    CUIParamUpdateHandler* handler_ = nullptr;
    CParamBridge* bridge_ = nullptr;
    CSharedAttribute* shared_ = nullptr;
    int32_t element_ = 0;
    int32_t group_ = 0;
    bool isActive_ = false;
    bool isStarted_ = false;
};

}  // namespace tarv
