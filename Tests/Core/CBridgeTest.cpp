#include "Core/CBridge.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace tarv {
namespace {

class CSource : public CBridgeBase {
public:
    void tell(const char* what) { notifyBridges(what); }
};

struct CHearer {
    explicit CHearer() : bridge(this, &CHearer::hear) {}
    void hear(CCheckedObject* sender) {
        ++count;
        last = sender;
        if (next) {
            next->bridge.disconnect();
        }
    }
    COwnedBridge<CHearer> bridge;
    int count = 0;
    CCheckedObject* last = nullptr;
    CHearer* next = nullptr;
};

TEST(Bridge, ForwardsToItsOwnerWhatItWasConnectedFor) {
    CSource source;
    CHearer a;
    CHearer b;
    a.bridge.connect(source, "a");
    b.bridge.connect(source, "b");
    source.tell("a");
    EXPECT_EQ(a.count, 1);
    EXPECT_EQ(a.last, &source);
    EXPECT_EQ(b.count, 0);
    EXPECT_EQ(source.bridgeCount(), 2);
}

TEST(Bridge, LeavesTheBaseWhenItsOwnerDies) {
    CSource source;
    {
        CHearer hearer;
        hearer.bridge.connect(source, "a");
        EXPECT_EQ(source.bridgeCount(), 1);
    }
    EXPECT_EQ(source.bridgeCount(), 0);
    source.tell("a");
}

TEST(Bridge, PointsNowhereWhenTheBaseDies) {
    CHearer hearer;
    {
        CSource source;
        hearer.bridge.connect(source, "a");
        EXPECT_EQ(hearer.bridge.base(), &source);
    }
    EXPECT_EQ(hearer.bridge.base(), nullptr);
    hearer.bridge.disconnect();
    EXPECT_EQ(hearer.count, 0);
}

TEST(Bridge, ConnectsAnewToAnotherBase) {
    CSource first;
    CSource second;
    CHearer hearer;
    hearer.bridge.connect(first, "a");
    hearer.bridge.connect(second, "a");
    EXPECT_EQ(first.bridgeCount(), 0);
    second.tell("a");
    EXPECT_EQ(hearer.count, 1);
}

TEST(Bridge, OneThatIsDisconnectedDuringANotificationIsNotCalled) {
    CSource source;
    CHearer a;
    CHearer b;
    a.next = &b;
    a.bridge.connect(source, "x");
    b.bridge.connect(source, "x");
    source.tell("x");
    EXPECT_EQ(a.count, 1);
    EXPECT_EQ(b.count, 0);
}

TEST(Bridge, BothEndsMayEndOnDifferentThreads) {
    for (int round = 0; round < 300; ++round) {
        auto source = std::make_unique<CSource>();
        auto hearer = std::make_unique<CHearer>();
        hearer->bridge.connect(*source, "x");
        std::thread other([&] {
            source->tell("x");
            source.reset();
        });
        hearer.reset();
        other.join();
    }
}

}  // namespace
}  // namespace tarv
