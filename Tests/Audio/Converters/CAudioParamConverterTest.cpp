#include "Audio/Parameters/CAudioParamConverter.h"

#include <cmath>

#include "Tests/Audio/Parameters/ParamTree.h"

namespace tarv {
namespace {

constexpr double kDb = 8.685889638065037;  // 20 / ln 10

/// One parameter for each map, with the limits that the product's parameters have.
std::vector<CTestNode> definitions() {
    return {paramNode("gain", "gain", "-12.0", "12.0", "0"),
            paramNode("freq", "freq", "20.0", "21000.0", "64"),
            paramNode("bw", "bw", "0.01", "7.0", "1.5"),
            paramNode("time", "time", "0", "5000", "750"),
            paramNode("timelog", "timelog", "1", "1000", "2"),
            paramNode("time-exact", "time-exact", "0", "5000", "750"),
            paramNode("time-sec", "time-sec", "0", "10", "1"),
            paramNode("percent", "percent", "0", "100", "50"),
            paramNode("ratio", "ratio", "50:1", "1:1", "1.05:1"),
            paramNode("ratio2", "ratio2", "50:1", "1:50", "2:1"),
            paramNode("real", "real", "-5", "5", "0"),
            paramNode("phase", "phase", "-180", "180", "0"),
            paramNode("enum", "enum", "0", "5", "0"),
            paramNode("enum-gate", "enum-gate", "1", "4", "1"),
            paramNode("enum-enable", "enum-enable", "0", "1", "0"),
            paramNode("text", "text", "", "", "L,R", {{"data-type", "string"}})};
}

class Converter : public testing::Test {
protected:
    Converter() : tree_(definitions()) {}
    double value(const char* name, const char* text, bool* ok = nullptr) const {
        return tree_.converter(name).textToValue(tree_.info(name), 0, text, ok);
    }
    std::string text(const char* name, double value, CAudioTextMode mode = CAudioTextMode::Full) const {
        CString result;
        tree_.converter(name).valueToText(result, tree_.info(name), 0, value, mode);
        return result.toUtf8();
    }
    double toValue(const char* name, double norm) const {
        return tree_.converter(name).normToValue(tree_.info(name), 0, norm);
    }
    double toNorm(const char* name, double value) const {
        return tree_.converter(name).valueToNorm(tree_.info(name), 0, value);
    }

    CParamTree tree_;
};

struct CMap {
    const char* name;
    double (*formula)(double norm);
};

// The maps as they are written down, over the limits above.
const CMap kMaps[] = {
    {"gain", [](double n) { return std::pow(10.0, (-12.0 + 24.0 * n) / 20.0); }},
    {"freq", [](double n) { return 20.0 * std::pow(21000.0 / 20.0, n); }},
    {"bw", [](double n) { return 0.01 + n * n * 6.99; }},
    {"time", [](double n) { return n * n * 5.0; }},
    {"timelog", [](double n) { return 0.001 * std::pow(1000.0, n); }},
    {"time-exact", [](double n) { return n * 5.0; }},
    {"time-sec", [](double n) { return n * n * 10.0; }},
    {"percent", [](double n) { return n; }},
    {"ratio", [](double n) { return std::tan(std::atan(0.02) + n * (std::atan(0.999) - std::atan(0.02))); }},
    {"real", [](double n) { return -5.0 + 10.0 * n; }},
    {"phase", [](double n) { return -180.0 + 360.0 * n; }},
    {"text", [](double n) { return n * 8388608.0; }},
};

TEST_F(Converter, MapsFollowTheirFormulasAndInvertThem) {
    for (const CMap& map : kMaps)
        for (double norm : {0.0, 0.001, 0.25, 0.5, 0.77, 1.0}) {
            const double expected = map.formula(norm);
            // A few roundings of exp, log and tan; relative, but for the zeros of a linear map.
            EXPECT_NEAR(toValue(map.name, norm), expected, 1e-12 * std::fmax(1e-3, std::fabs(expected)))
                << map.name << ' ' << norm;
            EXPECT_NEAR(toNorm(map.name, toValue(map.name, norm)), norm, 1e-12) << map.name << ' ' << norm;
        }
}

TEST_F(Converter, LogarithmsThatAreKeptChangeNoBit) {
    for (const char* name : {"gain", "freq", "timelog"}) {
        const double minimum = tree_.info(name).minimum(0);
        const double maximum = tree_.info(name).maximum(0);
        for (int32_t i = 0; i <= 1000; ++i) {
            const double norm = i / 1000.0;
            EXPECT_EQ(toValue(name, norm), std::exp(std::log(minimum) + norm * std::log(maximum / minimum))) << name;
        }
    }
}

TEST_F(Converter, ReferenceNumbersOfTheMaps) {
    EXPECT_NEAR(toValue("gain", 0.5), 1.0, 1e-12);
    EXPECT_NEAR(toValue("gain", 1.0), 3.9810717055349725, 1e-12 * 3.98);
    EXPECT_NEAR(toValue("freq", 0.5), 648.0740698407860, 1e-12 * 648.0);  // sqrt(20 * 21000)
    EXPECT_NEAR(toNorm("bw", 1.5), 0.4616943355875084, 1e-12 * 0.46);     // sqrt(1.49 / 6.99)
    EXPECT_NEAR(toNorm("time", 0.75), 0.3872983346207417, 1e-12 * 0.39);  // sqrt(0.15)
}

TEST_F(Converter, AnEnumRoundsHalfAwayFromZeroAndMapsBackLinearly) {
    EXPECT_EQ(toValue("enum", 0.5), 3.0);
    EXPECT_EQ(toValue("enum", 0.49), 2.0);
    EXPECT_EQ(toValue("enum", 1.0), 5.0);
    EXPECT_EQ(toNorm("enum", 3.0), 0.6);
    EXPECT_EQ(toValue("enum-gate", 0.5), 3.0);  // 2.5
}

TEST_F(Converter, LogarithmicWinsOverExact) {
    EXPECT_NEAR(toValue("timelog", 0.5), std::sqrt(0.001), 1e-15);
}

struct CParsed {
    const char* name;
    const char* text;
    double value;
    bool ok = true;
};

TEST_F(Converter, TypedTextsGiveClampedValues) {
    const CParsed kTexts[] = {
        {"gain", "1.5", std::exp(1.5 / kDb)},
        {"gain", "1,5", std::exp(1.5 / kDb)},
        {"gain", "-", 1.0},
        {"gain", "", 1.0},
        {"gain", "100", std::exp(12.0 / kDb)},
        {"gain", "-100", std::exp(-12.0 / kDb)},
        {"gain", "1e1", std::exp(-12.0 / kDb), false},
        {"gain", " 1", std::exp(-12.0 / kDb), false},
        {"gain", "--1", std::exp(-12.0 / kDb), false},
        {"freq", "1.5k", 1500.0},
        {"freq", "1,5K", 1500.0},
        {"freq", "440", 440.0},
        {"freq", "1", 20.0},
        {"freq", "30k", 21000.0},
        {"freq", "1.5kk", 20.0, false},
        {"freq", "1.5 k", 20.0, false},
        {"bw", "0.5", 0.5},
        {"bw", "9", 7.0},
        {"bw", "x", 0.01, false},
        {"time", "250", 0.25},
        {"time", "6000", 5.0},
        {"time", "-1", 0.0},
        {"time", "1s", 0.0, false},
        {"time-sec", "2.5", 2.5},
        {"percent", "12.5", 0.125},
        {"percent", "200", 1.0},
        {"ratio", "2:1", 0.5},
        {"ratio", "2", 0.5},
        {"ratio", "1.05:1", 1.0 / 1.05},
        {"ratio", "1:1", 0.999},
        {"ratio", "1.0005", 0.999},
        {"ratio", "200:1", 0.02},
        {"ratio", "3:2", 2.0 / 3.0},
        {"ratio", "1:2:3", 0.02, false},
        {"ratio", "0:1", 0.02, false},
        {"ratio", "", 0.02, false},
        {"ratio", "a:1", 0.02, false},
        {"ratio2", "1:4", 4.0},
        {"ratio2", "1:1", 0.999},
        {"real", "-.5", -0.5},
        {"real", "9", 5.0},
        {"real", "1-", -5.0, false},
        {"enum", "3", 3.0},
        {"enum", "0x0A", 5.0},
        {"enum", "Off", 0.0, false},
        {"enum-gate", "Fall", 1.0, false},
        {"text", "anything", 0.0},
    };
    for (const CParsed& c : kTexts) {
        bool ok = !c.ok;
        EXPECT_DOUBLE_EQ(value(c.name, c.text, &ok), c.value) << c.name << " '" << c.text << '\'';
        EXPECT_EQ(ok, c.ok) << c.name << " '" << c.text << '\'';
        EXPECT_DOUBLE_EQ(value(c.name, c.text), c.value);  // ok may be null
    }
}

TEST_F(Converter, LimitsAreReadWithoutAClampAndFailToTheDefaultOfTheirClass) {
    const CParsed kLimits[] = {
        {"gain", "48", std::exp(48.0 / kDb)},
        {"gain", "x", 1.0, false},
        {"freq", "30k", 30000.0},
        {"freq", "x", 0.0, false},
        {"bw", "12", 12.0},
        {"bw", "x", 0.001, false},
        {"time", "9000", 9.0},
        {"time", "x", 0.0, false},
        {"percent", "300", 3.0},
        {"percent", "x", 0.0, false},
        {"ratio", "100:1", 0.01},
        {"ratio", "x", 0.5, false},
        {"real", "77", 77.0},
        {"real", "x", 0.0, false},
        {"enum", "0x0A", 10.0},
        {"enum", "010", 8.0},
        {"enum", "#ff", 255.0},
        {"enum", "-$10", -16.0},
        {"enum", "0", 0.0},
        {"enum", "0x", 0.0, false},
        {"enum", "09", 0.0, false},
        {"text", "x", 0.0},
    };
    for (const CParsed& c : kLimits) {
        bool ok = !c.ok;
        EXPECT_DOUBLE_EQ(tree_.converter(c.name).textToLimit(tree_.info(c.name), 0, c.text, &ok), c.value)
            << c.name << ' ' << c.text;
        EXPECT_EQ(ok, c.ok) << c.name << ' ' << c.text;
    }
}

struct CShownText {
    const char* name;
    double value;
    const char* full;
    const char* narrow;
};

TEST_F(Converter, ValuesAreShownByTheirRules) {
    const CShownText kTexts[] = {
        {"gain", 1.0, "0.0", "0"},
        {"gain", std::exp(-3.25 / kDb), "-3.3", "-3"},
        {"gain", std::exp(12.0 / kDb), "12.0", "12"},
        {"freq", 64.0, "64.0", "64"},
        {"freq", 99.94, "99.9", "100"},
        {"freq", 99.96, "100", "100"},
        {"freq", 440.4, "440", "440"},
        {"freq", 999.94, "1.00k", "1000"},
        {"freq", 999.96, "1.00k", "1.0k"},
        {"freq", 1500.0, "1.50k", "1.5k"},
        {"freq", 9994.0, "9.99k", "10.0k"},
        {"freq", 9996.0, "10.0k", "10.0k"},
        {"freq", 12000.0, "12.0k", "12k"},
        {"bw", 1.5, "1.50", "1.50"},
        {"time", 0.005, "5.00", "5.0"},
        {"time", 0.05, "50.0", "50"},
        {"time", 0.25, "250", "0.3*"},
        {"time", 2.0, "2000", "2.0*"},
        {"time-exact", 0.005, "5.000", "5.0"},
        {"time-exact", 0.25, "250.000", "0.3*"},
        {"time-sec", 2.5, "2.50", "2.5"},
        {"time-sec", 250.0, "250", "0.3*"},
        {"percent", 0.125, "12.5", "13"},
        {"ratio", 0.5, "2.0:1", "2.0:1"},
        {"ratio", 0.999, "1.0:1", "1.0:1"},
        {"ratio", 0.02, "50:1", "50:1"},
        {"ratio2", 0.3, "3.33:1", "3.3:1"},
        {"ratio2", 0.02, "50.0:1", "50:1"},
        {"ratio2", 4.0, "1:4.00", "1:4.0"},
        {"ratio2", 40.0, "1:40.0", "1:40"},
        {"real", 1.256, "1.26", "1"},
        {"phase", -90.0, "-90.0", "-90"},
        {"enum", 1.0, "Reserve", "Reserve"},
        {"enum-enable", 1.0, "On", "On"},
        {"enum-enable", 2.0, "Reserve", "Reserve"},
        {"enum-enable", -1.0, "Reserve", "Reserve"},
        {"enum-gate", 1.0, "Fall", "Fall"},
        {"enum-gate", 2.0, "Cutoff A", "Cutoff A"},
        {"enum-gate", 4.0, "Reserve", "Reserve"},
    };
    for (const CShownText& c : kTexts) {
        EXPECT_EQ(text(c.name, c.value), c.full) << c.name << ' ' << c.value;
        EXPECT_EQ(text(c.name, c.value, CAudioTextMode::Short), c.narrow) << c.name << ' ' << c.value;
    }
}

TEST_F(Converter, ShortStateNamesFollowTheBar) {
    EXPECT_EQ(text("enum-gate", 2.0, CAudioTextMode::ShortNames), "CutA");
    EXPECT_EQ(text("enum-gate", 1.0, CAudioTextMode::ShortNames), "Fall");
}

TEST_F(Converter, ShownTextsThatAreNotRoundedReadBackAsTheSameValue) {
    for (const char* name : {"gain", "bw", "time", "real"})
        for (double norm : {0.2, 0.5, 0.9}) {
            const std::string first = text(name, toValue(name, norm));
            bool ok = false;
            EXPECT_EQ(text(name, value(name, first.c_str(), &ok)), first) << name;
            EXPECT_TRUE(ok);
        }
}

TEST_F(Converter, ATextIsFoundByItsIdInTheStoreShown) {
    CAudioParamData data;
    data.resetWithDefaults(tree_.info("text"), 0);
    CString result;
    tree_.converter("text").valueToText(result, tree_.info("text"), 0, {data.value(0, 1), data}, CAudioTextMode::Full);
    EXPECT_EQ(result, "R");
    tree_.converter("text").valueToText(result, tree_.info("text"), 0, {99.0, data}, CAudioTextMode::Full);
    EXPECT_EQ(result, "");
    tree_.converter("text").valueToText(result, tree_.info("text"), 0, 1.0, CAudioTextMode::Full);
    EXPECT_EQ(result, "");
}

TEST_F(Converter, TheUnitIsTheLabelAttributeAndNoOther) {
    EXPECT_EQ(tree_.converter("gain").label(), "dB");
    EXPECT_EQ(tree_.converter("time-sec").label(), "ms");
    EXPECT_EQ(tree_.converter("phase").label(), "");
}

TEST(ConverterAttributes, ValidAttributesAreKept) {
    CTestApplication application(paramCreators());
    auto root = application.makeRoot(
        {{"audio:cvt-gain", "a", {{"decimals", "0"}, {"zero-point", "0.25"}, {"off-point", "0.333"}}},
         {"audio:cvt-gain", "b"},
         {"audio:cvt-gain", "low", {{"off-point", "-2"}}},
         {"audio:cvt-enum", "c", {{"state-names", "a;b;c"}}},
         {"audio:cvt-enum", "none", {{"state-names", ""}}}});
    EXPECT_EQ(root->findObjectOf<CAudioParamConverterGain>("a")->zeroPoint(), 0.25);
    EXPECT_EQ(root->findObjectOf<CAudioParamConverterGain>("a")->offPoint(), 33);
    EXPECT_EQ(root->findObjectOf<CAudioParamConverterGain>("b")->zeroPoint(), 0.5);
    EXPECT_EQ(root->findObjectOf<CAudioParamConverterGain>("b")->offPoint(), -100);
    EXPECT_EQ(root->findObjectOf<CAudioParamConverterGain>("low")->offPoint(), -200);
    EXPECT_EQ(root->findObjectOf<CAudioParamConverterEnum>("c")->stateCount(), 3);
    EXPECT_EQ(root->findObjectOf<CAudioParamConverterEnum>("none")->stateCount(), 0);
}

TEST(ConverterAttributes, InvalidAttributesStopTheTreeWithTheirMessage) {
    const struct {
        const char* tag;
        const char* attribute;
        const char* text;
        const char* message;
    } kBad[] = {
        {"audio:cvt-gain", "decimals", "-1", "Invalid decimals -1 specified."},
        {"audio:cvt-gain", "decimals", "11", "Invalid decimals 11 specified."},
        {"audio:cvt-gain", "zero-point", "1.01", "Invalid zero point 1.01 specified."},
        {"audio:cvt-gain", "zero-point", "-0.1", "Invalid zero point -0.1 specified."},
        {"audio:cvt-gain", "off-point", "1.1", "Invalid off-point 1.1 specified."},
        {"audio:cvt-real", "decimals", "99", "Invalid decimals 99 specified."},
        {"audio:cvt-ratio", "decimals", "0", "Invalid decimals 0 specified."},
        {"audio:cvt-ratio", "decimals", "11", "Invalid decimals 11 specified."},
    };
    for (const auto& bad : kBad) {
        CTestApplication application(paramCreators());
        auto root = application.makeRoot();
        const std::string failure = consumed(loadTree(*root, {{bad.tag, "x", {{bad.attribute, bad.text}}}}));
        EXPECT_EQ(failure.substr(0, failure.find('\r')), bad.message) << bad.tag << ' ' << bad.text;
    }
}

TEST_F(Converter, AValueIsShownInTheUnitOfItsTextsWithoutRounding) {
    const struct {
        const char* name;
        double value;
        double shown;
    } kRows[] = {
        {"gain", 2.0, 6.020599913279624},
        {"gain", 1.0, 0.0},
        {"percent", 0.12345, 12.345},
        {"time", 0.0123456, 12.3456},
        {"time-sec", 2.5, 2.5},
        {"freq", 1234.5678, 1234.5678},
        {"ratio", 3.25, 3.25},
        {"real", -1.375, -1.375},
        {"enum", 3.0, 3.0},
    };
    for (const auto& row : kRows) {
        const CAudioParamConverter& converter = tree_.converter(row.name);
        EXPECT_NEAR(converter.valueToShown(row.value), row.shown, 1e-12) << row.name;
        EXPECT_NEAR(converter.shownToValue(row.shown), row.value, 1e-12) << row.name;
    }
    // Neither clamps: what is beyond the limits is the parameter's to decide.
    EXPECT_EQ(tree_.converter("percent").shownToValue(300.0), 3.0);
}

}  // namespace
}  // namespace tarv
