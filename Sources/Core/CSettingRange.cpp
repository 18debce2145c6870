#include "Core/CSettingRange.h"

#include <cmath>

namespace tarv {

bool CSettingRange::read(const CString& text, double& number) const {
    bool isNumber = false;
    const double value = CString::toDouble(text, &isNumber);
    const bool isTaken = isNumber && !text.isEmpty() && value >= minimum && value <= maximum &&
                         (!isInteger || value == std::round(value));
    number = isTaken ? value : number;
    return isTaken;
}

}  // namespace tarv
