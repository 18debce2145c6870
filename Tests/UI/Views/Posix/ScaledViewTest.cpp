#include "Tests/UI/Views/Posix/ScaledEditor.h"
#include "Tests/UI/Views/ViewTree.h"

namespace tarv {
namespace {

using ScaledView = CViewTest;

TEST_F(ScaledView, EveryAbsoluteLengthIsScaled) {
    const CScaledEditor editor("1.25");
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
    close();
}

}  // namespace
}  // namespace tarv
