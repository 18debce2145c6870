#include "UI/Controls/Buttons/CSelectorScale.h"

#include <cmath>

namespace tarv {

namespace {

constexpr double kSameScale = 1e-6;

double scaleOf(const CString& text) {
    bool isNumber = false;
    const double scale = CString::toDouble(text, &isNumber);
    return isNumber ? scale : 1.0;
}

}  // namespace

CArray<CString, 4> CSelectorScale::scales() const {
    const CString& given = getAttrString("scale");
    return (given.isEmpty() ? CString("0.8;1.0;1.25") : given).split(';');
}

int32_t CSelectorScale::indexOfText(const CString& text) const {
    const CArray<CString, 4> offered = scales();
    for (int32_t i = 0; i < offered.count(); ++i) {
        if (std::fabs(scaleOf(offered[i]) - scaleOf(text)) < kSameScale) {
            return i;
        }
    }
    return -1;
}

CString CSelectorScale::textOf(int32_t index) const {
    const CArray<CString, 4> offered = scales();
    return index < offered.count() ? offered[index] : CString("1.0");
}

}  // namespace tarv
