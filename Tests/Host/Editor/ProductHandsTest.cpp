// Bars of the product under a hand that holds modifiers, and their menus, in windows of the system.

#include "Tests/Host/Editor/ProductWindow.h"

namespace tarv::host {
namespace {

constexpr int32_t kBands = 7;
constexpr int32_t kPixels = 48;

class ProductHands : public ProductWindow {
protected:
    /// By a drag of the first view's bar upwards, from a flat one.
    double dragged(int32_t band) {
        heard();
        drag(column("xeq1", band), 0, -kPixels);
        hold(false);
        const std::string number = std::to_string(band + 1);
        EXPECT_EQ(heardGestures(), "begin " + number + ", automate " + number + ", end " + number);
        expectSame("a drag");
        expectSameState();
        return twin->decibels("modBrindleXEQ.xeq-gains", 0, band);
    }
};

TEST_F(ProductHands, ShiftMakesADragFinerAndCtrlWithShiftFinerStill) {
    const double whole = dragged(0);
    hold(true);
    const double fine = dragged(1);
    hold(true, true);
    const double finest = dragged(2);
    EXPECT_GT(whole, 1.0);
    // The default of shift-key-precision.
    EXPECT_NEAR(fine, whole / 2.0, 1e-9);
    EXPECT_NEAR(finest, whole / 4.0, 1e-9);
}

TEST_F(ProductHands, ShiftInTheMiddleOfADragMakesNoJump) {
    point(column("xeq1", 3));
    press();
    moveBy(0, -kPixels);
    hold(true);
    moveBy(0, -kPixels);
    hold(false);
    moveBy(0, kPixels);
    release();
    EXPECT_EQ(heardGestures(), "begin 4, automate 4, end 4");
    expectSame("a drag that was fine for a while");
    expectSameState();
}

TEST_F(ProductHands, AltDrawsACurveOverAllBarsThatArePassed) {
    const CSpot first = column("xeq1", 0);
    const CSpot last = column("xeq1", kBands - 1);
    hold(false, false, true);
    point({first.path, first.x, 26});
    press();
    moveBy(last.x - first.x, -40);
    release();
    hold(false);
    expectSame("a curve drawn");
    expectSameState();
    double former = -100.0;
    for (int32_t band = 0; band < kBands; ++band) {
        const double value = twin->decibels("modBrindleXEQ.xeq-gains", 0, band);
        EXPECT_GT(value, former) << band;
        EXPECT_NE(shown(band + 1), "0.0") << band;
        former = value;
    }
    EXPECT_EQ(desk.heard(parent), "");
    click("c.buttons.history.button-undo");
    for (int32_t band = 0; band < kBands; ++band) {
        EXPECT_TRUE(becomes(band + 1, "0.0")) << "one step, " << band;
    }
}

TEST_F(ProductHands, CtrlAndAPressResetABar) {
    wheel(column("xeq2", 5), 6);
    EXPECT_TRUE(becomes(14, "3.0")) << shown(14);
    hold(false, true);
    click(column("xeq2", 5));
    hold(false);
    EXPECT_TRUE(becomes(14, "0.0")) << shown(14);
    expectSame("reset");
    expectSameState();
}

TEST_F(ProductHands, ShiftMakesTheWheelFiner) {
    hold(true);
    wheel(column("xeq1", 2), 2);
    hold(false);
    EXPECT_TRUE(becomes(3, "0.5")) << shown(3);
    expectSame("turned");
    expectSameState();
}

TEST_F(ProductHands, EachRowOfABarsMenuActs) {
    wheel(column("xeq1", 1), 4);
    wheel(column("xeq1", 4), -4);
    click(column("xeq1", 1), true);
    expectSame("the menu is open");
    choose(0);
    type("3.5");
    strike('\r');
    EXPECT_TRUE(becomes(2, "3.5")) << shown(2);
    click(column("xeq1", 1), true);
    choose(3);
    EXPECT_TRUE(becomes(10, "3.5")) << "copied to group 2: " << shown(10);
    EXPECT_TRUE(becomes(13, "-2.0"));
    click(column("xeq1", 4), true);
    choose(1);
    EXPECT_TRUE(becomes(5, "0.0"));
    EXPECT_EQ(shown(2), "3.5");
    expectSame("one bar reset");
    click(column("xeq1", 4), true);
    choose(2);
    EXPECT_TRUE(becomes(2, "0.0"));
    EXPECT_EQ(shown(10), "3.5") << "the other group stays";
    expectSame("all bars reset");
    expectSameState();
    click(column("xeq1", 4), true);
    expectSame("the menu is open again");
    strike('\x1b');
    expectSame("the menu is closed");
    EXPECT_EQ(desk.heard(parent), "");
}

TEST_F(ProductHands, TheMenuOfAnOutputGainTypesAndResets) {
    const char* surface = "c.xeq2.cs-gain.control-surface";
    click(surface, true);
    expectSame("the menu is open");
    choose(0);
    type("-2.5");
    strike('\r');
    EXPECT_TRUE(becomes(16, "-2.5")) << shown(16);
    click(surface, true);
    choose(1);
    EXPECT_TRUE(becomes(16, "0.0")) << shown(16);
    expectSame("the output gain reset");
    expectSameState();
}

}  // namespace
}  // namespace tarv::host
