#include "Tools/HalfBandDesigner/HalfBandDesign.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <fstream>
#include <sstream>

#include "Tests/TestPaths.h"

namespace tarv {
namespace {

/// A design whose digits are in long use: order, width, and the coefficients of both branches in ascending order.
struct CKnownDesign {
    int order;
    long double width;
    std::vector<double> coefficients;
};

const CKnownDesign kKnownDesigns[] = {
    {8,
     0.05L,
     {0.035832788431062100, 0.134090141943066930, 0.272040143396457710, 0.424324871271868350, 0.572057197235700250,
      0.706292142138639220, 0.827124761997323770, 0.941503094173755220}},
    {6,
     0.05L,
     {0.060297390957124358, 0.215971444560929480, 0.412590720361056260, 0.604358626465836160, 0.772715653742923840,
      0.923886138653290720}},
    {4, 0.05L, {0.120732117516754470, 0.390362187234500670, 0.663202022419399520, 0.890786832653498230}},
    {8,
     0.25L,
     {0.011895121747543543, 0.047600688803108131, 0.107298815124090190, 0.191701916664550910, 0.302691477841015800,
      0.444308384398486580, 0.624310405189227980, 0.856804935666758530}},
    {6,
     0.25L,
     {0.020342469726993929, 0.081470965110413199, 0.184299628014595620, 0.332445500134007090, 0.535754127708285230,
      0.816782360082087490}},
    {4, 0.25L, {0.042454709865267684, 0.170739850497499070, 0.393319893190328010, 0.745713588720222980}},
    {2, 0.25L, {0.138024994073021350, 0.584683257487323190}},
};

TEST(HalfBandDesign, GivesTheKnownCoefficients) {
    for (const CKnownDesign& known : kKnownDesigns) {
        const std::vector<long double> designed = designHalfBand(known.order, known.width);
        ASSERT_EQ(designed.size(), known.coefficients.size());
        for (size_t i = 0; i < designed.size(); ++i) {
            // The known digits were computed in 64-bit arithmetic, whose rounding grows to some 30 units in the last
            // place.
            EXPECT_NEAR(static_cast<double>(designed[i]), known.coefficients[i], 1e-14) << known.order << ' ' << i;
        }
    }
}

TEST(HalfBandDesign, CoefficientsAscendBetweenZeroAndOne) {
    for (int order = 2; order <= 16; order += 2) {
        for (long double width : {0.01L, 0.05L, 0.25L}) {
            long double previous = 0;
            for (long double coefficient : designHalfBand(order, width)) {
                EXPECT_GT(coefficient, previous);
                EXPECT_LT(coefficient, 1.0L);
                previous = coefficient;
            }
        }
    }
}

TEST(HalfBandDesign, TheStopBandRipplesAreOfOneHeight) {
    // The filter of n sections has n zeros inside the stop band and one at Nyquist; an elliptic design is equally high
    // at the n maxima between them.
    const std::vector<long double> design = designHalfBand(6, 0.05L);
    const double worst = halfBandAttenuation(design, 0.05L);
    int ripples = 0;
    double before = 0.0;
    double here = 1.0;
    for (double f = 0.275; f <= 0.5; f += 1e-5) {
        const std::complex<double> z = std::polar(1.0, -2.0 * M_PI * f);
        std::complex<double> a = 1.0;
        std::complex<double> b = z;
        for (size_t i = 0; i < design.size(); ++i) {
            const double c = static_cast<double>(design[i]);
            (i % 2 == 0 ? a : b) *= (c + z * z) / (1.0 + c * z * z);
        }
        const double magnitude = std::abs(a + b) / 2.0;
        if (f > 0.2751 && here > before && here > magnitude) {
            ++ripples;
            EXPECT_NEAR(-20.0 * std::log10(here), worst, 0.01);
        }
        before = here;
        here = magnitude;
    }
    EXPECT_EQ(ripples, 6);
}

TEST(HalfBandDesign, AnOrderOrWidthOutsideItsRangeGivesNothing) {
    for (int order : {-2, 0, 1, 7}) {
        EXPECT_TRUE(designHalfBand(order, 0.05L).empty()) << order;
    }
    for (long double width : {-0.1L, 0.0L, 0.5L, 2.0L}) {
        EXPECT_TRUE(designHalfBand(8, width).empty()) << static_cast<double>(width);
    }
}

TEST(HalfBandDesign, TheDefinitionsHoldWhatItPrints) {
    std::ifstream file(std::string(kSourceFolder) + "/Definitions/SharedData/HalfBandRows.xml");
    std::stringstream text;
    text << file.rdbuf();
    const std::string source = text.str();
    const std::pair<const char*, long double> widths[] = {
        {"t100", 0.01L}, {"t50", 0.02L}, {"t33", 0.03L}, {"t20", 0.05L}};
    for (const auto& [code, width] : widths) {
        // Of the family of 0.05 the orders below 10 are older than the program, which differs in their last digits.
        for (int order = width == 0.05L ? 10 : 6; order <= 16; order += 2) {
            const std::vector<long double> design = designHalfBand(order, width);
            const std::string name =
                "hbf" + std::to_string(static_cast<int>(halfBandAttenuation(design, width))) + code;
            const size_t row = source.find('"' + name + '"');
            ASSERT_NE(row, std::string::npos) << name;
            const std::string element = source.substr(row, source.find("/>", row) - row);
            EXPECT_NE(element.find("order=\"" + std::to_string(order) + '"'), std::string::npos) << name;
            EXPECT_NE(element.find("a=\"" + branchText(design, 0) + '"'), std::string::npos) << name;
            EXPECT_NE(element.find("b=\"" + branchText(design, 1) + '"'), std::string::npos) << name;
        }
    }
}

TEST(HalfBandDesign, TheTextReadsBackAsTheSameNumbers) {
    const std::vector<long double> design = designHalfBand(16, 0.05L);
    for (int branch = 0; branch < 2; ++branch) {
        const std::string text = branchText(design, branch);
        size_t position = 0;
        for (size_t i = static_cast<size_t>(branch); i < design.size(); i += 2) {
            EXPECT_EQ(std::stod(text.substr(position)), static_cast<double>(design[i]));
            EXPECT_EQ(text.find_first_of(",", position) == std::string::npos ? text.size() - position
                                                                             : text.find(',', position) - position,
                      20U);
            position = text.find(',', position) + 1;
        }
    }
}

}  // namespace
}  // namespace tarv
