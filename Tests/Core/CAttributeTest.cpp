#include "Core/CAttribute.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Core/CHeap.h"

namespace tarv {
namespace {

struct CConversion {
    const char* what;
    CAttributeValue value;
    bool asBool;
    double asReal;
    int32_t asInt;
    const char* asString;
    uint32_t maskAfterwards;
};

int pointee = 0;

const CConversion kConversions[] = {
    {"true", CAttributeValue::fromBool(true), true, 0.0, 1, "true", 1 | 4 | 8},
    {"false", CAttributeValue::fromBool(false), false, 0.0, 0, "false", 1 | 4 | 8},
    {"real", CAttributeValue::fromReal(2.5), false, 2.5, 3, "2.5000", 2 | 4 | 8},
    {"negative real", CAttributeValue::fromReal(-2.5), false, -2.5, -3, "-2.5000", 2 | 4 | 8},
    {"real beyond an integer", CAttributeValue::fromReal(4e9), false, 4e9, 0, "4000000000.0000", 2 | 8},
    {"integer", CAttributeValue::fromInt(-7), true, -7.0, -7, "-7", 1 | 2 | 4 | 8},
    {"integer zero", CAttributeValue::fromInt(0), false, 0.0, 0, "0", 1 | 2 | 4 | 8},
    {"text of a number", CAttributeValue::fromString("12"), false, 12.0, 12, "12", 2 | 4 | 8},
    {"text of a fraction", CAttributeValue::fromString("1,5"), false, 1.5, 0, "1,5", 2 | 8},
    {"text of a boolean", CAttributeValue::fromString("true"), true, 0.0, 0, "true", 1 | 8},
    {"text of one", CAttributeValue::fromString("1"), true, 1.0, 1, "1", 1 | 2 | 4 | 8},
    {"text", CAttributeValue::fromString("abc"), false, 0.0, 0, "abc", 8},
    {"empty text", CAttributeValue(), false, 0.0, 0, "", 2 | 8},
    {"pointer", CAttributeValue::fromPointer(&pointee), false, 0.0, 0, "", 16},
};

TEST(AttributeValue, ATextIsSetInTheMemoryOfTheFormerOne) {
    const CString text(std::string(100, 'x').c_str());
    CAttributeValue value = CAttributeValue::fromPlainString(text);
    const uint64_t before = CHeap::counters().allocations;
    value.setString(text);
    EXPECT_EQ(CHeap::counters().allocations, before);
    EXPECT_EQ(value.asString(), text);
    EXPECT_FALSE(value.isPlain());
    CAttributeValue number = CAttributeValue::fromInt(7);
    number.setString("12");
    EXPECT_EQ(number.type(), CAttributeType::String);
    EXPECT_EQ(number.asInt(), 12);
    value.setString(value.asString());
    EXPECT_EQ(value.asString(), text);
}

TEST(AttributeValue, ConvertsFromItsDeclaredTypeOnly) {
    for (const CConversion& c : kConversions) {
        CAttributeValue value = c.value;
        EXPECT_EQ(value.asBool(), c.asBool) << c.what;
        EXPECT_EQ(value.asInt(), c.asInt) << c.what;
        EXPECT_EQ(value.asString(), c.asString) << c.what;
        EXPECT_EQ(value.asReal(), c.asReal) << c.what;
    }
}

TEST(AttributeValue, MarksEachRepresentationThatAConversionMade) {
    for (const CConversion& c : kConversions) {
        CAttributeValue value = c.value;
        EXPECT_EQ(value.validMask() & ~c.maskAfterwards, 0u) << c.what;
        value.convertAll();
        EXPECT_EQ(value.validMask(), c.maskAfterwards) << c.what;
    }
}

TEST(AttributeValue, ARealIsNoBoolean) {
    CAttributeValue value = CAttributeValue::fromReal(1.0);
    EXPECT_FALSE(value.asBool());
    EXPECT_EQ(value.validMask(), 2u);
}

TEST(AttributeValue, AConversionThatFailsLeavesTheMaskAlone) {
    CAttributeValue value = CAttributeValue::fromString("1e3");
    EXPECT_EQ(value.asReal(), 0.0);
    EXPECT_EQ(value.asInt(), 0);
    EXPECT_FALSE(value.asBool());
    EXPECT_EQ(value.validMask(), 8u);
}

TEST(AttributeValue, RealsThatAreNoIntegersReadAsZero) {
    for (double real : {std::nan(""), std::numeric_limits<double>::infinity(), -3e9, 2147483647.5}) {
        CAttributeValue value = CAttributeValue::fromReal(real);
        EXPECT_EQ(value.asInt(), 0) << real;
        EXPECT_EQ(value.validMask(), 2u) << real;
    }
    EXPECT_EQ(CAttributeValue::fromReal(2147483647.0).asInt(), INT32_MAX);
    EXPECT_EQ(CAttributeValue::fromReal(-2147483648.0).asInt(), INT32_MIN);
}

TEST(AttributeValue, APointerReadsAsNothingElse) {
    CAttributeValue value = CAttributeValue::fromPointer(&pointee);
    EXPECT_EQ(value.asPointer(), &pointee);
    EXPECT_TRUE(value.asString().isEmpty());
    EXPECT_EQ(value.validMask(), 16u);
    EXPECT_EQ(CAttributeValue::fromString("x").asPointer(), nullptr);
}

}  // namespace
}  // namespace tarv
