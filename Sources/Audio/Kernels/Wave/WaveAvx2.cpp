#include "Audio/Kernels/Wave/LanesAvx2.h"
// Behind the lanes that it is made of.
#include "Audio/Kernels/Wave/HalfBandLoop.h"
#include "Audio/Kernels/Wave/WaveLoop.h"
#include "Audio/Kernels/Wave/WaveSets.h"

namespace tarv {

[[gnu::sysv_abi]] void runWaveAvx2(const CWavePlan& plan) {
    runWave(plan);
}

[[gnu::sysv_abi]] void runHalfBandsAvx2(const CHalfBandPlan& plan) {
    runHalfBands(plan);
}

}  // namespace tarv
