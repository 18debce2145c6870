// The audio thread allocates nothing, frees nothing and waits for no lock.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Parameters/CAudioExtParam.h"
#include "Tests/System/AudioThreadWatch.h"
#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

constexpr int32_t kLongest = 4096;
constexpr int32_t kHostParams = 18;
constexpr int32_t kOversamplingParam = 17;

/// An instance with its buffers, so that a block is watched without allocations of the test.
class CWatchedEngine {
public:
    explicit CWatchedEngine(const CSetup& setup)
        : instance_(start(setup)), in_(noise(setup.channels, kLongest, 0.5)), out_(in_) {
        for (size_t c = 0; c < in_.size(); ++c) {
            inputs_.push_back(in_[c].data());
            outputs_.push_back(out_[c].data());
        }
    }
    CPlainInstance& instance() { return *instance_; }
    CWatched block(int32_t frames) {
        const CAudioThreadWatch watch(&instance_->env()->lock());
        instance_->processBlock(inputs_.data(), outputs_.data(), frames);
        return watch.seen();
    }
    double level() const { return peak(out_); }

private:
    std::unique_ptr<CPlainInstance> instance_;
    CSignal in_;
    CSignal out_;
    std::vector<const double*> inputs_;
    std::vector<double*> outputs_;
};

/// A gesture on all 18 host parameters (the oversampling stays where it is), bypass, mute, solo and frequencies.
void automate(CPlainInstance& instance, int32_t round) {
    for (int32_t i = 0; i < kHostParams; ++i) {
        if (i != kOversamplingParam) {
            instance.extParamList()->setParameter(i, 0.5 + 0.4 * std::sin(0.7 * round + i));
        }
    }
    const double position = instance.extParamList()->getParameter(kOversamplingParam);
    instance.extParamList()->setParameter(kOversamplingParam, position);
    apply(instance, {kMute, round % 2, 0, round % 5 == 0 ? 1.0 : 0.0});
    apply(instance, {kSolo, 0, 1, round % 11 == 3 ? 1.0 : 0.0});
    apply(instance, {kFreqs, round % 2, round % kBands, 100.0 * (1 + round % 90)});
}

struct CQuietCase {
    const char* name;
    CSetup setup;
    int32_t block;  ///< 0: every block another length
};

std::vector<CSet> withMidSide(std::vector<CSet> sets) {
    for (const CSet& set : midSide()) {
        sets.push_back(set);
    }
    return sets;
}

std::vector<CQuietCase> quietCases() {
    return {{"stereo, 512", {44100.0, 2, straight(2, 0)}, 512},
            {"stereo, random", {44100.0, 2, straight(2, 0)}, 0},
            {"stereo, 32 at 2x", {48000.0, 2, straight(2, 1)}, 32},
            {"stereo, random at 8x", {44100.0, 2, straight(2, 3)}, 0},
            {"mid/side, random at 4x", {44100.0, 2, withMidSide(straight(2, 2))}, 0},
            {"8 channels, random", {96000.0, 8, straight(8, 0)}, 0},
            {"8 channels, random at 8x", {44100.0, 8, straight(8, 3)}, 0},
            {"8 channels, single frames", {44100.0, 8, straight(8, 0)}, 1}};
}

TEST(AudioThread, NeitherAllocatesNorFreesNorLocksFromTheSecondBlockOn) {
    for (const CQuietCase& c : quietCases()) {
        CWatchedEngine engine(c.setup);
        const CCut sizes = c.block > 0 ? cutInto(c.block) : cutAtRandom(c.setup.channels > 2 ? 1024 : kLongest, 3);
        engine.block(c.block > 0 ? c.block : kLongest);
        for (int32_t round = 0; round < repeats(150, 30); ++round) {
            automate(engine.instance(), round);
            const CWatched seen = engine.block(sizes());
            ASSERT_TRUE(seen.isQuiet()) << c.name << ", round " << round << ": " << seen;
            ASSERT_LE(seen.allowedLocks, 1u) << c.name;
        }
        EXPECT_GT(engine.level(), 0.0) << c.name;
    }
}

TEST(AudioThread, TheFirstBlockTakesNoMoreMemoryEither) {
    for (const CQuietCase& c : quietCases()) {
        CWatchedEngine engine(c.setup);
        const CWatched seen = engine.block(kLongest);
        EXPECT_TRUE(seen.isQuiet()) << c.name << ": " << seen;
    }
}

// Hosts automate on their audio thread, between the blocks.
TEST(AudioThread, TheHostsOwnAutomationTakesNoMemory) {
    CWatchedEngine engine({44100.0, 2, straight(2, 0)});
    engine.block(512);
    for (int32_t round = 0; round < 50; ++round) {
        const CAudioThreadWatch watch(nullptr);
        for (int32_t i = 0; i < kHostParams; ++i) {
            engine.instance().extParamList()->setParameter(
                i, i == kOversamplingParam ? 0.25 : 0.5 + 0.4 * std::sin(0.7 * round + i));
        }
        const CWatched seen = watch.seen();
        ASSERT_EQ(seen.allocations + seen.frees + seen.poolAllocations + seen.poolFrees, 0u) << round << ": " << seen;
        engine.block(512);
    }
}

TEST(AudioThread, TakesNoMemoryForSignalsThatDriveItBeyondTheFormat) {
    CWatchedEngine engine({44100.0, 2, straight(2, 0)});
    CSignal loud = noise(2, 512, 1e200);
    loud[0][100] = NAN;
    engine.block(512);
    const double* const in[] = {loud[0].data(), loud[1].data()};
    CSignal output = silence(2, 512);
    double* const out[] = {output[0].data(), output[1].data()};
    for (int32_t round = 0; round < 20; ++round) {
        automate(engine.instance(), round);
        const CAudioThreadWatch watch(&engine.instance().env()->lock());
        engine.instance().processBlock(in, out, 512);
        const CWatched seen = watch.seen();
        ASSERT_TRUE(seen.isQuiet()) << seen;
    }
}

TEST(AudioThread, IsQuietWhenTheHostGoesOffLineAndBack) {
    CWatchedEngine engine({44100.0, 2, straight(2, 1)});
    for (int32_t round = 0; round < 20; ++round) {
        engine.instance().processLevel = round % 2 == 0 ? 2 : 4;
        const CWatched seen = engine.block(512);
        ASSERT_TRUE(seen.isQuiet()) << seen;
    }
}

TEST(AudioThread, TheWatchCountsAllocationsFreesAndLocks) {
    CLock allowed;
    CLock other;
    const CAudioThreadWatch watch(&allowed);
    {
        const CLockScope first(allowed);
        const CLockScope second(other);
        CHeap::free(CHeap::alloc(40));
        // A compiler may drop a pair of calls whose result is not used.
        void* volatile block = std::malloc(40);
        std::free(block);
        block = ::operator new(40);
        ::operator delete(block);
    }
    const CWatched seen = watch.seen();
    EXPECT_GE(seen.allocations, 2u);
    EXPECT_GE(seen.frees, 2u);
    EXPECT_EQ(seen.poolAllocations, 1u);
    EXPECT_EQ(seen.poolFrees, 1u);
    EXPECT_GE(seen.locks, 1u);
    EXPECT_EQ(seen.allowedLocks, 1u);
    EXPECT_GE(seen.whileHeld, 5u);
    EXPECT_FALSE(seen.isQuiet());
}

TEST(AudioThread, ChangesOfTheLayoutTakeMemoryRarely) {
    struct CLayoutCase {
        const char* name;
        CSet there, back;
    };
    const CLayoutCase kCases[] = {
        {"input routing", {kInRouting, 0, 2, 3.0}, {kInRouting, 0, 2, 0.0}},
        {"output routing", {kOutRouting, 0, 1, 1.0}, {kOutRouting, 0, 1, 2.0}},
        {"grouping", {kGrouping, 0, 0, 3.0}, {kGrouping, 0, 0, 0.0}},
        {"pairs", {kPairs, 0, 0, 1.0}, {kPairs, 0, 0, 0.0}},
        {"band count 10", {kBandCount, 0, 0, 10.0}, {kBandCount, 0, 0, 7.0}},
        {"band count 5", {kBandCount, 0, 0, 5.0}, {kBandCount, 0, 0, 7.0}},
        {"oversampling 2x", {kOversampling, 0, 0, 2.0}, {kOversampling, 0, 0, 1.0}},
        {"oversampling 8x", {kOversampling, 0, 0, 4.0}, {kOversampling, 0, 0, 1.0}},
        {"band count 1", {kBandCount, 0, 0, 1.0}, {kBandCount, 0, 0, 10.0}},
    };
    std::printf("allocations on the audio thread         first change   back   again   back\n");
    for (const CLayoutCase& c : kCases) {
        CSetup setup{44100.0, 4, straight(2, 0)};
        setup.sets.push_back({kPairs, 0, 1, 1.0});
        CWatchedEngine engine(setup);
        engine.block(512);
        uint64_t counts[4];
        uint64_t locks = 0;
        for (int32_t i = 0; i < 4; ++i) {
            apply(engine.instance(), i % 2 == 0 ? c.there : c.back);
            const CWatched seen = engine.block(512);
            counts[i] = seen.allocations + seen.poolAllocations;
            locks += seen.locks;
            for (int32_t round = 0; round < 8; ++round) {
                automate(engine.instance(), 8 * i + round);
                const CWatched behind = engine.block(512);
                ASSERT_TRUE(behind.isQuiet()) << c.name << ", change " << i << ", block " << round << ": " << behind;
            }
        }
        std::printf("  %-38s %12llu %6llu %7llu %6llu\n", c.name, static_cast<unsigned long long>(counts[0]),
                    static_cast<unsigned long long>(counts[1]), static_cast<unsigned long long>(counts[2]),
                    static_cast<unsigned long long>(counts[3]));
        // Growth takes no lock but those of the heaps, which are held for a short time.
        EXPECT_EQ(locks, 0u) << c.name;
    }
}

}  // namespace
}  // namespace tarv::engine
