#include "Core/CCheckedObject.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace tarv {
namespace {

class CPlain : public CCheckedObject {};

TEST(CCheckedObject, IsLiveFromConstructionToDestruction) {
    auto* object = new CPlain;
    EXPECT_TRUE(CCheckedObject::isLive(object));
    const CCheckedObject* address = object;
    delete object;
    EXPECT_FALSE(CCheckedObject::isLive(address));
    EXPECT_FALSE(CCheckedObject::isLive(nullptr));
}

TEST(CCheckedObject, ManyLiveTogetherAndLeaveOneByOne) {
    std::vector<CPlain*> objects;
    for (int i = 0; i < 1000; ++i) {
        objects.push_back(new CPlain);
    }
    for (size_t i = 0; i < objects.size(); ++i) {
        ASSERT_TRUE(CCheckedObject::isLive(objects[i]));
        const CCheckedObject* address = objects[i];
        delete objects[i];
        ASSERT_FALSE(CCheckedObject::isLive(address));
    }
}

TEST(CCheckedObject, ThreadsMakeAskAndDestroyAtOnce) {
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&wrong] {
            for (int i = 0; i < 1000; ++i) {
                CPlain object;
                wrong += !CCheckedObject::isLive(&object);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace tarv
