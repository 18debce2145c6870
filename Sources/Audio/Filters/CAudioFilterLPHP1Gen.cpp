#include "Audio/Filters/CAudioFilterLPHP1Gen.h"

#include <algorithm>

namespace tarv {

namespace {

// 2 pi times (low-pass) or divided by (high-pass) sqrt(2^(1/n) - 1): the -3 dB point of n stages falls on the
// frequency.
constexpr double kAngles[8] = {
    6.283185307179586, 9.762843238257704, 12.324520004807102, 14.445182941459475,
    6.283185307179586, 4.043741832261851, 3.2032417967563136, 2.7329814903935525,
};

constexpr int32_t kFirstSectionType = 5;

}  // namespace

CError* CAudioFilterLPHP1Gen::init() {
    TARV_TRY(CAudioFilterGen::init());
    if (!readType(7, type_)) {
        TARV_FAIL("@tarvstr_CAudioFilterLPHP1Gen_init_InvalidType Invalid filter type '%1' specified.",
                  getAttrString("type"));
    }
    useGain_ = getAttrBool("use-gain");
    return nullptr;
}

void CAudioFilterLPHP1Gen::design(CSectionList& list, double sampleRate, const double* values, int32_t count) const {
    restart(list);
    if (count < 1) {
        return;
    }
    const double frequency = std::min(values[0], kHighestPlace * sampleRate);
    const double gain = useGain_ && count >= 2 ? values[1] : 1.0;
    addSection(list, kFirstSectionType + type_, gain, {},
               {onePoleCoefficient(kAngles[type_] * frequency / sampleRate)});
}

}  // namespace tarv
