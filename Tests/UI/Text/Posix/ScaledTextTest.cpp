#include "Tests/UI/Text/TextViewTree.h"
#include "Tests/UI/Views/Posix/ScaledEditor.h"

namespace tarv {
namespace {

using ScaledText = CTextViewTest;

TEST_F(ScaledText, TextIsLaidOutInPixelsOfTheScaleAndItsSpacingIsScaled) {
    for (const char* const text : {"0.8", "1.0", "1.25"}) {
        const CScaledEditor editor(text);
        const double scale = CApplication::uiScale();
        const auto scaled = [scale](double length) { return static_cast<int32_t>(std::lround(length * scale)); };
        // Advances are whole pixels of the scale: not the scaled sum of those at 1.
        int32_t width = 0;
        for (const char c : std::string("Gain")) {
            width += scaled(face.advance(static_cast<uint32_t>(c)));
        }
        openTexts({label("a", {{"title", "Gain\nx"}, {"placement", "overlay"}, {"paragraph-spacing", "6"}}),
                   label("b", {{"title", "x"}, {"placement", "overlay"}, {"compact-width", "20"}})});
        tick();
        EXPECT_EQ(box("a"), "0,0 " + std::to_string(width) + "x" + std::to_string(2 * scaled(14) + scaled(6)));
        // What the data hold is scaled, what the text gives is not.
        EXPECT_EQ(CTextViewTest::text("b").area().value(CViewCell::Width), static_cast<float>(20 * scale));
        set(at("b"), "is-visible", "false");
        tick();
        const auto wide = static_cast<int32_t>(300 * scale);
        EXPECT_EQ(rootView_->area().box().width, wide);
        expectBackground();
        expectText(face, "Gain", 0, 0, kText);
        expectText(face, "x", 0, scaled(14) + scaled(6), kText);
        EXPECT_EQ(wrongPixelsIn({0, 0, width, 2 * scaled(14) + scaled(6)}), 0) << text;
        close();
    }
}

TEST_F(ScaledText, WrappingIsThatOfTheScaledWidth) {
    const CScaledEditor editor("1.25");
    // 50 pixels hold as many glyphs as fit at this scale.
    openTexts({label("a", {{"title", std::string(30, '1')}, {"placement", "overlay"}, {"width", "40"}})});
    ASSERT_EQ(face.advance('1'), 8);
    EXPECT_EQ(CTextViewTest::text("a").layout().line(0).count, 5);
    EXPECT_EQ(CTextViewTest::text("a").layout().lineCount(), 6);
    close();
}

}  // namespace
}  // namespace tarv
