#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

#include "Core/CApplication.h"
#include "Core/CApplicationData.h"
#include "Tests/Core/TestApplication.h"

namespace tarv {

/// An editor at a scale that the settings of the user hold, in a folder of the test, for the length of its life. The
/// application runs meanwhile, and an editor is open before and behind it.
class CScaledEditor {
public:
    explicit CScaledEditor(const char* scale) {
        const char* root = getenv("TARV_DATA_ROOT");
        former_ = root ? root : "";
        setenv("TARV_DATA_ROOT", folder_.c_str(), 1);
        CLocalData::instance().reset();
        CLocalData::instance().setFileAccess(true);
        reopen(scale);
    }
    ~CScaledEditor() {
        reopen("1.0");
        CLocalData::instance().setFileAccess(false);
        former_.empty() ? unsetenv("TARV_DATA_ROOT") : setenv("TARV_DATA_ROOT", former_.c_str(), 1);
        std::filesystem::remove_all(folder_);
    }
    CScaledEditor(const CScaledEditor&) = delete;
    CScaledEditor& operator=(const CScaledEditor&) = delete;

private:
    static void reopen(const char* scale) {
        CApplication::closeEditor();
        CLocalData::instance().writeText("ui-scale", scale);
        EXPECT_EQ(consumed(CApplication::openEditor()), "");
    }

    std::string former_;
    std::string folder_ = testing::TempDir() + "view-test-settings";
};

}  // namespace tarv
