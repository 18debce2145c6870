// Whole instances whose runs are joined in each set of instructions, against one whose kernels run one by one: the same
// bits, whatever changes when, however the blocks are cut, also when the set changes on the way.

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/Wave/CHalfBandJoiner.h"
#include "Audio/Kernels/Wave/CWaveJoiner.h"
#include "Tests/Audio/Kernels/TestedSets.h"
#include "Tests/System/RandomScript.h"

namespace tarv::engine {
namespace {

/// Nothing is joined without one.
using CUsedSet = std::optional<CInstructionSet>;

std::string textOf(const CUsedSet& set) {
    return set ? nameOf(*set) : "no set";
}

/// From the next recording on.
void useSet(CPlainInstance& instance, const CUsedSet& set) {
    CQPLEXContext& context = *instance.context();
    context.setJoiner(CJoinedKernels::Bands, set ? std::make_unique<CWaveJoiner>(context, *set) : nullptr);
    context.setJoiner(CJoinedKernels::Rates, set ? std::make_unique<CHalfBandJoiner>(context, *set) : nullptr);
}

/// What was repeated, and how much of it was joined, so that a test sees that there was something to see.
struct CSeen {
    uint64_t repeats = 0;
    int64_t joined = 0;
};

/// Plays a script in parts of `part` frames, with the set that `choose` gives for each part.
CSignal play(const CScript& script, int64_t part, const std::function<CUsedSet(int64_t)>& choose, uint32_t seed,
             CSeen& seen) {
    const auto instance = start(script.setup);
    const auto frames = static_cast<int64_t>(script.input[0].size());
    CSignal output(script.input.size());
    const CCut cut = cutIntoStretches(seed);
    for (int64_t from = 0; from < frames; from += part) {
        const int64_t to = std::min(from + part, frames);
        CSignal in;
        for (const auto& row : script.input) {
            in.emplace_back(row.begin() + from, row.begin() + to);
        }
        std::vector<CEvent> events;
        for (const CEvent& event : script.events) {
            if (event.frame >= from && event.frame < to) {
                events.push_back({event.frame - from, event.set});
            }
        }
        useSet(*instance, choose(from / part));
        const CSignal out = render(*instance, in, events, cut, seed % 2 == 1);
        for (size_t c = 0; c < out.size(); ++c) {
            output[c].insert(output[c].end(), out[c].begin(), out[c].end());
        }
        seen.joined += instance->context()->recordedRun().joinedCount();
    }
    seen.repeats += instance->context()->counters().repeats;
    return output;
}

TEST(InstructionSets, GiveTheBitsOfKernelsOneByOneWhateverChanges) {
    const int32_t seeds = isLong() ? 4000 : repeats(14, 3);
    const int64_t frames = 4000;
    const int64_t part = 500;
    std::vector<CUsedSet> sets;
    for (const CInstructionSet set : testedSets()) {
        sets.emplace_back(set);
    }
    std::vector<CUsedSet> all = sets;
    all.emplace_back();
    std::vector<CSeen> seen(sets.size());
    for (int32_t seed = 1; seed <= seeds && !testing::Test::HasFailure(); ++seed) {
        const CScript script = CScriptMaker(static_cast<uint32_t>(seed)).make(frames);
        CSeen plain;
        const auto number = static_cast<uint32_t>(seed);
        const CSignal expected = play(
            script, part, [](int64_t) { return CUsedSet(); }, number, plain);
        EXPECT_EQ(plain.joined, 0);
        for (size_t s = 0; s < sets.size(); ++s) {
            const CSignal got = play(
                script, part, [&](int64_t) { return sets[s]; }, number + 1, seen[s]);
            EXPECT_EQ(firstDifference(got, expected), CDifference()) << textOf(sets[s]) << ", seed " << seed;
        }
        CRandom random(number);
        CSeen switched;
        const CSignal got = play(
            script, part,
            [&](int64_t) { return all[static_cast<size_t>(random.below(static_cast<int32_t>(all.size())))]; },
            number + 2, switched);
        EXPECT_EQ(firstDifference(got, expected), CDifference()) << "sets in turn, seed " << seed;
    }
    for (const CSeen& s : seen) {
        EXPECT_GT(s.repeats, static_cast<uint64_t>(seeds)) << "hardly a run was repeated";
        EXPECT_GT(s.joined, seeds) << "hardly a run was joined";
    }
}

TEST(InstructionSets, HaveRoomForTheLargestTreeAlsoWhileAllOfItFades) {
    for (const CInstructionSet set : testedSets()) {
        CSetup setup{44100.0, 8, straight(8, 3)};
        setup.sets.push_back({kBandCount, 0, 0, 10.0});
        for (int32_t channel = 0; channel < 8; ++channel) {
            setup.sets.push_back({kGrouping, 0, channel, static_cast<double>(channel)});
        }
        const auto instance = start(setup);
        useSet(*instance, set);
        const CSignal input = noise(8, 64, 0.5);
        const CRecordedRun& run = instance->context()->recordedRun();
        // Three stages up, three down, and the bands.
        constexpr int32_t kJoined = 3 + 3 + 1;
        for (int32_t block = 0; block < 6; ++block) {
            render(*instance, input);
        }
        EXPECT_EQ(run.joinedCount(), kJoined) << nameOf(set);
        const int32_t steady = run.callCount();
        for (int32_t group = 0; group < 8; ++group) {
            for (int32_t band = 0; band < 10; ++band) {
                apply(*instance, {kGains, group, band, 1.5});
            }
        }
        // More starts than a joiner moves ahead: the bands' calls are joined from the next block on.
        render(*instance, input);
        for (int32_t block = 0; block < 4; ++block) {
            render(*instance, input);
            EXPECT_EQ(run.joinedCount(), kJoined) << nameOf(set) << ", block " << block;
        }
        EXPECT_EQ(run.callCount(), steady) << nameOf(set);
    }
}

}  // namespace
}  // namespace tarv::engine
