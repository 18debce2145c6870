// The exponential function of Windows. The library's takes some 35 ns in the x87, which a host that automates many
// parameters pays for each of them. So this one computes with 60 bits in SSE2, and asks the library where these do not
// tell how the library rounds: once in some 40 calls.
//
// With 64-bit steps the library's result before its rounding is wrong by less than 2^-61: three roundings of the
// exponent's fraction (2^-64 each, times ln 2), the instruction (2^-63) and the sum with 1 (2^-64), for a result of at
// least 1/2. The one here is wrong by less than 2^-60: the roundings of `step`, of its product with the head and of the
// sum with the tail. Both bounds and the rounding of the limits below (2^-61) lie within kDoubt.

#include "Platform/Exponential.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

namespace tarv {

namespace {

/// A number as the sum of two: the second is at most half a place of the first.
struct CPair {
    double head;
    double tail;
};

constexpr double upperHalf(double number) {
    const double scaled = 134217729.0 * number;  // 2^27 + 1
    return scaled - (scaled - number);
}

/// T. J. Dekker, "A Floating-Point Technique for Extending the Available Precision", 1971. Wrong by some 2^-103.
constexpr CPair product(const CPair& a, const CPair& b) {
    const double whole = a.head * b.head;
    const double aUpper = upperHalf(a.head);
    const double bUpper = upperHalf(b.head);
    const double aLower = a.head - aUpper;
    const double bLower = b.head - bUpper;
    const double rest = ((aUpper * bUpper - whole) + aUpper * bLower + aLower * bUpper) + aLower * bLower;
    const double tail = rest + (a.head * b.tail + a.tail * b.head);
    const double head = whole + tail;
    return {head, tail - (head - whole)};
}

constexpr int32_t kStepBits = 7;
constexpr int32_t kSteps = 1 << kStepBits;

/// 2^(i / kSteps).
constexpr std::array<CPair, kSteps + 1> powersOfTwo() {
    constexpr CPair kRoot = {0x1.0163da9fb3335p+0, 0x1.b61299ab8cdb7p-54};
    std::array<CPair, kSteps + 1> powers = {};
    powers[0] = {1.0, 0.0};
    for (size_t i = 1; i <= kSteps; ++i) {
        powers[i] = product(powers[i - 1], kRoot);
    }
    return powers;
}

constexpr std::array<CPair, kSteps + 1> kPowers = powersOfTwo();
static_assert(kPowers[kSteps].head == 2.0 && kPowers[kSteps].tail < 0x1p-90 && kPowers[kSteps].tail > -0x1p-90);

constexpr double kStepsPerUnit = 0x1.71547652b82fep+7;  // kSteps / ln 2
// ln 2 / kSteps. The head leaves places for the count of steps, so that their product is exact.
constexpr CPair kStep = {0x1.62e42fefa0000p-8, 0x1.cf79abc9e3b3ap-47};
// A sum with it is rounded to a whole number, which then stands in the lowest bits.
constexpr double kRounder = 0x1.8p52;
// Up to here, on both sides of 0, results are normal numbers.
constexpr double kLargest = 600.0;
constexpr double kDoubt = 0x1.8p-59;

/// With 64-bit steps, whatever the thread has.
[[gnu::noinline]] double byLibrary(double x) {
    constexpr uint16_t kPrecision = 0x300;
    uint16_t before = 0;
    asm volatile("fnstcw %0" : "=m"(before));
    const auto full = static_cast<uint16_t>(before | kPrecision);
    asm volatile("fldcw %0" : : "m"(full));
    const double result = std::exp(x);
    asm volatile("fldcw %0" : : "m"(before));
    return result;
}

}  // namespace

double exponential(double x) {
    if (!(std::fabs(x) <= kLargest)) {
        return byLibrary(x);
    }
    const double rounded = x * kStepsPerUnit + kRounder;
    const auto steps = static_cast<int32_t>(std::bit_cast<int64_t>(rounded));
    const double count = rounded - kRounder;
    const double rest = x - count * kStep.head;
    const double correction = count * kStep.tail;
    const double r = rest - correction;
    const double lower = (rest - r) - correction;
    // e^r - 1 by its series; |r| is below 2^-8.5, so that the next term is below 2^-72.
    const double series = 1.0 / 2 + r * (1.0 / 6 + r * (1.0 / 24 + r * (1.0 / 120 + r * (1.0 / 720))));
    const double step = r + (lower + r * r * series);
    const CPair& power = kPowers[static_cast<size_t>(steps & (kSteps - 1))];
    const double tail = (power.tail + power.tail * step) + power.head * step;
    const double doubt = power.head * kDoubt;
    const double least = power.head + (tail - doubt);
    if (least != power.head + (tail + doubt)) {
        return byLibrary(x);
    }
    const int64_t exponent = 1023 + (steps >> kStepBits);
    return least * std::bit_cast<double>(exponent << 52);
}

}  // namespace tarv
