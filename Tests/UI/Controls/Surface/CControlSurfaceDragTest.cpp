// What hands do with bars, by way of a real engine.

#include "Core/CGlobalSettings.h"
#include "Tests/UI/Controls/Surface/SurfaceTree.h"

namespace tarv {
namespace {

// Pixels of one dB: 200 for 24.
constexpr double kPixels = 200.0 / 24.0;
// An engine keeps gains as factors: their logarithm comes back within rounding.
constexpr double kRounding = 1e-9;

class SurfaceDrag : public CSurfaceTest {
protected:
    SurfaceDrag() { open(bands()); }
    void press(int32_t band, double value = 0.0) {
        moveTo(band, value);
        input().press();
    }
    void release() {
        input().release();
        advance();
    }
};

TEST_F(SurfaceDrag, ABarShowsWhatTheEngineHas) {
    EXPECT_EQ(sliders().count(), 7);
    setGain(3, 6.0);
    EXPECT_NEAR(bar(3), 6.0, kRounding);
    EXPECT_EQ(bar(2), 0.0);
    setGain(3, -4.5, 1);
    EXPECT_NEAR(bar(3), 6.0, kRounding) << "of another channel group";
    EXPECT_NEAR(group("surface.underlays").barValue(3), -4.5, kRounding);
}

TEST_F(SurfaceDrag, APressDoesNotJumpAndTheBarFollowsOneToOne) {
    setGain(2, 3.0);
    press(2, -7.0);
    advance();
    EXPECT_NEAR(bar(2), 3.0, kRounding);
    moveBy(0, 25);
    EXPECT_NEAR(bar(2), 6.0, kRounding);
    moveBy(40, -50);
    EXPECT_NEAR(bar(2), 0.0, kRounding) << "also over another column";
    release();
    EXPECT_NEAR(gain(2), 0.0, kRounding);
    EXPECT_EQ(gain(3), 0.0);
}

TEST_F(SurfaceDrag, BackAtItsStartABarHasItsValueToTheBit) {
    setGain(1, 1.234567);
    const double start = bar(1);
    press(1);
    for (const int32_t up : {13, -7, 29, -90, 55}) {
        moveBy(3, up);
    }
    EXPECT_EQ(bar(1), start);
    release();
    EXPECT_NEAR(gain(1), start, kRounding);
}

TEST_F(SurfaceDrag, BeyondTheEndItStaysThereUntilThePointerIsBack) {
    press(0);
    moveBy(0, 160);
    EXPECT_EQ(bar(0), 12.0);
    moveBy(0, -50);
    EXPECT_EQ(bar(0), 12.0);
    moveBy(0, -60);
    EXPECT_NEAR(bar(0), 50.0 / kPixels, kRounding);
    release();
}

TEST_F(SurfaceDrag, ShiftIsFinerAndWithCtrlFinerStillWithoutAJump) {
    const double finer = globalSettings().shiftKeyPrecision;
    press(4);
    moveBy(0, 10);
    keys(true, false, false);
    moveBy(0, 0);
    EXPECT_NEAR(bar(4), 10 / kPixels, kRounding);
    moveBy(0, 10);
    EXPECT_NEAR(bar(4), (10 + 10 * finer) / kPixels, kRounding);
    keys(true, true, false);
    moveBy(0, 0);
    moveBy(0, 10);
    EXPECT_NEAR(bar(4), (10 + 10 * finer + 10 * finer * finer) / kPixels, kRounding);
    keys(false, false, false);
    moveBy(0, 10);
    EXPECT_NEAR(bar(4), (20 + 10 * finer + 10 * finer * finer) / kPixels, kRounding);
    release();
}

TEST_F(SurfaceDrag, MovesWaitForTheTimerAndLeaveAsOneChange) {
    press(3);
    advance(0.1);
    moveBy(0, 10);
    moveBy(0, 15);
    EXPECT_EQ(gain(3), 0.0);
    EXPECT_NEAR(bar(3), 3.0, kRounding);
    advance();
    EXPECT_NEAR(gain(3), 3.0, kRounding);
    moveBy(0, 25);
    release();
    EXPECT_NEAR(gain(3), 6.0, kRounding) << "a release sends what waits";
}

TEST_F(SurfaceDrag, ADragIsOneStepOfTheHistory) {
    const size_t before = steps().size();
    press(3);
    for (int i = 0; i < 5; ++i) {
        moveBy(0, 10);
        advance();
    }
    release();
    EXPECT_EQ(steps().size(), before + 1);
    press(3);
    moveBy(0, 4);
    release();
    EXPECT_EQ(steps().size(), before + 2);
    press(5);
    release();
    EXPECT_EQ(steps().size(), before + 2) << "a press alone is none";
}

TEST_F(SurfaceDrag, DoubleClickAndCtrlClickReset) {
    setGain(2, 5.0);
    setGain(3, 5.0);
    moveTo(2, 1.0);
    input().click();
    input().click();
    advance();
    EXPECT_EQ(gain(2), 0.0);
    EXPECT_EQ(bar(2), 0.0);
    advance(1.0);
    keys(false, true, false);
    press(3, 1.0);
    moveBy(0, 30);
    release();
    EXPECT_EQ(gain(3), 0.0) << "and nothing is dragged";
}

TEST_F(SurfaceDrag, AltPaintsEachBarThatIsPassedBetweenTwoMovesToo) {
    const size_t before = steps().size();
    keys(false, false, true);
    press(1, 6.0);
    EXPECT_NEAR(bar(1), 6.0, kRounding);
    moveTo(5, -6.0);
    for (int band = 2; band <= 5; ++band) {
        EXPECT_NEAR(bar(band), 6.0 - 3.0 * (band - 1), 1.01 / kPixels) << band;
    }
    EXPECT_NEAR(bar(1), 6.0, kRounding);
    EXPECT_EQ(bar(6), 0.0);
    EXPECT_EQ(surface().hoveredPoint(), 5);
    moveToPixel(300, 30);
    EXPECT_EQ(bar(6), 12.0) << "beyond the surface the last one";
    release();
    EXPECT_NEAR(gain(1), 6.0, kRounding);
    EXPECT_NEAR(gain(5), bar(5), kRounding);
    EXPECT_EQ(steps().size(), before + 1);
}

TEST_F(SurfaceDrag, ACaptureThatIsTakenAwayLeavesTheValueAsShown) {
    press(3);
    moveBy(0, 25);
    editor.system().desktop().takeCapture();
    advance();
    EXPECT_NEAR(gain(3), 3.0, kRounding);
    EXPECT_FALSE(surface().gesture().isActive());
    EXPECT_EQ(surface().hoveredPoint(), -1) << "hover starts anew";
    moveBy(0, 25);
    advance();
    EXPECT_NEAR(bar(3), 3.0, kRounding);
    EXPECT_EQ(surface().hoveredPoint(), 3);
    input().release();
}

TEST_F(SurfaceDrag, AnotherGroupAndAnotherCountEndIt) {
    setGain(3, -5.0, 2);
    press(3);
    moveBy(0, 25);
    advance();
    set("edit", "group-index", "2");
    EXPECT_NEAR(bar(3), -5.0, kRounding);
    moveBy(0, 25);
    advance();
    EXPECT_NEAR(gain(3, 2), -5.0, kRounding) << "the rest of the press does nothing";
    EXPECT_NEAR(gain(3, 0), 3.0, kRounding);
    release();
    set("edit", "group-index", "0");
    advance(1.0);
    press(3);
    moveBy(0, 25);
    advance();
    EXPECT_TRUE(editor.instance()->set(kCount, 0, 0, 5.0));
    advance();
    EXPECT_EQ(sliders().count(), 5);
    EXPECT_FALSE(surface().isDragging());
    moveBy(0, 25);
    EXPECT_NEAR(bar(3), 6.0, kRounding) << gain(3);
    release();
}

TEST_F(SurfaceDrag, WhileItIsHeldAutomationDoesNotMoveIt) {
    press(3);
    moveBy(0, 25);
    advance();
    setGain(3, -9.0);
    EXPECT_NEAR(bar(3), 3.0, kRounding);
    setGain(4, -2.0);
    EXPECT_NEAR(bar(4), -2.0, kRounding) << "its neighbours follow";
    release();
    advance();
    EXPECT_NEAR(bar(3), gain(3), kRounding) << "what the host has stands afterwards";
}

TEST_F(SurfaceDrag, AnUndoDuringADragEndsItAndTheOldValueStands) {
    press(3);
    moveBy(0, 25);
    advance();
    EXPECT_EQ(consumed(at<CAudioInterfaceClient>("ui.interface-client").undo()), "");
    advance();
    EXPECT_EQ(gain(3), 0.0);
    EXPECT_EQ(bar(3), 0.0);
    moveBy(0, 25);
    advance();
    EXPECT_EQ(gain(3), 0.0);
    release();
}

TEST_F(SurfaceDrag, AnotherRangeEndsItWithoutAJump) {
    press(3);
    moveBy(0, 25);
    advance();
    set("range", "max", "24");
    moveBy(0, 25);
    advance();
    EXPECT_NEAR(bar(3), 3.0, kRounding);
    EXPECT_NEAR(gain(3), 3.0, kRounding);
    EXPECT_FALSE(surface().isDragging());
    release();
    advance(1.0);
    press(3);
    moveBy(0, 50);
    EXPECT_NEAR(bar(3), 3.0 + 50 * 36.0 / 200.0, kRounding) << "the next press goes by the new one";
    release();
}

TEST_F(SurfaceDrag, AGroupThatIsTakenFromTheHandEndsIt) {
    for (const char* attribute : {"is-editable", "is-visible"}) {
        press(3);
        moveBy(0, 25);
        advance();
        const double shownThen = bar(3);
        set("main-window.surface.sliders", attribute, "false");
        moveBy(0, 25);
        advance();
        EXPECT_NEAR(bar(3), shownThen, kRounding) << attribute;
        release();
        set("main-window.surface.sliders", attribute, "true");
        advance(1.0);
    }
    press(3);
    moveBy(0, 25);
    set("main-window.surface", "is-slider-mode", "false");
    moveBy(0, 25);
    EXPECT_FALSE(surface().isDragging());
    release();
}

}  // namespace
}  // namespace tarv
