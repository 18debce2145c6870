#pragma once

namespace tarv {

class CQPLEXContext;
struct CSectionKernels;

/// Registers `fltbiqi`, `fltbiqu` and the five biquads, each plain and with gain; fills section types 0 to 4. Returns
/// the row behind them.
///
/// State block: c0 = b1/b0, c1 = b2/b0, c2 = -a1/a0, c3 = -a2/a0, s1, s2. Direct form II (Oppenheim and Schafer,
/// Discrete-Time Signal Processing, 6.3) whose first numerator tap is 1: t = s2; s2 = s1; s1 = s1 x c2 + c3 x t + x;
/// the output is c0 x s2 + s1 + c1 x t, or, where the numerator is fixed by the type, only its signs.
CSectionKernels* registerBiquadKernels(CQPLEXContext& context, CSectionKernels* rows);

}  // namespace tarv
