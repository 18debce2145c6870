#include "UI/Windows/CWindowPlace.h"

#include <gtest/gtest.h>

#include "UI/Windows/CDrawLoad.h"

namespace tarv {

static void PrintTo(const CIntRect& rect, std::ostream* out) {
    *out << rect.left << "," << rect.top << " " << rect.width() << "x" << rect.height();
}

namespace {

CWindowSurroundings around() {
    CWindowSurroundings made;
    made.opener = {300, 200, 360, 220};
    made.openerWindow = {100, 100, 900, 700};
    made.mainWindow = {0, 50, 1000, 650};
    made.monitor = {0, 0, 1600, 1000};
    made.pointerX = 333;
    made.pointerY = 444;
    return made;
}

TEST(CWindowPlace, EachAlignmentHasItsPlace) {
    struct CCase {
        const char* name;
        int32_t x;
        int32_t y;
    };
    // A window of 100 x 40.
    const CCase cases[] = {{"bottom", 300, 220},
                           {"bottom-center", 280, 220},        // 330 - 50
                           {"bottom-local-center", 450, 220},  // 500 - 50
                           {"center", 450, 380},               // 400 - 20
                           {"center-overlay", 450, 330},       // 500 - 50, 350 - 20
                           {"left", 200, 200},
                           {"right", 360, 200},
                           {"cursor", 333, 444}};
    for (const CCase& one : cases) {
        CWindowAlignment alignment = CWindowAlignment::Bottom;
        ASSERT_TRUE(readWindowAlignment(one.name, alignment));
        EXPECT_EQ(placeWindow(alignment, around(), 100, 40), (CIntRect{one.x, one.y, one.x + 100, one.y + 40}))
            << one.name;
    }
    CWindowAlignment alignment = CWindowAlignment::Left;
    EXPECT_FALSE(readWindowAlignment("", alignment));
    EXPECT_FALSE(readWindowAlignment("Bottom", alignment));
    EXPECT_EQ(alignment, CWindowAlignment::Left);
}

TEST(CWindowPlace, AKeyboardNeverLiesOverItsOpenerWhereTheMonitorHasRoom) {
    CWindowSurroundings low = around();
    low.opener = {300, 960, 360, 980};  // no room below
    EXPECT_EQ(placeWindow(CWindowAlignment::BottomLocalCenter, low, 400, 200), (CIntRect{300, 760, 700, 960}));
    low.opener = {300, 100, 360, 900};  // nor above
    EXPECT_EQ(placeWindow(CWindowAlignment::BottomLocalCenter, low, 400, 200), (CIntRect{360, 800, 760, 1000}));
    low.opener = {300, 100, 1500, 900};  // nor to the right
    EXPECT_EQ(placeWindow(CWindowAlignment::BottomLocalCenter, low, 250, 200), (CIntRect{50, 800, 300, 1000}));
    low.opener = {0, 0, 1600, 1000};
    EXPECT_EQ(placeWindow(CWindowAlignment::BottomLocalCenter, low, 400, 200), (CIntRect{300, 800, 700, 1000}));
}

TEST(CWindowPlace, APopupAtTheBottomMovesUpWithinTheMonitor) {
    CWindowSurroundings low = around();
    low.opener = {300, 960, 360, 980};
    EXPECT_EQ(placeWindow(CWindowAlignment::Bottom, low, 100, 200), (CIntRect{300, 800, 400, 1000}));
    low.opener = {1590, 500, 1650, 520};
    EXPECT_EQ(placeWindow(CWindowAlignment::Bottom, low, 100, 200), (CIntRect{1500, 520, 1600, 720}));
    low.opener = {20, 500, 40, 520};
    EXPECT_EQ(placeWindow(CWindowAlignment::Left, low, 100, 200), (CIntRect{0, 500, 100, 700}));
}

TEST(CWindowPlace, WhereTheRightHasNoRoomThePopupStandsAtTheLeft) {
    CWindowSurroundings edge = around();
    edge.opener = {1500, 500, 1560, 520};
    EXPECT_EQ(placeWindow(CWindowAlignment::Right, edge, 40, 200), (CIntRect{1560, 500, 1600, 700}));
    EXPECT_EQ(placeWindow(CWindowAlignment::Right, edge, 100, 200), (CIntRect{1400, 500, 1500, 700}));
    edge.opener = {50, 500, 1560, 520};
    EXPECT_EQ(placeWindow(CWindowAlignment::Right, edge, 100, 200), (CIntRect{1500, 500, 1600, 700})) << "no room";
}

TEST(CWindowPlace, TheMonitorNeedNotBeginAtZero) {
    CWindowSurroundings second = around();
    second.monitor = {-1600, -200, 0, 800};
    second.opener = {-50, -190, -10, -150};
    EXPECT_EQ(placeWindow(CWindowAlignment::Bottom, second, 100, 40), (CIntRect{-100, -150, 0, -110}));
    second.openerWindow = {-1700, -300, -1500, -100};
    EXPECT_EQ(placeWindow(CWindowAlignment::Center, second, 100, 40), (CIntRect{-1600, -200, -1500, -160}));
}

TEST(CWindowPlace, ALargerWindowKeepsItsTopLeftCornerInTheMonitor) {
    EXPECT_EQ(placeWindow(CWindowAlignment::Center, around(), 2000, 1200), (CIntRect{0, 0, 2000, 1200}));
}

TEST(CWindowPlace, TheLowestYHoldsUnlessTheWindowWouldLeaveTheMonitor) {
    CWindowSurroundings limited = around();
    limited.isConstrained = true;
    limited.constrainY = 300;
    EXPECT_EQ(placeWindow(CWindowAlignment::Right, limited, 100, 40).top, 300);
    EXPECT_EQ(placeWindow(CWindowAlignment::Cursor, limited, 100, 40).top, 444);
    EXPECT_EQ(placeWindow(CWindowAlignment::Cursor, limited, 100, 900).top, 100);
}

TEST(CWindowPlace, ShiftsMoveThePlaceAndAPlaceThatIsGivenStaysInTheMonitor) {
    CWindowSurroundings shifted = around();
    shifted.shiftX = 5;
    shifted.shiftY = -7;
    EXPECT_EQ(placeWindow(CWindowAlignment::Bottom, shifted, 100, 40), (CIntRect{305, 213, 405, 253}));
    EXPECT_EQ(placeWindowAt(1590, -10, around(), 100, 40), (CIntRect{1500, 0, 1600, 40}));
}

TEST(CWindowPlace, WithoutAnOpenerTheMonitorCounts) {
    CWindowSurroundings alone;
    alone.monitor = {0, 0, 1600, 1000};
    EXPECT_EQ(placeWindow(CWindowAlignment::Center, alone, 100, 40), (CIntRect{750, 480, 850, 520}));
}

TEST(CDrawLoad, IsTheLargerOfTheMeanOfTwentyAndTheLargestOfFive) {
    CDrawLoad load;
    EXPECT_EQ(load.value(), 0.0);
    load.add(1000000);
    EXPECT_DOUBLE_EQ(load.value(), 50.0);
    for (int i = 0; i < 4; ++i)
        load.add(0);
    EXPECT_DOUBLE_EQ(load.value(), 50.0);
    load.add(0);
    EXPECT_DOUBLE_EQ(load.value(), 2.5);  // the mean alone
    for (int i = 0; i < 14; ++i)
        load.add(0);
    EXPECT_DOUBLE_EQ(load.value(), 2.5);
    load.add(0);
    EXPECT_DOUBLE_EQ(load.value(), 0.0);
    load.add(9000000);
    EXPECT_DOUBLE_EQ(load.value(), 100.0);
}

}  // namespace
}  // namespace tarv
