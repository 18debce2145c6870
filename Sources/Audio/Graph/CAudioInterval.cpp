#include "Audio/Graph/CAudioInterval.h"

#include "Core/CArray.h"

namespace tarv {

bool CAudioInterval::parse(const CString& text, CAudioInterval& interval) {
    const int32_t length = text.length();
    if (length < 2) {
        return false;
    }
    const uint16_t first = text.at(0);
    const uint16_t last = text.at(length - 1);
    if ((first != '[' && first != '(') || (last != ']' && last != ')')) {
        return false;
    }
    const CArray<CString, 4> limits = text.substring(1, length - 2).split(';', true);
    if (limits.count() != 2 || limits[0].isEmpty() || limits[1].isEmpty()) {
        return false;
    }
    bool okLow = false;
    bool okHigh = false;
    CAudioInterval parsed;
    parsed.low = CString::toDouble(limits[0], &okLow);
    parsed.high = CString::toDouble(limits[1], &okHigh);
    parsed.includesLow = first == '[';
    parsed.includesHigh = last == ']';
    if (okLow && okHigh) {
        interval = parsed;
    }
    return okLow && okHigh;
}

}  // namespace tarv
