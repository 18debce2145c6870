#include "Audio/Kernels/OnePoleKernels.h"

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/OnePoleLoop.h"

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
    const int32_t init = context.registerKernel("com.tarvelo.qplex.fltlphp1i", initOnePole, 2, 1);
    const int32_t update = context.registerKernel("com.tarvelo.qplex.fltlphp1u", updateOnePole, 3, 1);
    for (int32_t type = 0; type < 8; ++type) {
        rows[type] = {init, update, -1, -1, kStateSize, 1};
    }
    registerStages<1, false>(context, rows[0], "com.tarvelo.qplex.fltlp1a", "com.tarvelo.qplex.fltlp1ag");
    registerStages<2, false>(context, rows[1], "com.tarvelo.qplex.fltlp1b", "com.tarvelo.qplex.fltlp1bg");
    registerStages<3, false>(context, rows[2], "com.tarvelo.qplex.fltlp1c", "com.tarvelo.qplex.fltlp1cg");
    registerStages<4, false>(context, rows[3], "com.tarvelo.qplex.fltlp1d", "com.tarvelo.qplex.fltlp1dg");
    registerStages<1, true>(context, rows[4], "com.tarvelo.qplex.flthp1a", "com.tarvelo.qplex.flthp1ag");
    registerStages<2, true>(context, rows[5], "com.tarvelo.qplex.flthp1b", "com.tarvelo.qplex.flthp1bg");
    registerStages<3, true>(context, rows[6], "com.tarvelo.qplex.flthp1c", "com.tarvelo.qplex.flthp1cg");
    registerStages<4, true>(context, rows[7], "com.tarvelo.qplex.flthp1d", "com.tarvelo.qplex.flthp1dg");
    return rows + 8;
}

}  // namespace tarv
