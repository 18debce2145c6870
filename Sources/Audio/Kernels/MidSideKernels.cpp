#include "Audio/Kernels/MidSideKernels.h"

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/KernelLanes.h"
#include "Audio/Kernels/KernelNames.h"

namespace tarv {

namespace {

/// (out1, out2) = f(a, b) a sample; the sources may be the destinations in either order.
template <class F>
void mapPairs(COperation& operation, F f) {
    double* const out1 = operation.signal(0);
    double* const out2 = operation.signal(1);
    const double* const a = operation.signal(2);
    const double* const b = operation.signal(3);
    const int32_t count = operation.count;
    int32_t i = 0;
    if (isApart(out1, a, count) && isApart(out1, b, count) && isApart(out2, a, count) && isApart(out2, b, count) &&
        isApart(out1, out2, count)) {
        for (; i + 2 <= count; i += 2) {
            CPair y1 = loadPair(a + i);
            CPair y2 = loadPair(b + i);
            f(y1, y2);
            storePair(out1 + i, y1);
            storePair(out2 + i, y2);
        }
    }
    for (; i < count; ++i) {
        double y1 = a[i];
        double y2 = b[i];
        f(y1, y2);
        out1[i] = y1;
        out2[i] = y2;
    }
}

}  // namespace

void registerMidSideKernels(CQPLEXContext& context) {
    context.registerKernel(KernelName::kMsEnc, kernelMsEnc, 4, 3);
    context.addEndKernel(context.registerKernel(KernelName::kMsDec, kernelMsDec, 4, 3), {.writes = 3});
}

void kernelMsEnc(COperation& operation) {
    mapPairs(operation, [](auto& a, auto& b) {
        const auto d = (b - a) * -0.5;
        a = b + d;
        b = d;
    });
}

void kernelMsDec(COperation& operation) {
    mapPairs(operation, [](auto& a, auto& b) {
        const auto sum = a + b;
        b = a - b;
        a = sum;
    });
}

}  // namespace tarv
