// What a program with `--wrap` calls in place of the waves in AVX-512: those, where the machine has them, otherwise the
// same file compiled for any processor.

#include "Audio/Kernels/Wave/CInstructionSet.h"
#include "Audio/Kernels/Wave/WaveSets.h"

namespace tarv {

void runWaveEmulated(const CWavePlan& plan);
void runHalfBandsEmulated(const CHalfBandPlan& plan);

namespace {

bool hasAvx512() {
    static const bool has = widestSet(readProcessorFeatures()) == CInstructionSet::Avx512;
    return has;
}

}  // namespace

// The names that the linker gives to a wrapped function and to the one behind it.
extern "C" {
void __real__ZN4tarv13runWaveAvx512ERKNS_9CWavePlanE(const CWavePlan& plan);
void __real__ZN4tarv18runHalfBandsAvx512ERKNS_13CHalfBandPlanE(const CHalfBandPlan& plan);

void __wrap__ZN4tarv13runWaveAvx512ERKNS_9CWavePlanE(const CWavePlan& plan) {
    hasAvx512() ? __real__ZN4tarv13runWaveAvx512ERKNS_9CWavePlanE(plan) : runWaveEmulated(plan);
}
void __wrap__ZN4tarv18runHalfBandsAvx512ERKNS_13CHalfBandPlanE(const CHalfBandPlan& plan) {
    hasAvx512() ? __real__ZN4tarv18runHalfBandsAvx512ERKNS_13CHalfBandPlanE(plan) : runHalfBandsEmulated(plan);
}
}

}  // namespace tarv
