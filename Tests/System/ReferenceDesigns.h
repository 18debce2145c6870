#pragma once

#include <vector>

namespace tarv::reference {

/// One second-order section: y = gain * (x + b1 x' + b2 x'') over 1 - a1 y' - a2 y''.
struct CBiquadDesign {
    double gain;
    double b1, b2;
    double a1, a2;
};

/// Peak with a prescribed gain at Nyquist that follows the analogue prototype. Hz, linear gain, octaves, Hz.
/// Far below the rate it is a difference of nearly equal values, so the order of its operations counts.
CBiquadDesign designPeak(double frequency, double gain, double octaves, double rate);
/// Cookbook high shelf. Hz, linear gain, octaves, Hz. The corner stands at most at 0.48 of the rate.
CBiquadDesign designHighShelf(double frequency, double gain, double octaves, double rate);
/// |H| of a section at a frequency in Hz.
double responseOf(const CBiquadDesign& design, double frequency, double rate);

/// Coefficient of v += (x - v) * k with the -3 dB point at `frequency`.
double onePoleCoefficient(double frequency, double rate);

/// Coefficients of the two branches of a half-band all-pass pair.
struct CHalfBandDesign {
    std::vector<double> a;
    std::vector<double> b;
};
/// 106 dB from 0.25 + 0.025 of the rate: the filter of the first stage.
const CHalfBandDesign& steepHalfBand();
/// 116 dB from 0.25 + 0.125 of the rate: the filter of all further stages.
const CHalfBandDesign& softHalfBand();

/// Identity below the knee, a line through the origin above it, a circular arc between.
struct CCurveDesign {
    double bend, slope, kneeStart, centreOffset, kneeEnd, radiusSquared;
    double at(double x) const;
};
CCurveDesign designCurve(double ratio, double knee);

/// What the saturation works with; the fields up to feedFrequency are the product's fixed settings.
struct CTubeDesign {
    double ratioA = 1.0 / 1.05;
    double ratioB = 1.0 / 1.1;
    double kneeA = 3.5;
    double kneeB = 4.8;
    double biasI = -1.8;
    double biasV = 0.5;
    double gainI = 1.0;
    double gainV = 0.15;
    double autoGainPoint = 1.009;
    double feedFrequency = 50.0;
    CCurveDesign curveA{};
    CCurveDesign curveB{};
    double restOutput = 0.0;
    double autoGain = 0.0;
    double feedCoefficient = 0.0;
};
CTubeDesign designTube(double rate);

/// Factor of a level in decibels, by the constant of the gain converter.
double factorOf(double decibels);

}  // namespace tarv::reference
