// "Auto": the stored level while the host renders off-line, 1x while it plays.

#include <gtest/gtest.h>

#include "Core/CApplicationData.h"
#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

constexpr int32_t kRealtime = 2;
constexpr int32_t kOffline = 4;
constexpr const char* kLevel = "oversampling-level";

class AutoOversampling : public testing::Test {
protected:
    void TearDown() override { CGlobalData::instance().writeText(kLevel, "1"); }

    /// A started instance whose host is at that process level; mode 0 is Auto.
    static std::unique_ptr<CPlainInstance> make(const char* storedLevel, double mode, int32_t processLevel) {
        start({44100.0, 2, {}});  // the store belongs to the application, which the first instance starts
        CGlobalData::instance().writeText(kLevel, storedLevel);
        auto instance = start({44100.0, 2, {{kOversampling, 0, 0, mode}}});
        instance->processLevel = processLevel;
        instance->start(44100.0, 2, 2);
        return instance;
    }
    const CSignal input_ = noise(2, 3000, 0.5);
};

TEST_F(AutoOversampling, TakesTheStoredNumberOfStagesOffLineAndOneForAnyOtherText) {
    const struct {
        const char* stored;
        double mode;  ///< what it must sound like
    } kRows[] = {{"0", 2}, {"1", 2}, {"2", 3}, {"3", 4}, {"nonsense", 2}, {"", 2}, {"9", 2}, {"-1", 2}};
    for (const auto& row : kRows) {
        const CSignal expected = render(*make("1", row.mode, kRealtime), input_);
        EXPECT_EQ(firstDifference(render(*make(row.stored, 0.0, kOffline), input_), expected), CDifference())
            << row.stored;
    }
}

TEST_F(AutoOversampling, Is1xWhileTheHostPlays) {
    const CSignal expected = render(*make("1", 1.0, kRealtime), input_);
    for (const int32_t level : {0, 1, kRealtime, 3, 5}) {
        EXPECT_EQ(firstDifference(render(*make("3", 0.0, level), input_), expected), CDifference()) << level;
    }
}

TEST_F(AutoOversampling, LeavesAFixedChoiceAlone) {
    const CSignal expected = render(*make("1", 2.0, kRealtime), input_);
    EXPECT_EQ(firstDifference(render(*make("3", 2.0, kOffline), input_), expected), CDifference());
}

TEST_F(AutoOversampling, FollowsTheHostBetweenBlocks) {
    const auto instance = make("2", 0.0, kRealtime);
    render(*instance, input_);
    instance->processLevel = kOffline;
    const CSignal settling = noise(2, 88200, 0.5, 3);
    render(*instance, settling);
    const auto fixed = make("2", 3.0, kRealtime);
    render(*fixed, settling);
    const CSignal output = render(*instance, input_);
    const CSignal expected = render(*fixed, input_);
    for (size_t i = 0; i < input_[0].size(); ++i) {
        // Two seconds behind the change both remember the same signal; their noises are in another place.
        ASSERT_NEAR(output[0][i], expected[0][i], 1e-9) << i;
    }
    instance->processLevel = kRealtime;
    render(*instance, settling);
    const auto plain = make("2", 1.0, kRealtime);
    render(*plain, settling);
    const CSignal back = render(*instance, input_);
    const CSignal expectedBack = render(*plain, input_);
    for (size_t i = 0; i < input_[0].size(); ++i) {
        ASSERT_NEAR(back[0][i], expectedBack[0][i], 1e-9) << i;
    }
}

}  // namespace
}  // namespace tarv::engine
