// Damaged messages: each one fails, and nothing changes.

#include <random>

#include "Core/CHeap.h"
#include "Tests/System/MessageTest.h"

namespace tarv {
namespace {

using engine::kOutGain;

/// One good message of each type.
std::vector<std::vector<uint8_t>> goodMessages(const CMessageClient& client) {
    std::vector<std::vector<uint8_t>> all;
    const auto add = [&all](uint32_t type, const auto&... fields) {
        CByteBuffer message;
        delete packMessage(message, type, fields...);
        all.emplace_back(message.begin(), message.end());
    };
    const CString registry(kRegistry);
    const CString none;
    CByteBuffer bytes;
    bytes.resize(24);
    add(kSubscribeParam, client.id(1), CString(kOutGain), uint32_t{1}, uint32_t{0});
    add(kUnsubscribeParam, client.id(1));
    add(kRequestValues, client.id(1));
    add(kRequestState, client.id(1));
    add(kSetValues, uint32_t{0}, CString(kOutGain), int32_t{0}, int32_t{0}, int32_t{1}, uint32_t{2}, 0.5, none,
        int32_t{-1});
    add(kSubscribeRegistry, registry, client.id(2));
    add(kUnsubscribeRegistry, client.id(2));
    add(kRecord, client.id(1), true, CString("x"), int32_t{-1});
    add(kMoveInHistory, client.id(1), uint32_t{0}, int32_t{0}, int32_t{1});
    add(kSubscribeVisual, none, client.id(3));
    add(kUnsubscribeVisual, client.id(3));
    add(kSetProgram, registry, int32_t{1});
    add(kRenameProgram, registry, int32_t{1}, CString("x"));
    add(kActivateRomPreset, registry, int32_t{1});
    add(kActivateData, registry, int32_t{-1}, bytes);
    add(kAcquirePreset, registry, client.id(1), false, int32_t{-1}, int32_t{-1});
    add(kAcquireBank, registry, client.id(1), false);
    for (const uint32_t type : {kSwapAB, kMasterReset, kResetState, kCopyToAlternate}) {
        add(type, registry);
    }
    add(kBindValue, client.id(4), CString("latency"), uint32_t{1});
    add(kUnbindValue, client.id(4));
    add(kPass, client.id(1), bytes);
    for (const uint32_t type : {kAskSampleRate, kAskIoCounts, kAskGroupCount, kAskInternalCount}) {
        add(type, client.id(1));
    }
    add(kImportLabels);
    add(kAddProgram, registry, int32_t{1}, CString("x"));
    add(kDeleteProgram, registry, int32_t{1});
    add(kReplaceProgram, registry, int32_t{1});
    add(kSetDefaultPreset, registry, bytes);
    add(kClearDefaultPreset);
    add(kAskDefaultPreset, client.id(1));
    add(kBeginEdit, client.id(0), int32_t{1}, CString(engine::kGains), int32_t{0}, int32_t{0}, int32_t{1});
    add(kEndEdit, client.id(0), int32_t{1}, true);
    add(kKeepBytes, CString("key"), bytes);
    return all;
}

class DamagedMessages : public CMessageTest {
protected:
    /// All that a message could change, as bytes: values, names, programs, history.
    std::string everything() {
        CMessageClient witness(*connector_);
        CByteBuffer bank;
        CBufferWriter writer(bank);
        EXPECT_EQ(registry().acquireBank(false, writer, false), nullptr);
        std::string all(reinterpret_cast<const char*>(bank.data()), static_cast<size_t>(bank.count()));
        for (const std::string& label : labels()) {
            all += label + '\n';
        }
        return all + std::to_string(registry().isAlternate());
    }
    std::string send(const std::vector<uint8_t>& bytes) { return client_.sendBytes(bytes.data(), bytes.size()); }

    CMessageClient client_{*connector_};
};

TEST_F(DamagedMessages, ThereIsOneHandlerForEachType) {
    const auto good = goodMessages(client_);
    ASSERT_EQ(good.size(), size_t{kFirstBaseMessage});
    for (size_t type = 0; type < good.size(); ++type) {
        EXPECT_EQ(good[type][0], type);
    }
}

TEST_F(DamagedMessages, TypesBeyondTheClientsAreRefused) {
    for (const uint32_t type :
         {uint32_t{kFirstBaseMessage}, uint32_t{kDefaultPreset}, uint32_t{kMessageCount}, 0x80000000u, 0xffffffffu}) {
        EXPECT_EQ(client_.send(type), "Invalid data type " + std::to_string(type) + ".");
    }
}

TEST_F(DamagedMessages, CutAtEachByteAndLongerByOneChangeNothing) {
    const std::string before = everything();
    for (const std::vector<uint8_t>& message : goodMessages(client_)) {
        for (size_t size = 0; size < message.size(); ++size) {
            EXPECT_NE(client_.sendBytes(message.data(), size), "") << int{message[0]} << " cut to " << size;
        }
        std::vector<uint8_t> longer = message;
        longer.push_back(0);
        EXPECT_NE(send(longer), "") << int{message[0]};
    }
    EXPECT_EQ(everything(), before);
    EXPECT_EQ(client_.waiting(), 0u);
}

TEST_F(DamagedMessages, CountsThatTheBytesDoNotFillTakeNoMemory) {
    const uint64_t before = CHeap::counters().platformBytes;
    for (const uint32_t count : {0x7fffffffu, 0xffffffffu, 65000u}) {
        EXPECT_NE(client_.send(kPass, client_.id(1), count), "");
        EXPECT_NE(client_.send(kActivateData, CString(kRegistry), int32_t{-1}, count), "");
        EXPECT_NE(client_.send(kSubscribeParam, client_.id(1), count), "");
        EXPECT_NE(client_.send(kSetValues, uint32_t{0}, CString(kOutGain), int32_t{0}, int32_t{0}, count, uint32_t{0}),
                  "");
    }
    EXPECT_LT(CHeap::counters().platformBytes, before + (1 << 20));
}

TEST_F(DamagedMessages, RandomOnesLeaveAnInstanceThatWorks) {
    std::mt19937 random(7);
    const auto good = goodMessages(client_);
    for (int32_t round = 0; round < 3000; ++round) {
        std::vector<uint8_t> message = good[random() % good.size()];
        for (uint32_t turns = random() % 4; turns > 0; --turns) {
            message[random() % message.size()] = static_cast<uint8_t>(random());
        }
        send(message);
    }
    client_.take();
    EXPECT_EQ(client_.endRecord(), "");
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
    EXPECT_LE(labels().size(), 33u);
    instance_->start(44100.0, 2, 2);
    EXPECT_EQ(instance_->run(engine::noise(2, 256, 0.1), 64).size(), 2u);
}

}  // namespace
}  // namespace tarv
