#include "Audio/Graph/CAudioProcessMB.h"

#include "Tests/Audio/Graph/GraphTree.h"

namespace tarv {
namespace {

std::string buildFailure(CTestAttributes attributes, std::vector<CTestNode> children = {}) {
    attributes.emplace_back("is-multiband", "true");
    CGraphTree tree({{"audio:process-def", "p", attributes, std::move(children)}});
    return tree.build("p");
}

TEST(CAudioProcessMBTest, WhatItsDefinitionLacksStopsTheBuild) {
    const CTestAttributes count = {{"multiband-count-param", "bands"}};
    const CTestAttributes both = {{"multiband-count-param", "bands"}, {"multiband-freq-param", "freqs"}};
    EXPECT_EQ(buildFailure({}), "No 'multiband-count-param' attribute defined.");
    EXPECT_EQ(buildFailure(count), "No 'multiband-freq-param' attribute defined.");
    const std::string noLowPass = "No low-pass module prototype with the name 'modLP' found.";
    EXPECT_EQ(buildFailure(both), noLowPass);
    EXPECT_EQ(buildFailure(both, {{"audio:modNode", "modLP"}}), noLowPass);
    EXPECT_EQ(buildFailure(both, {{"audio:modNode", "modLP", {{"is-prototype", "true"}}}}), "");
}

TEST(CAudioProcessMBTest, ItsChildrenRunOverTheWholeBand) {
    CGraphTree tree(
        {{"audio:process-def",
          "p",
          {{"is-multiband", "true"}, {"multiband-count-param", "bands"}, {"multiband-freq-param", "freqs"}},
          {{"audio:modNode", "modLP", {{"is-prototype", "true"}}}, gainNode("a", "3"), gainNode("b", "5")}}});
    ASSERT_EQ(tree.build("p"), "");
    EXPECT_EQ(tree.runMono({1.0, -2.0}), (std::vector<double>{15.0, -30.0}));
    EXPECT_EQ(orderOf(tree.as<CAudioProcess>()), "a b");
}

}  // namespace
}  // namespace tarv
