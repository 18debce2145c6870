#pragma once

namespace tarv {

class CQPLEXContext;

/// Gives a context the joiners of this folder, for the set of instructions that this process runs. When all kernels of
/// a graph are registered. Allocates.
void setWaveJoiners(CQPLEXContext& context);

}  // namespace tarv
