#include "Audio/Kernels/Wave/LanesAvx512.h"
// Behind the lanes that it is made of.
#include "Audio/Kernels/Wave/WaveLoop.h"
#include "Audio/Kernels/Wave/WaveSets.h"

namespace tarv {

void runWaveAvx512(const CWavePlan& plan) {
    runWave(plan);
}

}  // namespace tarv
