// Changes of rate in lanes against the two kernels that they stand for, one after the other.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/HalfBandKernels.h"
#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/ResampleKernels.h"
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
    /// Blocks of any length with the same input through both. What comes out is the same to the bit, also when kernels
    /// and lanes take turns.
    void compare(int32_t count, int32_t order, bool isUp, double level) {
        SCOPED_TRACE(std::to_string(count) + " channels, order " + std::to_string(order) + (isUp ? " up" : " down"));
        std::vector<CChannel> plain = makeChannels(count, order);
        std::vector<CChannel> lanes = plain;
        for (int32_t block = 0; block < 12; ++block) {
            const auto samples = static_cast<int32_t>(random() % (block % 3 == 0 ? kMostSamples : 9));
            for (size_t c = 0; c < plain.size(); ++c) {
                for (double& x : plain[c].in) {
                    x = between(-level, level);
                }
                lanes[c].in = plain[c].in;
            }
            runPlain(plain, order, isUp, samples);
            block % 4 == 3 ? runPlain(lanes, order, isUp, samples) : runLanes(lanes, order, isUp, samples);
            for (size_t c = 0; c < plain.size(); ++c) {
                for (int32_t i = 0; i < (isUp ? 2 : 1) * samples; ++i) {
                    const auto at = static_cast<size_t>(i);
                    ASSERT_EQ(std::bit_cast<uint64_t>(plain[c].out[at]), std::bit_cast<uint64_t>(lanes[c].out[at]))
                        << "block " << block << " channel " << c << " sample " << i << " of " << samples;
                }
                if (isUp) {
                    ASSERT_EQ(plain[c].block, lanes[c].block) << block;
                }
            }
        }
    }

    std::mt19937 random{11};
    CKernels kernels;
};

TEST_P(HalfBandWave, GivesTheBitsOfTheKernels) {
    for (int32_t order = 1; order <= kMostHalfBand; ++order) {
        for (const int32_t count : {1, 2, 3, 8}) {
            for (const bool isUp : {true, false}) {
                ASSERT_NO_FATAL_FAILURE(compare(count, order, isUp, order % 3 == 0 ? 1e150 : 1.0));
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Sets, HalfBandWave, testing::ValuesIn(testedSets()),
                         [](const auto& info) { return nameOf(info.param); });

}  // namespace
}  // namespace tarv
