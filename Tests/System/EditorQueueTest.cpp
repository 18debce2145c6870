// The queue of an editor: when it is read, and what it costs.

#include "Core/CHeap.h"
#include "Tests/System/EditorTest.h"

namespace tarv {
namespace {

using engine::kOutGain;

class EditorQueue : public CEditorTest {};

TEST_F(EditorQueue, IsTakenOnceATurnHoweverMuchComesMeanwhile) {
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, recorder)), "");
    pumpEvents();
    recorder.changes.clear();
    constexpr size_t kAnswers = 5;
    recorder.onChange = [&] {
        if (recorder.changes.size() <= kAnswers) {
            param(kOutGain).setValue(0, 0, 0.5 + 0.01 * static_cast<double>(recorder.changes.size()));
        }
    };
    param(kOutGain).setValue(0, 0, 0.5);
    EXPECT_EQ(pumpEvents(), 1 + static_cast<int>(kAnswers)) << "each answer has a post and a turn";
    EXPECT_EQ(recorder.changes.size(), 1 + kAnswers);
    EXPECT_EQ(recorder.changes.back().value, 0.55);
}

TEST_F(EditorQueue, WhatALoopOfEventsLeavesOutGetsAnotherPost) {
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, recorder)), "");
    pumpEvents();
    recorder.changes.clear();
    int inner = -1;
    recorder.onChange = [&] {
        if (recorder.changes.size() == 1) {
            param(kOutGain).setValue(0, 0, 0.6);
            inner = pumpEvents();
            param(kOutGain).setValue(0, 0, 0.7);
        }
    };
    param(kOutGain).setValue(0, 0, 0.5);
    EXPECT_EQ(pumpEvents(), 2);
    EXPECT_EQ(inner, 1) << "the post is delivered, and nothing is read";
    ASSERT_EQ(recorder.changes.size(), 3u);
    EXPECT_EQ(recorder.changes[1].value, 0.6);
    EXPECT_EQ(recorder.changes[2].value, 0.7);
    EXPECT_EQ(clientConnector_->pendingCount(), 0);
}

#ifndef TARV_SANITIZED  // there the system's heap serves every block
TEST_F(EditorQueue, MessagesThatWaitCostWhatTheyHold) {
    CByteBuffer message;
    delete packMessage(message, kGroupCount, kNoRequest, int32_t{1});
    CByteBuffer longer;
    CNumberList numbers;
    numbers.resize(20);
    delete packMessage(longer, kData, uint32_t{1}, uint32_t{1}, numbers);
    constexpr int32_t kCount = 16000;
    const uint64_t before = CHeap::counters().platformBytes;
    for (int32_t i = 0; i < kCount / 2; ++i) {
        ASSERT_EQ(connector_->sendToClient(0, message), nullptr);
        ASSERT_EQ(connector_->sendToClient(0, longer), nullptr);
    }
    const uint64_t taken = CHeap::counters().platformBytes - before;
    // A growing queue holds its entries once in the old block and at most twice as many in the new one; the pool gives
    // blocks in steps of 16 bytes.
    const uint64_t entries = 3 * kCount * sizeof(CByteBuffer);
    const uint64_t blocks = kCount / 2 * (static_cast<uint64_t>(longer.count()) + 2 * 16);
    EXPECT_LT(taken, entries + blocks + 65536);
    pumpEvents();
}
#endif

}  // namespace
}  // namespace tarv
