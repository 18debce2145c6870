#include "UI/Binding/CMinMax.h"

#include <cmath>

#include "Tests/UI/Binding/BindingTree.h"

namespace tarv {
namespace {

class MinMax : public CBindingTest {
protected:
    MinMax() : CBindingTest({{"ui:min-max", &createObject<CMinMax>, &CMinMax::initClass}}) {}

    CMinMax& openAxis(CTexts attributes, std::vector<CTestNode> params = {}) {
        EXPECT_EQ(tryOpen({{"ui:min-max", "axis", std::move(attributes), std::move(params)}}), "");
        return at<CMinMax>("axis");
    }
};

TEST_F(MinMax, ALinearAxisDividesItsRangeEvenly) {
    const CMinMax& axis = openAxis({{"min", "-12"}, {"max", "12"}, {"is-log", "false"}, {"scale-power", "1.0"}});
    for (int quarter = 0; quarter <= 8; ++quarter) {
        const double value = -12.0 + 3.0 * quarter;
        EXPECT_EQ(axis.position(value), quarter / 8.0);
        EXPECT_EQ(axis.value(quarter / 8.0), value);
    }
    EXPECT_EQ(axis.lowest(), -12.0);
    EXPECT_EQ(axis.highest(), 12.0);
    EXPECT_FALSE(axis.isLog());
}

TEST_F(MinMax, ALogarithmicAxisDividesRatiosEvenly) {
    const CMinMax& axis = openAxis({{"min", "20"}, {"max", "20480"}, {"is-log", "true"}});
    for (int octave = 0; octave <= 10; ++octave) {
        const double hertz = 20.0 * std::exp2(octave);
        EXPECT_NEAR(axis.position(hertz), octave / 10.0, 1e-14);
        EXPECT_NEAR(axis.value(octave / 10.0) / hertz, 1.0, 1e-14);
    }
    EXPECT_EQ(axis.value(0.0), 20.0);
    EXPECT_EQ(axis.value(1.0), 20480.0);
    EXPECT_EQ(axis.position(0.0), -1.0) << "no logarithm: one length below";
    EXPECT_EQ(axis.position(-5.0), -1.0);
}

TEST_F(MinMax, ALogarithmicAxisThatReachesZeroIsLinear) {
    const CMinMax& axis = openAxis({{"min", "0"}, {"max", "100"}, {"is-log", "true"}});
    EXPECT_FALSE(axis.isLog());
    EXPECT_EQ(axis.position(25.0), 0.25);
}

TEST_F(MinMax, APowerStretchesTheMiddleAndTheValueComesBack) {
    const CMinMax& axis = openAxis({{"min", "-12"}, {"max", "12"}, {"scale-power", "2"}});
    // u = 3 / 12 = 1/4 stands at sqrt(1/4) = 1/2 of the upper half.
    EXPECT_EQ(axis.position(3.0), 0.75);
    EXPECT_EQ(axis.position(-3.0), 0.25);
    EXPECT_EQ(axis.position(0.0), 0.5);
    EXPECT_EQ(axis.value(0.75), 3.0);
    for (double value = -12.0; value <= 12.0; value += 0.37) {
        EXPECT_NEAR(axis.value(axis.position(value)), value, 1e-12);
    }
    for (const char* wrong : {"0", "-1", "", "nan", "inf"}) {
        set(at<CMinMax>("axis"), "scale-power", wrong);
        EXPECT_EQ(axis.position(3.0), 0.625) << wrong;
    }
}

TEST_F(MinMax, APowerBendsALogarithmicAxisAboutItsMiddle) {
    const CMinMax& axis = openAxis({{"min", "1"}, {"max", "256"}, {"is-log", "true"}, {"scale-power", "2"}});
    // 32 = 2^5 is u = 1/4 above the middle 2^4.
    EXPECT_NEAR(axis.position(32.0), 0.75, 1e-14);
    EXPECT_NEAR(axis.value(0.25), 8.0, 1e-13);
}

TEST_F(MinMax, AValueMayStandOneLengthBeyondTheBounds) {
    const CMinMax& axis = openAxis({{"min", "0"}, {"max", "10"}});
    EXPECT_EQ(axis.position(15.0), 1.5);
    EXPECT_EQ(axis.value(1.5), 15.0);
    EXPECT_EQ(axis.position(-5.0), -0.5);
    EXPECT_EQ(axis.position(1e9), 2.0);
    EXPECT_EQ(axis.position(-1e9), -1.0);
    EXPECT_EQ(axis.position(NAN), 0.5);
    EXPECT_EQ(axis.clamp(15.0), 10.0);
    EXPECT_EQ(axis.clamp(-1.0), 0.0);
    EXPECT_EQ(axis.clamp(4.0), 4.0);
}

TEST_F(MinMax, AMinAboveTheMaxTurnsTheAxisAround) {
    const CMinMax& axis = openAxis({{"min", "10"}, {"max", "0"}});
    EXPECT_EQ(axis.position(10.0), 0.0);
    EXPECT_EQ(axis.position(2.5), 0.75);
    EXPECT_EQ(axis.value(0.75), 2.5);
    EXPECT_EQ(axis.lowest(), 0.0);
    EXPECT_EQ(axis.clamp(11.0), 10.0);
}

TEST_F(MinMax, ARangeWithoutALengthHasAllValuesAtItsStart) {
    const CMinMax& axis = openAxis({});
    EXPECT_TRUE(axis.isEmpty());
    EXPECT_EQ(axis.position(3.0), 0.0);
    EXPECT_EQ(axis.value(0.5), 0.0);
    set(at<CMinMax>("axis"), "min", "nan");
    EXPECT_EQ(axis.value(0.5), 0.0);
}

TEST_F(MinMax, SendsWhenTheMappingBecomesAnotherOne) {
    CMinMax& axis = openAxis({{"min", "-12"}, {"max", "12"}});
    events().listenObject("ui.axis", "min-max-update", "take");
    const std::pair<const char*, const char*> changes[] = {
        {"min", "-6"}, {"max", "24"}, {"scale-power", "2.0"}, {"min", "1"}, {"is-log", "true"}};
    size_t count = 0;
    for (const auto& [name, text] : changes) {
        set(axis, name, text);
        EXPECT_EQ(events().names.size(), ++count) << name;
        set(axis, name, text);
        EXPECT_EQ(events().names.size(), count) << name << " again";
    }
    set(axis, "hint", "a range");
    EXPECT_EQ(events().names.size(), count);
}

TEST_F(MinMax, ItsBoundsFollowParametersInTheUnitsThatAPersonReads) {
    CMinMax& axis = openAxis({{"min", "-12"}, {"max", "12"}},
                             {uiParam("ui-param-min", {{"bridge", "ui.gains-bridge"}}),
                              uiParam("ui-param-max", {{"bridge", "ui.gains-bridge"}, {"element", "1"}})});
    EXPECT_EQ(axis.first(), -12.0) << "no values have come";
    events().listenObject("ui.axis", "min-max-update", "take");
    sendWhole("gains", {{0.5, 2.0}});
    EXPECT_NEAR(axis.first(), 20.0 * std::log10(0.5), 1e-12);
    EXPECT_NEAR(axis.last(), 20.0 * std::log10(2.0), 1e-12);
    EXPECT_NEAR(axis.getAttrReal("max"), axis.last(), 1e-12);
    EXPECT_EQ(events().names.size(), 2u);
    sendPart("gains", 0, 1, {4.0}, 2);
    EXPECT_NEAR(axis.last(), 20.0 * std::log10(4.0), 1e-12);
    EXPECT_EQ(events().names.size(), 3u);
    client_->engineGone();
    EXPECT_NEAR(axis.last(), 20.0 * std::log10(4.0), 1e-12) << "as it was";
}

}  // namespace
}  // namespace tarv
