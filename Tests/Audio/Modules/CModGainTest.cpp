#include "Audio/Modules/CModGain.h"

#include "Tests/Audio/Graph/GraphTree.h"
#include "Tests/Audio/Modules/NoiseReference.h"

namespace tarv {
namespace {

using CSignal = std::vector<double>;

/// The gain stage "g", running; its tree has the parameters gain (a factor) and mute.
class CGain : public CGraphTree {
public:
    explicit CGain(const std::string& gain, CTestAttributes attributes = {})
        : CGraphTree({gainNode("g", gain, std::move(attributes))}) {
        EXPECT_EQ(build("g"), "");
        start();
    }
};

TEST(CModGainTest, TheSignalIsMultiplied) {
    CGain tree("-0.25");
    EXPECT_EQ(tree.runMono({1.0}), antiDenormalNoise(1));  // below 0, too
    tree.set("plugin.g.gain", 0.3);
    const CSignal in = noiseSignal(100);
    CSignal expected = in;
    for (double& sample : expected) {
        sample *= 0.3;
    }
    EXPECT_EQ(tree.runMono(in), expected);
}

TEST(CModGainTest, AGainOfOneKeepsEveryBit) {
    CGain tree("1");
    const CSignal in = noiseSignal(100);
    EXPECT_EQ(tree.runMono(in), in);
}

TEST(CModGainTest, UnsetSlotsAreAGainOfOneAndNotMuted) {
    CGraphTree tree({{"audio:modGain", "g", {}, {allocNode("gain", 0), allocNode("mute", 1)}}});
    ASSERT_EQ(tree.build("g"), "");
    EXPECT_EQ(tree.runMono({0.5}), CSignal{0.5});
}

TEST(CModGainTest, AGainAtOrBelowTheLimitGivesNoiseAndNoMultiplication) {
    const struct {
        double gain;
        bool isNoise;
    } rows[] = {{0.0, true}, {CModGainModule::kNothing, true}, {2.3e-16, false}, {-1.0, true}};
    for (const auto& row : rows) {
        CGain tree("1");
        tree.set("plugin.g.gain", row.gain);
        tree.suspend();
        tree.start();
        const CSignal out = tree.runMono({1.0, 1.0});
        EXPECT_EQ(out, row.isNoise ? antiDenormalNoise(2) : CSignal(2, row.gain)) << row.gain;
    }
}

TEST(CModGainTest, MuteIsOnFromOneHalf) {
    for (const auto& [value, isMuted] : {std::pair{0.0, false}, {0.49, false}, {0.5, true}, {1.0, true}}) {
        CGain tree("2");
        tree.set("plugin.g.mute", value);
        EXPECT_EQ(tree.runMono({1.0})[0] == antiDenormalNoise(1)[0], isMuted) << value;
    }
}

TEST(CModGainTest, TheNoiseGoesOnFromBlockToBlockWithASeedForEachChannel) {
    CGain tree("2");
    tree.set("plugin.g.mute", 1.0);
    tree.set("plugin.g.mute", 1, 0, 1.0);
    const CSignal noise = antiDenormalNoise(300);
    EXPECT_EQ(tree.runMono(CSignal(100, 1.0), 7), CSignal(noise.begin(), noise.begin() + 100));
    const CTestChannels out = tree.run({{0, 0, CSignal(200, 1.0)}, {1, 1, CSignal(200, 1.0)}});
    EXPECT_EQ(out[0].samples, CSignal(noise.begin() + 100, noise.end()));
    EXPECT_EQ(out[1].samples, CSignal(noise.begin(), noise.begin() + 200));
}

TEST(CModGainTest, TheModuleThatFadesInStartsWithAFreshSeed) {
    CGain tree("2", {{"is-smooth-update", "true"}, {"xfade-length", "0.001"}});
    tree.set("plugin.g.mute", 1.0);
    tree.runMono(CSignal(100, 1.0));  // 44 of them fade
    tree.set("plugin.g.gain", 3.0);   // muted as before, but another module
    const CSignal noise = antiDenormalNoise(200);
    const CSignal out = tree.runMono(CSignal(100, 1.0));
    EXPECT_EQ(out[0], noise[100]);
    EXPECT_EQ(CSignal(out.begin() + 44, out.end()), CSignal(noise.begin() + 44, noise.begin() + 100));
}

TEST(CModGainTest, InPlaceTheSeedIsKept) {
    CGain tree("2");
    tree.set("plugin.g.mute", 1.0);
    tree.runMono(CSignal(10, 1.0));
    tree.set("plugin.g.mute", 0.0);
    EXPECT_EQ(tree.runMono({1.0}), CSignal{2.0});
    tree.set("plugin.g.mute", 1.0);
    EXPECT_EQ(tree.runMono({1.0}), CSignal{antiDenormalNoise(11)[10]});
}

TEST(CModGainTest, AResetStartsTheNoiseAnew) {
    CGain tree("2");
    tree.set("plugin.g.mute", 1.0);
    tree.runMono(CSignal(10, 1.0));
    tree.process().reset();
    EXPECT_EQ(tree.runMono(CSignal(10, 1.0)), antiDenormalNoise(10));
}

TEST(CModGainTest, GainAndMuteFade) {
    CGain tree("2", {{"is-smooth-update", "true"}});
    tree.set("plugin.g.mute", 1.0);
    const CSignal out = tree.runMono(CSignal(700, 1.0));
    EXPECT_EQ(out[0], 2.0);
    EXPECT_NEAR(out[331], 1.0, 1e-9);  // half way
    EXPECT_EQ(out[662], antiDenormalNoise(663)[662]);
}

}  // namespace
}  // namespace tarv
