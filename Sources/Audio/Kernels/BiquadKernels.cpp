#include "Audio/Kernels/BiquadKernels.h"

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/CBiquad.h"
#include "Audio/Kernels/KernelNames.h"

namespace tarv {

namespace {

constexpr int32_t kCoefficients = 4;
constexpr int32_t kStateSize = 6;

template <CBiquadForm Form, bool HasGain>
struct CBiquadOf {
    template <class T>
    using State = CBiquad<T, Form, HasGain>;
    using Loop = CRecursion<State>;
};

template <CBiquadForm Form, bool HasGain>
int32_t registerLoop(CQPLEXContext& context, const char* name) {
    using Loop = typename CBiquadOf<Form, HasGain>::Loop;
    return context.registerKernel(name, &Loop::run, 3, 3, 0, &Loop::runBatch);
}

template <CBiquadForm Form>
void registerForm(CQPLEXContext& context, CSectionKernels& row, const char* name, const char* gainName) {
    row.run = registerLoop<Form, false>(context, name);
    row.runGain = registerLoop<Form, true>(context, gainName);
}

void initBiquad(COperation& operation) {
    double* const block = operation.signal(0);
    const double* const coefficients = operation.signal(1);
    for (int32_t i = 0; i < kStateSize; ++i) {
        block[i] = i < kCoefficients ? coefficients[i] : 0.0;
    }
}

void updateBiquad(COperation& operation) {
    double* const block = operation.signal(0);
    const double* const coefficients = operation.signal(1);
    const double* const old = operation.signal(2);
    for (int32_t i = 0; i < kStateSize; ++i) {
        block[i] = i < kCoefficients ? coefficients[i] : old[i];
    }
}

}  // namespace

CSectionKernels* registerBiquadKernels(CQPLEXContext& context, CSectionKernels* rows) {
    const int32_t init = context.registerKernel(KernelName::kBiquadInit, initBiquad, 2, 1);
    const int32_t update = context.registerKernel(KernelName::kBiquadUpdate, updateBiquad, 3, 1);
    for (int32_t type = 0; type < 5; ++type) {
        rows[type] = {init, update, -1, -1, kStateSize, kCoefficients};
    }
    registerForm<CBiquadForm::Common>(context, rows[0], KernelName::kBiquadCommon, KernelName::kBiquadCommonGain);
    registerForm<CBiquadForm::LowPass>(context, rows[1], KernelName::kBiquadLowPass, KernelName::kBiquadLowPassGain);
    registerForm<CBiquadForm::HighPass>(context, rows[2], KernelName::kBiquadHighPass, KernelName::kBiquadHighPassGain);
    registerForm<CBiquadForm::BandPass>(context, rows[3], KernelName::kBiquadBandPass, KernelName::kBiquadBandPassGain);
    registerForm<CBiquadForm::Notch>(context, rows[4], KernelName::kBiquadNotch, KernelName::kBiquadNotchGain);
    return rows + 5;
}

}  // namespace tarv
