// Chunks, programs, presets, undo and parameters from several threads while another one processes.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <thread>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Parameters/CAudioExtParam.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Tests/System/EngineRun.h"

namespace tarv::engine {
namespace {

bool isGood(CError* error) {
    delete error;
    return error == nullptr;
}

TEST(StateFromOtherThreads, IsSavedChosenAndTakenBackWhileTheAudioThreadRuns) {
    const auto instance = start({44100.0, 2, straight(2, 0)});
    std::atomic<bool> isEnough{false};
    bool isSound = true;
    std::thread audio([&] {
        const CSignal input = noise(2, 256, 0.25, 3);
        for (int32_t blocks = 0; !isEnough.load() || blocks < 20; ++blocks) {
            CSignal part = input;
            double* const channels[] = {part[0].data(), part[1].data()};
            instance->processBlock(channels, channels, 256);
            for (double sample : part[0]) {
                isSound = isSound && std::isfinite(sample);
            }
        }
    });
    std::thread host([&] {
        CByteBuffer program;
        CByteBuffer bank;
        for (int32_t round = 0; round < 60; ++round) {
            EXPECT_TRUE(isGood(instance->getState(program, true)));
            EXPECT_TRUE(isGood(instance->getState(bank, false)));
            instance->paramRegistry()->selectProgram(round % 7);
            EXPECT_TRUE(isGood(instance->setState(program.data(), program.count(), true, true)));
            EXPECT_TRUE(isGood(instance->setState(bank.data(), bank.count(), false, true)));
            EXPECT_FALSE(instance->paramRegistry()->programName(round % 7).isEmpty());
        }
    });
    std::thread automation([&] {
        for (int32_t round = 0; round < 600; ++round) {
            instance->extParamList()->setParameter(round % 18, 0.5 + 0.4 * std::sin(round));
        }
    });
    std::thread editor([&] {
        CAudioParamRegistry& registry = *instance->paramRegistry();
        for (int32_t round = 0; round < 60; ++round) {
            EXPECT_TRUE(isGood(registry.activateRomPreset(round % 7)));
            registry.renameProgram(registry.currentProgram(), CString("Round ") + CString::fromInt(round));
            registry.swapAB();
            instance->interfaceBase()->undo(2);
            instance->interfaceBase()->redo(1);
            registry.masterReset();
        }
    });
    host.join();
    automation.join();
    editor.join();
    isEnough = true;
    audio.join();
    EXPECT_TRUE(isSound);
    // Nothing is torn: what the instance gives is what another takes and gives back.
    CByteBuffer state;
    CByteBuffer again;
    const auto other = start({44100.0, 2, {}});
    ASSERT_TRUE(isGood(instance->getState(state, true)));
    ASSERT_TRUE(isGood(other->setState(state.data(), state.count(), true, true)));
    ASSERT_TRUE(isGood(other->getState(again, true)));
    ASSERT_EQ(again.count(), state.count());
    EXPECT_TRUE(std::equal(state.begin(), state.end(), again.begin()));
}

}  // namespace
}  // namespace tarv::engine
