#include "Core/CArray.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "Core/CString.h"

namespace tarv {
namespace {

TEST(CArray, CapacityGoesByTwiceAndOneAndFivePointersLieInABlockOf7) {
    CArray<int*, 4> array;
    const int32_t kCapacities[] = {1, 3, 3, 7, 7, 7, 7, 15};
    EXPECT_EQ(array.capacity(), 0);
    for (int32_t i = 0; i < 8; ++i) {
        array.append(nullptr);
        EXPECT_EQ(array.capacity(), kCapacities[i]) << i;
        // Capacity 7 exceeds the inline slots already at the fourth pointer.
        EXPECT_EQ(array.isInline(), array.capacity() <= 4) << i;
    }
}

TEST(CArray, RemovalNeverShrinksAndAResizeToNOrLessReturnsInline) {
    CArray<int, 4> array;
    for (int i = 0; i < 20; ++i) {
        array.append(i);
    }
    while (array.count() > 2) {
        array.removeLast();
    }
    EXPECT_EQ(array.capacity(), 31);
    EXPECT_FALSE(array.isInline());
    array.reserve(4);
    EXPECT_TRUE(array.isInline());
    EXPECT_EQ(array.capacity(), 4);
    EXPECT_EQ(array[0], 0);
    EXPECT_EQ(array[1], 1);
}

TEST(CArray, InsertsAndRemovesInOrder) {
    CArray<CString, 2> array;
    array.append("a");
    array.append("c");
    array.insert(1, "b");
    array.insert(0, "_");
    array.removeAt(2);
    ASSERT_EQ(array.count(), 3);
    EXPECT_EQ(array[0], "_");
    EXPECT_EQ(array[1], "a");
    EXPECT_EQ(array[2], "c");
    EXPECT_EQ(array.indexOf("c"), 2);
    EXPECT_EQ(array.indexOf("b"), -1);
}

TEST(CArray, NewElementsAreValueInitialised) {
    CArray<int, 2> array;
    array.append(7);
    array.resize(0);
    array.resize(50);
    for (int value : array) {
        EXPECT_EQ(value, 0);
    }
}

TEST(CArray, AnUnsetResizeKeepsWhatWasThere) {
    CArray<int, 2> array;
    array.append(7);
    array.append(8);
    array.resizeUnset(100);
    EXPECT_EQ(array.count(), 100);
    array.resizeUnset(2);
    EXPECT_EQ(array.count(), 2);
    EXPECT_EQ(array[0], 7);
    EXPECT_EQ(array[1], 8);
}

TEST(CArray, CopiesAreIndependentAndMovesLeaveNothingBehind) {
    for (int32_t count : {0, 1, 3, 40}) {
        CArray<CString, 4> source;
        for (int32_t i = 0; i < count; ++i) {
            source.append(CString::fromInt(i, 60));
        }
        CArray<CString, 4> copy(source);
        CArray<CString, 4> moved(std::move(source));
        EXPECT_EQ(source.count(), 0);
        ASSERT_EQ(copy.count(), count);
        ASSERT_EQ(moved.count(), count);
        for (int32_t i = 0; i < count; ++i) {
            EXPECT_EQ(copy[i], CString::fromInt(i, 60));
            EXPECT_EQ(moved[i], copy[i]);
        }
        source.append("again");
        EXPECT_EQ(source[0], "again");
    }
}

TEST(CArray, AppendingAnElementOfItselfSurvivesTheMove) {
    CArray<CString, 1> array;
    array.append("first, and longer than what would lie inline in it");
    for (int i = 0; i < 10; ++i) {
        array.append(array[0]);
    }
    EXPECT_EQ(array.last(), array[0]);
}

TEST(COwnedArray, DeletesFromLastToFirst) {
    struct CNoted {
        CNoted(int name, std::vector<int>& gone) : name_(name), gone_(gone) {}
        ~CNoted() { gone_.push_back(name_); }
        int name_;
        std::vector<int>& gone_;
    };
    std::vector<int> gone;
    {
        COwnedArray<CNoted> array;
        for (int i = 0; i < 3; ++i) {
            array.append(new CNoted(i, gone));
        }
    }
    EXPECT_EQ(gone, (std::vector<int>{2, 1, 0}));
}

}  // namespace
}  // namespace tarv
