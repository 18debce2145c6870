// Gestures that a person takes back: what the engine, the history and the host then hold, from the product's effect.

#include "Tests/System/GestureTest.h"

namespace tarv {
namespace {

class GestureTakenBack : public CGestureTest {};

TEST_F(GestureTakenBack, OneThatIsTakenBackIsToTheBitAsIfItHadNotBeen) {
    EXPECT_EQ(firstLine(y().setValue(1.3)), "");
    const double before = gain(0, 0);
    take();
    press(gesture_, 0);
    const double values[] = {6.0, 3.0};
    EXPECT_EQ(firstLine(gesture_.write(y(), values, 2, 0)), "");
    EXPECT_EQ(firstLine(gesture_.write(y(), 7.2, 0)), "");
    EXPECT_EQ(stepCount(), 2);
    take();
    EXPECT_EQ(firstLine(gesture_.takeBack()), "");
    EXPECT_EQ(take(), (CHeard{"automate 1 0.5542", "automate 2 0.5000", "end 1", "end 2"}));
    EXPECT_EQ(gain(0, 0), before);
    EXPECT_EQ(gain(0, 1), 0.0);
    EXPECT_EQ(stepCount(), 1);
    EXPECT_FALSE(gesture_.isActive());
    EXPECT_EQ(firstLine(gesture_.takeBack()), "");
    EXPECT_EQ(take(), CHeard());
    pumpEvents();
    EXPECT_NEAR(gesture_.value(y(), 0), 1.3, 1e-12);
}

TEST_F(GestureTakenBack, OneOfSeveralParametersIsTakenBackWhole) {
    EXPECT_EQ(firstLine(gesture_.begin(*y().bridge(), "Both")), "");
    EXPECT_EQ(firstLine(gesture_.write(y(), 6.0)), "");
    EXPECT_EQ(firstLine(gesture_.write(at<CUIParam>("ui.control.freq"), 100.0)), "");
    const double gainNow = gain(0, 0);
    EXPECT_EQ(firstLine(gesture_.takeBack()), "");
    EXPECT_NE(gain(0, 0), gainNow);
    EXPECT_EQ(gain(0, 0), 0.0);
    EXPECT_EQ(stepCount(), 0);
}

TEST_F(GestureTakenBack, OneThatTheHistoryHasCancelledIsNotTakenBack) {
    press(gesture_, 3);
    EXPECT_EQ(firstLine(gesture_.write(y(), 6.0, 3)), "");
    EXPECT_EQ(firstLine(client_->activateRomPreset(kRegistry, 4)), "");
    const double preset = gain(0, 3);
    EXPECT_EQ(firstLine(gesture_.takeBack()), "");
    EXPECT_EQ(gain(0, 3), preset);
}

}  // namespace
}  // namespace tarv
