#include "Core/CAddressSet.h"

#include <gtest/gtest.h>

#include <new>
#include <random>
#include <set>

namespace tarv {
namespace {

const void* addressOf(uint32_t number) {
    return reinterpret_cast<const void*>(uintptr_t{0x10000} + uintptr_t{number} * 16);
}

TEST(CAddressSet, HoldsWhatWasInsertedAndNotErased) {
    CAddressSet set;
    EXPECT_FALSE(set.contains(addressOf(1)));
    set.erase(addressOf(1));
    set.insert(addressOf(1));
    set.insert(addressOf(1));
    EXPECT_EQ(set.count(), 1u);
    EXPECT_TRUE(set.contains(addressOf(1)));
    EXPECT_FALSE(set.contains(addressOf(2)));
    EXPECT_FALSE(set.contains(nullptr));
    set.erase(addressOf(1));
    EXPECT_EQ(set.count(), 0u);
    EXPECT_FALSE(set.contains(addressOf(1)));
}

TEST(CAddressSet, OneThatWasEmptiedBeginsAnewAndHoldsNothingOfTheHeap) {
    alignas(CAddressSet) unsigned char room[sizeof(CAddressSet)];
    // Never destroyed: a table that stayed behind would be a leak.
    auto& set = *new (room) CAddressSet;
    for (uint32_t round = 0; round < 3; ++round) {
        for (uint32_t i = 0; i < 1000; ++i) {
            set.insert(addressOf(i));
        }
        for (uint32_t i = 0; i < 1000; ++i) {
            EXPECT_TRUE(set.contains(addressOf(i)));
            set.erase(addressOf(i));
        }
        EXPECT_EQ(set.count(), 0u);
        set.insert(addressOf(7));
        EXPECT_TRUE(set.contains(addressOf(7)));
        for (uint32_t i = 0; i < 1000; ++i) {
            EXPECT_EQ(set.contains(addressOf(i)), i == 7);
        }
        set.erase(addressOf(7));
    }
}

// Few addresses, so that they meet in the table and gaps in runs are closed.
TEST(CAddressSet, EqualsAStandardSetInRandomOrder) {
    std::mt19937 random(1);
    CAddressSet set;
    std::set<const void*> reference;
    for (int32_t step = 0; step < 100000; ++step) {
        const uint32_t range = step % 20000 < 10000 ? 2000 : 40;
        const void* const address = addressOf(random() % range);
        if (random() % 2 == 0) {
            set.insert(address);
            reference.insert(address);
        } else {
            set.erase(address);
            reference.erase(address);
        }
        ASSERT_EQ(set.count(), reference.size());
        const void* const other = addressOf(random() % 2000);
        ASSERT_EQ(set.contains(other), reference.count(other) == 1) << step;
    }
    for (uint32_t i = 0; i < 2000; ++i) {
        EXPECT_EQ(set.contains(addressOf(i)), reference.count(addressOf(i)) == 1) << i;
    }
}

}  // namespace
}  // namespace tarv
