#include "Audio/Modules/CModNode.h"

#include "Audio/Modules/CModOutput.h"
#include "Tests/Audio/Graph/GraphTree.h"

namespace tarv {
namespace {

TEST(CModNodeTest, EveryInputIsForwardedByReference) {
    CGraphTree tree({CTestNode{"audio:modNode", "n"}});
    ASSERT_EQ(tree.build("n"), "");
    tree.process().needInput(1);
    CQPLEXContext& context = *tree.graph.context;
    const CBufferHandle first = context.takeSignal(1);
    const CBufferHandle second = context.takeSignal(1);
    for (const auto& [port, block] : {std::pair{0, first}, {1, second}}) {
        tree.process().input(port).add(0, port, 0, block);
        tree.process().input(port).samples = 1;
    }
    tree.process().process();
    EXPECT_EQ(tree.process().output(0).channels[0].handle, first);
    EXPECT_EQ(tree.process().output(1).channels[0].handle, second);
    EXPECT_EQ(context.references(first), 1);
    EXPECT_TRUE(tree.process().input(0).channels.isEmpty());
    EXPECT_EQ(context.counters().operations, 0u);
    tree.process().clearBuffers();
}

TEST(CModNodeTest, LinksMayNameIt) {
    CGraphTree tree({{"audio:process-def",
                      "p",
                      {},
                      {gainNode("a", "2"), {"audio:modNode", "n"}, gainNode("b", "3"), linkNode("n", "*")}}});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(tree.runMono({1.0}), std::vector<double>{8.0});
}

TEST(CModOutputTest, TheSignalsAreHeldForTheHostByTheirElement) {
    CGraphTree tree({CTestNode{"audio:modOutput", "o"}});
    ASSERT_EQ(tree.build("o"), "");
    CAudioPort& port = tree.process().input(0);
    const CBufferHandle third = tree.graph.context->takeSignal(1);
    const CBufferHandle first = tree.graph.context->takeSignal(1);
    port.add(0, 2, 0, third);
    port.add(0, 0, 0, first);
    port.samples = 1;
    tree.process().process();
    const auto& output = tree.as<CModOutput>();
    EXPECT_EQ(output.block(0), first);
    EXPECT_EQ(output.block(1), kNoBuffer);
    EXPECT_EQ(output.block(2), third);
    tree.process().clearBuffers();
    EXPECT_EQ(output.block(0), kNoBuffer);
}

TEST(CModOutputTest, TheDelayOfItsPlaceBecomesTheLatency) {
    CGraphTree tree({CTestNode{"audio:modOutput", "o"}});
    ASSERT_EQ(tree.build("o"), "");
    EXPECT_EQ(tree.graph.env->latency(), 0);
    tree.process().placeDelay(37);
    EXPECT_EQ(tree.graph.env->latency(), 0);
    tree.process().updateParams();
    EXPECT_EQ(tree.graph.env->latency(), 37);
    // Only when something changed.
    tree.graph.env->setLatency(5);
    tree.process().placeDelay(37);
    tree.process().updateParams();
    EXPECT_EQ(tree.graph.env->latency(), 5);
}

}  // namespace
}  // namespace tarv
