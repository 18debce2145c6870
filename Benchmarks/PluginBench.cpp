// What the whole plug-in costs, as a ratio to B: the hand-written chain of PlainChain.h with the same settings in the
// same run, block by block in turn, so that the load and the clock of the machine affect both.

#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <vector>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Benchmarks/PlainChain.h"
#include "Benchmarks/Times.h"
#include "CPlainInstance.h"

namespace tarv {
namespace {

constexpr const char* kGains = "plugin.modMain.modBrindleXEQ.xeq-gains";
constexpr const char* kIo = "plugin.modMain.io-params.";

std::unique_ptr<CPlainInstance> makeInstance(const plain::CChainSettings& settings) {
    CError* error = nullptr;
    std::unique_ptr<CPlainInstance> instance(CPlainInstance::create(error));
    if (!instance) {
        showError(error);
        return nullptr;
    }
    const auto setIo = [&](const char* name, int32_t e, double value) {
        instance->set(CString(kIo) + name, 0, e, value);
    };
    for (int32_t e = 0; e < 8; ++e) {
        setIo("in-routing", e, e < settings.channels ? e + 1 : 0);
        setIo("out-routing", e, e < settings.channels ? e + 1 : 0);
    }
    for (int32_t group = 0; group < 8; ++group) {
        for (int32_t b = 0; b < plain::kBands; ++b) {
            instance->set(kGains, group, b, std::pow(10.0, settings.bandDb[static_cast<size_t>(b)] / 20.0));
        }
        instance->set("plugin.modMain.modOutGain.gain", group, 0, settings.outGain);
    }
    instance->set("plugin.modMain.oversampling", 0, 0, settings.stages + 1);
    instance->start(settings.rate, settings.channels, settings.channels);
    return instance;
}

/// Fresh noise for each round, planar; level 0 is silence.
class CNoise {
public:
    CNoise(int32_t channels, int32_t frames) : samples_(static_cast<size_t>(channels * frames)), frames_(frames) {
        for (int32_t c = 0; c < channels; ++c) {
            pointers_.push_back(samples_.data() + c * frames);
        }
    }
    void refill(double level) {
        for (double& sample : samples_) {
            sample = level * distribution_(engine_);
        }
    }
    double* const* channels() { return pointers_.data(); }
    int32_t frames() const { return frames_; }

private:
    std::minstd_rand engine_{1};
    std::uniform_real_distribution<double> distribution_{-0.5, 0.5};
    std::vector<double> samples_;
    std::vector<double*> pointers_;
    int32_t frames_;
};

void automate(CPlainInstance& instance, int64_t round) {
    // A gesture on every band: each block starts or prolongs fades.
    for (int32_t b = 0; b < plain::kBands; ++b) {
        instance.set(kGains, 0, b, 1.0 + 0.2 * std::sin(0.01 * static_cast<double>(round + 37 * b)));
    }
}

/// Arguments: channels, frames of a block, stages of oversampling, automated.
void wholePlugin(benchmark::State& state) {
    plain::CChainSettings settings;
    settings.channels = static_cast<int32_t>(state.range(0));
    settings.stages = static_cast<int32_t>(state.range(2));
    const auto frames = static_cast<int32_t>(state.range(1));
    const bool isAutomated = state.range(3) != 0;
    const std::unique_ptr<CPlainInstance> instance = makeInstance(settings);
    if (!instance) {
        state.SkipWithError("no instance");
        return;
    }
    plain::CPlainChain chain(settings, frames);
    CNoise in(settings.channels, frames);
    CNoise out(settings.channels, frames);
    std::vector<double> pluginTimes;
    std::vector<double> plainTimes;
    int64_t round = 0;
    for (auto _ : state) {
        in.refill(1.0);
        if (isAutomated) {
            automate(*instance, round);
        }
        ++round;
        const double start = seconds();
        instance->processBlock(in.channels(), out.channels(), frames);
        const double middle = seconds();
        chain.process(in.channels(), out.channels(), frames);
        const double end = seconds();
        pluginTimes.push_back(middle - start);
        plainTimes.push_back(end - middle);
        state.SetIterationTime(middle - start);
    }
    state.counters["plugin_ns_frame"] = medianOf(pluginTimes) * 1e9 / frames;
    state.counters["B_ns_frame"] = medianOf(plainTimes) * 1e9 / frames;
    state.counters["ratio"] = medianOf(pluginTimes) / medianOf(plainTimes);
}
BENCHMARK(wholePlugin)
    ->ArgNames({"channels", "frames", "stages", "automated"})
    ->Args({2, 512, 0, 0})
    ->Args({2, 512, 1, 0})
    ->Args({2, 512, 2, 0})
    ->Args({2, 512, 3, 0})
    ->Args({8, 512, 0, 0})
    ->Args({8, 512, 3, 0})
    ->Args({2, 32, 0, 0})
    ->Args({8, 32, 0, 0})
    ->Args({2, 4096, 0, 0})
    ->Args({2, 512, 0, 1})
    ->Args({8, 512, 3, 1})
    ->Iterations(400)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

/// Silence must not cost more than noise, however long it lasts: two instances in turn, one fed, one run dry.
void silenceAgainstNoise(benchmark::State& state) {
    const bool isCoded = state.range(0) != 0;
    plain::CChainSettings settings;
    const std::unique_ptr<CPlainInstance> fed = makeInstance(settings);
    const std::unique_ptr<CPlainInstance> dry = makeInstance(settings);
    if (!fed || !dry) {
        state.SkipWithError("no instance");
        return;
    }
    constexpr int32_t kFrames = 512;
    CNoise noise(settings.channels, kFrames);
    CNoise out(settings.channels, kFrames);
    CNoise silence(settings.channels, kFrames);
    silence.refill(0.0);
    for (const CPlainInstance* instance : {fed.get(), dry.get()}) {
        for (int32_t e = 0; e < 2 && isCoded; ++e) {
            const_cast<CPlainInstance*>(instance)->set(CString(kIo) + "ms-pairs", 0, e, 1.0);
        }
    }
    for (int32_t i = 0; i < 100; ++i) {
        noise.refill(1.0);
        dry->processBlock(noise.channels(), out.channels(), kFrames);
    }
    std::vector<double> fedTimes;
    std::vector<double> dryTimes;
    for (auto _ : state) {
        noise.refill(1.0);
        const double start = seconds();
        fed->processBlock(noise.channels(), out.channels(), kFrames);
        const double middle = seconds();
        dry->processBlock(silence.channels(), out.channels(), kFrames);
        dryTimes.push_back(seconds() - middle);
        fedTimes.push_back(middle - start);
        state.SetIterationTime(dryTimes.back());
    }
    // The slowest tenth of the run counts too: numbers that decay into denormals would show late.
    const auto late = static_cast<int64_t>(dryTimes.size() - dryTimes.size() / 10);
    state.counters["ratio"] = medianOf(dryTimes) / medianOf(fedTimes);
    state.counters["late_ratio"] =
        medianOf({dryTimes.begin() + late, dryTimes.end()}) / medianOf({fedTimes.begin() + late, fedTimes.end()});
}
BENCHMARK(silenceAgainstNoise)->ArgName("midside")->Arg(0)->Arg(1)->Iterations(6000)->UseManualTime();

/// Another instance beside one that exists, with the shared tree in place.
void creation(benchmark::State& state) {
    CError* error = nullptr;
    const std::unique_ptr<CPlainInstance> first(CPlainInstance::create(error));
    for (auto _ : state) {
        const std::unique_ptr<CPlainInstance> further(CPlainInstance::create(error));
        benchmark::DoNotOptimize(further.get());
    }
}
BENCHMARK(creation)->Unit(benchmark::kMillisecond);

/// Bytes that one running instance takes from the pool heap and the context's storages.
void memory(benchmark::State& state) {
    plain::CChainSettings settings;
    settings.channels = static_cast<int32_t>(state.range(0));
    settings.stages = static_cast<int32_t>(state.range(1));
    CError* error = nullptr;
    const std::unique_ptr<CPlainInstance> first(CPlainInstance::create(error));
    CNoise in(settings.channels, 512);
    CNoise out(settings.channels, 512);
    for (auto _ : state) {
        std::vector<std::unique_ptr<CPlainInstance>> instances;
        constexpr int32_t kCount = 8;
        const uint64_t before = CHeap::counters().platformBytes;
        for (int32_t i = 0; i < kCount; ++i) {
            instances.push_back(makeInstance(settings));
            for (int64_t round = 0; round < 200; ++round) {
                in.refill(1.0);
                automate(*instances.back(), round);
                instances.back()->processBlock(in.channels(), out.channels(), 512);
            }
        }
        state.counters["MiB"] =
            static_cast<double>(CHeap::counters().platformBytes - before) / kCount / (1024.0 * 1024.0);
    }
}
BENCHMARK(memory)->ArgNames({"channels", "stages"})->Args({2, 0})->Args({8, 3})->Iterations(1);

}  // namespace
}  // namespace tarv

BENCHMARK_MAIN();
