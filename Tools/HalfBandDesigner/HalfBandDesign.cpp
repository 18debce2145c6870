#include "Tools/HalfBandDesigner/HalfBandDesign.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <numbers>

namespace tarv {

namespace {

using CReal = long double;
constexpr CReal kPi = std::numbers::pi_v<CReal>;

/// Means of two positive numbers; the number of equal digits doubles with each step.
CReal arithmeticGeometricMean(CReal a, CReal b) {
    for (int i = 0; i < 16; ++i) {
        const CReal mean = (a + b) / 2;
        b = std::sqrt(a * b);
        a = mean;
    }
    return a;
}

/// The nome of the modulus k: exp(-pi K'/K), where K = pi / (2 agm(1, k')).
CReal nome(CReal k) {
    const CReal complementary = std::sqrt((1 - k) * (1 + k));
    return std::exp(-kPi * arithmeticGeometricMean(1, complementary) / arithmeticGeometricMean(1, k));
}

/// theta1(z, q) / theta4(z, q), that is sqrt(k) sn(2 K z / pi).
CReal thetaQuotient(CReal z, CReal q) {
    // q stays below 0.2 for every width that is of use, 40 terms are then far below the last digit.
    constexpr int kTerms = 40;
    CReal numerator = 0;
    CReal denominator = 1;
    for (int i = 0; i < kTerms; ++i) {
        const CReal sign = i % 2 == 0 ? 1 : -1;
        numerator += 2 * sign * std::pow(q, (i + 0.5L) * (i + 0.5L)) * std::sin((2 * i + 1) * z);
        if (i > 0) {
            denominator += 2 * sign * std::pow(q, static_cast<CReal>(i) * i) * std::cos(2 * i * z);
        }
    }
    return numerator / denominator;
}

}  // namespace

std::vector<long double> designHalfBand(int order, long double width) {
    std::vector<CReal> coefficients;
    if (order < 2 || order % 2 != 0 || !(width > 0.0L && width < 0.5L)) {
        return coefficients;
    }
    // The band edges are symmetric about a quarter of the rate, so the selectivity is the square of the lower one's
    // tangent.
    const CReal edge = std::tan(kPi / 4 * (1 - 2 * width));
    const CReal k = edge * edge;
    const CReal q = nome(k);
    for (int i = 1; i <= order; ++i) {
        const CReal root = thetaQuotient(i * kPi / (2 * order + 1), q);
        const CReal square = root * root;
        const CReal place = std::sqrt((1 - square * k) * (1 - square / k)) / (1 + square);
        coefficients.push_back((1 - place) / (1 + place));
    }
    return coefficients;
}

double halfBandAttenuation(const std::vector<long double>& coefficients, long double width, int steps) {
    const CReal start = 0.25L + width / 2;
    CReal highest = 0;
    for (int i = 0; i <= steps; ++i) {
        const CReal frequency = start + (0.5L - start) * i / steps;
        const std::complex<CReal> delay = std::polar<CReal>(1, -2 * kPi * frequency);
        const std::complex<CReal> delay2 = delay * delay;
        std::complex<CReal> branches[2] = {1, delay};
        for (size_t j = 0; j < coefficients.size(); ++j) {
            branches[j % 2] *= (coefficients[j] + delay2) / (CReal(1) + coefficients[j] * delay2);
        }
        highest = std::max(highest, std::abs(branches[0] + branches[1]) / 2);
    }
    return static_cast<double>(-20 * std::log10(highest));
}

std::string branchText(const std::vector<long double>& coefficients, int branch) {
    constexpr int kDecimals = 18;
    std::string text;
    for (size_t i = static_cast<size_t>(branch); i < coefficients.size(); i += 2) {
        const double value = static_cast<double>(coefficients[i]);
        // 17 significant digits identify a 64-bit float; a small first coefficient needs fewer.
        const int decimals = std::min(kDecimals, 16 - static_cast<int>(std::floor(std::log10(value))));
        char digits[64];
        std::snprintf(digits, sizeof digits, "%.*f", decimals, value);
        std::string number(digits);
        number.resize(2 + kDecimals, '0');
        text += (text.empty() ? "" : ",") + number;
    }
    return text;
}

}  // namespace tarv
