// Whole instances whose runs are joined in each set of instructions, against one whose kernels run one by one: the same
// bits, whatever changes when, however the blocks are cut, also when the set changes on the way.

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/Wave/CHalfBandJoiner.h"
#include "Audio/Kernels/Wave/CWaveJoiner.h"
#include "Tests/Audio/Kernels/TestedSets.h"
#include "Tests/System/EngineRun.h"

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

class CRandom {
public:
    explicit CRandom(uint32_t seed) : engine_(seed) {}
    double between(double low, double high) { return low + (high - low) * (engine_() / 4294967296.0); }
    int32_t below(int32_t n) { return static_cast<int32_t>(engine_() % static_cast<uint32_t>(n)); }
    template <class T, size_t N>
    const T& of(const T (&items)[N]) {
        return items[below(N)];
    }

private:
    std::mt19937 engine_;
};

/// A parameter of the sound with the range from which it is set.
struct CRange {
    const char* param;
    int32_t elements;
    double low;
    double high;
};
constexpr CRange kSound[] = {
    {kGains, 10, 0.25, 4.0}, {kFreqs, 10, 20.0, 21000.0}, {kOutGain, 1, 0.25, 4.0},
    {kMute, 1, 0.0, 1.0},    {kBypass, 1, 0.0, 1.0},      {kSolo, 1, 0.0, 1.0},
};

/// What is played: a layout, a signal, and what changes at which frame.
struct CScript {
    CSetup setup;
    CSignal input;
    std::vector<CEvent> events;
};

class CScriptMaker {
public:
    explicit CScriptMaker(uint32_t seed) : random_(seed) {}

    CScript make(int64_t frames) {
        CScript script;
        script.setup.channels = channels_ = 1 + random_.below(8);
        // As much work in every script: many channels at low rates, few at high ones.
        mostStages_ = channels_ > 4 ? 1 : channels_ > 2 ? 2 : 3;
        script.setup.rate = random_.of({44100.0, 48000.0, 96000.0});
        script.setup.sets = straight(channels_, random_.below(mostStages_ + 1));
        script.setup.sets.push_back({kBandCount, 0, 0, 1.0 + random_.below(10)});
        for (int32_t i = random_.below(6); i > 0; --i) {
            script.setup.sets.push_back(layoutChange());
        }
        for (int32_t i = random_.below(40); i > 0; --i) {
            script.setup.sets.push_back(soundChange());
        }
        script.input = noise(channels_, static_cast<size_t>(frames), random_.of({0.5, 0.5, 2.0, 40.0}), 7);
        // Changes at any frame, or at each block's begin as a host's automation does.
        beat_ = random_.below(3) == 0 ? random_.of({16, 32, 64, 500}) : 0;
        for (int64_t at = random_.below(900); at<frames; at += beat_> 0 ? beat_ : pause()) {
            if (random_.below(beat_ > 0 ? 40 : 6) == 0) {
                script.events.push_back({at, layoutChange()});
            }
            for (int32_t i = 1 + random_.below(5); i > 0; --i) {
                script.events.push_back({at, soundChange()});
            }
        }
        return script;
    }

private:
    /// A fade takes 662 frames and more: some end undisturbed, some are interrupted or have others beside them.
    int32_t pause() {
        const int32_t longest = random_.of({3, 100, 800, 2500});
        return 1 + random_.below(longest);
    }
    CSet soundChange() {
        const CRange& range = random_.of(kSound);
        const double value = random_.between(range.low, range.high);
        const bool isSwitch = range.low == 0.0;
        const double number = isSwitch ? (random_.below(4) == 0 ? 1.0 : 0.0) : value;
        return {range.param, random_.below(channels_), random_.below(range.elements), number};
    }
    CSet layoutChange() {
        const double channel = random_.below(channels_ + 1);
        const int32_t element = random_.below(8);
        switch (random_.below(6)) {
            case 0:
                return {kInRouting, 0, element, channel};
            case 1:
                return {kOutRouting, 0, element, channel};
            case 2:
                return {kGrouping, 0, element, static_cast<double>(random_.below(8))};
            case 3:
                return {kPairs, 0, element, static_cast<double>(random_.below(5))};
            case 4:
                return {kBandCount, 0, 0, 1.0 + random_.below(10)};
            default:
                return {kOversampling, 0, 0, 1.0 + random_.below(mostStages_ + 1)};
        }
    }

    CRandom random_;
    int32_t channels_ = 1;
    int32_t mostStages_ = 0;
    int32_t beat_ = 0;
};

/// Stretches of blocks of one length, 1 to 700 frames: a run is recorded when its length comes again.
CCut cutIntoStretches(uint32_t seed) {
    struct CStretch {
        CRandom random;
        int32_t left = 0;
        int32_t frames = 0;
    };
    auto stretch = std::make_shared<CStretch>(CStretch{CRandom(seed)});
    return [stretch] {
        CRandom& random = stretch->random;
        if (stretch->left-- == 0) {
            stretch->frames = 1 + random.below(random.of({8, 64, 200, 700}));
            stretch->left = random.below(1 + 1500 / stretch->frames);
        }
        return stretch->frames;
    };
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
