#include "Audio/Filters/CAudioFilterFIRGen.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace tarv {

namespace {

constexpr double kPi = std::numbers::pi;

// No design may ask for more memory than a second and a half at the highest rate takes, whatever its values are.
constexpr int32_t kMostTaps = 1 << 23;

/// A length in samples as a count of taps from `fewest` on; 0 for a length that no filter can have.
int32_t tapCount(double length, int32_t fewest) {
    if (!(length >= 0.0 && length <= kMostTaps)) {
        return 0;
    }
    return std::max(fewest, static_cast<int32_t>(std::floor(length + 0.5)));
}

/// Turns a unit vector by the same angle at each step: sines and cosines of multiples for two products each.
class CRotation {
public:
    explicit CRotation(double angle) : stepSine_(std::sin(angle)), stepCosine_(std::cos(angle)) {}

    double sine() const { return sine_; }
    double cosine() const { return cosine_; }
    void step() {
        const double sine = sine_ * stepCosine_ + cosine_ * stepSine_;
        cosine_ = cosine_ * stepCosine_ - sine_ * stepSine_;
        sine_ = sine;
    }

private:
    double stepSine_;
    double stepCosine_;
    double sine_ = 0.0;
    double cosine_ = 1.0;
};

/// A sum of cosines over the taps, 1 in the middle: c0 + c1 cos + c2 cos 2 + c3 cos 3 (F. J. Harris, "On the use of
/// windows for harmonic analysis with the discrete Fourier transform", Proc. IEEE 66/1, 1978).
struct CWindow {
    double c[4];

    /// `cosine` is that of the angle from the middle, which is pi just beyond the last tap.
    double at(double cosine) const {
        const double cosine2 = 2.0 * cosine * cosine - 1.0;
        const double cosine3 = cosine * (2.0 * cosine2 - 1.0);
        return c[0] + c[1] * cosine + c[2] * cosine2 + c[3] * cosine3;
    }
};

constexpr CWindow kHann = {{0.5, 0.5, 0.0, 0.0}};
constexpr CWindow kBlackman = {{0.42, 0.5, 0.08, 0.0}};
constexpr CWindow kNuttall = {{0.355768, 0.487396, 0.144232, 0.012604}};
constexpr CWindow kLimiterCurves[3] = {kHann, kBlackman, kNuttall};

}  // namespace

CError* CAudioFilterFIRLPGen::init() {
    TARV_TRY(CAudioFilterGen::init());
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
        taps[n + i] = carrier.sine() / (kPi * i) * kBlackman.at(window.cosine());
        taps[n - i] = taps[n + i];
    }
}

void CAudioFilterFIRHilbGen::design(CSectionList& list, double sampleRate, const double* values, int32_t count) const {
    restart(list);
    const int32_t length = count < 1 ? 0 : tapCount(values[0] * sampleRate, 4);
    if (length == 0) {
        return;
    }
    CArray<double, 4>& taps = addSection(list, CFilterSection::kFirType, 1.0, {}, {}).numerators;
    taps.resize(length);
    for (int32_t i = 0; i < length; ++i) {
        // From the middle of the taps, a whole number in a filter of odd length and a half more in one of even length.
        const double place = i - (length - 1) * 0.5;
        const double ideal = place == 0.0 ? 0.0 : (1.0 - std::cos(kPi * place)) / (kPi * place);
        taps[i] = ideal * kBlackman.at(std::cos(2.0 * kPi * place / (length + 1)));
    }
}

CError* CAudioFilterFIRLimGen::init() {
    TARV_TRY(CAudioFilterGen::init());
    if (!readType(2, type_)) {
        TARV_FAIL("@tarvstr_CAudioFilterFIRLimGen_init_InvalidType Invalid filter type '%1' specified.",
                  getAttrString("type"));
    }
    return nullptr;
}

void CAudioFilterFIRLimGen::design(CSectionList& list, double sampleRate, const double* values, int32_t count) const {
    restart(list);
    const int32_t length = count < 1 ? 0 : tapCount(values[0] * sampleRate, 1);
    if (length == 0) {
        return;
    }
    list.latency = length - 1;
    CArray<double, 4>& taps = addSection(list, CFilterSection::kFirType, 1.0, {}, {}).numerators;
    taps.resize(length);
    double sum = 0.0;
    for (int32_t i = 0; i < length; ++i) {
        taps[i] = kLimiterCurves[type_].at(std::cos(2.0 * kPi * (i - (length - 1) * 0.5) / (length + 1)));
        sum += taps[i];
    }
    for (double& tap : taps) {
        tap /= sum;
    }
}

}  // namespace tarv
