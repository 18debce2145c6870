#include "Audio/Kernels/Wave/WaveJoiners.h"

#include <memory>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/Wave/CHalfBandJoiner.h"
#include "Audio/Kernels/Wave/CWaveJoiner.h"

namespace tarv {

void setWaveJoiners(CQPLEXContext& context) {
    context.setJoiner(CJoinedKernels::Rates, std::make_unique<CHalfBandJoiner>(context, usedSet()));
    context.setJoiner(CJoinedKernels::Bands, std::make_unique<CWaveJoiner>(context, usedSet()));
}

}  // namespace tarv
