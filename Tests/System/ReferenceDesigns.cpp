#include "Tests/System/ReferenceDesigns.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace tarv::reference {

namespace {

constexpr double kPi = std::numbers::pi;
// 20 / ln 10.
constexpr double kDecibelsPerNeper = 8.685889638065037;

CBiquadDesign normalised(double b0, double b1, double b2, double a0, double a1, double a2) {
    return {b0 / a0, b1 / b0, b2 / b0, -a1 / a0, -a2 / a0};
}

}  // namespace

double factorOf(double decibels) {
    return std::exp(decibels / kDecibelsPerNeper);
}

CBiquadDesign designPeak(double frequency, double gain, double octaves, double rate) {
    // A band at 0 dB stays a band.
    const double G = std::fabs(gain - 1.0) < 0.001 ? 0.999 : gain;
    const double G0 = 1.0;
    const double G2 = G * G;
    const double Z = G0 * G0;
    // The gain at the band's edges is the mean in decibels.
    const double B2 = std::sqrt(G) * std::sqrt(G);
    double wl = std::min(2.0 * frequency / rate * std::pow(0.5, octaves / 2.0), 0.98);
    double wn = std::min(2.0 * frequency / rate, 0.99);
    if (std::fabs(wn - 0.5) < 0.01) {
        wl *= 0.99;
        wn *= 0.99;
    }
    const double L = wl * wl;
    const double N = wn * wn;
    const double N2 = N * N;
    const double t = (G2 - B2) * L;
    const double P = (4.0 * N2 + 0.25) * t;
    const double Q = (N2 + 1.0) * t;
    const double R = (L * L + N2) * (B2 - Z);
    const double u = Z - G2;
    const double S = 2.0 * N * u * L;
    const double T = R + S;
    const double V = G2 * R + B2 * S;
    const double G1 = (V + Z * Q) / (Q + T);
    const double Gm = (V + Z * P) / (P + T);
    const double W = std::tan(wn * kPi * 0.5) * std::tan(wn * kPi * 0.5);
    const double D = G1 - G2;
    const double E = 1.0 / ((Gm - G2) * D);
    const double F = std::sqrt(u / D);
    const double H = 2.0 * W * D;
    const double I = (Gm - G2) * H * F;
    const double J = -u * H;
    const double K = std::sqrt(G1) * F;
    const double M = (G1 - Gm) * u + (Z - Gm) * D * (W * W);
    const double X = std::sqrt((G2 * M + Gm * J + G0 * std::sqrt(G1) * I) * E);
    const double Y = std::sqrt((M + J + I) * E);
    return normalised(X + G0 * W + K, 2.0 * (G0 * W - K), (G0 * W - X) + K, Y + F + W, 2.0 * (W - F), (F - Y) + W);
}

CBiquadDesign designHighShelf(double frequency, double gain, double octaves, double rate) {
    const double A = std::sqrt(gain);
    const double w = 2.0 * kPi * std::min(frequency, 0.48 * rate) / rate;
    const double s = std::sin(w);
    const double c = std::cos(w);
    const double h = std::sinh(std::log(2.0) * 0.5 * octaves * w / s);
    const double beta = 2.0 * std::sqrt(A) * h * s;
    return normalised(A * ((A + 1.0) + (A - 1.0) * c + beta), -2.0 * A * ((A - 1.0) + (A + 1.0) * c),
                      A * ((A + 1.0) + (A - 1.0) * c - beta), (A + 1.0) - (A - 1.0) * c + beta,
                      2.0 * ((A - 1.0) - (A + 1.0) * c), (A + 1.0) - (A - 1.0) * c - beta);
}

double responseOf(const CBiquadDesign& design, double frequency, double rate) {
    const std::complex<double> z1 = std::polar(1.0, -2.0 * kPi * frequency / rate);
    const std::complex<double> z2 = z1 * z1;
    return std::abs(design.gain * (1.0 + design.b1 * z1 + design.b2 * z2) / (1.0 - design.a1 * z1 - design.a2 * z2));
}

double onePoleCoefficient(double frequency, double rate) {
    const double a = 2.0 - std::cos(2.0 * kPi * frequency / rate);
    return (1.0 - a) + std::sqrt(a * a - 1.0);
}

const CHalfBandDesign& steepHalfBand() {
    static const CHalfBandDesign design = {
        {0.035832788431062100, 0.272040143396457710, 0.572057197235700250, 0.827124761997323770},
        {0.134090141943066930, 0.424324871271868350, 0.706292142138639220, 0.941503094173755220}};
    return design;
}

const CHalfBandDesign& softHalfBand() {
    static const CHalfBandDesign design = {{0.042454709865267684, 0.393319893190328010},
                                           {0.170739850497499070, 0.745713588720222980}};
    return design;
}

CCurveDesign designCurve(double ratio, double knee) {
    CCurveDesign curve{};
    curve.bend = ratio > 0.9999 ? 0.9999 - 1.0 : ratio > 0.002 ? 0.0 - (1.0 - ratio) : -1.0;
    curve.slope = curve.bend + 1.0;
    curve.kneeStart = knee * -0.5;
    const double halfAngle = (kPi - std::atan(-curve.bend)) * 0.5;
    curve.centreOffset = std::tan(halfAngle) * curve.kneeStart;
    curve.kneeEnd = curve.kneeStart + std::sin(2.0 * halfAngle) * -curve.centreOffset;
    curve.radiusSquared = curve.centreOffset * curve.centreOffset;
    return curve;
}

double CCurveDesign::at(double x) const {
    if (!(x > kneeStart)) {
        return x;
    }
    if (x >= kneeEnd) {
        return slope * x;
    }
    const double d = x - kneeStart;
    return std::sqrt(radiusSquared - d * d) + x + centreOffset;
}

CTubeDesign designTube(double rate) {
    CTubeDesign tube;
    tube.curveA = designCurve(tube.ratioA, tube.kneeA);
    tube.curveB = designCurve(tube.ratioB, tube.kneeB);
    const double restA = tube.curveA.at(tube.biasI);
    tube.restOutput = restA + (tube.curveB.at(tube.biasI) - restA) * tube.biasV;
    const double x = tube.gainI * tube.autoGainPoint + tube.biasI;
    const double mix = tube.autoGainPoint * tube.gainV + tube.biasV;
    const double a = tube.curveA.at(x);
    tube.autoGain = 1.0 / (a + (tube.curveB.at(x) - a) * mix - tube.restOutput);
    const double pole = 2.0 - std::cos(2.0 * kPi * tube.feedFrequency / rate);
    tube.feedCoefficient = 1.0 + std::sqrt(pole * pole - 1.0) - pole;
    return tube;
}

}  // namespace tarv::reference
