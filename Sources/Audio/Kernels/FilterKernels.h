#pragma once

namespace tarv {

class CQPLEXContext;

/// Registers the kernels of all filter families and sets the context's table of section types.
void registerFilterKernels(CQPLEXContext& context);

}  // namespace tarv
