#include "Platform/Lock.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace tarv {
namespace {

TEST(CLock, KeepsThreadsApart) {
    CLock lock;
    int count = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 5000; ++i) {
                CLockScope scope(lock);
                ++count;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(count, 20000);
}

TEST(CLock, MayBeTakenAgainByItsHolderAndIsFreeAfterTheLastLeave) {
    CLock lock;
    const auto othersMayEnter = [&lock] {
        bool entered = false;
        std::thread([&] {
            entered = lock.tryEnter();
            if (entered) {
                lock.leave();
            }
        }).join();
        return entered;
    };
    lock.enter();
    EXPECT_TRUE(lock.tryEnter());
    lock.leave();
    EXPECT_FALSE(othersMayEnter());
    lock.leave();
    EXPECT_TRUE(othersMayEnter());
}

}  // namespace
}  // namespace tarv
