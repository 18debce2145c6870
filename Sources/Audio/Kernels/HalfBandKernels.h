#pragma once

namespace tarv {

class CQPLEXContext;
struct CSectionKernels;

/// Registers `flthbf2` to `flthbf16` with their init, update and gain forms; fills section types 13 to 20. Returns
/// the row behind them.
///
/// A polyphase pair of all-pass chains without rate change (Vaidyanathan, Multirate Systems and Filter Banks, 5.3):
/// every stage is y[n] = (x[n] - y[n-2]) x c + x[n-2]; the output is branch a plus the previous sample of branch b.
/// State block for n coefficients a branch: a0 ..., b0 ..., the held output of branch b, the index, then n + 1 delay
/// lines of four for each branch (a stage's output is the next one's input). Lines are circular with one index: it
/// starts at 3 and steps down; the write goes to the index, the read is two entries behind.
CSectionKernels* registerHalfBandKernels(CQPLEXContext& context, CSectionKernels* rows);

}  // namespace tarv
