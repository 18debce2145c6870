// Colours of texts: slots, states, palettes, and what of a text a tile draws.

#include "Tests/UI/Text/TextViewTree.h"
#include "UI/Text/CTextView.h"

namespace tarv {
namespace {

class TextColors : public CTextViewTest {};

TEST_F(TextColors, TextColoursFollowStatesAndMorph) {
    openTexts({label(
        "a", {{"title", "a"}, {"text-color", "Knob"}, {"placement", "overlay"}},
        {{"ui:view-state", "s", {{"state-name", "active"}, {"color-state", "Active"}, {"morph-duration", "1"}}}})});
    tick();
    EXPECT_EQ(consumed(at("a").setState("active")), "");
    // Half of the way between both, channel by channel.
    tick(0.5);
    expectBackground();
    ASSERT_EQ(kKnob, 0x405060u);
    ASSERT_EQ(kKnobActive, 0x708090u);
    expectText(face, "a", 0, 0, 0x586878);
    EXPECT_EQ(wrongPixels(), 0);
    tick(0.6);
    expectBackground();
    expectText(face, "a", 0, 0, kKnobActive);
    EXPECT_EQ(wrongPixels(), 0);
    EXPECT_EQ(tick(0.1), 0);
}

TEST_F(TextColors, ALabelFollowsASlotOfItsParentWithStatesAndMorphs) {
    openTexts(
        {view("p", {{"placement", "overlay"}},
              {{"ui:view-color-slot", "slot", {{"color", "Knob"}}},
               {"ui:view-state", "s", {{"state-name", "active"}, {"color-state", "Active"}, {"morph-duration", "1"}}},
               label("a", {{"title", "a"}, {"text-color", "^1"}})})});
    tick();
    EXPECT_EQ(consumed(at("p").setState("active")), "");
    for (const auto& [seconds, color] : std::vector<std::pair<double, CPixel>>{{0.5, 0x586878}, {0.6, kKnobActive}}) {
        tick(seconds);
        expectBackground();
        expectText(face, "a", 0, 0, color);
        EXPECT_EQ(wrongPixels(), 0);
    }
}

TEST_F(TextColors, AnotherPaletteRecoloursTextsAndImages) {
    openTexts({label("a", {{"title", "a[IMG=is.button#BoxActive:Action]"}, {"placement", "overlay"}})});
    tick();
    set(*rootView_, "palette", "B");
    tick();
    // Each colour of the palette B is one step brighter in blue.
    EXPECT_EQ(pixel(face.advance("a"), 5) & 0xffffff, kAction + 1);
}

TEST_F(TextColors, ADisabledViewDrawsItsTextInDisabledText) {
    openTexts(
        {view("p", {{"placement", "overlay"}},
              {label("a", {{"title", "a[C2]b[/C2][IMG=is.button#BoxActive:Action]"}, {"text-color2", "Knob"}})})});
    tick();
    set(at("p"), "is-disabled", "true");
    EXPECT_GT(tick(), 0);
    expectBackground();
    expectText(face, "ab", 0, 0, 0x606162);
    expectRect(face.advance("ab"), 4, 6, 6, 0x606162);
    EXPECT_EQ(wrongPixels(), 0);
    set(at("p"), "is-disabled", "false");
    tick();
    expectBackground();
    expectText(face, "a", 0, 0, kText);
    expectText(face, "b", face.advance("a"), 0, kKnob);
    expectRect(face.advance("ab"), 4, 6, 6, kAction);
    EXPECT_EQ(wrongPixels(), 0);
}

TEST_F(TextColors, WithoutAPaletteNothingIsDrawnAndItIsLoggedOnce) {
    const CLogCapture log;
    open({{"font-name", "shared::font.base"}}, {label("a", {{"title", "a"}, {"placement", "overlay"}})});
    tick();
    at("a").requestRedraw();
    tick();
    EXPECT_EQ(std::count(log.lines.begin(), log.lines.end(), "PALETTE IS NULL // ui.w.a"), 1);
    EXPECT_EQ(pixel(1, 5), 0u);
    set(*rootView_, "palette", "A");
    set(*rootView_, "color", "Panel");
    tick();
    expectBackground();
    expectText(face, "a", 0, 0, kText);
    EXPECT_EQ(wrongPixels(), 0);
}

TEST_F(TextColors, AColourThatThePaletteLacksIsLoggedAndDrawsNothing) {
    const CLogCapture log;
    openTexts({label("a", {{"title", "a"}, {"text-color", "Nobody"}, {"placement", "overlay"}})});
    tick();
    EXPECT_TRUE(log.has("Color not found <Nobody> // ui.w.a"));
    expectBackground();
    EXPECT_EQ(wrongPixels(), 0);
}

TEST_F(TextColors, OnlyLinesInTheTileAreDrawn) {
    std::string title;
    for (int32_t i = 0; i < 400; ++i) {
        title += "line[BR]";
    }
    openTexts({label("a", {{"title", title}, {"placement", "overlay"}})}, 100, 100);
    tick();
    // A redraw of a few pixels loads the window by the glyphs around them alone: 500 a picture.
    window_.map.resetLoad();
    at("a").requestRedraw({0.0, 50.0, 100.0, 2.0});
    tick();
    EXPECT_GT(window_.map.load(), 500);
    EXPECT_LT(window_.map.load(), 500 * 4 * 5);
    // The picture is as if all were drawn.
    expectBackground(100, 100);
    for (int32_t i = 0; i < 8; ++i) {
        expectText(face, "line", 0, i * 14, kText);
    }
    EXPECT_EQ(wrongPixels(), 0);
}

}  // namespace
}  // namespace tarv
