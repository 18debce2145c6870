#include "UI/Controls/Buttons/CSelectorOversampling.h"

namespace tarv {

int32_t CSelectorOversampling::indexOfText(const CString& text) const {
    bool isNumber = false;
    const int32_t level = CString::toInt(text, &isNumber);
    return isNumber ? level - 1 : -1;
}

}  // namespace tarv
