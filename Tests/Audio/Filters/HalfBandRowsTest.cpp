#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "Tests/TestPaths.h"

namespace tarv {
namespace {

/// A row of the definitions: its name, order and the coefficients of both branches.
struct CRow {
    std::string name;
    int order;
    std::vector<double> a;
    std::vector<double> b;
};

std::string attribute(const std::string& element, const std::string& name) {
    const size_t start = element.find(" " + name + "=\"");
    if (start == std::string::npos) {
        return "";
    }
    const size_t first = start + name.size() + 3;
    return element.substr(first, element.find('"', first) - first);
}

std::vector<double> numbers(const std::string& text) {
    std::vector<double> list;
    std::stringstream pieces(text);
    for (std::string piece; std::getline(pieces, piece, ',');) {
        list.push_back(std::strtod(piece.c_str(), nullptr));
    }
    return list;
}

std::vector<CRow> readRows() {
    std::ifstream file(std::string(kSourceFolder) + "/Definitions/SharedData/HalfBandRows.xml");
    std::stringstream text;
    text << file.rdbuf();
    std::string source = text.str();
    for (char& c : source) {
        c = c == '\n' ? ' ' : c;
    }
    std::vector<CRow> rows;
    const std::string opening = "<audio:fltgen-hbf";
    for (size_t at = source.find(opening); at != std::string::npos; at = source.find(opening, at + 1)) {
        const std::string element = source.substr(at, source.find("/>", at) - at);
        rows.push_back({attribute(element, "name"), std::atoi(attribute(element, "order").c_str()),
                        numbers(attribute(element, "a")), numbers(attribute(element, "b"))});
    }
    return rows;
}

/// |H| of the pair at a frequency in parts of its rate.
double magnitude(const CRow& row, double frequency) {
    const std::complex<double> delay = std::polar(1.0, -2.0 * M_PI * frequency);
    const std::complex<double> delay2 = delay * delay;
    std::complex<double> a = 1.0;
    std::complex<double> b = delay;
    for (double c : row.a) {
        a *= (c + delay2) / (1.0 + c * delay2);
    }
    for (double c : row.b) {
        b *= (c + delay2) / (1.0 + c * delay2);
    }
    return std::abs(a + b) * 0.5;
}

/// The width of the transition band by the code behind the attenuation in a row's name.
const std::map<std::string, double> kWidths = {
    {"t100", 0.01}, {"t50", 0.02}, {"t33", 0.03}, {"t20", 0.05}, {"t4", 0.25},
};

int namedAttenuation(const CRow& row) {
    return std::atoi(row.name.c_str() + 3);
}

double width(const CRow& row) {
    const auto found = kWidths.find(row.name.substr(row.name.find('t')));
    return found == kWidths.end() ? NAN : found->second;
}

/// Every row by name with its order.
const std::map<std::string, int> kOrders = {
    {"hbf139t100", 16}, {"hbf122t100", 14}, {"hbf104t100", 12}, {"hbf86t100", 10}, {"hbf69t100", 8}, {"hbf51t100", 6},
    {"hbf164t50", 16},  {"hbf143t50", 14},  {"hbf122t50", 12},  {"hbf102t50", 10}, {"hbf81t50", 8},  {"hbf61t50", 6},
    {"hbf182t33", 16},  {"hbf159t33", 14},  {"hbf136t33", 12},  {"hbf114t33", 10}, {"hbf91t33", 8},  {"hbf68t33", 6},
    {"hbf212t20", 16},  {"hbf186t20", 14},  {"hbf159t20", 12},  {"hbf133t20", 10}, {"hbf106t20", 8}, {"hbf80t20", 6},
    {"hbf53t20", 4},    {"hbf225t4", 8},    {"hbf171t4", 6},    {"hbf116t4", 4},   {"hbf62t4", 2},
};

TEST(HalfBandRows, AllAreThereOnceWithTheirOrder) {
    std::map<std::string, int> orders;
    for (const CRow& row : readRows()) {
        EXPECT_TRUE(orders.emplace(row.name, row.order).second) << row.name;
    }
    EXPECT_EQ(orders, kOrders);
}

TEST(HalfBandRows, BothBranchesHoldHalfTheOrder) {
    for (const CRow& row : readRows()) {
        EXPECT_EQ(row.a.size(), static_cast<size_t>(row.order / 2)) << row.name;
        EXPECT_EQ(row.b.size(), static_cast<size_t>(row.order / 2)) << row.name;
    }
}

TEST(HalfBandRows, TheStopBandAttenuationIsThatOfTheName) {
    const std::vector<CRow> rows = readRows();
    ASSERT_FALSE(rows.empty());
    for (const CRow& row : rows) {
        const double start = 0.25 + width(row) * 0.5;
        constexpr int kSteps = 20000;
        double highest = 0.0;
        for (int i = 0; i <= kSteps; ++i) {
            highest = std::max(highest, magnitude(row, start + (0.5 - start) * i / kSteps));
        }
        EXPECT_NEAR(-20.0 * std::log10(highest), namedAttenuation(row), 1.0) << row.name;
    }
}

TEST(HalfBandRows, TheTransitionIsNoWiderThanNamed) {
    // A filter of the same order with 1.02 times the width would pass the test of the stop band alone.
    for (const CRow& row : readRows()) {
        const double inside = 0.25 + width(row) * 0.5 * 0.98;
        EXPECT_LT(-20.0 * std::log10(magnitude(row, inside)), namedAttenuation(row)) << row.name;
    }
}

TEST(HalfBandRows, PassBandAndStopBandArePowerComplementary) {
    // The branches are all-passes, so |H(f)|^2 + |H(1/2 - f)|^2 = 1: the pass band is as flat as the stop band is deep.
    for (const CRow& row : readRows()) {
        for (double f = 0.001; f < 0.25; f += 0.001) {
            const double pass = magnitude(row, f);
            const double stop = magnitude(row, 0.5 - f);
            EXPECT_NEAR(pass * pass + stop * stop, 1.0, 1e-12) << row.name << ' ' << f;
        }
    }
}

TEST(HalfBandRows, AreAsDeepAtNyquistAsRoundingAllows) {
    for (const CRow& row : readRows()) {
        EXPECT_NEAR(magnitude(row, 0.0), 1.0, 1e-14) << row.name;
        EXPECT_NEAR(magnitude(row, 0.5), 0.0, 1e-14) << row.name;
    }
}

}  // namespace
}  // namespace tarv
