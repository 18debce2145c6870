#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/NoiseKernels.h"
#include "Audio/Kernels/ResampleKernels.h"
#include "Audio/Kernels/StandardKernels.h"
#include "Benchmarks/PlainChain.h"
#include "Benchmarks/Times.h"

namespace tarv {
namespace {

/// The chain's operations issued to a context process by process, as the graph does it, without the graph.
class CKernelChain {
public:
    CKernelChain(const plain::CChainSettings& settings, int32_t mostFrames)
        : settings_(settings), context_(makeStandardContext()) {
        registerTubeKernels(*context_);
        registerResampleKernels(*context_);
        registerNoiseKernels(*context_);
        const double steep[] = {0.0358327884310621,  0.27204014339645771, 0.57205719723570025, 0.82712476199732377,
                                0.13409014194306693, 0.42432487127186835, 0.70629214213863922, 0.94150309417375522};
        const double soft[] = {0.042454709865267684, 0.39331989319032801, 0.17073985049749907, 0.74571358872022298};
        const double biquad[] = {-1.8, 0.85, 1.75, -0.8};
        const double onePole[] = {0.001};
        context_->reserveBuffers(8 * settings.channels, (mostFrames << settings.stages) * 8);
        for (int32_t c = 0; c < settings.channels; ++c) {
            seeds_.push_back(context_->takeBuffer(8));
            *static_cast<uint32_t*>(context_->data(seeds_.back())) = 0;
        }
        for (int32_t way = 0; way < 2; ++way) {
            for (int32_t s = 0; s < settings.stages; ++s) {
                addFilter(s == 0 ? 16 : 14, s == 0 ? steep : soft);
            }
        }
        addFilter(0, biquad);
        for (int32_t b = 0; b < plain::kBands; ++b) {
            addFilter(0, biquad);
            addFilter(9, onePole);
            addTube();
        }
        addFilter(0, biquad);
        addFilter(9, onePole);
        context_->flush();
    }

    void process(const double* const* in, double* const* out, int32_t frames) {
        for (int32_t c = 0; c < settings_.channels; ++c) {
            signal_[c] = context_->takeBuffer(frames * 8);
            std::copy_n(in[c], frames, context_->signal(signal_[c]));
        }
        for (int32_t c = 0; c < settings_.channels; ++c) {
            const CBufferHandle to = context_->takeBuffer(frames * 8);
            context_->issue(context_->findKernel(KernelName::kDenorm), frames, 0.0,
                            {to, seeds_[static_cast<size_t>(c)], signal_[c]});
            replace(c, to);
        }
        context_->flush();
        next_ = 0;
        int32_t count = frames;
        const int32_t interpolator = context_->findKernel(KernelName::kInterp2);
        const int32_t decimator = context_->findKernel(KernelName::kDecim2);
        for (int32_t s = 0; s < settings_.stages; ++s) {
            resample(interpolator, count, count * 2);
            count *= 2;
            filter(count);
        }
        const size_t down = next_;
        next_ += static_cast<size_t>(settings_.stages * settings_.channels);
        filter(count);
        for (int32_t b = 0; b < plain::kBands; ++b) {
            band(count);
        }
        filter(count);
        filter(count);
        for (int32_t c = 0; c < settings_.channels; ++c) {
            const CBufferHandle to = context_->takeBuffer(count * 8);
            context_->issue(context_->commonKernel(CCommonKernel::Mulc), count, settings_.outGain, {to, signal_[c]});
            replace(c, to);
        }
        context_->flush();
        for (int32_t s = settings_.stages - 1; s >= 0; --s) {
            next_ = down + static_cast<size_t>(s * settings_.channels);
            filter(count);
            count /= 2;
            resample(decimator, count, count);
        }
        for (int32_t c = 0; c < settings_.channels; ++c) {
            std::copy_n(context_->signal(signal_[c]), frames, out[c]);
            context_->releaseReference(signal_[c]);
        }
    }

private:
    struct CStep {
        int32_t kernel;
        CBufferHandle block;
    };

    void addFilter(int32_t type, const double* coefficients) {
        const CSectionKernels& section = context_->sectionKernels(type);
        for (int32_t c = 0; c < settings_.channels; ++c) {
            const CBufferHandle list = context_->takeBuffer(section.coefficientCount * 8);
            std::copy_n(coefficients, section.coefficientCount, context_->signal(list));
            const CBufferHandle block = context_->takeBuffer(section.stateSize * 8);
            context_->issue(section.init, 0, 0.0, {block, list});
            context_->releaseReference(list);
            steps_.push_back({section.runGain, block});
        }
    }
    void addTube() {
        for (int32_t c = 0; c < settings_.channels; ++c) {
            const CBufferHandle block = context_->takeBuffer(sizeof(CTubeBlock));
            auto* const tube = static_cast<CTubeBlock*>(context_->data(block));
            *tube = {1 / 1.05, 1 / 1.1, 3.5, 4.8, -1.8, 0.5, 1.0, 0.15, 1.009, 0, 0, 0, 0, {}, {}, 0, {}, 50.0};
            context_->issue(context_->findKernel(KernelName::kMetaTubeInit), 0, settings_.rate, {block});
            steps_.push_back({context_->findKernel(KernelName::kMetaTube), block});
        }
    }
    void replace(int32_t c, CBufferHandle by) {
        context_->releaseReference(signal_[c]);
        signal_[c] = by;
    }
    void filter(int32_t count) {
        for (int32_t c = 0; c < settings_.channels; ++c) {
            const CStep& step = steps_[next_++];
            const CBufferHandle to = context_->takeBuffer(count * 8);
            context_->issue(step.kernel, count, 0.9, {to, step.block, signal_[c]});
            replace(c, to);
        }
        context_->endProcess();
    }
    void band(int32_t count) {
        CBufferHandle feed[8];
        for (int32_t c = 0; c < settings_.channels; ++c) {
            feed[c] = signal_[c];
            context_->addReference(feed[c]);
        }
        filter(count);
        filter(count);
        for (int32_t c = 0; c < settings_.channels; ++c) {
            const CStep& step = steps_[next_++];
            const CBufferHandle to = context_->takeBuffer(count * 8);
            context_->issue(step.kernel, count, 0.0, {to, step.block, signal_[c], feed[c]});
            context_->releaseReference(feed[c]);
            replace(c, to);
        }
        context_->endProcess();
    }
    void resample(int32_t kernel, int32_t count, int32_t size) {
        for (int32_t c = 0; c < settings_.channels; ++c) {
            const CBufferHandle to = context_->takeBuffer(size * 8);
            context_->issue(kernel, count, 0.0, {to, signal_[c]});
            replace(c, to);
        }
        context_->flush();
    }

    plain::CChainSettings settings_;
    std::unique_ptr<CQPLEXContext> context_;
    std::vector<CBufferHandle> seeds_;
    std::vector<CStep> steps_;
    CBufferHandle signal_[8] = {};
    size_t next_ = 0;
};

/// The chain through context and kernels against the plain chain; rounds alternate, with fresh noise in each.
void kernelChain(benchmark::State& state) {
    plain::CChainSettings settings;
    settings.channels = static_cast<int32_t>(state.range(0));
    const auto frames = static_cast<int32_t>(state.range(1));
    settings.stages = static_cast<int32_t>(state.range(2));
    CKernelChain kernels(settings, frames);
    plain::CPlainChain plain(settings, frames);
    std::mt19937 random(3);
    std::vector<std::vector<double>> in(8, std::vector<double>(static_cast<size_t>(frames) + 72));
    std::vector<std::vector<double>> out = in;
    const double* ins[8];
    double* outs[8];
    for (size_t c = 0; c < 8; ++c) {
        ins[c] = in[c].data();
        outs[c] = out[c].data();
    }
    std::vector<double> kernelTimes;
    std::vector<double> plainTimes;
    for (auto _ : state) {
        for (auto& signal : in) {
            for (double& x : signal) {
                x = static_cast<double>(random()) / 4294967296.0 - 0.5;
            }
        }
        const double start = seconds();
        kernels.process(ins, outs, frames);
        const double middle = seconds();
        plain.process(ins, outs, frames);
        const double end = seconds();
        benchmark::ClobberMemory();
        kernelTimes.push_back(middle - start);
        plainTimes.push_back(end - middle);
        state.SetIterationTime(middle - start);
    }
    state.counters["kernel_ns_frame"] = medianOf(kernelTimes) * 1e9 / frames;
    state.counters["plain_ns_frame"] = medianOf(plainTimes) * 1e9 / frames;
    state.counters["ratio"] = medianOf(kernelTimes) / medianOf(plainTimes);
}
BENCHMARK(kernelChain)
    ->ArgNames({"channels", "frames", "stages"})
    ->ArgsProduct({{2, 8}, {32, 512}, {0, 1, 2, 3}})
    ->UseManualTime()
    ->Iterations(300);

}  // namespace
}  // namespace tarv

BENCHMARK_MAIN();
