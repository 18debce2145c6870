#include "CParameterText.h"

#include <gtest/gtest.h>

#include "CTestPlugin.h"

namespace tarv::host {
namespace {

class CParameterTextTest : public ::testing::TestWithParam<bool> {
protected:
    void SetUp() override {
        CTestPlugin::hasDisplayRequest = GetParam();
        ASSERT_TRUE(host.open(&CTestPlugin::entry));
    }
    CVstHost host;
    float value = -1.0f;
    std::string error;
};

TEST_P(CParameterTextTest, ANumberWithTheUnitGivesThePositionThatHasThatValue) {
    CParameterText texts(host);
    for (double db : {-12.0, -11.9, -3.0, -0.1, 0.0, 0.1, 3.0, 6.0, 11.9, 12.0}) {
        char text[32];
        std::snprintf(text, sizeof text, "%+.1fdB", db);
        ASSERT_TRUE(texts.find(0, text, value, error)) << text << ": " << error;
        // A step of the display is bounded by 32-bit positions: 2^-24 of 24 dB on either side.
        EXPECT_NEAR(value * 24.0 - 12.0, db, 3e-6) << text;
    }
}

TEST_P(CParameterTextTest, ANumberFinerThanTheDisplayIsInterpolated) {
    CParameterText texts(host);
    for (const char* text : {"3.14dB", "3.14 db", "+3,14DB"}) {
        ASSERT_TRUE(texts.find(0, text, value, error)) << error;
        EXPECT_NEAR(value * 24.0 - 12.0, 3.14, 3e-6) << text;
    }
}

TEST_P(CParameterTextTest, AWordGivesAPositionThatShowsIt) {
    CParameterText texts(host);
    const struct {
        const char* text;
        float value;
    } cases[] = {{"Auto", 0.0f}, {"1x", 0.25f}, {"2X", 0.5f}, {"4x", 0.75f}, {"8x", 1.0f}};
    for (const auto& c : cases) {
        ASSERT_TRUE(texts.find(1, c.text, value, error)) << c.text;
        // Within the scan's step of the middle.
        EXPECT_NEAR(value, c.value, 1.0 / 1024.0) << c.text;
    }
}

TEST_P(CParameterTextTest, APlainNumberIsThePositionItself) {
    CParameterText texts(host);
    ASSERT_TRUE(texts.find(0, "0.3", value, error));
    EXPECT_EQ(value, 0.3f);
}

TEST_P(CParameterTextTest, WhatTheParameterCannotBeFailsAndNothingIsSet) {
    CParameterText texts(host);
    const struct {
        int32_t index;
        const char* text;
        const char* error;
    } cases[] = {
        {0, "1.5", "'1.5' has no unit, so it must lie from 0 to 1"},
        {0, "-1", "'-1' has no unit, so it must lie from 0 to 1"},
        {0, "12.1dB", "12.1 lies outside -12 to 12"},
        {0, "3Hz", "'3Hz' is no value of this parameter, whose unit is dB"},
        {0, "loud", "'loud' is no value of this parameter, whose unit is dB"},
        {1, "16x", "'16x' is no value of this parameter, which reads 'Auto' to '8x'"},
        {1, "", "'' is no value of this parameter, which reads 'Auto' to '8x'"},
    };
    host.setParameter(0, 0.125f);
    for (const auto& c : cases) {
        EXPECT_FALSE(texts.find(c.index, c.text, value, error)) << c.text;
        EXPECT_EQ(error, c.error);
    }
    EXPECT_EQ(host.parameter(0), 0.125f);
}

TEST(CParameterTextRequest, WhereThePluginShowsAnyPositionNothingIsSetWhileSearching) {
    CTestPlugin::hasDisplayRequest = true;
    CVstHost host;
    ASSERT_TRUE(host.open(&CTestPlugin::entry));
    CParameterText texts(host);
    float value = 0.0f;
    std::string error;
    ASSERT_TRUE(texts.find(0, "+3dB", value, error));
    ASSERT_TRUE(texts.find(1, "8x", value, error));
    EXPECT_EQ(CTestPlugin::last->sets, 0);
}

INSTANTIATE_TEST_SUITE_P(WithAndWithoutRequest, CParameterTextTest, ::testing::Bool());

TEST(ParseNumber, TakesASignAFractionAThousandAndAUnit) {
    const struct {
        const char* text;
        bool isNumber;
        double number;
        const char* unit;
    } cases[] = {
        {"3", true, 3.0, ""},        {"+3.5dB", true, 3.5, "db"},  {"-0,25 dB", true, -0.25, "db"},
        {"1.50k", true, 1500.0, ""}, {"2kHz", true, 2000.0, "hz"}, {".5", true, 0.5, ""},
        {"50 %", true, 50.0, "%"},   {"", false, 0.0, ""},         {"-", false, 0.0, ""},
        {"Auto", false, 0.0, ""},    {"-inf", false, 0.0, ""},
    };
    for (const auto& c : cases) {
        double number = 0.0;
        std::string unit;
        EXPECT_EQ(parseNumber(c.text, number, unit), c.isNumber) << c.text;
        EXPECT_DOUBLE_EQ(number, c.number) << c.text;
        EXPECT_EQ(unit, c.unit) << c.text;
    }
}

}  // namespace
}  // namespace tarv::host
