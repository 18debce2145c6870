#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

#include "Tests/UI/Views/ViewTree.h"

namespace tarv {
namespace {

/// An editor at 125 %, as the settings of the user hold it, in a folder of the test.
class ScaledView : public CViewTest {
protected:
    ScaledView() {
        const char* root = getenv("TARV_DATA_ROOT");
        former_ = root ? root : "";
        setenv("TARV_DATA_ROOT", folder_.c_str(), 1);
        CLocalData::instance().reset();
        CLocalData::instance().setFileAccess(true);
        reopen("1.25");
    }
    ~ScaledView() override {
        close();
        reopen("1.0");
        CLocalData::instance().setFileAccess(false);
        former_.empty() ? unsetenv("TARV_DATA_ROOT") : setenv("TARV_DATA_ROOT", former_.c_str(), 1);
        std::filesystem::remove_all(folder_);
    }

private:
    static void reopen(const char* scale) {
        CApplication::closeEditor();
        CLocalData::instance().writeText("ui-scale", scale);
        EXPECT_EQ(consumed(CApplication::openEditor()), "");
    }

    std::string former_;
    std::string folder_ = testing::TempDir() + "view-test-settings";
};

TEST_F(ScaledView, EveryAbsoluteLengthIsScaled) {
    ASSERT_EQ(CApplication::uiScale(), 1.25);
    open({},
         {view("a", {{"placement", "overlay"},
                     {"width", "10"},
                     {"min-height", "20"},
                     {"height", "0"},
                     {"outer-border", "1 *L1"},
                     {"spread", "1"}}),
          view("c", {{"placement", "left"}, {"compact-width", "8"}, {"compact-height", "4"}, {"alignment-v", "top"}})});
    EXPECT_EQ(rootView_->area().box().width, 375.0);
    EXPECT_EQ(at("a").area().value(CViewCell::Width), 12.5f);
    EXPECT_EQ(at("a").area().value(CViewCell::Height), 25.0f);
    // Each item is rounded by itself: 1 and 1, not 2.5.
    EXPECT_EQ(at("a").area().value(CViewCell::OuterLeft), 2.0f);
    EXPECT_EQ(at("a").visibleRect().x, 2.0 - 1.25);
    EXPECT_EQ(box("c"), "0,0 10x5");
}

}  // namespace
}  // namespace tarv
