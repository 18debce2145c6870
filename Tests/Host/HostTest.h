#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "CPluginLibrary.h"
#include "CVstHost.h"
#include "Tests/TestPaths.h"

namespace tarv::host {

/// The parameters in the order in which a host counts them.
enum ParamIndex : int32_t { kBypass = 0, kEqA0 = 1, kOutGainA = 8, kEqB0 = 9, kOutGainB = 16, kOversampling = 17 };
constexpr int32_t kParamCount = 18;
constexpr int32_t kChannels = 8;

/// Loads the built library before a suite and unloads it at its end.
class HostTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        std::string error;
        library = std::make_unique<CPluginLibrary>();
        ASSERT_TRUE(library->load(kPluginFile, error)) << error;
    }
    static void TearDownTestSuite() { library.reset(); }
    void SetUp() override { ASSERT_TRUE(library && library->entry()); }

    static inline std::unique_ptr<CPluginLibrary> library;
};

/// A host with the effect opened in it.
class OpenHostTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        ASSERT_TRUE(host.open(library->entry()));
    }
    CVstHost host;
};

/// A change of a parameter at a frame.
struct CChange {
    int64_t frame;
    int32_t index;
    float value;
};

/// How a signal is handed to an effect.
struct CCut {
    int32_t block = 512;  ///< frames, or the most of random ones
    bool isRandom = false;
    bool isInPlace = false;
    int32_t announced = 4096;  ///< the block size that the host announces
};

/// Channels of samples, one vector each.
template <class Sample>
using CSignal = std::vector<std::vector<Sample>>;

/// White noise from -level to level, another for each channel.
template <class Sample>
CSignal<Sample> noise(int32_t channels, int32_t frames, double level = 0.5) {
    CSignal<Sample> signal(channels, std::vector<Sample>(frames));
    uint64_t seed = 1;
    for (auto& channel : signal) {
        for (Sample& sample : channel) {
            seed = seed * 6364136223846793005u + 1442695040888963407u;
            sample = static_cast<Sample>(level * (static_cast<double>(seed >> 11) / 4503599627370496.0 - 1.0));
        }
    }
    return signal;
}

/// The same sine on each channel.
template <class Sample>
CSignal<Sample> sine(int32_t channels, int32_t frames, double hz, double rate, double level) {
    std::vector<Sample> samples(frames);
    for (int32_t i = 0; i < frames; ++i) {
        samples[i] = static_cast<Sample>(level * std::sin(2.0 * 3.14159265358979323846 * hz * i / rate));
    }
    return CSignal<Sample>(channels, samples);
}

/// Hands a signal to a running effect. A block is cut where a change is due.
template <class Sample>
CSignal<Sample> process(CVstHost& host, const CSignal<Sample>& input, const CCut& cut = {},
                        const std::vector<CChange>& changes = {}) {
    const auto frames = static_cast<int64_t>(input[0].size());
    CSignal<Sample> in(input);
    CSignal<Sample> out(input.size(), std::vector<Sample>(frames, Sample(7)));
    uint32_t seed = 1;
    size_t change = 0;
    for (int64_t done = 0; done < frames;) {
        for (; change < changes.size() && changes[change].frame <= done; ++change) {
            host.setParameter(changes[change].index, changes[change].value);
        }
        seed = seed * 1664525u + 1013904223u;
        int64_t count = cut.isRandom ? 1 + (seed >> 8) % cut.block : cut.block;
        count = std::min(count, frames - done);
        count = change < changes.size() ? std::min(count, changes[change].frame - done) : count;
        std::vector<Sample*> from, into;
        for (size_t c = 0; c < in.size(); ++c) {
            from.push_back(in[c].data() + done);
            into.push_back(cut.isInPlace ? from.back() : out[c].data() + done);
        }
        host.process(from.data(), into.data(), static_cast<int32_t>(count));
        done += count;
    }
    return cut.isInPlace ? in : out;
}

/// Sets a new effect up, runs a signal through it and suspends it.
template <class Sample>
CSignal<Sample> render(vst::EntryProc entry, const CSignal<Sample>& input, double rate, const CCut& cut = {},
                       const std::vector<CChange>& changes = {}) {
    CVstHost host;
    if (!host.open(entry)) {
        return {};
    }
    host.prepare(rate, cut.announced, sizeof(Sample) == 8 ? vst::kPrecision64 : vst::kPrecision32);
    for (const CChange& change : changes) {
        if (change.frame < 0) {
            host.setParameter(change.index, change.value);
        }
    }
    host.resume();
    CSignal<Sample> output = process(host, input, cut, changes);
    host.suspend();
    return output;
}

template <class Sample>
double peak(const std::vector<Sample>& samples, size_t from = 0) {
    double most = 0.0;
    for (size_t i = from; i < samples.size(); ++i) {
        // NaN compares false, and would pass as silence.
        most = std::isfinite(samples[i]) ? std::max(most, std::abs(static_cast<double>(samples[i]))) : INFINITY;
    }
    return most;
}

/// Whether two signals are the same, and if not, where they first differ.
template <class Sample>
::testing::AssertionResult sameBits(const CSignal<Sample>& a, const CSignal<Sample>& b) {
    if (a.size() != b.size() || a.empty()) {
        return ::testing::AssertionFailure() << a.size() << " channels against " << b.size();
    }
    for (size_t c = 0; c < a.size(); ++c) {
        for (size_t i = 0; i < std::max(a[c].size(), b[c].size()); ++i) {
            if (i >= a[c].size() || i >= b[c].size() || std::memcmp(&a[c][i], &b[c][i], sizeof(Sample)) != 0) {
                return ::testing::AssertionFailure() << "channel " << c << " differs from frame " << i;
            }
        }
    }
    return ::testing::AssertionSuccess();
}

}  // namespace tarv::host
