#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

namespace tarv {

/// An empty folder for the user's data, of this process alone: test programs of several builds run at one time. Sets
/// TARV_DATA_ROOT; the former value comes back, and the folder is deleted, when it is destroyed.
class CUserFolder {
public:
    CUserFolder() : path_(testing::TempDir() + "tarv-user-XXXXXX") {
        EXPECT_NE(mkdtemp(path_.data()), nullptr);
        const char* former = getenv(kVariable);
        hasFormer_ = former != nullptr;
        former_ = hasFormer_ ? former : "";
        setenv(kVariable, path_.c_str(), 1);
    }
    ~CUserFolder() {
        hasFormer_ ? setenv(kVariable, former_.c_str(), 1) : unsetenv(kVariable);
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    CUserFolder(const CUserFolder&) = delete;
    CUserFolder& operator=(const CUserFolder&) = delete;

private:
    static constexpr const char* kVariable = "TARV_DATA_ROOT";
    std::string path_;
    std::string former_;
    bool hasFormer_ = false;
};

}  // namespace tarv
