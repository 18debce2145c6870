// What is joined to a change of rate and what not, in operations that are written out one by one.

#include "Audio/Kernels/Wave/CHalfBandJoiner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/ResampleKernels.h"
#include "Tests/Audio/Kernels/StepRun.h"
#include "Tests/Audio/Kernels/TestedSets.h"

namespace tarv {
namespace {

constexpr int32_t kCount = 45;
constexpr int32_t kChannels = 3;
constexpr int32_t kOrder = 2;

/// A state block for each channel.
CBlocks makeBlocks() {
    CBlocks blocks;
    for (int32_t c = 0; c < kChannels; ++c) {
        blocks.emplace_back(static_cast<size_t>(sizeOfHalfBand(kOrder)));
        for (int32_t k = 0; k < 2 * kOrder; ++k) {
            blocks.back()[static_cast<size_t>(k)] = 0.1 + 0.2 * k + 0.01 * c;
        }
        blocks.back()[static_cast<size_t>(indexOfHalfBand(kOrder))] = 3.0;
    }
    return blocks;
}

/// The channels from the inputs on, to signals 20 and up, by way of signals 10 and up.
CSteps stepsUp(const char* filter = KernelName::kHalfBand4Gain) {
    CSteps steps;
    for (int32_t c = 0; c < kChannels; ++c) {
        steps.push_back({KernelName::kInterp2, {10 + c, c}, 0.0, kCount});
    }
    for (int32_t c = 0; c < kChannels; ++c) {
        steps.push_back({filter, {20 + c, blockOperand(c), 10 + c}, 0.7, 2 * kCount});
    }
    return steps;
}
CSteps stepsDown(const char* filter = KernelName::kHalfBand4Gain) {
    CSteps steps;
    for (int32_t c = 0; c < kChannels; ++c) {
        steps.push_back({filter, {10 + c, blockOperand(c), c}, 0.7, 2 * kCount});
    }
    for (int32_t c = 0; c < kChannels; ++c) {
        steps.push_back({KernelName::kDecim2, {20 + c, 10 + c}, kAlwaysEven, kCount});
    }
    return steps;
}

/// The same in every set.
int32_t changesOf(const CSteps& steps, const CBlocks& blocks = makeBlocks()) {
    // Going down, what the filters carry for samples that are dropped is not that of the kernels.
    const bool isDown = std::any_of(steps.begin(), steps.end(), [](const CStep& step) {
        return std::string_view(step.kernel) == KernelName::kDecim2;
    });
    int32_t joined = -1;
    for (const CInstructionSet set : testedSets()) {
        const int32_t now = joinedOf(
            steps, blocks, CJoinedKernels::Rates,
            [=](const CQPLEXContext& context) { return std::make_unique<CHalfBandJoiner>(context, set); }, isDown);
        EXPECT_TRUE(joined == -1 || joined == now) << nameOf(set);
        joined = now;
    }
    return joined;
}

TEST(HalfBandJoiner, TakesFiltersWithAndWithoutGain) {
    EXPECT_EQ(changesOf(stepsUp()), 1);
    EXPECT_EQ(changesOf(stepsUp(KernelName::kHalfBand4)), 1);
    EXPECT_EQ(changesOf(stepsDown()), 1);
    EXPECT_EQ(changesOf(stepsDown(KernelName::kHalfBand4)), 1);
}

TEST(HalfBandJoiner, LeavesOddSamplesInTheLinesToTheKernels) {
    // A trace in each place that an odd sample leaves, of one channel alone.
    std::vector<int32_t> places = {heldOfHalfBand(kOrder)};
    for (const int32_t branch : {0, 1}) {
        for (int32_t k = 0; k <= kOrder; ++k) {
            // At the index 3 the sample before stands at 0.
            places.push_back(linesOfHalfBand(kOrder, branch) + k * kHalfBandLine);
        }
    }
    for (const int32_t place : places) {
        for (int32_t c = 0; c < kChannels; ++c) {
            CBlocks blocks = makeBlocks();
            blocks[static_cast<size_t>(c)][static_cast<size_t>(place)] = 0.5;
            EXPECT_EQ(changesOf(stepsUp(), blocks), 1) << place;
        }
    }
}

TEST(HalfBandJoiner, TakesNoChannelsThatCross) {
    for (CSteps steps : {stepsUp(), stepsDown()}) {
        std::swap(steps[4].operands.back(), steps[5].operands.back());
        EXPECT_EQ(changesOf(steps), 0);
    }
}

TEST(HalfBandJoiner, LeavesASignalThatOthersRead) {
    for (const bool isUp : {true, false}) {
        CSteps steps = isUp ? stepsUp() : stepsDown();
        steps.push_back({KernelName::kMulc, {30, 11}, 0.5, 2 * kCount});
        EXPECT_EQ(changesOf(steps), 0) << isUp;
    }
}

TEST(HalfBandJoiner, TakesNoFilterOfAnotherCount) {
    // Fewer samples than there are come out of the filter, or behind it.
    for (CSteps steps : {stepsUp(), stepsDown()}) {
        for (size_t c = 0; c < kChannels; ++c) {
            --steps[kChannels + c].count;
        }
        EXPECT_EQ(changesOf(steps), 0);
    }
}

TEST(HalfBandJoiner, TakesAsManyFiltersAsSignals) {
    CSteps steps = stepsUp();
    // The last channel is read otherwise, or comes from elsewhere.
    steps.back() = {KernelName::kMulc, {22, 12}, 0.5, 2 * kCount};
    EXPECT_EQ(changesOf(steps), 0);
    steps = stepsUp();
    steps[2] = {KernelName::kMulc, {12, 2}, 0.5, 2 * kCount};
    std::rotate(steps.begin(), steps.begin() + 2, steps.begin() + 3);
    EXPECT_EQ(changesOf(steps), 0);
}

TEST(HalfBandJoiner, CopiesWhereAChannelStandsInThePlaceOfAnother) {
    // Inputs of their own that are given back: what comes out takes their places.
    CSteps steps;
    for (int32_t c = 0; c < kChannels; ++c) {
        steps.push_back({KernelName::kMulc, {5 + c, c}, 0.9, 2 * kCount});
    }
    for (CSteps rest : {stepsUp(), stepsDown()}) {
        CSteps all = steps;
        for (size_t i = 0; i < rest.size(); ++i) {
            if (i < kChannels) {
                rest[i].operands.back() += 5;
            }
            all.push_back(rest[i]);
        }
        EXPECT_EQ(changesOf(all), 1);
    }
}

}  // namespace
}  // namespace tarv
