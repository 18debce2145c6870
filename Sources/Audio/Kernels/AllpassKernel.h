#pragma once

namespace tarv {

class CQPLEXContext;
struct CSectionKernels;

/// Registers `fltapf1_6i`, `fltapf1_6u`, `fltapf1_6` and `fltapf1_6g`; fills section type 23. Returns the row behind
/// them.
///
/// Six first-order all-pass sections in a chain, y = (x - y1) x c + x1. State block: six c, six x1, six y1.
CSectionKernels* registerAllpassKernel(CQPLEXContext& context, CSectionKernels* rows);

}  // namespace tarv
