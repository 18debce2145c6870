// What blocks of one library take, on either system: `BlockTimes LIBRARY CHUNKS` prints a line for each row, its name,
// a tab, and the least nanoseconds a frame: of the blocks alone, or of setting the parameters before them. CHUNKS is
// the folder of BlockChunks. `BlockTimes --sets` prints the sets of instructions that this machine has.

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "Audio/Kernels/Wave/CInstructionSet.h"
#include "Benchmarks/BlockRows.h"
#include "Benchmarks/MovedParameters.h"
#include "CPluginLibrary.h"

namespace {

using namespace tarv;
using namespace tarv::bench;
using CClock = std::chrono::steady_clock;

/// Clocks of the systems differ in their steps, this one is the same on both: ticks at one rate, read in some 10 ns.
int64_t ticks() {
    return static_cast<int64_t>(__builtin_ia32_rdtsc());
}

double measureTicksPerNanosecond() {
    const auto start = CClock::now();
    const int64_t first = ticks();
    while (CClock::now() - start < std::chrono::milliseconds(50)) {
    }
    const int64_t taken = ticks() - first;
    return static_cast<double>(taken) / std::chrono::duration<double, std::nano>(CClock::now() - start).count();
}

/// What some blocks take, in ticks.
struct CTaken {
    int64_t moves = 0;   ///< setting the parameters
    int64_t blocks = 0;  ///< without that
};

/// Blocks of the same noise, again and again.
class CBlocks {
public:
    explicit CBlocks(const CLayout& layout)
        : frames_(layout.frames), in_(kPorts, std::vector<double>(static_cast<size_t>(frames_))), out_(in_) {
        std::mt19937 random(1);
        for (size_t c = 0; c < in_.size(); ++c) {
            for (double& sample : in_[c]) {
                sample = random() / 4294967296.0 - 0.5;
            }
            inputs_.push_back(in_[c].data());
            outputs_.push_back(out_[c].data());
        }
    }
    /// Each block with a change of each moved parameter before it.
    CTaken run(host::CVstHost& host, const std::vector<int32_t>& moved, int32_t count) {
        CTaken taken;
        for (int32_t i = 0; i < count; ++i) {
            const int64_t start = ticks();
            float value = 0.3f + 0.004f * static_cast<float>(round_++ % 100);
            for (const int32_t parameter : moved) {
                host.setParameter(parameter, value);
                value += 0.01f;
            }
            const int64_t middle = ticks();
            host.process(inputs_.data(), outputs_.data(), frames_);
            taken.blocks += ticks() - middle;
            taken.moves += middle - start;
        }
        return taken;
    }

private:
    int32_t frames_;
    std::vector<std::vector<double>> in_, out_;
    std::vector<double*> inputs_, outputs_;
    int32_t round_ = 0;
};

/// Ticks a frame; 0 if the library refuses the state.
double leastOf(vst::EntryProc entry, const CBlockRow& row, const std::string& chunk) {
    host::CVstHost host;
    if (!host.open(entry) || std::max(host.effect()->numInputs, host.effect()->numOutputs) > kPorts) {
        return 0.0;
    }
    host.prepare(kRate, row.layout.frames, 1);
    if (!host.setChunk(chunk, true)) {
        return 0.0;
    }
    host.resume();
    const std::vector<int32_t> moved = movedParameters(host, row.layout.moves);
    CBlocks blocks(row.layout);
    blocks.run(host, moved, 20 * row.batch);
    int64_t least = INT64_MAX;
    for (int32_t i = 0; i < row.batches; ++i) {
        const CTaken taken = blocks.run(host, moved, row.batch);
        least = std::min(least, row.layout.isMoveTimed ? taken.moves : taken.blocks);
    }
    return static_cast<double>(least) / row.batch / row.layout.frames;
}

void printSets() {
    for (int32_t i = 0; i <= static_cast<int32_t>(widestSet(readProcessorFeatures())); ++i) {
        std::printf("%s\n", nameOf(static_cast<CInstructionSet>(i)));
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--sets") == 0) {
        printSets();
        return 0;
    }
    host::CPluginLibrary library;
    std::string error = "BlockTimes LIBRARY CHUNKS, or BlockTimes --sets";
    if (argc != 3 || !library.load(argv[1], error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 2;
    }
    const double ticksPerNanosecond = measureTicksPerNanosecond();
    for (const CBlockRow& row : kBlockRows) {
        std::ifstream in(std::string(argv[2]) + "/" + chunkFileOf(row.layout), std::ios::binary);
        const std::string chunk{std::istreambuf_iterator<char>(in), {}};
        const double least = leastOf(library.entry(), row, chunk);
        if (least == 0.0) {
            std::fprintf(stderr, "BlockTimes: no instance for %s\n", row.name);
            return 1;
        }
        std::printf("%s\t%.3f\n", row.name, least / ticksPerNanosecond);
    }
    return 0;
}
