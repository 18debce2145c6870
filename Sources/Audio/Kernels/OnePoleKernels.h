#pragma once

namespace tarv {

class CQPLEXContext;
struct CSectionKernels;

/// Registers `fltlphp1i`, `fltlphp1u` and the one-pole cascades of one to four stages, `fltlp1a` to `fltlp1d` and
/// `flthp1a` to `flthp1d`, each plain and with gain; fills section types 5 to 12. Returns the row behind them.
///
/// State block: k, then up to four stage states v. A stage is v += (x - v) x k; a low-pass gives v, a high-pass x - v.
CSectionKernels* registerOnePoleKernels(CQPLEXContext& context, CSectionKernels* rows);

}  // namespace tarv
