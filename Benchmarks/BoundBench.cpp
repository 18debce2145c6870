// What seven bands of stereo cost at least, whatever code is around it: the roots of a frame with each set of
// instructions, and the recursion of the saturation, which sets the pace where bands stand one after the other. The
// instructions are written out, so that no compiler changes what is measured.

#include <benchmark/benchmark.h>

#include <cstdint>

#include "Audio/Kernels/Wave/CInstructionSet.h"

namespace tarv {
namespace {

constexpr int32_t kFrames = 1024;
alignas(64) constexpr double kRadicands[8] = {1.7, 2.3, 1.1, 3.9, 2.9, 1.3, 3.1, 2.1};

/// Calls `frame` 1024 times an iteration; prints the time of one.
template <class F>
void eachFrame(benchmark::State& state, F&& frame) {
    for (auto _ : state) {
        for (int32_t i = 0; i < kFrames; ++i) {
            frame();
        }
    }
    state.counters["s_frame"] = benchmark::Counter(static_cast<double>(state.iterations()) * kFrames,
                                                   benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// Two roots for each of 7 bands and 2 channels: 28 a frame, two to a root instruction of SSE2. Wider vectors have room
// for an eighth band, the filter behind the others.
void rootsSse2(benchmark::State& state) {
    eachFrame(state, [] {
        asm volatile(".rept 7\n sqrtpd %0, %%xmm1\n sqrtpd %0, %%xmm2\n .endr" : : "m"(kRadicands) : "xmm1", "xmm2");
    });
}

void rootsAvx2(benchmark::State& state) {
    eachFrame(state, [] {
        asm volatile(".rept 4\n vsqrtpd %0, %%ymm1\n vsqrtpd %0, %%ymm2\n .endr" : : "m"(kRadicands) : "xmm1", "xmm2");
    });
    asm volatile("vzeroupper");
}

void rootsAvx512(benchmark::State& state) {
    eachFrame(state, [] {
        asm volatile(".rept 2\n vsqrtpd %0, %%zmm1\n vsqrtpd %0, %%zmm2\n .endr" : : "m"(kRadicands) : "xmm1", "xmm2");
    });
    asm volatile("vzeroupper");
}

/// What lies between two samples of a band's recursion: 4 additions and 3 multiplications, each of which needs the one
/// before. Seven times, once a band; both channels lie in one register.
void recursionOfSevenBands(benchmark::State& state) {
    alignas(16) const double ones[2] = {1.0, 1.0};
    eachFrame(state, [&] {
        asm volatile(
            ".rept 7\n"
            "addpd %0, %%xmm1\n mulpd %0, %%xmm1\n addpd %0, %%xmm1\n mulpd %0, %%xmm1\n"
            "addpd %0, %%xmm1\n mulpd %0, %%xmm1\n addpd %0, %%xmm1\n"
            ".endr"
            :
            : "m"(ones)
            : "xmm1");
    });
}

/// One in a row, to count the others in cycles by a processor's tables.
void additionsInARow(benchmark::State& state) {
    alignas(16) const double ones[2] = {1.0, 1.0};
    eachFrame(state, [&] { asm volatile("addpd %0, %%xmm1" : : "m"(ones) : "xmm1"); });
}

}  // namespace
}  // namespace tarv

int main(int argc, char** argv) {
    using namespace tarv;
    const CInstructionSet widest = widestSet(readProcessorFeatures());
    benchmark::RegisterBenchmark("additionsInARow", additionsInARow);
    benchmark::RegisterBenchmark("recursionOfSevenBands", recursionOfSevenBands);
    benchmark::RegisterBenchmark("rootsSse2", rootsSse2);
    if (widest >= CInstructionSet::Avx2) {
        benchmark::RegisterBenchmark("rootsAvx2", rootsAvx2);
    }
    if (widest >= CInstructionSet::Avx512) {
        benchmark::RegisterBenchmark("rootsAvx512", rootsAvx512);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
