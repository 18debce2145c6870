#include "Audio/Filters/CAudioFilterRBJGen.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tarv {

namespace {

/// What the formulas share. `a` is the square root of the gain, `sine` and `cosine` are those of the angle of a sample.
struct CTerms {
    double a;
    double sine;
    double cosine;
    double alpha;
    double beta;
    double value;  ///< the third design value as given
};

struct CBiquad {
    double b0, b1, b2, a0, a1, a2;
};

double sineOf(double angle) {
    return std::sin(angle);
}

double cosineOf(double angle) {
    return std::cos(angle);
}

double hyperbolicSineOf(double number) {
    return std::sinh(number);
}

using CFormula = CBiquad (*)(const CTerms& t);

/// The denominator that all types but the peak, the shelves and the last share.
CBiquad plain(const CTerms& t, double b0, double b1, double b2) {
    return {b0, b1, b2, 1.0 + t.alpha, -2.0 * t.cosine, 1.0 - t.alpha};
}

CBiquad lowPass(const CTerms& t) {
    return plain(t, (1.0 - t.cosine) / 2.0, 1.0 - t.cosine, (1.0 - t.cosine) / 2.0);
}

CBiquad highPass(const CTerms& t) {
    return plain(t, (1.0 + t.cosine) / 2.0, -1.0 - t.cosine, (1.0 + t.cosine) / 2.0);
}

CBiquad bandPassOfPeak(const CTerms& t) {
    return plain(t, t.alpha, 0.0, -t.alpha);
}

CBiquad bandPassOfSkirt(const CTerms& t) {
    return plain(t, t.sine / 2.0, 0.0, -t.sine / 2.0);
}

CBiquad notch(const CTerms& t) {
    return plain(t, 1.0, -2.0 * t.cosine, 1.0);
}

CBiquad allPass(const CTerms& t) {
    return plain(t, 1.0 - t.alpha, -2.0 * t.cosine, 1.0 + t.alpha);
}

CBiquad peak(const CTerms& t) {
    const double up = t.alpha * t.a;
    const double down = t.alpha / t.a;
    const double middle = -2.0 * t.cosine;
    return {1.0 + up, middle, 1.0 - up, 1.0 + down, middle, 1.0 - down};
}

/// Both shelves: the high one is the low one with the cosine turned over.
CBiquad shelf(const CTerms& t, double cosine, double sign) {
    const double more = t.a + 1.0;
    const double less = t.a - 1.0;
    return {t.a * (more - less * cosine + t.beta), sign * 2.0 * t.a * (less - more * cosine),
            t.a * (more - less * cosine - t.beta), more + less * cosine + t.beta,
            sign * -2.0 * (less + more * cosine),  more + less * cosine - t.beta};
}

CBiquad lowShelf(const CTerms& t) {
    return shelf(t, t.cosine, 1.0);
}

CBiquad highShelf(const CTerms& t) {
    return shelf(t, -t.cosine, -1.0);
}

CBiquad allPassOfRadius(const CTerms& t) {
    const double square = t.value * t.value;
    const double middle = -2.0 * t.value * t.cosine;
    return {square, middle, 1.0, 1.0, middle, square};
}

struct CTypeRow {
    CFormula formula;
    int32_t sectionType;
    bool canInvert;
};

constexpr CTypeRow kTypes[10] = {
    {&lowPass, 1, true},    {&highPass, 2, true},         {&bandPassOfPeak, 3, false}, {&bandPassOfSkirt, 3, false},
    {&notch, 4, false},     {&allPass, 0, false},         {&peak, 0, false},           {&lowShelf, 0, false},
    {&highShelf, 0, false}, {&allPassOfRadius, 0, false},
};

constexpr int32_t kHeqSectionType = 22;
constexpr int32_t kPlainValues = 3;
constexpr int32_t kHeqValues = 9;

// Up to here 1 - alpha differs from -(1 + alpha) by more than rounding, so that the poles stay inside the circle. Only
// bandwidths of many octaves next to half the rate reach it.
constexpr double kWidestBand = 1e10;

}  // namespace

CError* CAudioFilterRBJGen::init() {
    TARV_TRY(CAudioFilterGen::init());
    if (!readType(9, type_)) {
        TARV_FAIL("@tarvstr_CAudioFilterRBJGen_init_InvalidType Invalid filter type '%1' specified.",
                  getAttrString("type"));
    }
    isQ_ = getAttrBool("is-q");
    isType2_ = getAttrBool("is-type2");
    isInverted_ = getAttrBool("is-inverted");
    isHeq_ = getAttrBool("is-heq");
    return nullptr;
}

void CAudioFilterRBJGen::design(CSectionList& list, double sampleRate, const double* values, int32_t count) const {
    restart(list);
    if (count < (isHeq_ ? kHeqValues : kPlainValues)) {
        return;
    }
    const double w = 2.0 * std::numbers::pi * std::min(values[0], kHighestPlace * sampleRate) / sampleRate;
    CKeptResults& kept = list.keptResults();
    CTerms t{std::sqrt(values[1]), kept.of(&sineOf, w), kept.of(&cosineOf, w), 0.0, 0.0, values[2]};
    if (isQ_) {
        t.alpha = t.sine / (t.value + t.value);
        t.beta = std::sqrt(t.a) * t.sine / t.value;
    } else {
        const double octaves = std::numbers::ln2 * 0.5 * t.value;
        const double h = std::min(kept.of(&hyperbolicSineOf, isType2_ ? octaves : octaves * w / t.sine), kWidestBand);
        t.alpha = t.sine * h;
        t.beta = 2.0 * std::sqrt(t.a) * h * t.sine;
    }
    const CTypeRow& row = kTypes[type_];
    CBiquad q = row.formula(t);
    if (isInverted_ && row.canInvert) {
        q.b0 = -q.b0;
    }
    CFilterSection& section = addSection(list, isHeq_ ? kHeqSectionType : row.sectionType, q.b0 / q.a0,
                                         {q.b1 / q.b0, q.b2 / q.b0}, {-q.a1 / q.a0, -q.a2 / q.a0});
    if (isHeq_) {
        section.numerators.resize(8);
        std::copy(values + 3, values + 7, section.numerators.begin() + 2);
        for (int32_t i = 0; i < 2; ++i) {
            section.numerators[6 + i] = onePoleCoefficient(2.0 * std::numbers::pi * values[7 + i] / sampleRate);
        }
    }
}

}  // namespace tarv
