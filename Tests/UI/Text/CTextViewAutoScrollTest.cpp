#include "UI/Text/CTextViewAutoScroll.h"

#include "Tests/UI/Text/TextViewTree.h"

namespace tarv {
namespace {

constexpr int32_t kWidth = 40;

class TextAutoScroll : public CTextViewTest {
protected:
    TextAutoScroll()
        : CTextViewTest(
              {{"ui:textview-auto-scroll", &createObject<CTextViewAutoScroll>, &CTextViewAutoScroll::initClass}}) {}

    static CTestNode arrow(const std::string& name) {
        return view(
            name,
            {{"placement", "overlay"}, {"outer-border", "*T50"}, {"width", "4"}, {"height", "4"}, {"color", "Knob"}},
            {{"ui:view-state", "s", {{"state-name", "active"}, {"color-state", "Active"}, {"morph-duration", "0"}}}});
    }
    /// A view of kWidth pixels at 0, 0, 20 pixels a second and a second's pause; arrows beside it.
    void openSliding(const std::string& title, CTexts more = {}) {
        CTexts attributes = {{"title", title},
                             {"placement", "overlay"},
                             {"width", std::to_string(kWidth)},
                             {"auto-scroll-speed", "20"},
                             {"auto-scroll-pause", "1"}};
        attributes.insert(attributes.end(), more.begin(), more.end());
        openTexts({{"ui:textview-auto-scroll", "a", attributes},
                   arrow("auto-scroll-arrow-left"),
                   arrow("auto-scroll-arrow-right")});
        tick();
    }
    /// Pixels that are cut off at the left.
    int32_t cut() { return -text("a").textOrigin().x; }
    /// Which arrows are shown, those with more behind them in capitals.
    std::string arrows() {
        std::string shown;
        for (const auto& [name, letter] :
             {std::pair{"auto-scroll-arrow-left", 'l'}, {"auto-scroll-arrow-right", 'r'}}) {
            if (at(name).isShown()) {
                shown += static_cast<char>(at(name).isStateSet("active") ? letter - 32 : letter);
            }
        }
        return shown;
    }
    /// 30 glyphs of 8 pixels are 200 pixels more than the view.
    const std::string kLong = std::string(30, '1');
    static constexpr int32_t kWay = 30 * 8 - kWidth;
};

TEST_F(TextAutoScroll, ATextThatFitsStandsStillWithoutArrows) {
    openSliding("short");
    EXPECT_EQ(arrows(), "");
    for (int32_t i = 0; i < 10; ++i) {
        EXPECT_EQ(tick(1.0), 0);
        EXPECT_EQ(cut(), 0);
    }
}

TEST_F(TextAutoScroll, ATextThatDoesNotFitGoesToItsEndAndBackOnce) {
    ASSERT_EQ(face.advance("1"), 8);
    openSliding(kLong);
    EXPECT_EQ(text("a").layout().lineCount(), 1);
    const auto expectAt = [&](double step, int32_t pixels, const char* arrowsThere) {
        tick(step);
        EXPECT_EQ(cut(), pixels);
        EXPECT_EQ(arrows(), arrowsThere) << pixels;
    };
    expectAt(0.0, 0, "lR");
    expectAt(1.0, 0, "lR");
    expectAt(0.25, 5, "LR");
    expectAt(1.0, 25, "LR");
    expectAt(kWay / 20.0 - 1.25, kWay, "Lr");
    expectAt(0.75, kWay, "Lr");
    expectAt(0.75, kWay - 10, "LR");
    expectAt(kWay / 20.0, 0, "lR");
    // At rest nothing is drawn and nothing allocated.
    tick();
    for (int32_t i = 0; i < 10; ++i) {
        const uint64_t before = CHeap::counters().allocations;
        EXPECT_EQ(tick(1.0), 0);
        EXPECT_EQ(CHeap::counters().allocations, before);
    }
}

TEST_F(TextAutoScroll, WhatIsSeenIsTheTextMovedAndClipped) {
    openSliding("abc def ghi jkl mno");
    tick(1.0);
    tick(0.65);
    EXPECT_EQ(cut(), 13);
    expectBackground();
    expectText(face, "abc def ghi jkl mno", -13, 0, kText, {0, 0, kWidth, 14});
    expectRect(0, 50, 4, 4, kKnobActive);
    EXPECT_EQ(wrongPixels(), 0);
}

TEST_F(TextAutoScroll, SlidingAllocatesNothingAndDrawsByWholePixels) {
    openSliding(kLong);
    tick(1.0);
    tick(0.3);
    tick(0.3);
    for (int32_t i = 0; i < 20; ++i) {
        const int32_t before = cut();
        const uint64_t allocations = CHeap::counters().allocations;
        const int64_t drawn = tick(0.02);
        EXPECT_EQ(CHeap::counters().allocations - allocations, 0u);
        // 0.4 pixels a tick.
        EXPECT_EQ(drawn > 0, cut() != before) << i;
        EXPECT_LE(cut() - before, 1);
    }
}

TEST_F(TextAutoScroll, AnotherTextOrWidthAndTheEventBeginAnew) {
    openSliding(kLong);
    tick(1.0);
    tick(2.0);
    EXPECT_EQ(cut(), 40);
    set(at("a"), "title", kLong + "1");
    tick();
    EXPECT_EQ(cut(), 0);
    tick(2.0);
    EXPECT_EQ(cut(), 20);
    set(at("a"), "width", "50");
    tick();
    tick();
    EXPECT_EQ(cut(), 0);
    tick(100.0);
    EXPECT_EQ(tick(1.5), 0);
    CAttributeMap params;
    EXPECT_EQ(consumed(deliverEvent(at("a"), "auto-scroll-start", params)), "");
    tick();
    tick(1.5);
    EXPECT_EQ(cut(), 10);
    set(at("a"), "title", "ab");
    tick();
    EXPECT_EQ(cut(), 0);
    EXPECT_EQ(arrows(), "");
}

TEST_F(TextAutoScroll, RoundsMayBeSeveralOrEndless) {
    const double round = 2.0 + 2.0 * kWay / 20.0;
    openSliding(kLong, {{"auto-scroll-rounds", "2"}});
    tick(round + 1.5);
    EXPECT_EQ(cut(), 10);
    tick(round);
    EXPECT_EQ(cut(), 0);
    openSliding(kLong, {{"auto-scroll-rounds", "0"}});
    tick(50 * round + 1.5);
    EXPECT_EQ(cut(), 10);
}

TEST_F(TextAutoScroll, ArrowsThatTakeRoomComeAndGoWithoutFlicker) {
    const auto docked = [](const char* name, const char* side) {
        return view(name, {{"placement", side}, {"width", "10"}, {"height", "9"}});
    };
    // 100 pixels: a text of 96 fits as long as there are no arrows, one of 104 never does.
    for (const int32_t glyphs : {10, 12, 13}) {
        openTexts(
            {docked("auto-scroll-arrow-left", "left"),
             docked("auto-scroll-arrow-right", "right"),
             {"ui:textview-auto-scroll",
              "a",
              {{"title", std::string(static_cast<size_t>(glyphs), '1')}, {"placement", "full"}, {"width", "full"}}}},
            100, 30);
        tick();
        int32_t changes = 0;
        bool wasShown = at("auto-scroll-arrow-left").isShown();
        for (int32_t i = 0; i < 100; ++i) {
            tick(0.05);
            const bool isShown = at("auto-scroll-arrow-left").isShown();
            changes += isShown != wasShown ? 1 : 0;
            wasShown = isShown;
        }
        EXPECT_LE(changes, 1) << glyphs;
        EXPECT_EQ(wasShown, glyphs == 13) << glyphs;
        EXPECT_EQ(text("a").visibleRect().width, wasShown ? 80.0 : 100.0);
    }
}

TEST_F(TextAutoScroll, ALineStandsInTheMiddleOfAHigherView) {
    openSliding(kLong, {{"height", "20"}});
    EXPECT_EQ(text("a").textOrigin().y, 3);
}

}  // namespace
}  // namespace tarv
