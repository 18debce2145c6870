// Hands, hosts, files and the system at random: two editors of the product, in windows in memory.

#include <chrono>
#include <cstdlib>
#include <thread>

#include "HostileSession.h"

namespace tarv {

namespace {

constexpr int32_t kSteps = 120;
constexpr std::chrono::minutes kLongTime{10};

class HostileSession : public CHostileSession {
protected:
    /// So many seeds, or in the long form as many as ten minutes have room for.
    bool isOver(uint32_t seeds, uint32_t fewest) const {
        return std::getenv("TARV_LONG") ? std::chrono::steady_clock::now() > begin_ + kLongTime : seeds > fewest;
    }
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

private:
    const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

TEST_F(HostileSession, LeavesNothingHeldAndShowsWhatTheEnginesHold) {
    uint32_t seed = 1;
    for (; !isOver(seed, 3) && !HasFailure(); ++seed) {
        play(seed, 2);
    }
    RecordProperty("seeds", std::to_string(seed - 1));
    for (int32_t i = 0; i < kSides; ++i) {
        EXPECT_GT(side(i).automations(), 0);
        EXPECT_GT(side(i).calmBlocks(), 20);
    }
}

TEST_F(HostileSession, ThreadsThatPlayAndAutomateAreNeverHeldUp) {
    isAudioElsewhere_ = true;
    std::atomic<bool> isEnding = false;
    // Under a sanitizer a block may be heard more slowly than it plays, and what waits would never end.
    constexpr int32_t kBlocksATurn = 8;
    std::atomic<int32_t> turns = 1;
    const auto audio = [&](CHostileSide& of) {
        for (int32_t i = 0; !isEnding; ++i) {
            of.automate();
            of.process(1 + i * 37 % CHostileSide::kLongestBlock);
            do {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            } while (!isEnding && i >= kBlocksATurn * turns);
        }
    };
    {
        std::vector<std::thread> threads;
        for (int32_t i = 0; i < kSides; ++i) {
            side(i).isPoolShared = true;
            threads.emplace_back(audio, std::ref(side(i)));
        }
        for (uint32_t i = 1; !isOver(i, 2); ++i) {
            random_.seed(i);
            openAll();
            for (int32_t k = 0; k < kSteps; ++k) {
                step();
                ++turns;
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
