#include "UI/Controls/Buttons/CSelectorOversampling.h"

#include "Core/CSettingRange.h"

namespace tarv {

int32_t CSelectorOversampling::indexOfText(const CString& text) const {
    double level = 1.0;
    kOversamplingRange.read(text, level);
    return static_cast<int32_t>(level) - 1;
}

}  // namespace tarv
