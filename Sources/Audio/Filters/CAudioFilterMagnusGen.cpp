#include "Audio/Filters/CAudioFilterMagnusGen.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tarv {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kPi2 = 9.869604401089358;
constexpr double kTwoPi2 = 19.739208802178716;
constexpr double kPi4 = 97.40909103400243;

double halfTo(double exponent) {
    return std::pow(0.5, exponent);
}

double twoTo(double exponent) {
    return std::pow(2.0, exponent);
}

double tangentOf(double angle) {
    return std::tan(angle);
}

struct CBiquad {
    double b0, b1, b2, a0, a1, a2;
};

/// The gains that a design keeps: at DC, at the centre, and the square of that at the band's edges.
struct CGains {
    double dc;
    double centre;
    double edgeSquare;

    bool isBandPass() const { return dc == 0.0; }
    double dcSquare() const { return dc * dc; }
    double centreSquare() const { return centre * centre; }
};

// The edge of a band-pass: a half in power, and not all of it, so that no difference of the gains is exactly even.
constexpr double kBandPassEdge = 0.4999999999999999;

CGains peakGains(double gain) {
    if (std::fabs(gain - 1.0) < 0.001) {
        gain = 0.999;
    }
    const double edge = std::sqrt(gain);
    return {1.0, gain, edge * edge};
}

/// Designs A and C share their last step: the numerator belongs to the gains at DC and Nyquist.
CBiquad assemble(const CGains& gains, double nyquist, double d, double x, double y) {
    return {nyquist + x + gains.dc * d,
            2.0 * (gains.dc * d - nyquist),
            (nyquist - x) + gains.dc * d,
            y + 1.0 + d,
            2.0 * (d - 1.0),
            (1.0 - y) + d};
}

/// `place` is the frequency as a part of the rate, `octaves` the bandwidth.
CBiquad designA(const CGains& gains, double place, double octaves, CKeptResults& kept) {
    // Limits in single precision, widened.
    constexpr double kHighestEdge = 0.47999998927116394;
    constexpr double kHighestCentre = 0.49000000953674316;
    const double z = gains.dcSquare();
    const double g2 = gains.centreSquare();
    const double edge = std::min(place * kept.of(&halfTo, octaves / 2.0), kHighestEdge);
    const double w0 = 2.0 * kPi * std::min(place, kHighestCentre);
    const double a0 = w0 * w0;
    const double l = (2.0 * kPi * edge) * (2.0 * kPi * edge);
    const double t1 = l * kTwoPi2 * a0 * (g2 - z);
    const double t2 = (a0 * a0 + kPi4) * l * (gains.edgeSquare - g2);
    const double t3 = (l * l + a0 * a0) * kPi2 * (z - gains.edgeSquare);
    const double nyquistSquare = (gains.edgeSquare * t1 + z * t2 + g2 * t3) / (t1 + t2 + t3);
    const double nyquist = std::sqrt(nyquistSquare);
    const double tangent = kept.of(&tangentOf, w0 / 2.0);
    const double w = tangent * tangent;
    const double t = kept.of(&tangentOf, a0 * 0.3183098861837907 * 0.5);
    const double c = 1.0 / ((g2 - z) * t * t);
    const double s = std::sqrt((g2 - nyquistSquare) * (g2 - z)) * std::fabs(t * t * c);
    const double d = w * s;
    const double e = w * ((s - 1.0) * 2.0 - (z - nyquistSquare) * w * c);
    const double x = std::sqrt((2.0 * nyquist * (gains.dc - nyquist) - (z - nyquistSquare) * d * (g2 - z) * c) * d +
                               nyquistSquare * e);
    return assemble(gains, nyquist, d, x, std::sqrt(e));
}

/// `edge` and `centre` are parts of half the rate.
CBiquad designB(const CGains& gains, double edge, double centre, CKeptResults& kept) {
    const double z = gains.dcSquare();
    const double g2 = gains.centreSquare();
    const double l = edge * edge;
    const double n = centre * centre;
    const double n2 = n * n;
    const double t = (g2 - gains.edgeSquare) * l;
    const double p = (4.0 * n2 + 0.25) * t;
    const double q = (n2 + 1.0) * t;
    const double r = (l * l + n2) * (gains.edgeSquare - z);
    const double u = z - g2;
    const double s = 2.0 * n * u * l;
    const double v = g2 * r + gains.edgeSquare * s;
    const double nyquistSquare = (v + z * q) / (q + (r + s));
    const double middleSquare = (v + z * p) / (p + (r + s));  // at half of Nyquist
    const double tangent = kept.of(&tangentOf, centre * kPi * 0.5);
    const double w = tangent * tangent;
    const double d = nyquistSquare - g2;
    const double e = 1.0 / ((middleSquare - g2) * d);
    const double f = std::sqrt(u / d);
    const double h = 2.0 * w * d;
    const double i = (middleSquare - g2) * h * f;
    const double j = -u * h;
    const double k = std::sqrt(nyquistSquare) * f;
    const double m = (nyquistSquare - middleSquare) * u + (z - middleSquare) * d * (w * w);
    const double x = std::sqrt((g2 * m + middleSquare * j + gains.dc * std::sqrt(nyquistSquare) * i) * e);
    const double y = std::sqrt((m + j + i) * e);
    return {x + gains.dc * w + k, 2.0 * (gains.dc * w - k), (gains.dc * w - x) + k, y + f + w, 2.0 * (w - f),
            (f - y) + w};
}

bool isUsable(const CBiquad& q) {
    const double c2 = -q.a1 / q.a0;
    const double c3 = -q.a2 / q.a0;
    const bool stable = std::fabs(c3) < 1.0 && std::fabs(c2) < 1.0 - c3;
    return stable && std::isfinite(q.b0 / q.a0) && std::isfinite(q.b1 / q.b0) && std::isfinite(q.b2 / q.b0);
}

/// Design B around its singular point: at half of Nyquist the gain there equals the centre's, and E divides by zero.
CBiquad designBAside(const CGains& gains, double place, double octaves, CKeptResults& kept) {
    constexpr double kSingular = 0.5;
    // As a part of the frequency: nearer to the singular point rounding swallows the numerators' differences.
    constexpr double kLeastMove = 1e-6;
    constexpr double kFarthestMove = 0.1;
    double edge = std::min(2.0 * place * kept.of(&halfTo, octaves / 2.0), 0.98);
    double centre = std::min(2.0 * place, 0.99);
    if (std::fabs(centre - kSingular) < 0.01) {
        edge *= 0.99;
        centre *= 0.99;
    }
    const double offset = centre - kSingular;
    double move = std::fabs(offset) < kSingular * kLeastMove ? kLeastMove : 0.0;
    const bool isNear = std::fabs(offset) < 0.01;
    const double direction = (offset < 0.0) == isNear ? -1.0 : 1.0;
    CBiquad result = designB(gains, edge * (1.0 + direction * move), centre * (1.0 + direction * move), kept);
    while (!isUsable(result) && move < kFarthestMove) {
        move = move > 0.0 ? move * 2.0 : kLeastMove;
        result = designB(gains, edge * (1.0 + direction * move), centre * (1.0 + direction * move), kept);
    }
    return result;
}

CBiquad designC(const CGains& gains, double place, double octaves, CKeptResults& kept) {
    const double z = gains.dcSquare();
    const double g2 = gains.centreSquare();
    double upper = kept.of(&twoTo, octaves / 2.0) * place;
    if (gains.isBandPass()) {
        place = std::min(place, 0.5);
        upper = std::min(kept.of(&twoTo, octaves / 2.0) * place, 0.5);
    }
    const double w0 = 2.0 * kPi * place;
    const double width = 2.0 * kPi * (upper - kept.of(&halfTo, octaves / 2.0) * place);
    const double d1 = std::fabs(g2 - gains.edgeSquare);
    const double d2 = std::fabs(gains.edgeSquare - z);
    const double p = w0 * w0 - kPi2;
    const double q = d2 * kPi2 * width * width;
    const double nyquist = std::sqrt((p * p * d1 * z + g2 * q) / (p * p * d1 + q));
    const double nyquistSquare = nyquist * nyquist;
    const double e1 = std::fabs(g2 - nyquistSquare);
    const double e2 = std::fabs(gains.edgeSquare - nyquistSquare);
    const double tangent = kept.of(&tangentOf, w0 / 2.0);
    const double d = std::sqrt(e1 / std::fabs(g2 - z)) * (tangent * tangent);
    const double x1 = (std::sqrt(d2 / e2) * d + 1.0) * kept.of(&tangentOf, width / 2.0);
    const double ya =
        x1 * x1 * e2 - (std::fabs(gains.edgeSquare - gains.dc * nyquist) - std::sqrt(d2 * e2)) * (2.0 * d);
    const double yb = 2.0 * d * (std::fabs(g2 - gains.dc * nyquist) - std::sqrt(std::fabs(g2 - z) * e1));
    const double y = std::sqrt((ya + yb) / d1);
    const double x = std::sqrt((g2 * ya + gains.edgeSquare * yb) / d1);
    return assemble(gains, nyquist, d, x, y);
}

constexpr int32_t kDesignCount = 3;
constexpr CBiquad (*kDesigns[kDesignCount])(const CGains&, double place, double octaves, CKeptResults&) = {
    &designA, &designBAside, &designC};

}  // namespace

CError* CAudioFilterMagnusGen::init() {
    TARV_TRY(CAudioFilterGen::init());
    if (!readType(5, type_)) {
        TARV_FAIL("@tarvstr_CAudioFilterMagnusGen_init_InvalidType Invalid filter type '%1' specified.",
                  getAttrString("type"));
    }
    return nullptr;
}

void CAudioFilterMagnusGen::design(CSectionList& list, double sampleRate, const double* values, int32_t count) const {
    restart(list);
    if (count < 3) {
        return;
    }
    const bool isPeak = type_ < kDesignCount;
    const CGains gains = isPeak ? peakGains(values[1]) : CGains{0.0, 1.0, kBandPassEdge};
    const CBiquad q = kDesigns[type_ % kDesignCount](gains, values[0] / sampleRate, values[2], list.keptResults());
    addSection(list, 0, q.b0 / q.a0, {q.b1 / q.b0, q.b2 / q.b0}, {-q.a1 / q.a0, -q.a2 / q.a0});
}

}  // namespace tarv
