#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "Platform/File.h"

namespace tarv {
namespace {

class ReplaceFile : public testing::Test {
protected:
    ReplaceFile() {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    ~ReplaceFile() override { std::filesystem::remove_all(folder); }
    CPlatformError replace(const std::string& content) const {
        return replaceFile(path.u16string().c_str(), content.data(), static_cast<int64_t>(content.size()));
    }
    std::string content() const {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }
    long entries() const {
        const std::filesystem::directory_iterator all(folder);
        return static_cast<long>(std::distance(begin(all), end(all)));
    }

    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "tarv-replace";
    const std::filesystem::path path = folder / u"\u0141 setting";
};

TEST_F(ReplaceFile, MakesAFileAndReplacesLongerAndShorterOnes) {
    for (const std::string& text : {std::string("one"), std::string(100000, 'x'), std::string(), std::string("two")}) {
        EXPECT_EQ(replace(text), 0u);
        EXPECT_EQ(content(), text);
        EXPECT_EQ(entries(), 1);
    }
}

TEST_F(ReplaceFile, WhatCannotBeReplacedStaysAndNothingLiesBesideIt) {
    std::filesystem::create_directories(path / "sub");
    EXPECT_NE(replace("one"), 0u);
    EXPECT_TRUE(std::filesystem::is_directory(path / "sub"));
    EXPECT_EQ(entries(), 1);
}

TEST_F(ReplaceFile, WithoutAFolderFails) {
    std::filesystem::remove_all(folder);
    EXPECT_NE(replace("one"), 0u);
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(ReplaceFile, OfTwoThreadsNeverMixesTheirContents) {
    // A replacement may fail where the other's move has the file open; the content is whole all the same.
    ASSERT_EQ(replace(std::string(5000, 'a')), 0u);
    std::atomic<int> busy{2};
    const auto work = [&](char letter) {
        for (int i = 0; i < 200; ++i)
            (void)replace(std::string(static_cast<size_t>(1 + i * 37 % 5000), letter));
        --busy;
    };
    std::thread first(work, 'a'), second(work, 'b');
    while (busy > 0) {
        const std::string text = content();
        EXPECT_EQ(text.find_first_not_of(text.substr(0, 1)), std::string::npos);
    }
    first.join();
    second.join();
    EXPECT_EQ(entries(), 1);
}

}  // namespace
}  // namespace tarv
