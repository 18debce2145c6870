#include "Audio/Filters/CAudioFilterFIRLimGen.h"

#include <cmath>
#include <numbers>

#include "Audio/Filters/CFirWindow.h"

namespace tarv {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr int32_t kFewestTaps = 1;
constexpr CFirWindow kCurves[3] = {kHannWindow, kBlackmanWindow, kNuttallWindow};

}  // namespace

CError* CAudioFilterFIRLimGen::init() {
    TARV_TRY(CAudioFilterFIRGen::init());
    if (!readType(2, type_)) {
        TARV_FAIL("@tarvstr_CAudioFilterFIRLimGen_init_InvalidType Invalid filter type '%1' specified.",
                  getAttrString("type"));
    }
    return nullptr;
}

void CAudioFilterFIRLimGen::design(CSectionList& list, double sampleRate, const double* values, int32_t count) const {
    restart(list);
    const int32_t length = count < 1 ? 0 : tapCount(values[0] * sampleRate, kFewestTaps);
    if (length == 0) {
        return;
    }
    list.latency = length - 1;
    CArray<double, 4>& taps = addSection(list, CFilterSection::kFirType, 1.0, {}, {}).numerators;
    taps.resize(length);
    double sum = 0.0;
    for (int32_t i = 0; i < length; ++i) {
        taps[i] = kCurves[type_].at(std::cos(2.0 * kPi * (i - (length - 1) * 0.5) / (length + 1)));
        sum += taps[i];
    }
    for (double& tap : taps) {
        tap /= sum;
    }
}

CFirSize CAudioFilterFIRLimGen::firSize(double sampleRate, const CDesignRange* ranges, int32_t count) const {
    return count < 1 ? CFirSize{} : sizeOfLength(ranges[0], sampleRate, kFewestTaps);
}

}  // namespace tarv
