#include "UI/Controls/Lists/CNumberFormat.h"

#include <gtest/gtest.h>

namespace tarv {
namespace {

std::string text(const char* format, double value) {
    return CNumberFormat::text(format, value).toUtf8();
}

TEST(NumberFormat, HasTheDecimalsThatItSays) {
    EXPECT_EQ(text("%.0f", 6.5), "7");
    EXPECT_EQ(text("%.1f", -12.0), "-12.0");
    EXPECT_EQ(text("%f", 0.25), "0.250000");
    EXPECT_EQ(text("%g", 0.25), "0.25");
    EXPECT_EQ(text("%g", 1200.0), "1200");
    EXPECT_EQ(text("%i", 2.5), "3");
    EXPECT_EQ(text("%d", -2.5), "-3");
    EXPECT_EQ(text("%u", 7.0), "7");
}

TEST(NumberFormat, HasSignWidthAndTheTextAround) {
    EXPECT_EQ(text("%+.1f dB", 3.0), "+3.0 dB");
    EXPECT_EQ(text("%+.1f dB", -3.0), "-3.0 dB");
    EXPECT_EQ(text("%5.1f|", 3.0), "  3.0|");
    EXPECT_EQ(text("%05.1f", -3.0), "-03.0");
    EXPECT_EQ(text("CH %d", 4.0), "CH 4");
    EXPECT_EQ(text("%.0f%%", 50.0), "50%");
}

TEST(NumberFormat, AZeroHasNoSign) {
    EXPECT_EQ(text("%+.1f", -0.04), "0.0");
    EXPECT_EQ(text("%.0f", -0.0), "0");
}

TEST(NumberFormat, WhatIsNoNumberIsText) {
    EXPECT_EQ(text("", 1.0), "");
    EXPECT_EQ(text("a", 1.0), "a");
    EXPECT_EQ(text("%", 1.0), "%");
    EXPECT_EQ(text("%s %.1", 1.0), "%s %.1");
    EXPECT_EQ(text("%d %d", 1.0), "1 %d");
    EXPECT_EQ(text("%99999999999d", 1.0).size(), 32u) << "no width makes a text of any length";
}

TEST(NumberFormat, SaysWhetherAFormatIsOfOneNumber) {
    for (const char* format : {"%f", "%.1f", "%+04.2g dB", "%d%%", "%%%u", "a %i b"}) {
        EXPECT_TRUE(CNumberFormat::isOfOneNumber(format)) << format;
    }
    for (const char* format : {"", "a", "%", "%%", "%s", "%e", "%*f", "%f %f", "%f %", "%f %s"}) {
        EXPECT_FALSE(CNumberFormat::isOfOneNumber(format)) << format;
    }
}

}  // namespace
}  // namespace tarv
