#pragma once

namespace tarv {

class CQPLEXContext;
struct CSectionKernels;

/// Registers the kernels of all filter families and fills the table of section types, kSectionTypeCount rows.
void registerFilterKernels(CQPLEXContext& context, CSectionKernels* rows);

}  // namespace tarv
