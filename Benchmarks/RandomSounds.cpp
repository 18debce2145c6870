#include "Benchmarks/RandomSounds.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "Benchmarks/InChild.h"
#include "CPluginLibrary.h"
#include "CVstHost.h"

namespace tarv::bench {

namespace {

constexpr int32_t kLongestBlock = 700;
constexpr int64_t kFrames = 6000;

/// Audio of one block, which a host reuses: inputs, then outputs.
template <class Sample>
class CBlock {
public:
    /// Noise, and now and then what no sample should be.
    void fill(std::mt19937& random, double level, bool hasWrong) {
        constexpr Sample kWrong[] = {std::numeric_limits<Sample>::infinity(), std::numeric_limits<Sample>::quiet_NaN(),
                                     std::numeric_limits<Sample>::max(), std::numeric_limits<Sample>::denorm_min()};
        std::uniform_real_distribution<double> noise(-level, level);
        std::generate(samples_.begin(), samples_.end(), [&] { return static_cast<Sample>(noise(random)); });
        for (int32_t i = 0; hasWrong && i < 3; ++i) {
            samples_[random() % samples_.size()] = kWrong[random() % std::size(kWrong)];
        }
    }
    void run(host::CVstHost& host, int32_t frames, bool isInPlace) {
        Sample* inputs[kPorts];
        Sample* outputs[kPorts];
        for (int32_t c = 0; c < kPorts; ++c) {
            inputs[c] = samples_.data() + c * kLongestBlock;
            outputs[c] = isInPlace ? inputs[c] : inputs[c] + kPorts * kLongestBlock;
        }
        host.process(inputs, outputs, frames);
    }
    bool isLike(const CBlock& other) const {
        return std::memcmp(samples_.data(), other.samples_.data(), samples_.size() * sizeof(Sample)) == 0;
    }

private:
    std::vector<Sample> samples_ = std::vector<Sample>(2 * kPorts * kLongestBlock);
};

/// One script for both builds.
class CScript {
public:
    explicit CScript(uint32_t seed) : random_(seed) {}

    /// Whether both give the same bits throughout; false also if a build gives no instance.
    bool isSame(vst::EntryProc before, vst::EntryProc after) {
        const int32_t channels = 1 + below(8);
        const CLayout layout = {channels, kLongestBlock, below(channels > 4 ? 2 : channels > 2 ? 3 : 4), CMoves::None};
        const bool isFloat = below(2) == 0;
        const std::string chunk = chunkOf(layout);
        constexpr double kRates[] = {44100.0, 48000.0, 96000.0};
        const double rate = kRates[below(3)];
        for (host::CVstHost& host : hosts_) {
            if (!host.open(&host == hosts_ ? before : after)) {
                return false;
            }
            host.suspend();
            host.prepare(rate, kLongestBlock, isFloat ? 0 : 1);
            if (!host.setChunk(chunk, true)) {
                return false;
            }
            host.resume();
        }
        return isFloat ? play<float>() : play<double>();
    }

private:
    int32_t below(int32_t n) { return static_cast<int32_t>(random_() % static_cast<uint32_t>(n)); }

    template <class Sample>
    bool play() {
        CBlock<Sample> blocks[2];
        const bool isInPlace = below(2) == 0;
        // Blocks at which parameters move, one of so many.
        const int32_t pause = 1 + below(below(2) == 0 ? 2 : 40);
        int32_t frames = 0;
        for (int64_t at = 0; at < kFrames; at += frames) {
            if (at == 0 || below(20) == 0) {
                const int32_t longest[] = {8, 64, 200, kLongestBlock};
                frames = 1 + below(longest[below(4)]);
            }
            if (below(pause) == 0) {
                move();
            }
            if (below(200) == 0) {
                for (host::CVstHost& host : hosts_) {
                    host.suspend();
                    host.resume();
                }
            }
            blocks[0].fill(random_, below(40) == 0 ? 30.0 : 0.5, below(100) == 0);
            blocks[1] = blocks[0];
            for (int32_t i = 0; i < 2; ++i) {
                blocks[i].run(hosts_[i], frames, isInPlace);
            }
            if (!blocks[1].isLike(blocks[0])) {
                return false;
            }
        }
        return true;
    }
    void move() {
        for (int32_t i = 1 + below(4); i > 0; --i) {
            const int32_t parameter = below(hosts_[0].effect()->numParams);
            const float value = static_cast<float>(below(1001)) / 1000.0f;
            for (host::CVstHost& host : hosts_) {
                host.setParameter(parameter, value);
            }
        }
    }

    std::mt19937 random_;
    host::CVstHost hosts_[2];
};

}  // namespace

int32_t countSameSounds(const CBuilds& builds, const char* set, int32_t count) {
    const std::vector<double> same = inChild([&]() -> std::vector<double> {
        setenv("TARV_INSTRUCTION_SET", set, 1);
        host::CPluginLibrary before;
        host::CPluginLibrary after;
        std::string error;
        if (!before.load(builds.before, error) || !after.load(builds.after, error)) {
            std::fprintf(stderr, "%s\n", error.c_str());
            return {};
        }
        int32_t alike = 0;
        for (int32_t seed = 1; seed <= count; ++seed) {
            if (CScript(static_cast<uint32_t>(seed)).isSame(before.entry(), after.entry())) {
                ++alike;
            } else {
                std::fprintf(stderr, "%s: random script %d: the builds give other bits\n", set, seed);
            }
        }
        return {static_cast<double>(alike)};
    });
    return same.empty() ? -1 : static_cast<int32_t>(same[0]);
}

}  // namespace tarv::bench
