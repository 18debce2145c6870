#include "Audio/Graph/CAudioRate.h"

namespace tarv {

void CAudioRate::scale(const CString& factor, int32_t times) {
    for (CFactor& there : factors_) {
        if (there.name == factor) {
            there.times += times;
            return;
        }
    }
    factors_.append({factor, times});
}

void CAudioRate::multiply(const CAudioRate& other) {
    octaves_ += other.octaves_;
    for (const CFactor& factor : other.factors_) {
        scale(factor.name, factor.times);
    }
}

int32_t CAudioRate::timesOf(const CString& factor) const {
    for (const CFactor& there : factors_) {
        if (there.name == factor) {
            return there.times;
        }
    }
    return 0;
}

bool CAudioRate::operator==(const CAudioRate& other) const {
    bool isEqual = octaves_ == other.octaves_;
    for (const CFactor& factor : factors_) {
        isEqual = isEqual && other.timesOf(factor.name) == factor.times;
    }
    for (const CFactor& factor : other.factors_) {
        isEqual = isEqual && timesOf(factor.name) == factor.times;
    }
    return isEqual;
}

}  // namespace tarv
