// Clients that connect and disconnect on several threads leave nothing behind.

#include <atomic>
#include <thread>

#include "Core/CHeap.h"
#include "Tests/System/MessageTest.h"

namespace tarv {
namespace {

using engine::kGains;
using engine::kOutGain;

class MessageThreads : public CMessageTest {};

/// Blocks of the pool heap in use.
int64_t blocksInUse() {
    const CHeapCounters counters = CHeap::counters();
    return static_cast<int64_t>(counters.allocations - counters.frees);
}

/// What an editor does in its life, 20 messages.
void converse(CMessageClient& client) {
    const CString registry(kRegistry);
    EXPECT_EQ(client.subscribe(1, kGains), "");
    EXPECT_EQ(client.send(kSubscribeRegistry, registry, client.id(2)), "");
    EXPECT_EQ(client.send(kBindValue, client.id(3), CString("latency"), uint32_t{1}), "");
    EXPECT_EQ(client.send(kSubscribeVisual, CString(), client.id(4)), "");
    EXPECT_EQ(client.send(kRequestState, client.id(5)), "");
    for (int32_t i = 0; i < 5; ++i) {
        EXPECT_EQ(client.set(kGains, 0, i, {0.5 + 0.1 * i}, kIsRecorded, "", 3), "");
    }
    EXPECT_EQ(client.undo(), "");
    EXPECT_EQ(client.send(kRequestValues, client.id(4)), "");
    EXPECT_EQ(client.send(kSetProgram, registry, int32_t{1}), "");
    EXPECT_EQ(client.send(kSetProgram, registry, int32_t{0}), "");
    EXPECT_EQ(client.send(kAcquirePreset, registry, client.id(5), false, int32_t{-1}, int32_t{-1}), "");
    EXPECT_EQ(client.send(kAskIoCounts, client.id(5)), "");
    EXPECT_EQ(client.send(kUnsubscribeParam, client.id(1)), "");
    EXPECT_EQ(client.send(kUnsubscribeRegistry, client.id(2)), "");
    EXPECT_EQ(client.send(kUnbindValue, client.id(3)), "");
    EXPECT_EQ(client.send(kUnsubscribeVisual, client.id(4)), "");
    client.take();
}

TEST_F(MessageThreads, AHundredThousandMessagesLeaveNoMemoryBehind) {
    CMessageClient client(*connector_);
    // The history is full, and every store has its size, before anything is counted.
    for (int32_t round = 0; round < 50; ++round) {
        converse(client);
    }
    [[maybe_unused]] const int64_t before = blocksInUse();
    [[maybe_unused]] const uint64_t bytes = CHeap::counters().platformBytes;
    for (int32_t round = 0; round < engine::repeats(5000, 250); ++round) {
        converse(client);
    }
#ifndef TARV_SANITIZED  // there the system's heap serves every block, and the leak check looks
    EXPECT_EQ(blocksInUse(), before);
    EXPECT_EQ(CHeap::counters().platformBytes, bytes);
#endif
}

TEST_F(MessageThreads, ClientsThatComeAndGoLeaveNoMemoryBehind) {
    const auto visit = [&] {
        CMessageClient client(*connector_);
        EXPECT_EQ(client.subscribe(1, kGains), "");
        EXPECT_EQ(client.send(kSubscribeRegistry, CString(kRegistry), client.id(2)), "");
        EXPECT_EQ(client.send(kBindValue, client.id(3), CString("latency"), uint32_t{1}), "");
        EXPECT_EQ(client.send(kSubscribeVisual, CString(), client.id(4)), "");
        EXPECT_EQ(client.openRecord("never ended"), "");
    };
    visit();
    const int64_t before = blocksInUse();
    for (int32_t i = 0; i < 1000; ++i) {
        visit();
    }
    EXPECT_EQ(blocksInUse(), before);
}

TEST_F(MessageThreads, AClientThatVanishesBetweenTwoMessagesHarmsNoOtherOne) {
    CMessageClient staying(*connector_);
    EXPECT_EQ(staying.subscribe(1, kOutGain, 0), "");
    {
        CMessageClient going(*connector_);
        EXPECT_EQ(going.subscribe(1, kOutGain, 0), "");
        param(kOutGain).setValue(0, 0, 0.5);
        EXPECT_EQ(connector_->clientCount(), 2);
    }
    EXPECT_EQ(connector_->clientCount(), 1);
    param(kOutGain).setValue(0, 0, 0.6);
    CByteBuffer message;
    delete packMessage(message, kGroupCount, kNoRequest, int32_t{1});
    EXPECT_EQ(connector_->sendToClient(1, message), nullptr);
    EXPECT_EQ(connector_->sendToClient(-1, message), nullptr);
    EXPECT_EQ(staying.take().size(), 3u);
    // The next client with its number gets nothing that it did not ask for.
    CMessageClient next(*connector_);
    EXPECT_EQ(next.number(), 1);
    param(kOutGain).setValue(0, 0, 0.7);
    EXPECT_EQ(next.waiting(), 0u);
}

TEST_F(MessageThreads, TheLastMessageCarriesTheLastValueThatAnyThreadSet) {
    CMessageClient client(*connector_);
    EXPECT_EQ(client.subscribe(1, kOutGain, 0), "");
    constexpr int32_t kRounds = 3000;
    std::thread host([&] {
        for (int32_t i = 0; i < kRounds; ++i) {
            hostParams().setParameter(8, (i % 100) / 100.0);
        }
    });
    for (int32_t i = 0; i < kRounds; ++i) {
        EXPECT_EQ(client.set(kOutGain, 0, 0, {0.5 + (i % 50) * 0.01}, kIsRecorded, "", 1), "");
    }
    host.join();
    EXPECT_EQ(client.takeLast(kParamValues).numbers[0], param(kOutGain).value(0, 0));
}

TEST_F(MessageThreads, ClientsOnTwoThreadsAHostAndAudioGoTogether) {
    instance_->start(44100.0, 2, 2);
    std::atomic<bool> isDone{false};
    std::thread audio([&] {
        while (!isDone) {
            instance_->run(engine::noise(2, 128, 0.1), 64);
        }
    });
    std::thread host([&] {
        for (int32_t i = 0; !isDone; ++i) {
            hostParams().setParameter(1 + i % 16, (i % 10) / 10.0);
            if (i % 20 == 0)
                registry().selectProgram(i / 20 % 3);
        }
    });
    const auto edit = [&] {
        for (int32_t i = 0; i < 40; ++i) {
            CMessageClient client(*connector_);
            EXPECT_EQ(client.subscribe(1, kGains), "");
            EXPECT_EQ(client.subscribe(2, kOutGain), "");
            EXPECT_EQ(client.send(kSubscribeRegistry, CString(kRegistry), client.id(3)), "");
            EXPECT_EQ(client.set(kGains, i % 2, i % 7, {1.5}), "");
            EXPECT_EQ(client.send(kSetProgram, CString(kRegistry), i % 3), "");
            EXPECT_EQ(client.undo(), "");
            client.take();
        }
    };
    std::thread first(edit);
    std::thread second(edit);
    first.join();
    second.join();
    isDone = true;
    audio.join();
    host.join();
    EXPECT_EQ(connector_->clientCount(), 0);
}

}  // namespace
}  // namespace tarv
