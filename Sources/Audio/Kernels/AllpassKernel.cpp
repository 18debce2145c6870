#include "Audio/Kernels/AllpassKernel.h"

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/CRecursion.h"
#include "Audio/Kernels/KernelNames.h"

namespace tarv {

namespace {

constexpr int32_t kSections = 6;
constexpr int32_t kStateSize = 3 * kSections;

template <class T, bool HasGain>
struct CAllpass {
    static constexpr int32_t kInputs = 1;
    T c[kSections], x1[kSections], y1[kSections];
    T gain;

    template <class... Operation>
    void load(Operation&... from) {
#pragma GCC unroll 6
        for (int32_t k = 0; k < kSections; ++k) {
            loadMember(c[k], k, from...);
            loadMember(x1[k], kSections + k, from...);
            loadMember(y1[k], 2 * kSections + k, from...);
        }
        loadImmediate(gain, from...);
    }
    template <class... Operation>
    void store(Operation&... to) {
#pragma GCC unroll 6
        for (int32_t k = 0; k < kSections; ++k) {
            storeMember(x1[k], kSections + k, to...);
            storeMember(y1[k], 2 * kSections + k, to...);
        }
    }
    T step(T x) {
#pragma GCC unroll 6
        for (int32_t k = 0; k < kSections; ++k) {
            const T y = (x - y1[k]) * c[k] + x1[k];
            x1[k] = x;
            y1[k] = y;
            x = y;
        }
        return HasGain ? x * gain : x;
    }
};

template <class T>
using CPlain = CAllpass<T, false>;
template <class T>
using CWithGain = CAllpass<T, true>;

void initAllpass(COperation& operation) {
    double* const block = operation.signal(0);
    const double* const coefficients = operation.signal(1);
    for (int32_t i = 0; i < kStateSize; ++i) {
        block[i] = i < kSections ? coefficients[i] : 0.0;
    }
}

void updateAllpass(COperation& operation) {
    double* const block = operation.signal(0);
    const double* const coefficients = operation.signal(1);
    const double* const old = operation.signal(2);
    for (int32_t i = 0; i < kStateSize; ++i) {
        block[i] = i < kSections ? coefficients[i] : old[i];
    }
}

}  // namespace

CSectionKernels* registerAllpassKernel(CQPLEXContext& context, CSectionKernels* rows) {
    using Plain = CRecursion<CPlain>;
    using WithGain = CRecursion<CWithGain>;
    *rows = {context.registerKernel(KernelName::kAllpassInit, initAllpass, 2, 1),
             context.registerKernel(KernelName::kAllpassUpdate, updateAllpass, 3, 1),
             context.registerKernel(KernelName::kAllpass, &Plain::run, 3, 3, 0, &Plain::runBatch),
             context.registerKernel(KernelName::kAllpassGain, &WithGain::run, 3, 3, 0, &WithGain::runBatch),
             kStateSize,
             kSections};
    return rows + 1;
}

}  // namespace tarv
