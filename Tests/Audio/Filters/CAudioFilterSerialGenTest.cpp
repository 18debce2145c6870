#include "Audio/Filters/CAudioFilterSerialGen.h"

#include <cmath>
#include <vector>

#include "Tests/Audio/Filters/FilterTree.h"

namespace tarv {
namespace {

// So far above the filters that the one-pole, whose output is taken behind its update, keeps its gain above them.
constexpr double kRate = 1536000.0;
constexpr double kQ = 0.70710678118654752;  // the Q at which the sets' names hold

/// A set out of second-order high-passes and a one-pole, as the definitions hold it.
struct CSet {
    const char* name;
    int order;
    CTexts items;
};

const CSet kBesselSets[] = {
    {"hp2_bessel", 2, {{"hp2_rbj_q", "0.78740157,1.0,0.82025173"}}},
    {"hp3_bessel", 3, {{"hp1", "0.7575758,1.0"}, {"hp2_rbj_q", "0.689655,1.0,0.975816716"}}},
    {"hp4_bessel", 4, {{"hp2_rbj_q", "0.625,1.0,1.14552397"}, {"hp2_rbj_q", "0.69930,1.0,0.7353981"}}},
    {"hp5_bessel",
     5,
     {{"hp1", "0.666667,1.0"}, {"hp2_rbj_q", "0.5681818,1.0,1.30108895"}, {"hp2_rbj_q", "0.641025641,1.0,0.7919672"}}},
    {"hp6_bessel",
     6,
     {{"hp2_rbj_q", "0.5263158,1.0,1.442511667"},
      {"hp2_rbj_q", "0.591715976,1.0,0.8626785"},
      {"hp2_rbj_q", "0.625,1.0,0.7212558"}}},
};

const CSet kButterworthSets[] = {
    {"hp2_bworth", 2, {{"hp2_rbj_q", "1.0,1.0,1.0"}}},
    {"hp3_bworth", 3, {{"hp1", "1.0,1.0"}, {"hp2_rbj_q", "1.0,1.0,1.4142271"}}},
    {"hp4_bworth", 4, {{"hp2_rbj_q", "1.0,1.0,0.7636826"}, {"hp2_rbj_q", "1.0,1.0,1.8526375"}}},
    {"hp5_bworth", 5, {{"hp1", "1.0,1.0"}, {"hp2_rbj_q", "1.0,1.0,0.8768208"}, {"hp2_rbj_q", "1.0,1.0,2.29104794"}}},
    {"hp6_bworth",
     6,
     {{"hp2_rbj_q", "1.0,1.0,0.7353981"}, {"hp2_rbj_q", "1.0,1.0,1.0"}, {"hp2_rbj_q", "1.0,1.0,2.729458351"}}},
};

/// A tree with the generators that the sets are made of.
class CSetTree : public CFilterTree {
public:
    CSetTree() {
        generator("audio:fltgen-lphp1", "hp1", {{"type", "4"}});
        generator("audio:fltgen-rbj", "hp2_rbj_q", {{"type", "1"}, {"is-q", "true"}});
        generator("audio:fltgen-rbj", "lp2_rbj_q", {{"type", "0"}, {"is-q", "true"}});
        generator("audio:fltgen-rbj", "hs_rbj2", {{"type", "8"}, {"is-type2", "true"}});
    }
};

TEST(SerialSet, ButterworthSetsFollowTheirMagnitude) {
    for (const CSet& set : kButterworthSets) {
        CSetTree tree;
        const CSectionList list = designed(tree.serial(set.name, set.items), kRate, {1000.0, 1.0, kQ});
        for (double hz = 100.0; hz < 10000.0; hz *= 1.1) {
            const double ideal = -10.0 * std::log10(1.0 + std::pow(1000.0 / hz, 2 * set.order));
            // The factors are of two and three digits' Q (0.54 for 0.5412), and the rate is 19 times the highest
            // frequency.
            EXPECT_NEAR(responseDb(list, hz, kRate), ideal, 0.3) << set.name << ' ' << hz;
        }
        EXPECT_NEAR(responseDb(list, 1000.0, kRate), -3.0103, 0.1) << set.name;
    }
}

/// Coefficients of the reverse Bessel polynomial of order n, ascending.
std::vector<double> besselPolynomial(int n) {
    std::vector<double> a;
    for (int k = 0; k <= n; ++k) {
        a.push_back(std::tgamma(2.0 * n - k + 1.0) /
                    (std::exp2(n - k) * std::tgamma(k + 1.0) * std::tgamma(n - k + 1.0)));
    }
    return a;
}

double besselDb(const std::vector<double>& polynomial, double omega) {
    std::complex<double> sum = 0.0;
    for (size_t k = polynomial.size(); k-- > 0;) {
        sum = sum * std::complex<double>(0.0, omega) + polynomial[k];
    }
    return -20.0 * std::log10(std::abs(sum) / polynomial[0]);
}

TEST(SerialSet, BesselSetsFollowTheirMagnitude) {
    for (const CSet& set : kBesselSets) {
        CSetTree tree;
        const CSectionList list = designed(tree.serial(set.name, set.items), kRate, {1000.0, 1.0, kQ});
        // The high-pass is the low-pass of 1/s, scaled so that it is 3 dB down at 1000 Hz.
        const std::vector<double> polynomial = besselPolynomial(set.order);
        double scale = 1.0;
        while (besselDb(polynomial, scale) > -3.0103) {
            scale += 1e-4;
        }
        for (double hz = 100.0; hz < 10000.0; hz *= 1.1) {
            // The factors stand for corners of two or three digits, as 1.9 for 1.907: 0.3 % on a slope of 36 dB an
            // octave.
            EXPECT_NEAR(responseDb(list, hz, kRate), besselDb(polynomial, scale * 1000.0 / hz), 0.15)
                << set.name << ' ' << hz;
        }
    }
}

TEST(SerialSet, TheCrossoverAddsUpToAnAllPass) {
    CSetTree tree;
    const CAudioFilterGen& low = tree.serial("lp4_lr", {{"lp2_rbj_q", ""}, {"lp2_rbj_q", ""}});
    const CAudioFilterGen& high = tree.serial("hp4_lr", {{"hp2_rbj_q", ""}, {"hp2_rbj_q", ""}});
    const CSectionList lows = designed(low, kRate, {2000.0, 1.0, kQ});
    const CSectionList highs = designed(high, kRate, {2000.0, 1.0, kQ});
    EXPECT_NEAR(responseDb(lows, 2000.0, kRate), -6.0206, 1e-6);
    for (double hz = 20.0; hz < 90000.0; hz *= 1.1) {
        EXPECT_NEAR(std::abs(response(lows, hz, kRate) + response(highs, hz, kRate)), 1.0, 1e-8) << hz;
    }
}

TEST(SerialSet, TheSteepShelfHasTwiceTheGain) {
    CSetTree tree;
    const CAudioFilterGen& set = tree.serial("hislope", {{"hs_rbj2", "1.0,1.0,1.0"}, {"hs_rbj2", "1.0,1.0,2.1875"}});
    const CSectionList list = designed(set, kRate, {4000.0, 2.0, 1.0});
    ASSERT_EQ(list.sections.count(), 2);
    EXPECT_NEAR(responseDb(list, kRate / 2.0, kRate), 2.0 * toDb(2.0), 1e-9);
}

TEST(SerialSet, EachItemIsDesignedWithItsFactors) {
    CSetTree tree;
    const CAudioFilterGen& set = tree.serial("set", {{"hs_rbj2", "0.5,3.0"}, {"hp1", ""}});
    const CSectionList list = designed(set, kRate, {4000.0, 2.0, 1.5});
    const CSectionList shelf =
        designed(*tree.root()->findObjectOf<CAudioFilterGen>("hs_rbj2"), kRate, {2000.0, 6.0, 1.5});
    const CSectionList highPass =
        designed(*tree.root()->findObjectOf<CAudioFilterGen>("hp1"), kRate, {4000.0, 2.0, 1.5});
    ASSERT_EQ(list.sections.count(), 2);
    EXPECT_EQ(list.sections[0].type, 0);
    EXPECT_EQ(list.sections[0].gain, shelf.sections[0].gain);
    EXPECT_EQ(list.sections[0].denominators[1], shelf.sections[0].denominators[1]);
    EXPECT_EQ(list.sections[1].type, 9);
    EXPECT_EQ(list.sections[1].denominators[0], highPass.sections[0].denominators[0]);
}

TEST(SerialSet, TheLatencyIsTheSumUnlessParallel) {
    CFilterTree tree;
    tree.generator("audio:fltgen-firlim", "lim", {});
    const CSectionList serial = designed(tree.serial("serial", {{"lim", ""}, {"lim", ""}}), 1000.0, {0.1});
    EXPECT_EQ(serial.isParallel, 0);
    EXPECT_EQ(serial.latency, 2 * 99);
    const CSectionList parallel =
        designed(tree.serial("parallel", {{"lim", ""}, {"lim", ""}}, {{"is-parallel", "true"}}), 1000.0, {0.1});
    EXPECT_EQ(parallel.isParallel, 1);
    EXPECT_EQ(parallel.latency, 0);
    ASSERT_EQ(parallel.sections.count(), 2);
}

TEST(SerialSet, FewerThanTwoSectionsAreNotParallel) {
    CSetTree tree;
    const CAudioFilterGen& set = tree.serial("parallel", {{"hp1", ""}}, {{"is-parallel", "true"}});
    EXPECT_EQ(designed(set, kRate, {100.0}).isParallel, 0);
}

TEST(SerialSet, WithoutItemsOrValuesPassesThrough) {
    CSetTree tree;
    EXPECT_TRUE(designed(tree.serial("empty", {}), kRate, {100.0}).sections.isEmpty());
    EXPECT_TRUE(designed(tree.serial("set", {{"hp1", ""}}), kRate, {}).sections.isEmpty());
}

TEST(SerialSet, MayHoldSets) {
    CSetTree tree;
    tree.serial("inner", {{"hp1", "2.0"}, {"hp1", "4.0"}});
    const CSectionList list = designed(tree.serial("outer", {{"inner", "0.5"}, {"hp1", ""}}), kRate, {100.0});
    ASSERT_EQ(list.sections.count(), 3);
    EXPECT_NEAR(list.sections[0].denominators[0], list.sections[2].denominators[0], 1e-15);
    EXPECT_GT(list.sections[1].denominators[0], list.sections[0].denominators[0]);
}

TEST(SerialSet, ARemovedItemIsNotDesigned) {
    CSetTree tree;
    CAudioFilterGen& set = tree.serial("set", {{"hp1", ""}, {"hs_rbj2", ""}});
    std::unique_ptr<CObject> item(set.children()[0]);
    set.removeChild(item.get());
    const CSectionList list = designed(set, kRate, {100.0, 2.0, 1.0});
    ASSERT_EQ(list.sections.count(), 1);
    EXPECT_EQ(list.sections[0].type, 0);
}

TEST(SerialSet, ABadItemIsReported) {
    CSetTree tree;
    CAudioFilterGen& set = tree.serial("set", {});
    CAudioFilterGen& outer = tree.serial("outer", {{"set", ""}});
    CObject* plain = nullptr;
    ASSERT_EQ(tree.add(tree.root(), "core:object", "plain", {}, plain), nullptr);
    const std::pair<const char*, const char*> cases[] = {
        {"", "''"},           {"nowhere", "'nowhere'"}, {"plain", "'plain'"}, {"set", "'set'"},  // itself
        {"outer", "'outer'"},  // what leads back to itself
    };
    for (const auto& [path, quoted] : cases) {
        EXPECT_EQ(tree.failure(&set, "audio:fltgen-serial-item", {{"fltgen", path}}).toUtf8(),
                  "Invalid filter generator with the name " + std::string(quoted) + " specified.");
    }
    EXPECT_EQ(tree.failure(&set, "audio:fltgen-serial-item", {{"fltgen", "hp1"}, {"adjust", "1.0,half"}}).toUtf8(),
              "Invalid list of factors '1.0,half' specified.");
    EXPECT_TRUE(designed(outer, kRate, {100.0}).sections.isEmpty());
}

}  // namespace
}  // namespace tarv
