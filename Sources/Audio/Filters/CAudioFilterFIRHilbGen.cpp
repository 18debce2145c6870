#include "Audio/Filters/CAudioFilterFIRHilbGen.h"

#include <cmath>
#include <numbers>

#include "Audio/Filters/CFirWindow.h"

namespace tarv {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr int32_t kFewestTaps = 4;

}  // namespace

void CAudioFilterFIRHilbGen::design(CSectionList& list, double sampleRate, const double* values, int32_t count) const {
    restart(list);
    const int32_t length = count < 1 ? 0 : tapCount(values[0] * sampleRate, kFewestTaps);
    if (length == 0) {
        return;
    }
    CArray<double, 4>& taps = addSection(list, CFilterSection::kFirType, 1.0, {}, {}).numerators;
    taps.resize(length);
    for (int32_t i = 0; i < length; ++i) {
        // From the middle of the taps, a whole number in a filter of odd length and a half more in one of even length.
        const double place = i - (length - 1) * 0.5;
        const double ideal = place == 0.0 ? 0.0 : (1.0 - std::cos(kPi * place)) / (kPi * place);
        taps[i] = ideal * kBlackmanWindow.at(std::cos(2.0 * kPi * place / (length + 1)));
    }
}

CFirSize CAudioFilterFIRHilbGen::firSize(double sampleRate, const CDesignRange* ranges, int32_t count) const {
    return count < 1 ? CFirSize{} : sizeOfLength(ranges[0], sampleRate, kFewestTaps);
}

}  // namespace tarv
