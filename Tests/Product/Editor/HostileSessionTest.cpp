// Hands, hosts, files and the system at random: two editors of the product, in windows in memory.

#include <cstdlib>
#include <thread>

#include "HostileSession.h"

namespace tarv {

namespace {

constexpr int32_t kSteps = 120;

class HostileSession : public CHostileSession {
protected:
    static bool isLong() { return std::getenv("TARV_LONG") != nullptr; }
    void play(uint32_t seed, int32_t rounds) {
        random_.seed(seed);
        for (int32_t round = 0; round < rounds && !HasFailure(); ++round) {
            openAll();
            for (int32_t i = 0; i < kSteps; ++i) {
                step();
            }
            rest();
        }
        if (HasFailure()) {
            ADD_FAILURE() << "seed " << seed << '\n' << trace();
        }
    }
};

TEST_F(HostileSession, LeavesNothingHeldAndShowsWhatTheEnginesHold) {
    const uint32_t seeds = isLong() ? 1000 : 3;
    for (uint32_t i = 1; i <= seeds && !HasFailure(); ++i) {
        play(i, 2);
    }
    for (int32_t i = 0; i < kSides; ++i) {
        EXPECT_GT(side(i).automations(), 0);
        EXPECT_GT(side(i).calmBlocks(), 20);
    }
}

TEST_F(HostileSession, ThreadsThatPlayAndAutomateAreNeverHeldUp) {
    isAudioElsewhere_ = true;
    std::atomic<bool> isEnding = false;
    const auto audio = [&isEnding](CHostileSide& of) {
        for (int32_t i = 0; !isEnding; ++i) {
            of.automate();
            of.process(1 + i * 37 % CHostileSide::kLongestBlock);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    };
    {
        std::vector<std::thread> threads;
        for (int32_t i = 0; i < kSides; ++i) {
            side(i).isPoolShared = true;
            threads.emplace_back(audio, std::ref(side(i)));
        }
        for (uint32_t i = 0; i < (isLong() ? 300u : 2u); ++i) {
            random_.seed(i);
            openAll();
            for (int32_t k = 0; k < kSteps; ++k) {
                step();
            }
        }
        isEnding = true;
        for (std::thread& each : threads) {
            each.join();
        }
    }
    rest();
    EXPECT_GT(side(0).calmBlocks() + side(1).calmBlocks(), 20);
}

}  // namespace

}  // namespace tarv
