#include "Audio/Modules/CModMute.h"

#include "Tests/Audio/Graph/GraphTree.h"
#include "Tests/Audio/Modules/NoiseReference.h"

namespace tarv {
namespace {

using CSignal = std::vector<double>;

class CMute : public CGraphTree {
public:
    explicit CMute(CTestAttributes attributes = {})
        : CGraphTree({{"audio:modMute", "m", std::move(attributes), {numberNode("mute", "0"), allocNode("mute", 0)}}}) {
        EXPECT_EQ(build("m"), "");
        start();
    }
};

TEST(CModMuteTest, OffTheInputPassesByReference) {
    CMute tree;
    const uint64_t before = tree.graph.context->counters().operations;
    const CSignal in = noiseSignal(100);
    EXPECT_EQ(tree.runMono(in), in);
    EXPECT_EQ(tree.graph.context->counters().operations, before);
}

TEST(CModMuteTest, OnFromOneHalfTheNoiseReplacesTheInput) {
    CMute tree;
    tree.set("plugin.m.mute", 0.49);
    EXPECT_EQ(tree.runMono({1.0}), CSignal{1.0});
    tree.set("plugin.m.mute", 0.5);
    EXPECT_EQ(tree.runMono(CSignal(100, 1.0), 30), antiDenormalNoise(100));
}

TEST(CModMuteTest, TheSwitchFades) {
    CMute tree(CTestAttributes{{"is-smooth-update", "true"}});
    tree.set("plugin.m.mute", 1.0);
    const CSignal noise = antiDenormalNoise(1000);
    const CSignal out = tree.runMono(CSignal(1000, 1.0));
    EXPECT_EQ(out[0], 1.0);
    EXPECT_EQ(CSignal(out.begin() + 662, out.end()), CSignal(noise.begin() + 662, noise.end()));
    tree.set("plugin.m.mute", 0.0);
    EXPECT_EQ(tree.runMono(CSignal(1000, 1.0))[662], 1.0);
}

}  // namespace
}  // namespace tarv
