#include <benchmark/benchmark.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/MidSideKernels.h"
#include "Audio/Kernels/NoiseKernels.h"
#include "Audio/Kernels/ResampleKernels.h"
#include "Audio/Kernels/StandardKernels.h"
#include "Audio/Kernels/TubeKernels.h"
#include "Benchmarks/PlainLoops.h"
#include "Benchmarks/Times.h"

namespace tarv {
namespace {

constexpr int32_t kMostChannels = 8;
constexpr int32_t kMostFrames = 4096;
constexpr size_t kNoise = size_t{1} << 20;  // longer than what a branch predictor can learn

/// A signal buffer whose start differs from its neighbours' within the page, for both sides of the comparison.
class CSignals {
public:
    CSignals() : memory_(static_cast<size_t>((kMostFrames + 72) * kMostChannels * 4 + 512)) {
        std::mt19937 random(1);
        for (double& value : memory_) {
            value = static_cast<double>(random()) / 4294967296.0 - 0.5;
        }
    }
    /// New noise for the first `frames` samples, so that branch predictors have not seen them.
    void refresh(int32_t index, int32_t frames) {
        static const std::vector<double> noise = [] {
            std::mt19937 random(2);
            std::vector<double> values(kNoise);
            for (double& value : values) {
                value = static_cast<double>(random()) / 4294967296.0 - 0.5;
            }
            return values;
        }();
        place_ = (place_ + 7919) % (kNoise - kMostFrames);
        std::copy_n(noise.data() + place_, frames, at(index));
    }
    double* at(int32_t index) { return memory_.data() + static_cast<size_t>(index) * (kMostFrames + 72); }

private:
    std::vector<double> memory_;
    size_t place_ = 0;
};

/// The plain loop of one channel, and the operands that the kernel gets for it.
struct CKernelRow {
    const char* name;
    const char* kernel;
    int32_t signals;  ///< signal operands: destinations, then sources; the state block goes second where there is one
    int32_t destinations;
    std::function<void(double* block)> fillBlock;  ///< null: no block
    std::function<void(double* const* signals, double* block, int32_t count)> plain;
};

template <int32_t N>
void fillHalfBand(double* block) {
    for (int32_t i = 0; i < 10 + 10 * N; ++i) {
        block[i] = i < 2 * N ? 0.1 + 0.8 * i / (2 * N) : 0.0;
    }
    block[2 * N + 1] = 3.0;
}

template <int32_t N>
void plainHalfBand(double* const* s, double*, int32_t count) {
    static plain::CHalfBandState<N> states[kMostChannels * 4];
    static int32_t next = 0;
    plain::CHalfBandState<N>& state = states[next++ % (kMostChannels * 4)];
    for (int32_t k = 0; k < N; ++k) {
        state.a[k] = 0.1 + 0.4 * k / N;
        state.b[k] = 0.5 + 0.4 * k / N;
    }
    plain::halfBand<N>(s[0], state, s[1], 0.5, count);
}

template <int32_t N>
void plainHalfBandInLocals(double* const* s, double*, int32_t count) {
    static plain::CHalfBandState<N> state;
    for (int32_t k = 0; k < N; ++k) {
        state.a[k] = 0.1 + 0.4 * k / N;
        state.b[k] = 0.5 + 0.4 * k / N;
    }
    plain::halfBandInLocals<N>(s[0], state, s[1], 0.5, count);
}

void fillTubeBlock(double* block) {
    CTubeBlock& tube = *reinterpret_cast<CTubeBlock*>(block);
    tube = {};
    tube.ratioA = 1.0 / 1.05;
    tube.ratioB = 1.0 / 1.1;
    tube.kneeA = 3.5;
    tube.kneeB = 4.8;
    tube.biasI = -1.8;
    tube.biasV = 0.5;
    tube.gainI = 1.0;
    tube.gainV = 0.15;
    tube.autoGainPoint = 1.009;
    tube.feedFrequency = 50.0;
    COperation operation;
    operation.pointers[0] = block;
    operation.immediate = 44100.0;
    kernelMetaTubeInit(operation);
}

const CKernelRow kRows[] = {
    {"fltbiqcommong", KernelName::kBiquadCommonGain, 2, 1,
     [](double* b) { *reinterpret_cast<plain::CBiquadState*>(b) = {-1.8, 0.85, 1.75, -0.8, 0.0, 0.0}; },
     [](double* const* s, double* b, int32_t n) {
         plain::biquad(s[0], *reinterpret_cast<plain::CBiquadState*>(b), s[1], 0.5, n);
     }},
    {"flthp1ag", KernelName::kHighPass1Gain, 2, 1,
     [](double* b) {
         std::fill(b, b + 5, 0.0);
         b[0] = 0.001;
     },
     [](double* const* s, double* b, int32_t n) {
         plain::highPass(s[0], *reinterpret_cast<plain::COnePoleState*>(b), s[1], 0.5, n);
     }},
    {"metatube", KernelName::kMetaTube, 3, 1, fillTubeBlock,
     [](double* const* s, double* b, int32_t n) {
         plain::tube(s[0], *reinterpret_cast<CTubeBlock*>(b), s[1], s[2], n);
     }},
    {"flthbf4g", KernelName::kHalfBand4Gain, 2, 1, fillHalfBand<2>, plainHalfBand<2>},
    {"flthbf4g/locals", KernelName::kHalfBand4Gain, 2, 1, fillHalfBand<2>, plainHalfBandInLocals<2>},
    {"flthbf8g", KernelName::kHalfBand8Gain, 2, 1, fillHalfBand<4>, plainHalfBand<4>},
    {"flthbf8g/locals", KernelName::kHalfBand8Gain, 2, 1, fillHalfBand<4>, plainHalfBandInLocals<4>},
    {"mulc", KernelName::kMulc, 2, 1, nullptr,
     [](double* const* s, double*, int32_t n) { plain::mulc(s[0], s[1], 0.5, n); }},
    {"denorm", KernelName::kDenorm, 2, 1, [](double* b) { *b = 0.0; },
     [](double* const* s, double* b, int32_t n) { plain::denorm(s[0], *reinterpret_cast<uint32_t*>(b), s[1], n); }},
    {"interp2", KernelName::kInterp2, 2, 1, nullptr,
     [](double* const* s, double*, int32_t n) { plain::interpolate(s[0], s[1], n); }},
    {"decim2", KernelName::kDecim2, 2, 1, nullptr,
     [](double* const* s, double*, int32_t n) { plain::decimate(s[0], s[1], n); }},
    {"msenc", KernelName::kMsEnc, 4, 2, nullptr,
     [](double* const* s, double*, int32_t n) { plain::encode(s[0], s[1], s[2], s[3], n); }},
    {"msdec", KernelName::kMsDec, 4, 2, nullptr,
     [](double* const* s, double*, int32_t n) { plain::decode(s[0], s[1], s[2], s[3], n); }},
    {"xfade", KernelName::kXfade, 3, 1,
     [](double* b) {
         b[0] = 0.5;
         b[1] = 0.4999;
         b[2] = 1.9999;
     },
     [](double* const* s, double* b, int32_t n) {
         plain::crossfade(s[0], *reinterpret_cast<plain::CRampState*>(b), s[1], s[2], n);
     }},
};

std::unique_ptr<CQPLEXContext> makeContext() {
    auto context = makeStandardContext();
    registerTubeKernels(*context);
    registerResampleKernels(*context);
    registerMidSideKernels(*context);
    registerNoiseKernels(*context);
    return context;
}

/// Time of all channels by the kernel's batch form against the plain loop for one channel after the other. Both work on
/// the same noise; rounds alternate, and the medians are compared.
void compareKernel(benchmark::State& state, const CKernelRow& row, int32_t channels, int32_t frames) {
    const auto context = makeContext();
    const CKernel& kernel = context->kernel(context->findKernel(row.kernel));
    CSignals signals;
    alignas(16) static double blocks[2][kMostChannels][96];
    COperation operations[kMostChannels] = {};
    COperation* list[kMostChannels];
    double* plainSignals[kMostChannels][4];
    for (int32_t c = 0; c < channels; ++c) {
        if (row.fillBlock) {
            row.fillBlock(blocks[0][c]);
            row.fillBlock(blocks[1][c]);
        }
        operations[c].count = frames;
        operations[c].immediate = 0.5;
        int32_t operand = 0;
        for (int32_t s = 0; s < row.signals; ++s) {
            plainSignals[c][s] = signals.at(c * row.signals + s);
            if (s == row.destinations && row.fillBlock) {
                operations[c].pointers[operand++] = blocks[0][c];
            }
            operations[c].pointers[operand++] = plainSignals[c][s];
        }
        list[c] = &operations[c];
    }
    std::vector<double> kernelTimes;
    std::vector<double> plainTimes;
    for (auto _ : state) {
        for (int32_t s = 0; s < channels * row.signals; ++s) {
            signals.refresh(s, frames);
        }
        const double start = seconds();
        if (kernel.batch && channels > 1) {
            kernel.batch(list, channels);
        } else {
            for (int32_t c = 0; c < channels; ++c) {
                kernel.function(operations[c]);
            }
        }
        const double middle = seconds();
        for (int32_t c = 0; c < channels; ++c) {
            row.plain(plainSignals[c], blocks[1][c], frames);
        }
        const double end = seconds();
        benchmark::ClobberMemory();
        kernelTimes.push_back(middle - start);
        plainTimes.push_back(end - middle);
        state.SetIterationTime(middle - start);
    }
    const double kernelTime = medianOf(kernelTimes);
    const double plainTime = medianOf(plainTimes);
    state.counters["kernel_ns_frame"] = kernelTime * 1e9 / frames;
    state.counters["plain_ns_frame"] = plainTime * 1e9 / frames;
    state.counters["ratio"] = kernelTime / plainTime;
}

/// Cost of the context alone: operations without samples, in the shape of a filter process.
void issueAndFlush(benchmark::State& state) {
    const auto context = makeContext();
    const int32_t kernel = context->sectionKernels(0).runGain;
    const auto channels = static_cast<int32_t>(state.range(0));
    CBufferHandle blocks[kMostChannels];
    CBufferHandle inputs[kMostChannels];
    for (int32_t c = 0; c < channels; ++c) {
        blocks[c] = context->takeBuffer(48);
        inputs[c] = context->takeBuffer(4096);
    }
    for (auto _ : state) {
        for (int32_t c = 0; c < channels; ++c) {
            const CBufferHandle out = context->takeBuffer(4096);
            context->issue(kernel, 0, 1.0, {out, blocks[c], inputs[c]});
            context->releaseReference(inputs[c]);
            inputs[c] = out;
        }
        context->flush();
    }
    state.SetItemsProcessed(state.iterations() * channels);
}
BENCHMARK(issueAndFlush)->ArgName("channels")->Arg(2)->Arg(8);

}  // namespace
}  // namespace tarv

int main(int argc, char** argv) {
    for (const tarv::CKernelRow& row : tarv::kRows) {
        for (const int32_t channels : {2, 8}) {
            const std::string name = std::string(row.name) + "/channels:" + std::to_string(channels);
            benchmark::RegisterBenchmark(name.c_str(), tarv::compareKernel, row, channels, 512)
                ->UseManualTime()
                ->Iterations(2000);
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
