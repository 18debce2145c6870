#include "Platform/FileLock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <thread>
#include <vector>

namespace tarv {
namespace {

class FileLock : public testing::Test {
protected:
    FileLock() { std::filesystem::remove(path_); }
    ~FileLock() override { std::filesystem::remove(path_); }

    const std::filesystem::path path_ = std::filesystem::temp_directory_path() / "tarv-file-lock-test";
    const std::u16string text_ = path_.u16string();
};

TEST_F(FileLock, OneHolderAtATime) {
    CFileLock first;
    EXPECT_EQ(first.acquire(text_.c_str(), 0), 0u);
    CFileLock second;
    EXPECT_TRUE(isFileBusy(second.acquire(text_.c_str(), 5)));
    first.release();
    EXPECT_EQ(second.acquire(text_.c_str(), 0), 0u);
}

TEST_F(FileLock, WaitsForItsHolderAndKeepsThreadsApart) {
    std::atomic<int> inside{0};
    std::atomic<int> most{0};
    int count = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 20; ++i) {
                CFileLock lock;
                ASSERT_EQ(lock.acquire(text_.c_str(), 60000), 0u);
                most = std::max(most.load(), ++inside);
                ++count;
                --inside;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(most, 1);
    EXPECT_EQ(count, 60);
}

TEST_F(FileLock, AFolderThatIsMissingIsAnotherFailure) {
    CFileLock lock;
    const std::u16string nowhere = (path_ / "nowhere" / "file").u16string();
    const CPlatformError error = lock.acquire(nowhere.c_str(), 1000);
    EXPECT_NE(error, 0u);
    EXPECT_FALSE(isFileBusy(error));
}

}  // namespace
}  // namespace tarv
