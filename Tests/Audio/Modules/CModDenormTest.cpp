#include "Audio/Modules/CModDenorm.h"

#include "Tests/Audio/Graph/GraphTree.h"
#include "Tests/Audio/Modules/NoiseReference.h"

namespace tarv {
namespace {

using CSignal = std::vector<double>;

TEST(CModDenormTest, TheNoiseIsAddedWithASeedForEachChannel) {
    CGraphTree tree({CTestNode{"audio:modDenorm", "d"}});
    ASSERT_EQ(tree.build("d"), "");
    const CSignal in = noiseSignal(400);
    CSignal expected;
    const CSignal noise = antiDenormalNoise(400);
    for (size_t i = 0; i < in.size(); ++i) {
        expected.push_back(in[i] - 1e-11 + (noise[i] > 0.0 ? 2e-11 : 0.0));
    }
    EXPECT_EQ(tree.runMono(in, 33), expected);
    const CTestChannels out = tree.run({{0, 0, {0.0}}, {0, 1, {0.0}}});
    EXPECT_EQ(out[0].samples, CSignal{antiDenormalNoise(401)[400]});
    EXPECT_EQ(out[1].samples, antiDenormalNoise(1));
}

TEST(CModDenormTest, AResetStartsTheNoiseAnew) {
    CGraphTree tree({CTestNode{"audio:modDenorm", "d"}});
    ASSERT_EQ(tree.build("d"), "");
    tree.runMono(CSignal(10, 0.0));
    tree.process().reset();
    EXPECT_EQ(tree.runMono(CSignal(50, 0.0)), antiDenormalNoise(50));
}

/// The product's arrangement: the noise with a bypass state that is the inverse of a switch.
TEST(CModDenormTest, TheSwitchTakesTheNoiseOutAndPutsItBack) {
    CGraphTree tree(
        {{"audio:process-def",
          "p",
          {},
          {paramNode("denorm-enable", "real", "0", "1", "1", {{"is-global", "true"}, {"is-single-group", "true"}}),
           {"audio:modDenorm", "noise", {{"bypass-state-id", "11"}}},
           {"audio:modNode", "node"},
           {"audio:process-bypass-state",
            "state",
            {{"id", "11"}, {"param", "denorm-enable"}, {"is-inverted", "true"}, {"is-group0", "true"}}}}}});
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    EXPECT_EQ(tree.runMono(CSignal(10, 0.0)), antiDenormalNoise(10));
    tree.set("plugin.p.denorm-enable", 0.0);
    EXPECT_EQ(tree.runMono(CSignal(10, 0.0)), CSignal(10, 0.0));
    EXPECT_EQ(orderOf(tree.as<CAudioProcess>()), "node");
    tree.set("plugin.p.denorm-enable", 1.0);
    EXPECT_EQ(tree.runMono(CSignal(10, 0.0)), antiDenormalNoise(10));
    EXPECT_EQ(orderOf(tree.as<CAudioProcess>()), "noise node");
}

}  // namespace
}  // namespace tarv
