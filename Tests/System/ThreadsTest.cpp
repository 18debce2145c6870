// Hosts and editors change parameters from any thread while the audio thread runs.

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <thread>

#include "Audio/Parameters/CAudioExtParam.h"
#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

constexpr int32_t kHostParams = 18;

/// Runs blocks of other lengths until the work on the calling thread's side is done; false if a sample came out wrong.
class CAudioThread {
public:
    explicit CAudioThread(CPlainInstance& instance, uint32_t seed)
        : thread_([this, &instance, seed] {
              const CSignal input = noise(2, 700, 0.25, seed);
              const CCut sizes = cutAtRandom(700, seed);
              while (!isEnough_.load() || blocks_ < 20) {
                  CSignal part = input;
                  const int32_t frames = sizes();
                  double* const channels[] = {part[0].data(), part[1].data()};
                  instance.processBlock(channels, channels, frames);
                  ++blocks_;
                  for (int32_t i = 0; i < frames; ++i) {
                      isSound_ = isSound_ && std::isfinite(part[0][static_cast<size_t>(i)]);
                  }
              }
          }) {}
    bool finish() {
        isEnough_ = true;
        thread_.join();
        return isSound_;
    }

private:
    std::atomic<bool> isEnough_{false};
    int64_t blocks_ = 0;
    bool isSound_ = true;
    std::thread thread_;
};

/// What an instance gives for a signal once everything has settled.
CSignal settled(CPlainInstance& instance) {
    instance.suspend();
    instance.resume();
    return render(instance, noise(2, 3000, 0.25, 99));
}

TEST(OtherThreads, RatesAndBlockSizesArriveWhileTheAudioThreadRuns) {
    const auto instance = start({44100.0, 2, straight(2, 1)});
    CAudioThread audio(*instance, 6);
    std::thread host([&] {
        constexpr double kRates[] = {96000.0, 44100.0, 48000.0, 192000.0};
        for (int32_t round = 0; round < 200; ++round) {
            instance->setSampleRate(kRates[round % 4]);
            instance->setBlockSize(64 + round % 8);
            instance->extParamList()->setParameter(1 + round % 7, 0.5 + 0.5 * std::sin(round));
        }
        for (int32_t i = 1; i <= kBands; ++i) {
            instance->extParamList()->setParameter(i, 0.6);
        }
        instance->setSampleRate(48000.0);
    });
    host.join();
    EXPECT_TRUE(audio.finish());

    const auto quiet = start({48000.0, 2, straight(2, 1)});
    for (int32_t i = 1; i <= kBands; ++i) {
        quiet->extParamList()->setParameter(i, 0.6);
    }
    EXPECT_EQ(firstDifference(settled(*instance), settled(*quiet)), CDifference());
}

TEST(OtherThreads, EachChangeArrivesWhileTheAudioThreadRuns) {
    const auto instance = start({44100.0, 2, straight(2, 0)});
    CAudioThread audio(*instance, 5);
    std::thread host([&] {
        for (int32_t round = 0; round < 300; ++round) {
            const int32_t index = round % (kHostParams - 1);
            instance->extParamList()->setParameter(index, 0.5 + 0.5 * std::sin(round));
            EXPECT_GE(instance->extParamList()->getParameter(index), 0.0);
        }
        for (int32_t i = 0; i < kHostParams - 1; ++i) {
            instance->extParamList()->setParameter(i, i == 3 || i == 8 ? 0.8 : 0.5);
        }
        instance->extParamList()->setParameter(0, 0.0);
    });
    std::thread editor([&] {
        for (int32_t round = 0; round < 300; ++round) {
            apply(*instance, {kFreqs, round % 2, round % kBands, 50.0 + 40.0 * round});
            apply(*instance, {kMute, round % 2, 0, round % 3 == 0 ? 1.0 : 0.0});
            apply(*instance, {kSolo, 0, round % 2, round % 7 == 0 ? 1.0 : 0.0});
        }
        for (int32_t group = 0; group < 2; ++group) {
            constexpr double kDefaults[kBands] = {64, 150, 350, 1000, 2000, 6000, 12000};
            for (int32_t band = 0; band < kBands; ++band) {
                apply(*instance, {kFreqs, group, band, kDefaults[band]});
            }
            apply(*instance, {kMute, group, 0, 0.0});
            apply(*instance, {kSolo, 0, group, 0.0});
        }
    });
    host.join();
    editor.join();
    EXPECT_TRUE(audio.finish());

    const auto quiet = start({44100.0, 2, straight(2, 0)});
    for (int32_t i = 1; i < kHostParams - 1; ++i) {
        quiet->extParamList()->setParameter(i, i == 3 || i == 8 ? 0.8 : 0.5);
    }
    EXPECT_EQ(firstDifference(settled(*instance), settled(*quiet)), CDifference());
}

TEST(OtherThreads, TheLayoutMayChangeWhileTheAudioThreadRuns) {
    const auto instance = start({44100.0, 2, straight(2, 0)});
    CAudioThread audio(*instance, 6);
    for (int32_t round = 0; round < 120; ++round) {
        apply(*instance, {kOversampling, 0, 0, 1.0 + round % 4});
        apply(*instance, {kBandCount, 0, 0, 1.0 + round % 10});
        apply(*instance, {kPairs, 0, round % 2, round % 3 == 0 ? 1.0 : 0.0});
        apply(*instance, {kGrouping, 0, round % 2, 0.0 + round % 5});
        apply(*instance, {kInRouting, 0, 2 + round % 3, 0.0 + round % 4});
        apply(*instance, {kOutRouting, 0, 2 + round % 3, 0.0 + round % 3});
    }
    EXPECT_TRUE(audio.finish());
}

TEST(OtherThreads, TheHostMaySuspendAndResumeBetweenBlocksOfAnotherThread) {
    const auto instance = start({44100.0, 2, straight(2, 0)});
    for (int32_t round = 0; round < 10; ++round) {
        CAudioThread audio(*instance, 7);
        for (int32_t i = 0; i < 20; ++i) {
            instance->extParamList()->setParameter(1 + i % kBands, 0.05 * i);
        }
        EXPECT_TRUE(audio.finish());
        instance->start(round % 2 == 0 ? 48000.0 : 44100.0, 2, 2);
    }
}

}  // namespace
}  // namespace tarv::engine
