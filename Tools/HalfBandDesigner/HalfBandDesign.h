#pragma once

#include <string>
#include <vector>

namespace tarv {

/// Elliptic half-band filter as a pair of all-pass branches, H(z) = (A(z^2) + z^-1 B(z^2)) / 2.
///
/// `order` is the number of second-order all-pass sections of both branches together (even, 2 or more). `width` is the
/// transition band's width as a part of the rate at which the filter runs, above 0 and below 0.5: the pass band ends at
/// 0.25 - width/2, the stop band begins at 0.25 + width/2. Returns the coefficients in ascending order; branch A takes
/// those at even positions, branch B the others. An order or a width outside its range gives an empty list.
///
/// The poles of an elliptic half-band filter lie on the imaginary axis, at places that follow from the elliptic sine at
/// equal steps of a quarter period (R. A. Valenzuela, A. G. Constantinides, "Digital signal processing schemes for
/// efficient interpolation and decimation", IEE Proceedings G 130/6, 1983); the sine is computed as a quotient of theta
/// functions, its nome from two arithmetic-geometric means (M. Abramowitz, I. A. Stegun, "Handbook of mathematical
/// functions", 16.27, 16.36, 17.6).
std::vector<long double> designHalfBand(int order, long double width);

/// The least attenuation in dB over the stop band, from 0.25 + width/2 to half the rate, measured at `steps` + 1
/// points.
double halfBandAttenuation(const std::vector<long double>& coefficients, long double width, int steps = 20000);

/// The coefficients of one branch (0 is A, 1 is B) as the definitions list them: separated by commas, 18 decimals, of
/// which 17 significant digits are given (they read back as the same 64-bit float).
std::string branchText(const std::vector<long double>& coefficients, int branch);

}  // namespace tarv
