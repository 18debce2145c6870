#include "Audio/Kernels/ResampleKernels.h"

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/KernelLanes.h"
#include "Audio/Kernels/KernelNames.h"

namespace tarv {

namespace {

bool isDisjoint(const double* a, int32_t countA, const double* b, int32_t countB) {
    return a + countA <= b || b + countB <= a;
}

/// Two outputs from four inputs, the lower or the upper of each two, as long as all four are needed or inside.
template <bool IsUpper>
void decimate(COperation& operation) {
    double* const out = operation.signal(0);
    const double* const in = operation.signal(1);
    const int32_t count = operation.count;
    int32_t i = 0;
    if (out == in || isDisjoint(out, count, in, 2 * count)) {
        // The last even sample may be the last of the source: nothing behind it is read.
        for (; i + 2 < count; i += 2) {
            const __m128d a = _mm_loadu_pd(in + 2 * i);
            const __m128d b = _mm_loadu_pd(in + 2 * i + 2);
            _mm_storeu_pd(out + i, IsUpper ? _mm_unpackhi_pd(a, b) : _mm_unpacklo_pd(a, b));
        }
    }
    for (; i < count; ++i) {
        out[i] = in[2 * i + (IsUpper ? 1 : 0)];
    }
}

}  // namespace

void registerResampleKernels(CQPLEXContext& context) {
    context.registerKernel(KernelName::kInterp2, kernelInterp2, 2, 1);
    context.registerKernel(KernelName::kDecim2, kernelDecim2, 2, 1);
    context.registerKernel(KernelName::kDecim2s, kernelDecim2s, 2, 1);
}

void kernelInterp2(COperation& operation) {
    double* const out = operation.signal(0);
    const double* const in = operation.signal(1);
    const int32_t count = operation.count;
    int32_t i = 0;
    if (isDisjoint(out, 2 * count, in, count)) {
        const __m128d zero = _mm_setzero_pd();
        for (; i + 2 <= count; i += 2) {
            const __m128d x = _mm_mul_pd(_mm_set1_pd(2.0), _mm_loadu_pd(in + i));
            _mm_storeu_pd(out + 2 * i, _mm_unpacklo_pd(x, zero));
            _mm_storeu_pd(out + 2 * i + 2, _mm_unpackhi_pd(x, zero));
        }
    }
    // From the end, so that the source may be the destination's first half.
    for (int32_t k = count - 1; k >= i; --k) {
        out[2 * k] = 2.0 * in[k];
        out[2 * k + 1] = 0.0;
    }
}

void kernelDecim2(COperation& operation) {
    decimate<false>(operation);
}

void kernelDecim2s(COperation& operation) {
    decimate<true>(operation);
}

}  // namespace tarv
