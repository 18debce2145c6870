#include "Audio/Filters/CAudioFilterFIRLPGen.h"

#include <cmath>
#include <limits>
#include <numbers>

#include "Audio/Filters/CFirWindow.h"
#include "Audio/Filters/CRotation.h"

namespace tarv {

namespace {

constexpr double kPi = std::numbers::pi;

}  // namespace

CError* CAudioFilterFIRLPGen::init() {
    TARV_TRY(CAudioFilterFIRGen::init());
    isAbsolute_ = getAttrBool("is-absolute");
    return nullptr;
}

int32_t CAudioFilterFIRLPGen::sideLength(double rate, double cutOff, double factor) {
    const double length = factor * rate / cutOff * 0.125;
    // A product that is whole but for rounding counts as whole.
    const double half = std::floor(length + length * std::numeric_limits<double>::epsilon());
    return half >= 0.0 && half < kMostTaps / 2 ? static_cast<int32_t>(half) : -1;
}

CFirSize CAudioFilterFIRLPGen::firSize(double sampleRate, const CDesignRange* ranges, int32_t count) const {
    if (count < 2) {
        return {};
    }
    const CDesignRange& cutOff = ranges[0];
    const CDesignRange& factor = ranges[1];
    // The longest filter has the lowest cut-off and the greatest factor. A range that reaches 0 Hz has no longest.
    const bool isPoint = cutOff.isPoint() && factor.isPoint();
    const bool hasLongest = isPoint || cutOff.low > 0.0;
    const int32_t longest = hasLongest ? sideLength(designRate(sampleRate), cutOff.low, factor.high) : -1;
    if (longest >= 0) {
        return {1, 2 * longest + 1};
    }
    return isPoint ? CFirSize{} : CFirSize{1, kMostTaps};
}

void CAudioFilterFIRLPGen::design(CSectionList& list, double sampleRate, const double* values, int32_t count) const {
    restart(list);
    if (count < 2) {
        return;
    }
    const double rate = designRate(sampleRate);
    const int32_t n = sideLength(rate, values[0], values[1]);
    if (n < 0) {
        return;
    }
    list.latency = n;
    CArray<double, 4>& taps = addSection(list, CFilterSection::kFirType, 1.0, {}, {}).numerators;
    taps.resize(2 * n + 1);
    CRotation carrier(2.0 * kPi * values[0] / rate);
    CRotation window(kPi / (n + 1));
    taps[n] = 2.0 * values[0] / rate;
    for (int32_t i = 1; i <= n; ++i) {
        carrier.step();
        window.step();
        taps[n + i] = carrier.sine() / (kPi * i) * kBlackmanWindow.at(window.cosine());
        taps[n - i] = taps[n + i];
    }
}

}  // namespace tarv
