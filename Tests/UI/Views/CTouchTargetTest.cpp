#include "UI/Views/CTouchTarget.h"

#include "Core/CGlobalSettings.h"
#include "Tests/UI/Views/RoutedViews.h"

namespace tarv {
namespace {

/// Views that are pressed by a finger.
struct CTouchTargetTest : CRouting {
    CTouchTargetTest() { globalSettings().isTabletMode = true; }
    ~CTouchTargetTest() override { globalSettings().isTabletMode = false; }

    /// The view that takes a press at a point.
    std::string takerAt(int32_t x, int32_t y) {
        heard();
        press(x, y);
        release(x, y);
        for (const std::string& line : CRoutedView::heard) {
            if (const size_t at = line.find(".mouse-press"); at != std::string::npos) {
                return line.substr(0, at);
            }
        }
        return "";
    }
};

TEST_F(CTouchTargetTest, AControlTakesPressesBesideItUpToFortyPixelsInAll) {
    build({view("a", "100 100 20 24")});
    EXPECT_EQ(takerAt(90, 112), "a");
    EXPECT_EQ(takerAt(89, 112), "");
    EXPECT_EQ(takerAt(129, 112), "a");
    EXPECT_EQ(takerAt(130, 112), "");
    EXPECT_EQ(takerAt(110, 92), "a");
    EXPECT_EQ(takerAt(110, 91), "");
    EXPECT_EQ(takerAt(90, 131), "a") << "at the corner";
    EXPECT_EQ(takerAt(90, 132), "");
}

TEST_F(CTouchTargetTest, AControlAsLargeAsAFingerEndsAtItsEdges) {
    build({view("a", "100 100 40 40"), view("wide", "200 100 200 20")});
    EXPECT_EQ(takerAt(99, 120), "");
    EXPECT_EQ(takerAt(100, 120), "a");
    EXPECT_EQ(takerAt(199, 110), "") << "wide enough";
    EXPECT_EQ(takerAt(300, 90), "wide");
}

TEST_F(CTouchTargetTest, OfSeveralTheNearestTakesIt) {
    build({view("a", "100 100 20 20"), view("b", "132 100 20 20")});
    EXPECT_EQ(takerAt(125, 110), "a");
    EXPECT_EQ(takerAt(126, 110), "b") << "6 pixels from b, 7 from a";
    EXPECT_EQ(takerAt(138, 95), "b");
}

TEST_F(CTouchTargetTest, WhatLiesUnderTheFingerKeepsItsPress) {
    build({view("a", "100 100 20 20"), view("b", "120 100 20 20"), view("large", "100 120 200 200")});
    EXPECT_EQ(takerAt(119, 110), "a");
    EXPECT_EQ(takerAt(120, 110), "b");
    EXPECT_EQ(takerAt(105, 121), "large") << "no part of b or a";
}

TEST_F(CTouchTargetTest, TheGroundGivesWayToItsControlsAndAButtonDoesNot) {
    build({view("ground", "0 0 300 300", {}, {view("a", "100 100 20 20")}),
           view("button", "400 100 90 24", {}, {view("arrow", "465 102 23 20")})});
    EXPECT_EQ(takerAt(95, 95), "a");
    EXPECT_EQ(takerAt(50, 50), "ground");
    EXPECT_EQ(takerAt(464, 110), "button");
    EXPECT_EQ(takerAt(470, 110), "arrow");
    EXPECT_EQ(takerAt(470, 95), "arrow") << "above the edge of both";
    EXPECT_EQ(takerAt(420, 95), "button");
}

TEST_F(CTouchTargetTest, WhatIsDisabledNeitherTakesNorGivesAway) {
    build({view("a", "100 100 20 20", {{"is-disabled", "true"}}), view("b", "124 100 20 20"),
           view("c", "300 100 20 20", {{"is-disabled", "true"}})});
    EXPECT_EQ(takerAt(119, 110), "") << "on the disabled one";
    EXPECT_EQ(takerAt(122, 110), "b");
    EXPECT_EQ(takerAt(295, 110), "");
}

TEST_F(CTouchTargetTest, WhatIsCoveredIsNotMeant) {
    build({view("a", "100 100 20 20"), view("cover", "90 90 15 60", {{"z-index", "5"}, {"is-input", "false"}}),
           view("blocked", "300 100 20 20"), view("blocker", "250 0 200 300", {{"z-index", "9"}})});
    EXPECT_EQ(takerAt(95, 110), "");
    EXPECT_EQ(takerAt(122, 110), "a");
    EXPECT_EQ(takerAt(295, 110), "blocker");
}

TEST_F(CTouchTargetTest, ThePressCountsInTheViewAndADragKeepsTheDistance) {
    build({view("a", "100 100 20 20")});
    press(92, 110);
    EXPECT_EQ(at("r.a").params.at("actual-x").asReal(), 104.0);
    EXPECT_EQ(at("r.a").params.at("actual-y").asReal(), 110.0);
    move(92, 110);
    EXPECT_EQ(at("r.a").params.at("actual-x").asReal(), 104.0) << "no jump";
    move(95, 60);
    EXPECT_EQ(at("r.a").params.at("actual-x").asReal(), 107.0);
    EXPECT_EQ(at("r.a").params.at("actual-y").asReal(), 60.0);
    heard();
    release(91, 111);
    EXPECT_EQ(heard(), "a-pushed a.mouse-release") << "beside it, where a finger means it";
}

TEST_F(CTouchTargetTest, AReleaseFarAwayIsACancel) {
    build({view("a", "100 100 20 20")});
    press(92, 110);
    heard();
    release(80, 110);
    EXPECT_EQ(heard(), "a-pushed a.mouse-cancel");
}

TEST_F(CTouchTargetTest, ARightPressIsMeantAlike) {
    build({view("a", "100 100 20 20")});
    press(92, 110, CPointerButton::Right);
    EXPECT_EQ(heard(), "a.mouse-press-r a+pushed");
    release(92, 110, CPointerButton::Right);
    EXPECT_EQ(heard(), "a-pushed a.mouse-release-r");
}

TEST_F(CTouchTargetTest, APressThatIsHeldClicksOnBesideTheView) {
    build({view("a", "100 100 20 20")});
    press(92, 110);
    heard();
    window.router->autoClick(0.0);
    EXPECT_EQ(heard(), "a.auto-click");
}

TEST_F(CTouchTargetTest, NoViewIsHoveredAndTheModeTakesAnOldHoverAway) {
    build({view("a", "100 100 20 20", {{"hint", "What it is."}})});
    move(110, 110);
    EXPECT_EQ(heard(), "a.mouse-enter a.hint-update a.mouse-move");
    EXPECT_EQ(window.hint, "What it is.");
    globalSettings().isTabletMode = false;
    window.router->update();
    EXPECT_EQ(heard(), "a+hover") << "the pointer still rests on it";
    EXPECT_EQ(takerAt(92, 110), "") << "no room beside it without the mode";
    move(110, 110);
    globalSettings().isTabletMode = true;
    heard();
    window.router->update();
    EXPECT_EQ(heard(), "a-hover");
}

}  // namespace
}  // namespace tarv
