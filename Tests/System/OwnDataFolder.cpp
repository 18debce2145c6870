// Global parameters are stored for all instances of a user: a test program has a separate folder, empty at the start.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

namespace {

class COwnDataFolder : public testing::Environment {
public:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "tarv-tests-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
        setenv("TARV_DATA_ROOT", folder_.c_str(), 1);
    }
    void TearDown() override {
        if (!folder_.empty()) {
            std::filesystem::remove_all(folder_);
        }
    }

private:
    std::string folder_;
};

const testing::Environment* const kOwnDataFolder = testing::AddGlobalTestEnvironment(new COwnDataFolder);

}  // namespace
