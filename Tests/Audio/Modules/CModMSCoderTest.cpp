#include "Audio/Modules/CModMSCoder.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Tests/Audio/Graph/GraphTree.h"

namespace tarv {
namespace {

using CSignals = std::vector<std::vector<double>>;

CTestNode coderNode(const std::string& name, const std::string& pairs, const std::string& mode) {
    return {"audio:modMSCoder",
            name,
            {},
            {numberNode("pairs", pairs), numberNode("mode", mode), numberNode("bypass", "0"), allocNode("pairs", 0),
             allocNode("mode", 1), allocNode("bypass", 2)}};
}

class CCoder : public CGraphTree {
public:
    CCoder(const std::string& pairs, const std::string& mode) : CGraphTree({coderNode("c", pairs, mode)}) {
        EXPECT_EQ(build("c"), "");
        start();
    }
};

TEST(CModMSCoderTest, TheFirstOfAPairBecomesMidAndTheSecondSide) {
    CCoder tree("1,1", "0");
    const CTestChannels out = tree.run({{0, 0, {1.0, -0.5}}, {0, 1, {0.25, 0.5}}});
    EXPECT_EQ(samplesOf(out), (CSignals{{0.625, 0.0}, {0.375, -0.5}}));
}

TEST(CModMSCoderTest, DecodingIsSumAndDifference) {
    CCoder tree("1,1", "1");
    EXPECT_EQ(samplesOf(tree.run({{0, 0, {0.625}}, {0, 1, {0.375}}})), (CSignals{{1.0}, {0.25}}));
}

TEST(CModMSCoderTest, ThePairKeepsItsOrderAndTheArithmeticItsForm) {
    CCoder tree("1,1", "0");
    const std::vector<double> a = noiseSignal(100, 1);
    const std::vector<double> b = noiseSignal(100, 2);
    const CSignals out = samplesOf(tree.run({{0, 0, a}, {0, 1, b}}));
    for (size_t i = 0; i < a.size(); ++i) {
        const double d = (b[i] - a[i]) * -0.5;
        EXPECT_EQ(out[0][i], b[i] + d);
        EXPECT_EQ(out[1][i], d);
    }
}

TEST(CModMSCoderTest, EncodeAndDecodeRestoreTheInputWhereSumAndDifferenceAreExact) {
    CGraphTree tree({{"audio:process-def", "p", {}, {coderNode("e", "1,1", "0"), coderNode("d", "1,1", "1")}}});
    ASSERT_EQ(tree.build("p"), "");
    tree.start({{0, 0}, {0, 1}});
    std::vector<double> a;
    std::vector<double> b;
    for (int32_t i = 0; i < 100; ++i) {
        a.push_back((i * 37 % 101 - 50) / 64.0);
        b.push_back((i * 53 % 97 - 48) / 64.0);
    }
    EXPECT_EQ(samplesOf(tree.run({{0, 0, a}, {0, 1, b}})), (CSignals{a, b}));
    // Otherwise only to rounding: 2^-60 is lost beside 1.
    const CSignals inexact = samplesOf(tree.run({{0, 0, {1.0}}, {0, 1, {0x1p-60}}}));
    EXPECT_NE(inexact[1][0], 0x1p-60);
    EXPECT_NEAR(inexact[1][0], 0.0, 1e-16);
}

TEST(CModMSCoderTest, ChannelsWithoutAPairPass) {
    const struct {
        const char* what;
        const char* pairs;
        CSignals out;
    } rows[] = {
        {"none", "0,0,0", {{8}, {2}, {4}}},
        {"a pair of one", "0,3,0", {{8}, {2}, {4}}},
        {"the outer two", "2,0,2", {{6}, {2}, {2}}},
        {"of three the first two", "1,1,1", {{5}, {3}, {4}}},
        {"two numbers of one channel each", "1,2,0", {{8}, {2}, {4}}},
        {"rounded", "0.6,1.4,0.4", {{5}, {3}, {4}}},
    };
    for (const auto& row : rows) {
        CCoder tree(row.pairs, "0");
        EXPECT_EQ(samplesOf(tree.run({{0, 0, {8.0}}, {0, 1, {2.0}}, {0, 2, {4.0}}})), row.out) << row.what;
    }
}

TEST(CModMSCoderTest, SeveralPairsStandSideBySide) {
    CCoder tree("4,1,1,4", "0");
    EXPECT_EQ(samplesOf(tree.run({{0, 0, {8.0}}, {0, 1, {2.0}}, {0, 2, {4.0}}, {0, 3, {6.0}}})),
              (CSignals{{7.0}, {3.0}, {-1.0}, {1.0}}));
}

TEST(CModMSCoderTest, APairFormsAcrossGroupsAndEachKeepsItsOwn) {
    CCoder tree("1,1", "0");
    const CTestChannels out = tree.run({{0, 0, {8.0}}, {1, 1, {2.0}}});
    EXPECT_EQ(samplesOf(out), (CSignals{{5.0}, {3.0}}));
    EXPECT_EQ(out[0].group, 0);
    EXPECT_EQ(out[1].group, 1);
}

TEST(CModMSCoderTest, ThePairNumberIsThatOfTheElementNotOfThePlace) {
    CCoder tree("0,0,1,0,0,1", "0");
    EXPECT_EQ(samplesOf(tree.run({{0, 1, {8.0}}, {0, 2, {2.0}}, {0, 5, {4.0}}})), (CSignals{{8.0}, {3.0}, {-1.0}}));
}

TEST(CModMSCoderTest, BypassModeAndPairsAreTaken) {
    CCoder tree("1,1", "0");
    const CTestChannels in = {{0, 0, {8.0}}, {0, 1, {2.0}}};
    const auto after = [&](const char* param, double value) {
        tree.set(std::string("plugin.c.") + param, value);
        tree.run({{0, 0, std::vector<double>(662)}, {0, 1, std::vector<double>(662)}});  // the rise
        return samplesOf(tree.run(in));
    };
    EXPECT_EQ(samplesOf(tree.run(in)), (CSignals{{5.0}, {3.0}}));
    EXPECT_EQ(after("bypass", 1.0), (CSignals{{8.0}, {2.0}}));
    EXPECT_EQ(after("bypass", 0.5), (CSignals{{5.0}, {3.0}}));
    EXPECT_EQ(after("mode", 1.0), (CSignals{{10.0}, {6.0}}));
    EXPECT_EQ(after("mode", 0.0), (CSignals{{5.0}, {3.0}}));
    EXPECT_EQ(after("pairs", 0.0), (CSignals{{8.0}, {2.0}}));
}

/// A channel of ones in pieces of `cut`.
std::vector<double> ones(CCoder& tree, int32_t count, int32_t cut, uint64_t serial, int32_t group = 0) {
    std::vector<double> all;
    for (int32_t done = 0; done < count; done += cut) {
        const auto length = static_cast<size_t>(std::min(cut, count - done));
        const CTestChannels out = tree.run({{group, 0, std::vector<double>(length, 1.0), serial}});
        all.insert(all.end(), out[0].samples.begin(), out[0].samples.end());
    }
    return all;
}

TEST(CModMSCoderTest, AChannelThatComesUpWhileAudioRunsRisesIn15Milliseconds) {
    constexpr int32_t kRise = 662;  // 0.015 s at 44.1 kHz, rounded
    for (const int32_t cut : {1000, 64, 1}) {
        CCoder tree("0,0", "0");
        EXPECT_EQ(ones(tree, 100, cut, 1), std::vector<double>(100, 1.0));  // the first is there at once
        const std::vector<double> risen = ones(tree, 1000, cut, 2);
        for (int32_t i = 0; i < 1000; ++i) {
            const double expected = i < kRise ? 0.5 - 0.5 * std::cos(std::numbers::pi * i / kRise) : 1.0;
            ASSERT_NEAR(risen[static_cast<size_t>(i)], expected, 1e-11) << i << ", cut into " << cut;
        }
        EXPECT_EQ(risen[0], 0.0);
        EXPECT_EQ(risen[kRise], 1.0);
        EXPECT_EQ(ones(tree, 10, cut, 2), std::vector<double>(10, 1.0));
        EXPECT_EQ(ones(tree, 10, cut, 2, 3)[0], 0.0);  // another group
    }
}

TEST(CModMSCoderTest, ARiseThatIsInterruptedBeginsAnewAndTouchesNoOtherChannel) {
    CCoder tree("0,0", "0");
    const std::vector<double> block(100, 1.0);
    const auto run = [&](uint64_t serial) { return samplesOf(tree.run({{0, 0, block, serial}, {0, 1, block, 9}})); };
    EXPECT_EQ(run(1), (CSignals{block, block}));
    const CSignals second = run(2);
    EXPECT_EQ(second[1], block);
    EXPECT_GT(run(2)[0][0], second[0][99]);
    EXPECT_EQ(run(3)[0], second[0]);
}

TEST(CModMSCoderTest, BehindAResetNothingRises) {
    CCoder encoder("0,0", "0");
    ones(encoder, 10, 10, 1);
    encoder.process().reset();
    EXPECT_EQ(ones(encoder, 10, 10, 2), std::vector<double>(10, 1.0));
}

TEST(CModMSCoderTest, InTheDecoderNothingRises) {
    CCoder decoder("0,0", "1");
    ones(decoder, 10, 10, 1);
    EXPECT_EQ(ones(decoder, 10, 10, 2), std::vector<double>(10, 1.0));
}

TEST(CModMSCoderTest, AnotherRateRaisesEveryChannel) {
    CCoder tree("0,0", "0");
    ones(tree, 10, 10, 1);
    tree.graph.hostRate = 88200.0;
    const std::vector<double> risen = ones(tree, 1400, 1400, 1);
    EXPECT_EQ(risen[0], 0.0);
    EXPECT_LT(risen[1322], 1.0);
    EXPECT_EQ(risen[1323], 1.0);
}

TEST(CModMSCoderTest, CodedChannelsAreOthersThanUncodedOnes) {
    CCoder tree("1,1,0", "0");
    const CTestChannels in = {{0, 0, {8.0}, 5}, {0, 1, {2.0}, 6}, {0, 2, {4.0}, 7}};
    const auto serials = [&] {
        std::vector<uint64_t> all;
        for (const CTestChannel& channel : tree.run(in)) {
            all.push_back(channel.serial);
        }
        return all;
    };
    const std::vector<uint64_t> coded = serials();
    EXPECT_EQ(coded[2], 7u);
    EXPECT_NE(coded[0], coded[1]);
    EXPECT_EQ(serials(), coded);
    tree.set("plugin.c.pairs", 0, 1, 0.0);
    tree.set("plugin.c.pairs", 0, 2, 1.0);
    const std::vector<uint64_t> other = serials();  // the same first one, with another partner
    EXPECT_NE(other[0], coded[0]);
    EXPECT_EQ(other[1], 6u);
    tree.set("plugin.c.bypass", 1.0);
    EXPECT_EQ(serials(), (std::vector<uint64_t>{5, 6, 7}));
}

}  // namespace
}  // namespace tarv
