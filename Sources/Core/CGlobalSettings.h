#pragma once

#include <atomic>

#include "Core/CObject.h"

namespace tarv {

/// The user's settings as the views of all editors in the process read them. Each stands for itself: written on the
/// threads of editors, read on any, without a lock; a reader may meet a new value of one beside an old one of another.
/// The initial values hold until an editor has loaded the stored ones.
struct CGlobalSettingValues {
    std::atomic<bool> isTabletMode{false};
    std::atomic<bool> isVirtualKeyboardShown{true};
    std::atomic<bool> isKnobLabelsShown{true};
    std::atomic<double> shiftKeyPrecision{0.5};  ///< factor of a movement with the shift key, 0.1 to 1.0
    std::atomic<bool> isRadialKnobMode{false};
    std::atomic<int32_t> oversamplingLevel{1};     ///< stages of `Auto`, 1 to 3
    std::atomic<double> mouseWheelPrecision{0.5};  ///< factor of a step of the wheel, 0.1 to 1.0
    std::atomic<double> dragPrecision{0.7};        ///< factor of a movement of the mouse, 0.1 to 1.0
    std::atomic<bool> isBuiltinRefresh{false};
};

/// Those of this process.
CGlobalSettingValues& globalSettings();

/// Hands the settings of one editor's tree to globalSettings(), one attribute a setting (`core:global-settings`). Live
/// links tie the attributes to shared ones, so that all editors of the process come to the same values. A text that is
/// no number of kPrecisionRange, or of kOversamplingRange, counts as the initial value. Thread: that of the tree.
class CGlobalSettings : public CObject {
public:
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

private:
    [[nodiscard]] CError* tabletMode();
    [[nodiscard]] CError* showVirtualKeyboard();
    [[nodiscard]] CError* showKnobLabels();
    [[nodiscard]] CError* shiftKeyPrecision();
    [[nodiscard]] CError* radialKnobMode();
    [[nodiscard]] CError* oversamplingLevel();
    [[nodiscard]] CError* mouseWheelPrecision();
    [[nodiscard]] CError* dragPrecision();
    [[nodiscard]] CError* builtinRefresh();
    double factor(const CString& name, double initial) const;
};

}  // namespace tarv
