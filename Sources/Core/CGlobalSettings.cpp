#include "Core/CGlobalSettings.h"

#include "Core/CSettingRange.h"

namespace tarv {

namespace {

const CGlobalSettingValues& initialValues() {
    static const CGlobalSettingValues values;
    return values;
}

}  // namespace

CGlobalSettingValues& globalSettings() {
    static CGlobalSettingValues values;
    return values;
}

// Pending handlers run in this order.
CError* CGlobalSettings::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CGlobalSettings::tabletMode>("tablet-mode");
    descriptor.addHandler<&CGlobalSettings::showVirtualKeyboard>("show-virtual-keyboard");
    descriptor.addHandler<&CGlobalSettings::showKnobLabels>("show-knob-labels");
    descriptor.addHandler<&CGlobalSettings::shiftKeyPrecision>("shift-key-precision");
    descriptor.addHandler<&CGlobalSettings::radialKnobMode>("radial-knob-mode");
    descriptor.addHandler<&CGlobalSettings::oversamplingLevel>("oversampling-level");
    descriptor.addHandler<&CGlobalSettings::mouseWheelPrecision>("mouse-wheel-precision");
    descriptor.addHandler<&CGlobalSettings::dragPrecision>("drag-precision");
    descriptor.addHandler<&CGlobalSettings::builtinRefresh>("builtin-refresh");
    return nullptr;
}

double CGlobalSettings::factor(const CString& name, double initial) const {
    double value = initial;
    kPrecisionRange.read(getAttrString(name), value);
    return value;
}

CError* CGlobalSettings::tabletMode() {
    globalSettings().isTabletMode = getAttrBool("tablet-mode");
    return nullptr;
}

CError* CGlobalSettings::showVirtualKeyboard() {
    globalSettings().isVirtualKeyboardShown = getAttrBool("show-virtual-keyboard");
    return nullptr;
}

CError* CGlobalSettings::showKnobLabels() {
    globalSettings().isKnobLabelsShown = getAttrBool("show-knob-labels");
    return nullptr;
}

CError* CGlobalSettings::shiftKeyPrecision() {
    globalSettings().shiftKeyPrecision = factor("shift-key-precision", initialValues().shiftKeyPrecision);
    return nullptr;
}

CError* CGlobalSettings::radialKnobMode() {
    globalSettings().isRadialKnobMode = getAttrBool("radial-knob-mode");
    return nullptr;
}

CError* CGlobalSettings::oversamplingLevel() {
    double level = initialValues().oversamplingLevel;
    kOversamplingRange.read(getAttrString("oversampling-level"), level);
    globalSettings().oversamplingLevel = static_cast<int32_t>(level);
    return nullptr;
}

CError* CGlobalSettings::mouseWheelPrecision() {
    globalSettings().mouseWheelPrecision = factor("mouse-wheel-precision", initialValues().mouseWheelPrecision);
    return nullptr;
}

CError* CGlobalSettings::dragPrecision() {
    globalSettings().dragPrecision = factor("drag-precision", initialValues().dragPrecision);
    return nullptr;
}

CError* CGlobalSettings::builtinRefresh() {
    globalSettings().isBuiltinRefresh = getAttrBool("builtin-refresh");
    return nullptr;
}

}  // namespace tarv
