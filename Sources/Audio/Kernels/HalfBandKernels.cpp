#include "Audio/Kernels/HalfBandKernels.h"

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/HalfBandLayout.h"
#include "Audio/Kernels/KernelLanes.h"
#include "Audio/Kernels/KernelNames.h"

namespace tarv {

namespace {

constexpr double kFirstIndex = 3.0;

/// Where things lie in the state block of a pair with N coefficients a branch.
template <int32_t N>
struct CLayout {
    static constexpr int32_t kCoefficients = 2 * N;
    static constexpr int32_t kHeld = heldOfHalfBand(N);
    static constexpr int32_t kIndex = indexOfHalfBand(N);
    static constexpr int32_t kLinesA = linesOfHalfBand(N, 0);
    static constexpr int32_t kLinesB = linesOfHalfBand(N, 1);
    static constexpr int32_t kSize = sizeOfHalfBand(N);
};
static_assert(CLayout<1>::kSize == 20 && CLayout<2>::kSize == 30 && CLayout<8>::kSize == 90);

/// One all-pass chain. A stage looks two samples back, so two neighbouring samples do not wait for each other: they go
/// through together. A line holds the samples n-2 and n-1.
template <int32_t N>
struct CBranch {
    CPair coefficients[N];
    CPair lines[N + 1];

    void load(const double* c, const double* memory, int32_t index) {
#pragma GCC unroll 8
        for (int32_t k = 0; k < N; ++k) {
            coefficients[k] = CPair(c[k]);
        }
#pragma GCC unroll 9
        for (int32_t k = 0; k <= N; ++k) {
            const double* const line = memory + k * kHalfBandLine;
            lines[k] = CPair(line[(index + 2) & 3], line[(index + 1) & 3]);
        }
    }
    void store(double* memory, int32_t index) const {
#pragma GCC unroll 9
        for (int32_t k = 0; k <= N; ++k) {
            double* const line = memory + k * kHalfBandLine;
            line[(index + 2) & 3] = lines[k].first();
            line[(index + 1) & 3] = lines[k].second();
        }
    }
    CPair stepTwo(CPair x) {
#pragma GCC unroll 8
        for (int32_t k = 0; k < N; ++k) {
            const CPair y = (x - lines[k + 1]) * coefficients[k] + lines[k];
            lines[k] = x;
            x = y;
        }
        lines[N] = x;
        return x;
    }
    double stepOne(double x) {
#pragma GCC unroll 8
        for (int32_t k = 0; k < N; ++k) {
            const double y = (x - lines[k + 1].first()) * coefficients[k].first() + lines[k].first();
            lines[k] = CPair(lines[k].second(), x);
            x = y;
        }
        lines[N] = CPair(lines[N].second(), x);
        return x;
    }
};

template <int32_t N, bool HasGain>
void runHalfBand(COperation& operation) {
    using Layout = CLayout<N>;
    double* const out = operation.signal(0);
    double* const block = operation.signal(1);
    const double* const in = operation.signal(2);
    const int32_t count = operation.count;
    const double gain = operation.immediate;
    const auto index = static_cast<int32_t>(block[Layout::kIndex]);
    CBranch<N> a;
    CBranch<N> b;
    a.load(block, block + Layout::kLinesA, index);
    b.load(block + N, block + Layout::kLinesB, index);
    double held = block[Layout::kHeld];
    int32_t i = 0;
    if (isApart(out, in, count)) {
        CPair last(0.0, held);
        for (; i + 2 <= count; i += 2) {
            const CPair x = loadPair(in + i);
            const CPair fromB = b.stepTwo(x);
            const CPair y = a.stepTwo(x) + CPair(_mm_shuffle_pd(last.v, fromB.v, 1));
            last = fromB;
            storePair(out + i, HasGain ? y * gain : y);
        }
        held = last.second();
    }
    for (; i < count; ++i) {
        const double x = in[i];
        const double y = a.stepOne(x) + held;
        held = b.stepOne(x);
        out[i] = HasGain ? y * gain : y;
    }
    const int32_t newIndex = (index - count) & 3;
    a.store(block + Layout::kLinesA, newIndex);
    b.store(block + Layout::kLinesB, newIndex);
    block[Layout::kHeld] = held;
    block[Layout::kIndex] = newIndex;
}

template <int32_t N>
void initHalfBand(COperation& operation) {
    double* const block = operation.signal(0);
    const double* const coefficients = operation.signal(1);
    for (int32_t i = 0; i < CLayout<N>::kSize; ++i) {
        block[i] = i < CLayout<N>::kCoefficients ? coefficients[i] : 0.0;
    }
    block[CLayout<N>::kIndex] = kFirstIndex;
}

template <int32_t N>
void updateHalfBand(COperation& operation) {
    double* const block = operation.signal(0);
    const double* const coefficients = operation.signal(1);
    const double* const old = operation.signal(2);
    for (int32_t i = 0; i < CLayout<N>::kSize; ++i) {
        block[i] = i < CLayout<N>::kCoefficients ? coefficients[i] : old[i];
    }
}

struct CHalfBandNames {
    const char* init;
    const char* update;
    const char* run;
    const char* runGain;
};

template <int32_t N>
CSectionKernels registerOrder(CQPLEXContext& context, const CHalfBandNames& names) {
    return {context.registerKernel(names.init, initHalfBand<N>, 2, 1),
            context.registerKernel(names.update, updateHalfBand<N>, 3, 1),
            context.registerKernel(names.run, runHalfBand<N, false>, 3, 3),
            context.registerKernel(names.runGain, runHalfBand<N, true>, 3, 3),
            CLayout<N>::kSize,
            CLayout<N>::kCoefficients};
}

constexpr CHalfBandNames kNames[] = {
    {KernelName::kHalfBand2Init, KernelName::kHalfBand2Update, KernelName::kHalfBand2, KernelName::kHalfBand2Gain},
    {KernelName::kHalfBand4Init, KernelName::kHalfBand4Update, KernelName::kHalfBand4, KernelName::kHalfBand4Gain},
    {KernelName::kHalfBand6Init, KernelName::kHalfBand6Update, KernelName::kHalfBand6, KernelName::kHalfBand6Gain},
    {KernelName::kHalfBand8Init, KernelName::kHalfBand8Update, KernelName::kHalfBand8, KernelName::kHalfBand8Gain},
    {KernelName::kHalfBand10Init, KernelName::kHalfBand10Update, KernelName::kHalfBand10, KernelName::kHalfBand10Gain},
    {KernelName::kHalfBand12Init, KernelName::kHalfBand12Update, KernelName::kHalfBand12, KernelName::kHalfBand12Gain},
    {KernelName::kHalfBand14Init, KernelName::kHalfBand14Update, KernelName::kHalfBand14, KernelName::kHalfBand14Gain},
    {KernelName::kHalfBand16Init, KernelName::kHalfBand16Update, KernelName::kHalfBand16, KernelName::kHalfBand16Gain},
};

}  // namespace

CSectionKernels* registerHalfBandKernels(CQPLEXContext& context, CSectionKernels* rows) {
    *rows++ = registerOrder<1>(context, kNames[0]);
    *rows++ = registerOrder<2>(context, kNames[1]);
    *rows++ = registerOrder<3>(context, kNames[2]);
    *rows++ = registerOrder<4>(context, kNames[3]);
    *rows++ = registerOrder<5>(context, kNames[4]);
    *rows++ = registerOrder<6>(context, kNames[5]);
    *rows++ = registerOrder<7>(context, kNames[6]);
    *rows++ = registerOrder<8>(context, kNames[7]);
    return rows;
}

}  // namespace tarv
