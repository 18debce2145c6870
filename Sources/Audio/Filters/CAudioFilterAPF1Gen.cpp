#include "Audio/Filters/CAudioFilterAPF1Gen.h"

#include <numbers>

namespace tarv {

namespace {

constexpr int32_t kSectionType = 23;
constexpr int32_t kCornerCount = 6;
constexpr double kCornerUnit = 7.5;  // Hz

constexpr double kCorners[2][kCornerCount] = {
    {0.3609, 2.7412, 11.1573, 44.7581, 179.6242, 798.4578},
    {1.2524, 5.5671, 22.3423, 89.6271, 364.7914, 2770.1114},
};

}  // namespace

CError* CAudioFilterAPF1Gen::init() {
    TARV_TRY(CAudioFilterGen::init());
    if (!readType(1, type_)) {
        TARV_FAIL("@tarvstr_CAudioFilterAPF1Gen_init_FilterTypeError Invalid filter type '%1' specified.",
                  getAttrString("type"));
    }
    return nullptr;
}

void CAudioFilterAPF1Gen::design(CSectionList& list, double sampleRate, const double*, int32_t) const {
    restart(list);
    double c[kCornerCount];
    for (int32_t i = 0; i < kCornerCount; ++i) {
        const double w = kCorners[type_][i] * kCornerUnit * 2.0 * std::numbers::pi / sampleRate;
        c[i] = (0.0 - (1.0 - w)) / (w + 1.0);
    }
    // Half of the chain in each list, so that both lie inline.
    addSection(list, kSectionType, 1.0, {c[0], c[1], c[2]}, {c[3], c[4], c[5]});
}

}  // namespace tarv
