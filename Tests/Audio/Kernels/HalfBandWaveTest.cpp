// Changes of rate in lanes against the two kernels that they stand for, one after the other.

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/HalfBandKernels.h"
#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/ResampleKernels.h"
#include "Audio/Kernels/StandardKernels.h"
#include "Audio/Kernels/Wave/CHalfBandJoiner.h"
#include "Audio/Kernels/Wave/CInstructionSet.h"
#include "Audio/Kernels/Wave/WaveSets.h"
#include "Tests/Audio/Kernels/TestedSets.h"

namespace tarv {
namespace {

constexpr int32_t kMostSamples = 700;

struct CKernels {
    CKernels() {
        CSectionKernels rows[kMostHalfBand];
        registerHalfBandKernels(context, rows);
        registerResampleKernels(context);
        for (int32_t i = 0; i < kMostHalfBand; ++i) {
            filters[i] = context.kernel(rows[i].runGain).function;
        }
        up = context.kernel(context.findKernel(KernelName::kInterp2)).function;
        down = context.kernel(context.findKernel(KernelName::kDecim2)).function;
    }
    CQPLEXContext context;
    CKernelFunction filters[kMostHalfBand];
    CKernelFunction up;
    CKernelFunction down;
};

/// One channel of a change of rate, with the signal at each rate.
struct CChannel {
    std::vector<double> in, between, out, block;
    double gain = 1.0;
};

class HalfBandWave : public testing::TestWithParam<CInstructionSet> {
protected:
    double between(double low, double high) { return low + (high - low) * (random() / 4294967296.0); }

    std::vector<CChannel> makeChannels(int32_t count, int32_t order) {
        std::vector<CChannel> channels(static_cast<size_t>(count));
        for (CChannel& c : channels) {
            c.in.resize(2 * kMostSamples);
            c.between.resize(2 * kMostSamples);
            c.out.resize(2 * kMostSamples);
            c.block.assign(static_cast<size_t>(sizeOfHalfBand(order)), 0.0);
            for (int32_t k = 0; k < 2 * order; ++k) {
                c.block[static_cast<size_t>(k)] = between(-0.9, 0.9);
            }
            c.block[static_cast<size_t>(indexOfHalfBand(order))] = 3.0;
            c.gain = between(-1.0, 1.0);
        }
        return channels;
    }
    /// The two kernels.
    void runPlain(std::vector<CChannel>& channels, int32_t order, bool isUp, int32_t count) const {
        for (CChannel& c : channels) {
            double* const first = isUp ? c.between.data() : c.out.data();
            double* const second = isUp ? c.out.data() : c.between.data();
            COperation step = {{first, isUp ? c.in.data() : c.between.data()}, 0.0, count};
            COperation filter = {{second, c.block.data(), isUp ? c.between.data() : c.in.data()}, c.gain, 2 * count};
            const CKernelFunction run = kernels.filters[order - 1];
            if (isUp) {
                kernels.up(step);
                run(filter);
            } else {
                run(filter);
                kernels.down(step);
            }
        }
    }
    void runLanes(std::vector<CChannel>& channels, int32_t order, bool isUp, int32_t count) const {
        CHalfBandPlan plan = {};
        plan.isUp = isUp;
        plan.order = order;
        plan.count = count;
        plan.channels = static_cast<int32_t>(channels.size());
        for (size_t c = 0; c < channels.size(); ++c) {
            plan.in[c] = channels[c].in.data();
            plan.out[c] = channels[c].out.data();
            plan.block[c] = channels[c].block.data();
            plan.gain[c] = channels[c].gain;
        }
        GetParam() == CInstructionSet::Sse2   ? runHalfBandsSse2(plan)
        : GetParam() == CInstructionSet::Avx2 ? runHalfBandsAvx2(plan)
                                              : runHalfBandsAvx512(plan);
    }
    /// A number of a signal: mostly noise, some that leave nothing as it was.
    double sample(double level) {
        const uint32_t kind = random() % 4096;
        return kind == 0 && level > 1e200 ? -std::numeric_limits<double>::quiet_NaN()
               : kind < 64                ? -0.0
                                          : between(-level, level);
    }
    /// Blocks of any length with the same input through both: the same bits come out and are carried on, also when
    /// kernels and lanes take turns.
    void compare(int32_t count, int32_t order, bool isUp, double level) {
        SCOPED_TRACE(std::to_string(count) + " channels, order " + std::to_string(order) + (isUp ? " up" : " down"));
        std::vector<CChannel> plain = makeChannels(count, order);
        std::vector<CChannel> lanes = plain;
        for (int32_t block = 0; block < 12; ++block) {
            const auto samples = static_cast<int32_t>(random() % (block % 3 == 0 ? kMostSamples + 1 : 9));
            for (size_t c = 0; c < plain.size(); ++c) {
                std::generate(plain[c].in.begin(), plain[c].in.end(), [&] { return sample(level); });
                lanes[c].in = plain[c].in;
            }
            runPlain(plain, order, isUp, samples);
            block % 4 == 3 ? runPlain(lanes, order, isUp, samples) : runLanes(lanes, order, isUp, samples);
            for (size_t c = 0; c < plain.size(); ++c) {
                // Behind the block, too: nothing is written there.
                ASSERT_EQ(bitsOf(plain[c].out), bitsOf(lanes[c].out))
                    << "block " << block << " channel " << c << ", " << samples << " samples at " << level;
                ASSERT_EQ(carried(plain[c].block, order, isUp), carried(lanes[c].block, order, isUp))
                    << "block " << block << " channel " << c << ", " << samples << " samples at " << level;
            }
        }
    }
    static std::vector<uint64_t> bitsOf(const std::vector<double>& numbers) {
        std::vector<uint64_t> bits;
        for (const double number : numbers) {
            bits.push_back(std::bit_cast<uint64_t>(number));
        }
        return bits;
    }
    /// What is left in a block for the next samples. Going down without what only dropped samples see.
    static std::vector<uint64_t> carried(std::vector<double> block, int32_t order, bool isUp) {
        if (!isUp) {
            eachDropped(block, order, [](double& number) { number = 0.0; });
        }
        return bitsOf(block);
    }
    /// The numbers in a block that only the samples see that a decimation leaves out: the odd ones in branch A, the
    /// even ones in branch B, and what of the lines is not in use.
    template <class F>
    static void eachDropped(std::vector<double>& block, int32_t order, F&& change) {
        const auto index = static_cast<int32_t>(block[static_cast<size_t>(indexOfHalfBand(order))]);
        for (const int32_t branch : {0, 1}) {
            for (int32_t k = 0; k <= order; ++k) {
                for (int32_t i = 0; i < kHalfBandLine; ++i) {
                    if (i != ((index + (branch == 0 ? 2 : 1)) & 3)) {
                        change(block[static_cast<size_t>(linesOfHalfBand(order, branch) + k * kHalfBandLine + i)]);
                    }
                }
            }
        }
    }

    std::mt19937 random{11};
    CKernels kernels;
};

TEST_P(HalfBandWave, GivesTheBitsOfTheKernels) {
    // From silence over denormal numbers to what ends in infinities and in no numbers.
    constexpr double kLevels[] = {1.0, 0.0, 40.0, 1e-310, 1e150, 1e308};
    const int32_t rounds = std::getenv("TARV_LONG") ? 50 : 1;
    int32_t level = 0;
    for (int32_t round = 0; round < rounds; ++round) {
        for (int32_t order = 1; order <= kMostHalfBand; ++order) {
            for (const int32_t count : {1, 2, 3, 4, 5, 6, 7, 8, 11, kMaxBatch}) {
                for (const bool isUp : {true, false}) {
                    ASSERT_NO_FATAL_FAILURE(compare(count, order, isUp, kLevels[level++ % std::size(kLevels)]));
                }
            }
        }
    }
}

TEST_P(HalfBandWave, WhatOnlyDroppedSamplesSeeReachesNoOutput) {
    for (int32_t order = 1; order <= kMostHalfBand; ++order) {
        std::vector<CChannel> clean = makeChannels(3, order);
        std::vector<CChannel> other = clean;
        for (int32_t block = 0; block < 8; ++block) {
            const auto samples = static_cast<int32_t>(random() % 60);
            for (size_t c = 0; c < clean.size(); ++c) {
                std::generate(clean[c].in.begin(), clean[c].in.end(), [&] { return between(-1.0, 1.0); });
                other[c].in = clean[c].in;
                eachDropped(other[c].block, order, [&](double& number) {
                    number = random() % 9 == 0 ? std::numeric_limits<double>::quiet_NaN() : between(-1e9, 1e9);
                });
            }
            runPlain(clean, order, false, samples);
            block % 2 == 0 ? runPlain(other, order, false, samples) : runLanes(other, order, false, samples);
            for (size_t c = 0; c < clean.size(); ++c) {
                ASSERT_EQ(bitsOf(clean[c].out), bitsOf(other[c].out)) << order << ", block " << block;
                ASSERT_EQ(carried(clean[c].block, order, false), carried(other[c].block, order, false)) << order;
            }
        }
    }
}

/// A half-band filter in front of a decimation with that immediate, recorded. Returns the joined calls.
int32_t joinedDecimations(CInstructionSet set, double immediate) {
    const auto context = makeStandardContext();
    registerResampleKernels(*context);
    context->setJoiner(CJoinedKernels::Rates, std::make_unique<CHalfBandJoiner>(*context, set));
    const CBufferHandle in = context->takeSignal(64);
    const CBufferHandle block = context->takeBuffer(sizeOfHalfBand(2) * 8);
    std::fill_n(context->signal(in), 64, 0.25);
    std::fill_n(context->signal(block), sizeOfHalfBand(2), 0.0);
    const CBufferHandle filtered = context->takeSignal(64);
    const CBufferHandle out = context->takeSignal(32);
    context->startRecording();
    context->issue(context->findKernel(KernelName::kHalfBand4Gain), 64, 0.5, {filtered, block, in});
    context->issue(context->findKernel(KernelName::kDecim2), 32, immediate, {out, filtered});
    context->releaseReference(filtered);
    EXPECT_TRUE(context->endRecording());
    return context->recordedRun().joinedCount();
}

TEST_P(HalfBandWave, ADecimationThatMayMeetOddBlocksIsNotJoined) {
    // The block behind an odd one keeps the samples that were dropped before: all of the filter's state counts.
    EXPECT_EQ(joinedDecimations(GetParam(), 0.0), 0);
    EXPECT_EQ(joinedDecimations(GetParam(), kAlwaysEven), 1);
}

INSTANTIATE_TEST_SUITE_P(Sets, HalfBandWave, testing::ValuesIn(testedSets()),
                         [](const auto& info) { return nameOf(info.param); });

}  // namespace
}  // namespace tarv
