// The product's editor as the pictures show it.

#include "DemoEditor.h"

namespace tarv {

namespace {

TEST(ProductInspector, ItsHostGivesAllChannels) {
    CPlainEditor editor;
    ASSERT_EQ(editor.openProduct(), "");
    ASSERT_TRUE(editor.pointAt(*editor.tree().findObjectOf<CView>("ui.main-window.c.buttons.channel-routing")));
    editor.system().input().click();
    editor.system().advance(0.3);
    const std::string fields = "ui.win-channel-routing.c.input-routing.fields.";
    for (const char* field : {"object", "object#1"}) {
        const auto* view = editor.tree().findObjectOf<CView>((fields + field).c_str());
        ASSERT_TRUE(view) << field;
        EXPECT_FALSE(view->isStateSet("dimmed")) << field;
    }
}

}  // namespace

}  // namespace tarv
