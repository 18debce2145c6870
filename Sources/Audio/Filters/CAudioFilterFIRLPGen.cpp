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

void CAudioFilterFIRLPGen::design(CSectionList& list, double sampleRate, const double* values, int32_t count) const {
    restart(list);
    if (count < 2) {
        return;
    }
    const double rate = isAbsolute_ ? 44100.0 : sampleRate;
    const double length = values[1] * rate / values[0] * 0.125;
    // A product that is whole but for rounding counts as whole.
    const double half = std::floor(length + length * std::numeric_limits<double>::epsilon());
    if (!(half >= 0.0 && half < kMostTaps / 2)) {
        return;
    }
    const int32_t n = static_cast<int32_t>(half);
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
