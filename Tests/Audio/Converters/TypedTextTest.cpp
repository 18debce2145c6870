#include <cmath>
#include <cstring>

#include "Tests/Audio/Parameters/ParamTree.h"

namespace tarv {
namespace {

class TypedText : public testing::Test {
protected:
    TypedText()
        : tree_({paramNode("gain", "gain", "-12.0", "12.0", "0"), paramNode("freq", "freq", "20.0", "21000.0", "64"),
                 paramNode("percent", "percent", "0", "100", "50"), paramNode("time", "time", "0", "5000", "750"),
                 paramNode("real", "real", "-5", "5", "0"), paramNode("enum-enable", "enum-enable", "0", "1", "0"),
                 paramNode("enum-gate", "enum-gate", "1", "2", "1")}) {}
    /// What a text gives in the unit that a person reads; "-" if it is refused.
    std::string read(const char* name, const char* text) const {
        double value = -1000.0;
        const CAudioParamConverter& converter = tree_.converter(name);
        if (!converter.typedToValue(tree_.info(name), 0, CString::fromUtf8(text, strlen(text)), value)) {
            EXPECT_EQ(value, -1000.0) << text;
            return "-";
        }
        char shown[32];
        snprintf(shown, sizeof shown, "%.6g", converter.valueToShown(value));
        return shown;
    }

    CParamTree tree_;
};

TEST_F(TypedText, IsReadWithOrWithoutSignBlanksAndUnit) {
    const struct {
        const char* name;
        const char* text;
        const char* value;
    } kTexts[] = {{"gain", "3", "3"},
                  {"gain", "+3", "3"},
                  {"gain", " 3 ", "3"},
                  {"gain", "+ 3", "3"},
                  {"gain", "-0,5 dB", "-0.5"},
                  {"gain", "-0.5dB", "-0.5"},
                  {"gain", "+1.5 DB", "1.5"},
                  {"gain",
                   "\t2\xc2\xa0"
                   "dB\t",
                   "2"},
                  {"gain", "40", "12"},
                  {"gain", "-40 db", "-12"},
                  {"freq", "1K", "1000"},
                  {"freq", "1k", "1000"},
                  {"freq", "1,5 kHz", "1500"},
                  {"freq", "+2 k", "2000"},
                  {"freq", "440 Hz", "440"},
                  {"freq", "0", "20"},
                  {"percent", "50 %", "50"},
                  {"percent", "+12,5%", "12.5"},
                  {"time", "250ms", "250"},
                  {"real", "+1.25", "1.25"},
                  {"real", "-1", "-1"}};
    for (const auto& row : kTexts) {
        EXPECT_EQ(read(row.name, row.text), row.value) << row.name << " '" << row.text << "'";
    }
}

TEST_F(TypedText, WhatCannotBeReadIsRefused) {
    for (const char* text :
         {"", " ", "+", "dB", "+dB", "+-3", "++3", "--3", "3 4", "3 dBdB", "3 Hz", "loud", "1e3", "k"}) {
        EXPECT_EQ(read("gain", text), "-") << "'" << text << "'";
    }
    EXPECT_EQ(read("freq", "1 000"), "-");
    EXPECT_EQ(read("real", "1 dB"), "-") << "no unit";
}

TEST_F(TypedText, OfAStateIsItsNameOrItsNumber) {
    EXPECT_EQ(read("enum-enable", "On"), "1");
    EXPECT_EQ(read("enum-enable", " off "), "0");
    EXPECT_EQ(read("enum-enable", "1"), "1");
    EXPECT_EQ(read("enum-enable", "maybe"), "-");
    EXPECT_EQ(read("enum-gate", "Cutoff A"), "2") << "the names begin at the minimum";
    EXPECT_EQ(read("enum-gate", "cuta"), "2");
    EXPECT_EQ(read("enum-gate", "Cutoff B"), "-") << "out of range";
}

TEST_F(TypedText, WhatIsShownIsReadAgain) {
    for (const double decibels : {-12.0, -0.1, 0.0, 7.3}) {
        const CAudioParamConverter& gain = tree_.converter("gain");
        CString text;
        gain.valueToText(text, tree_.info("gain"), 0, std::pow(10.0, decibels / 20.0), CAudioTextMode::Full);
        double value = 0.0;
        EXPECT_TRUE(gain.typedToValue(tree_.info("gain"), 0, text + " " + gain.label(), value));
        EXPECT_NEAR(gain.valueToShown(value), decibels, 1e-12);
    }
}

}  // namespace
}  // namespace tarv
