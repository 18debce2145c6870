// What saving and restoring a state costs, as a ratio to zlib alone over the same bytes, in turn in the same run.

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <memory>
#include <string>
#include <vector>

#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Benchmarks/Times.h"
#include "CPlainInstance.h"
#include "Core/CompressedBlock.h"

namespace tarv {
namespace {

constexpr int32_t kRounds = 400;
constexpr int32_t kHeaderBytes = 12;

std::unique_ptr<CPlainInstance> make() {
    CError* error = nullptr;
    std::unique_ptr<CPlainInstance> instance(CPlainInstance::create(error));
    mustSucceed(error);
    return instance;
}

/// Two states of one kind that differ in every band of two groups.
struct CStates {
    CByteBuffer chunks[2];
    CByteBuffer raw[2];
};

CStates statesOf(CPlainInstance& instance, bool isProgram) {
    CStates states;
    for (int32_t which = 0; which < 2; ++which) {
        for (int32_t band = 0; band < 7; ++band) {
            instance.set("plugin.modMain.modBrindleXEQ.xeq-gains", 0, band, 0.5 + 0.13 * band + 0.11 * which);
            instance.set("plugin.modMain.modBrindleXEQ.xeq-gains", 1, band, 1.5 - 0.13 * band + 0.11 * which);
        }
        mustSucceed(instance.getState(states.chunks[which], isProgram));
        CMemoryReader reader(states.chunks[which].data(), static_cast<uint32_t>(states.chunks[which].count()));
        mustSucceed(reader.readCompressedData(states.raw[which], isProgram ? kPresetBlockId : kBankBlockId));
    }
    return states;
}

void deflateAlone(const CByteBuffer& raw, std::string& out) {
    z_stream zip{};
    deflateInit(&zip, Z_DEFAULT_COMPRESSION);
    zip.next_in = const_cast<Bytef*>(raw.data());
    zip.avail_in = static_cast<uInt>(raw.count());
    zip.next_out = reinterpret_cast<Bytef*>(out.data());
    zip.avail_out = static_cast<uInt>(out.size());
    deflate(&zip, Z_FINISH);
    deflateEnd(&zip);
}

void inflateAlone(const CByteBuffer& chunk, std::string& out) {
    z_stream zip{};
    inflateInit(&zip);
    zip.next_in = const_cast<Bytef*>(chunk.data() + kHeaderBytes);
    zip.avail_in = static_cast<uInt>(chunk.count() - kHeaderBytes);
    zip.next_out = reinterpret_cast<Bytef*>(out.data());
    zip.avail_out = static_cast<uInt>(out.size());
    inflate(&zip, Z_FINISH);
    inflateEnd(&zip);
}

/// getChunk and setChunk against zlib; argument 0: a program, 1: the bank. Every setChunk brings another state.
void chunks(benchmark::State& state) {
    const bool isProgram = state.range(0) == 0;
    const auto instance = make();
    instance->start(44100.0, 2, 2);
    const CStates states = statesOf(*instance, isProgram);
    std::string out(1 << 20, '\0');
    for (auto _ : state) {
        std::vector<double> get;
        std::vector<double> set;
        std::vector<double> deflated;
        std::vector<double> inflated;
        for (int32_t i = 0; i < kRounds; ++i) {
            const CByteBuffer& chunk = states.chunks[i % 2];
            set.push_back(
                secondsOf([&] { mustSucceed(instance->setState(chunk.data(), chunk.count(), isProgram, true)); }));
            inflated.push_back(secondsOf([&] { inflateAlone(chunk, out); }));
        }
        // Not in turn with setChunk: what deflate takes and gives back, a quarter of a megabyte, makes the system's
        // heap shrink and grow again at the cost of the next allocation.
        for (int32_t i = 0; i < kRounds; ++i) {
            CByteBuffer given;
            get.push_back(secondsOf([&] { mustSucceed(instance->getState(given, isProgram)); }));
            deflated.push_back(secondsOf([&] { deflateAlone(states.raw[i % 2], out); }));
        }
        state.counters["getChunk/deflate"] = medianOf(get) / medianOf(deflated);
        state.counters["setChunk/inflate"] = medianOf(set) / medianOf(inflated);
        state.counters["getChunk_us"] = 1e6 * medianOf(get);
        state.counters["setChunk_us"] = 1e6 * medianOf(set);
        state.counters["bytes"] = states.raw[0].count();
    }
}
BENCHMARK(chunks)->ArgName("bank")->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kMillisecond);

/// A preset as an editor activates it, a step of the history included, against setChunk, which brings another state
/// each time; argument 1: every activation does, too, 0: it finds its values there already and makes no step.
void activation(benchmark::State& state) {
    const bool isOther = state.range(0) == 1;
    const auto instance = make();
    instance->start(44100.0, 2, 2);
    const CStates states = statesOf(*instance, true);
    for (auto _ : state) {
        std::vector<double> activated;
        std::vector<double> set;
        for (int32_t i = 0; i < kRounds; ++i) {
            const CByteBuffer& chunk = states.chunks[isOther ? 0 : i % 2];
            activated.push_back(secondsOf([&] {
                CMemoryReader block(chunk.data(), static_cast<uint32_t>(chunk.count()));
                CByteBuffer bytes;
                mustSucceed(block.readCompressedData(bytes, kPresetBlockId));
                CMemoryReader stream(bytes.data(), static_cast<uint32_t>(bytes.count()));
                mustSucceed(instance->paramRegistry()->activatePreset(stream));
            }));
            const CByteBuffer& other = states.chunks[isOther ? 1 : (i + 1) % 2];
            set.push_back(secondsOf([&] { mustSucceed(instance->setState(other.data(), other.count(), true, true)); }));
        }
        state.counters["activate/setChunk"] = medianOf(activated) / medianOf(set);
        state.counters["activate_us"] = 1e6 * medianOf(activated);
    }
}
BENCHMARK(activation)->ArgName("other")->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarv

BENCHMARK_MAIN();
