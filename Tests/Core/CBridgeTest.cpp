#include "Core/CBridge.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace tarv {
namespace {

class CSource : public CBridgeBase {
public:
    void send(const char* what) { notifyBridges(what); }
};

struct CReceiver {
    explicit CReceiver() : bridge(this, &CReceiver::receive) {}
    void receive(CCheckedObject* sender) {
        ++count;
        last = sender;
        if (next) {
            next->bridge.disconnect();
        }
    }
    COwnedBridge<CReceiver> bridge;
    int count = 0;
    CCheckedObject* last = nullptr;
    CReceiver* next = nullptr;
};

TEST(Bridge, ForwardsToItsOwnerWhatItWasConnectedFor) {
    CSource source;
    CReceiver a;
    CReceiver b;
    a.bridge.connect(source, "a");
    b.bridge.connect(source, "b");
    source.send("a");
    EXPECT_EQ(a.count, 1);
    EXPECT_EQ(a.last, &source);
    EXPECT_EQ(b.count, 0);
    EXPECT_EQ(source.bridgeCount(), 2);
}

TEST(Bridge, LeavesTheBaseWhenItsOwnerDies) {
    CSource source;
    {
        CReceiver receiver;
        receiver.bridge.connect(source, "a");
        EXPECT_EQ(source.bridgeCount(), 1);
    }
    EXPECT_EQ(source.bridgeCount(), 0);
    source.send("a");
}

TEST(Bridge, PointsNowhereWhenTheBaseDies) {
    CReceiver receiver;
    {
        CSource source;
        receiver.bridge.connect(source, "a");
        EXPECT_EQ(receiver.bridge.base(), &source);
    }
    EXPECT_EQ(receiver.bridge.base(), nullptr);
    receiver.bridge.disconnect();
    EXPECT_EQ(receiver.count, 0);
}

TEST(Bridge, ConnectsAnewToAnotherBase) {
    CSource first;
    CSource second;
    CReceiver receiver;
    receiver.bridge.connect(first, "a");
    receiver.bridge.connect(second, "a");
    EXPECT_EQ(first.bridgeCount(), 0);
    second.send("a");
    EXPECT_EQ(receiver.count, 1);
}

TEST(Bridge, OneThatIsDisconnectedDuringANotificationIsNotCalled) {
    CSource source;
    CReceiver a;
    CReceiver b;
    a.next = &b;
    a.bridge.connect(source, "x");
    b.bridge.connect(source, "x");
    source.send("x");
    EXPECT_EQ(a.count, 1);
    EXPECT_EQ(b.count, 0);
}

TEST(Bridge, BothEndsMayEndOnDifferentThreads) {
    for (int round = 0; round < 300; ++round) {
        auto source = std::make_unique<CSource>();
        auto receiver = std::make_unique<CReceiver>();
        receiver->bridge.connect(*source, "x");
        std::thread other([&] {
            source->send("x");
            source.reset();
        });
        receiver.reset();
        other.join();
    }
}

}  // namespace
}  // namespace tarv
