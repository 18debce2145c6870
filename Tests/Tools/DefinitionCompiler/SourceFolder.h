#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "DefinitionCompiler.h"

namespace tarv {

/// A folder of source files for one test, removed behind it.
class CSourceFolder {
public:
    CSourceFolder() {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        folder_ = std::filesystem::temp_directory_path() / (std::string("tarv-") + test->test_suite_name() + "-" +
                                                            test->name() + "-" + std::to_string(++count_));
        std::filesystem::create_directories(folder_);
    }
    CSourceFolder(const CSourceFolder&) = delete;
    CSourceFolder& operator=(const CSourceFolder&) = delete;
    ~CSourceFolder() { std::filesystem::remove_all(folder_); }

    std::string path(const std::string& name) const { return (folder_ / name).string(); }

    std::string add(const std::string& name, const std::string& text) const {
        const std::filesystem::path file = folder_ / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
        return file.string();
    }

    std::string read(const std::string& name) const {
        std::ifstream file(folder_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

private:
    static inline int count_ = 0;
    std::filesystem::path folder_;
};

/// The bytes that a source compiles to; the test fails if it doesn't.
inline std::string compiled(const std::string& path, const std::string& shared = {}) {
    std::string bytes;
    std::vector<std::string> files;
    const auto failure = compileDefinitions(path, shared, bytes, files);
    EXPECT_FALSE(failure) << failure->message();
    return bytes;
}

/// The message of a source that does not compile, without the folder; empty if it does.
inline std::string faultOf(const CSourceFolder& folder, const std::string& name) {
    std::string bytes = "untouched";
    std::vector<std::string> files;
    const auto failure = compileDefinitions(folder.path(name), {}, bytes, files);
    if (!failure) {
        return {};
    }
    EXPECT_EQ(bytes, "untouched");
    std::string text = failure->message();
    const std::string prefix = folder.path("");
    for (size_t at = text.find(prefix); at != std::string::npos; at = text.find(prefix)) {
        text.erase(at, prefix.size());
    }
    return text;
}

inline std::string definitions(const std::string& content) {
    return "<definitions>" + content + "</definitions>";
}

}  // namespace tarv
