#include "Audio/Kernels/OnePoleKernels.h"

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/COnePole.h"
#include "Audio/Kernels/KernelNames.h"

namespace tarv {

namespace {

constexpr int32_t kStateSize = 5;

template <int32_t Stages, bool IsHighPass, bool HasGain>
struct COnePoleOf {
    template <class T>
    using State = COnePole<T, Stages, IsHighPass, HasGain>;
    using Loop = CRecursion<State>;
};

template <int32_t Stages, bool IsHighPass, bool HasGain>
int32_t registerLoop(CQPLEXContext& context, const char* name) {
    using Loop = typename COnePoleOf<Stages, IsHighPass, HasGain>::Loop;
    return context.registerKernel(name, &Loop::run, 3, 3, 0, &Loop::runBatch);
}

template <int32_t Stages, bool IsHighPass>
void registerStages(CQPLEXContext& context, CSectionKernels& row, const char* name, const char* gainName) {
    row.run = registerLoop<Stages, IsHighPass, false>(context, name);
    row.runGain = registerLoop<Stages, IsHighPass, true>(context, gainName);
}

void initOnePole(COperation& operation) {
    double* const block = operation.signal(0);
    block[0] = operation.signal(1)[0];
    for (int32_t i = 1; i < kStateSize; ++i) {
        block[i] = 0.0;
    }
}

void updateOnePole(COperation& operation) {
    double* const block = operation.signal(0);
    const double* const old = operation.signal(2);
    block[0] = operation.signal(1)[0];
    for (int32_t i = 1; i < kStateSize; ++i) {
        block[i] = old[i];
    }
}

}  // namespace

CSectionKernels* registerOnePoleKernels(CQPLEXContext& context, CSectionKernels* rows) {
    const int32_t init = context.registerKernel(KernelName::kOnePoleInit, initOnePole, 2, 1);
    const int32_t update = context.registerKernel(KernelName::kOnePoleUpdate, updateOnePole, 3, 1);
    for (int32_t type = 0; type < 8; ++type) {
        rows[type] = {init, update, -1, -1, kStateSize, 1};
    }
    registerStages<1, false>(context, rows[0], KernelName::kLowPass1, KernelName::kLowPass1Gain);
    registerStages<2, false>(context, rows[1], KernelName::kLowPass2, KernelName::kLowPass2Gain);
    registerStages<3, false>(context, rows[2], KernelName::kLowPass3, KernelName::kLowPass3Gain);
    registerStages<4, false>(context, rows[3], KernelName::kLowPass4, KernelName::kLowPass4Gain);
    registerStages<1, true>(context, rows[4], KernelName::kHighPass1, KernelName::kHighPass1Gain);
    registerStages<2, true>(context, rows[5], KernelName::kHighPass2, KernelName::kHighPass2Gain);
    registerStages<3, true>(context, rows[6], KernelName::kHighPass3, KernelName::kHighPass3Gain);
    registerStages<4, true>(context, rows[7], KernelName::kHighPass4, KernelName::kHighPass4Gain);
    return rows + 8;
}

}  // namespace tarv
