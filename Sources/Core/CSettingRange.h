#pragma once

#include "Core/CString.h"

namespace tarv {

/// The numbers that a setting may hold. A stored text outside of them counts as the setting's default for each reader.
struct CSettingRange {
    double minimum = 0.0;
    double maximum = 0.0;
    bool isInteger = false;

    /// Without a width a setting holds any text.
    bool isEmpty() const { return !(minimum < maximum); }
    /// The number that a text stands for; false, and `number` unchanged, for a text that is no number of the range.
    bool read(const CString& text, double& number) const;
};

/// Factors of movements: drag, wheel, Shift.
inline constexpr CSettingRange kPrecisionRange{0.1, 1.0, false};
/// Stages of oversampling that `Auto` takes.
inline constexpr CSettingRange kOversamplingRange{1.0, 3.0, true};

}  // namespace tarv
