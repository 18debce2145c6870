#include "Core/CHeap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <thread>
#include <vector>

namespace tarv {
namespace {

// What lies before a payload is the pool's own; sanitizer builds have no pools.
#ifdef TARV_SANITIZED
constexpr bool kHasPools = false;
#else
constexpr bool kHasPools = true;
#endif

uint8_t* bytesOf(void* block) {
    return static_cast<uint8_t*>(block);
}

TEST(CHeap, EverySizeGivesAnAlignedBlockOfItsOwn) {
    std::vector<size_t> sizes = {3000, 4063, 4080, 4081, 9999};
    for (size_t size = 0; size < 2000; size += 7) {
        sizes.push_back(size);
    }
    std::vector<void*> blocks;
    for (size_t size : sizes) {
        void* block = CHeap::alloc(size);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % 8, 0u);
        std::memset(block, static_cast<int>(size), size);
        blocks.push_back(block);
    }
    for (size_t i = 0; i < blocks.size(); ++i) {
        const size_t size = sizes[i];
        const auto* bytes = bytesOf(blocks[i]);
        EXPECT_TRUE(std::all_of(bytes, bytes + size, [&](uint8_t b) { return b == static_cast<uint8_t>(size); }));
        CHeap::free(blocks[i]);
    }
}

TEST(CHeap, TheByteBeforeTheBlockHoldsItsClass) {
    if (!kHasPools) {
        GTEST_SKIP() << "sanitizer builds have no pools";
    }
    struct CCase {
        size_t size;
        int index;
    };
    constexpr CCase kCases[] = {{0, 0}, {1, 0}, {16, 0}, {17, 1}, {32, 1}, {4065, 254}, {4080, 254}, {4081, 255}};
    for (const CCase& c : kCases) {
        void* block = CHeap::alloc(c.size);
        EXPECT_EQ(bytesOf(block)[-1], c.index) << c.size;
        CHeap::free(block);
    }
}

TEST(CHeap, ALargeBlockCarriesItsSizeAndThePatternThatLeadsToItsStart) {
    if (!kHasPools) {
        GTEST_SKIP() << "sanitizer builds have no pools";
    }
    void* block = CHeap::alloc(5000);
    uint64_t size = 0;
    std::memcpy(&size, bytesOf(block) - 9, sizeof(size));
    EXPECT_EQ(size, 5000u);
    const int last = bytesOf(block)[-10];
    for (int i = 0; i <= last; ++i) {
        EXPECT_EQ(bytesOf(block)[-10 - last + i], i);
    }
    CHeap::free(block);
}

TEST(CHeap, ReallocKeepsTheSmallerOfBothContents) {
    for (size_t from : {size_t{1}, size_t{16}, size_t{100}, size_t{4080}, size_t{5000}}) {
        for (size_t to : {size_t{1}, size_t{17}, size_t{101}, size_t{4080}, size_t{9000}}) {
            auto* block = bytesOf(CHeap::alloc(from));
            for (size_t i = 0; i < from; ++i) {
                block[i] = static_cast<uint8_t>(i * 31);
            }
            block = bytesOf(CHeap::realloc(block, to));
            for (size_t i = 0; i < std::min(from, to); ++i) {
                ASSERT_EQ(block[i], static_cast<uint8_t>(i * 31)) << from << " to " << to;
            }
            CHeap::free(block);
        }
    }
}

TEST(CHeap, ReallocOfNothingAllocatesAndFreeOfNothingDoesNothing) {
    const CHeapCounters before = CHeap::counters();
    CHeap::free(nullptr);
    void* block = CHeap::realloc(nullptr, 10);
    ASSERT_NE(block, nullptr);
    CHeap::free(block);
    EXPECT_EQ(CHeap::counters().allocations, before.allocations + 1);
    EXPECT_EQ(CHeap::counters().frees, before.frees + 1);
}

TEST(CHeap, ReallocWithinAClassStaysInPlace) {
    if (!kHasPools) {
        GTEST_SKIP() << "sanitizer builds have no pools";
    }
    void* block = CHeap::alloc(17);
    EXPECT_EQ(CHeap::realloc(block, 32), block);
    CHeap::free(block);
}

TEST(CHeap, ChunksDoubleUpTo128BlocksAndAreNeverGivenBack) {
    if (!kHasPools) {
        GTEST_SKIP() << "sanitizer builds have no pools";
    }
    // 4001 to 4016 bytes: a class of which at most a few blocks were taken before.
    constexpr size_t kSize = 4010;
    constexpr uint64_t kStride = 4024;
    struct CGrowth {
        size_t atBlock;
        uint64_t blocks;
    };
    std::vector<CGrowth> growths;
    std::vector<void*> blocks;
    while (blocks.size() < 1000) {
        const uint64_t before = CHeap::counters().platformBytes;
        blocks.push_back(CHeap::alloc(kSize));
        if (const uint64_t bytes = CHeap::counters().platformBytes - before) {
            EXPECT_EQ((bytes - 17) % kStride, 0u) << bytes;
            growths.push_back({blocks.size(), (bytes - 17) / kStride});
        }
    }
    ASSERT_GT(growths.size(), 5u);
    EXPECT_LT(growths[0].blocks, 16u);
    EXPECT_EQ(growths.back().blocks, 128u);
    for (size_t i = 1; i < growths.size(); ++i) {
        EXPECT_EQ(growths[i].blocks, std::min<uint64_t>(growths[i - 1].blocks * 2, 128));
        EXPECT_EQ(growths[i].atBlock - growths[i - 1].atBlock, growths[i - 1].blocks);
    }
    const uint64_t full = CHeap::counters().platformBytes;
    for (void* block : blocks) {
        CHeap::free(block);
    }
    EXPECT_EQ(CHeap::counters().platformBytes, full);
}

TEST(CHeap, LargeBlocksGoBackToThePlatform) {
    const uint64_t before = CHeap::counters().platformBytes;
    void* block = CHeap::alloc(100000);
    if (kHasPools) {
        EXPECT_EQ(CHeap::counters().platformBytes, before + 100017);
    }
    CHeap::free(block);
    EXPECT_EQ(CHeap::counters().platformBytes, before);
}

TEST(CHeap, ThreadsMayFreeWhatOthersAllocated) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 2000;
    std::vector<std::vector<void*>> handed(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&handed, t] {
            for (int i = 0; i < kRounds; ++i) {
                auto* block = bytesOf(CHeap::alloc(static_cast<size_t>(i % 300)));
                void* other = CHeap::alloc(static_cast<size_t>(i % 300));
                CHeap::free(other);
                handed[static_cast<size_t>(t)].push_back(block);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    threads.clear();
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&handed, t] {
            for (void* block : handed[static_cast<size_t>((t + 1) % kThreads)]) {
                CHeap::free(block);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::vector<void*> all;
    for (const auto& list : handed) {
        all.insert(all.end(), list.begin(), list.end());
    }
    std::sort(all.begin(), all.end());
    EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end()) << "a block was given out twice";
}

}  // namespace
}  // namespace tarv
