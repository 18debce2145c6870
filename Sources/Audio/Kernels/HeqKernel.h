#pragma once

namespace tarv {

class CQPLEXContext;
struct CSectionKernels;

/// Registers `fltheqi`, `flthequ` and `fltheq`; fills section type 22. Returns the row behind them.
///
/// A biquad whose input is divided by, and whose output is multiplied by, a slowly moving factor that follows the
/// positive and the negative side of the signal. There is one kernel for both forms: its immediate is the gain, 1.0 for
/// the plain form. Coefficients: c0, c1, p, q, r, t, k1, k2 (numerators), c2, c3 (denominators). State block: c0 to c3,
/// s1, s2, p, q, r, t, k1, k2, g1, g1', g2, g2', and four spare values.
CSectionKernels* registerHeqKernel(CQPLEXContext& context, CSectionKernels* rows);

}  // namespace tarv
