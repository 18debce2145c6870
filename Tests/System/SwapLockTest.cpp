// The environment's lock, for which the audio thread may have to wait, is held for a swap alone: a thread that changes
// a value has decoded the bytes, and made room for the value, before.

#include <functional>

#include "Audio/Parameters/CAudioEnv.h"
#include "Tests/System/AudioThreadWatch.h"
#include "Tests/System/MessageTest.h"

namespace tarv {
namespace {

using engine::CAudioThreadWatch;
using engine::CWatched;
using engine::kGains;

class SwapLock : public CMessageTest {
protected:
    SwapLock() {
        instance_->start(44100.0, 2, 2);
        client_.subscribe(1, kGains);
    }

    CByteBuffer acquired(uint32_t type) {
        const CString registry(kRegistry);
        EXPECT_EQ(type == kAcquireBank ? client_.send(type, registry, client_.id(2), false)
                                       : client_.send(type, registry, client_.id(2), false, int32_t{-1}, int32_t{-1}),
                  "");
        const std::vector<CReceivedMessage> received = client_.take(kData);
        EXPECT_EQ(received.size(), 1u);
        return received.empty() ? CByteBuffer() : received[0].bytes;
    }
    CByteBuffer chunk(bool isProgram) {
        CByteBuffer bytes;
        EXPECT_EQ(instance_->getState(bytes, isProgram), nullptr);
        return bytes;
    }
    void setChunk(const CByteBuffer& bytes, bool isProgram) {
        EXPECT_EQ(instance_->setState(bytes.data(), bytes.count(), isProgram, true), nullptr);
    }

    CMessageClient client_{*connector_};
};

TEST_F(SwapLock, IsHeldForTheSwapAloneWhateverAMessageOrAChunkBrings) {
    const CString registry(kRegistry);
    const CByteBuffer preset = acquired(kAcquirePreset);
    const CByteBuffer bank = acquired(kAcquireBank);
    const CByteBuffer program = chunk(true);
    const CByteBuffer whole = chunk(false);
    // Each finds values that differ from those that it brings.
    const struct {
        const char* name;
        std::function<void()> act;
    } cases[] = {
        {"set", [&] { client_.set(kGains, 0, 2, {1.5}, kIsRecorded); }},
        {"set more than the group holds",
         [&] {
             client_.set(kGains, 5, 0, {1, 2, 1, 2, 1, 2, 1}, kIsRecorded);
         }},
        {"undo", [&] { client_.undo(); }},
        {"redo", [&] { client_.redo(); }},
        {"preset", [&] { client_.send(kActivateData, registry, int32_t{-1}, preset); }},
        {"ROM preset", [&] { client_.send(kActivateRomPreset, registry, int32_t{4}); }},
        {"bank", [&] { client_.send(kActivateData, registry, int32_t{-1}, bank); }},
        {"next program", [&] { client_.send(kSetProgram, registry, int32_t{1}); }},
        {"program chunk", [&] { setChunk(program, true); }},
        {"ROM preset again", [&] { client_.send(kActivateRomPreset, registry, int32_t{4}); }},
        {"bank chunk", [&] { setChunk(whole, false); }},
        {"set for the reset", [&] { client_.set(kGains, 0, 2, {0.5}, kIsRecorded); }},
        {"swap",
         [&] {
             client_.send(kCopyToAlternate, registry);
             client_.send(kMasterReset, registry);
         }},
        {"back", [&] { client_.send(kSwapAB, registry); }},
        {"host", [&] { hostParams().setParameter(2, 0.9); }},
    };
    for (const auto& each : cases) {
        CWatched seen{};
        {
            const CAudioThreadWatch watch(&instance_->env()->lock());
            each.act();
            seen = watch.seen();
        }
        EXPECT_GT(seen.allowedLocks, 0u) << each.name << " changed nothing";
        EXPECT_EQ(seen.whileHeld, 0u) << each.name << ": " << seen;
        client_.take();
    }
}

TEST_F(SwapLock, IsNotTakenByRequestsAndDamagedMessages) {
    const CString registry(kRegistry);
    CByteBuffer damaged = acquired(kAcquirePreset);
    damaged[damaged.count() - 1] ^= 1;
    const CAudioThreadWatch watch(&instance_->env()->lock());
    client_.send(kRequestState, client_.id(3));
    client_.send(kAcquireBank, registry, client_.id(3), false);
    client_.send(kActivateData, registry, int32_t{-1}, damaged);
    EXPECT_EQ(watch.seen().allowedLocks, 0u);
}

}  // namespace
}  // namespace tarv
