// Links that would join signals of different rates stop the build.

#include "Tests/Audio/Graph/GraphTree.h"

namespace tarv {
namespace {

CTestNode resampler(const std::string& tag, const std::string& name, const std::string& target) {
    CTestNode node{"audio:" + tag, name, {}, {allocNode("mode", 0), allocNode("host-mode", 1)}};
    if (target.empty()) {
        node.children.push_back(privateNode("mode", "2"));
    } else {
        node.children.push_back(remapNode("mode", target));
    }
    return node;
}

/// The process p with what a resampler needs beside it.
std::vector<CTestNode> beside(std::vector<CTestNode> children, CTestAttributes attributes = {}) {
    children.insert(children.begin(), {numberNode("on", "0"), numberNode("rate", "2"), numberNode("other", "2")});
    return {{"audio:modInterpolator", "modUpsamplerInterpolator"},
            {"audio:modDecimator", "modDownsamplerDecimator"},
            {"audio:modFilter", "modUpsamplerFilter1"},
            {"audio:modFilter", "modUpsamplerFilter2"},
            {"audio:modFilter", "modDownsamplerFilter1"},
            {"audio:modFilter", "modDownsamplerFilter2"},
            {"audio:process-def", "p", std::move(attributes), std::move(children)}};
}

std::string failure(const std::vector<CTestNode>& children) {
    CGraphTree tree(beside(children));
    return tree.build("p");
}

std::string joinAt(const std::string& name) {
    return "Links into '" + name + "' join signals of different sample rates.";
}

const CTestNode kUp{"audio:modInterpolator", "up"};
const CTestNode kDown{"audio:modDecimator", "down"};

TEST(CAudioProcessRatesTest, AJoinOfTwoRatesIsAnError) {
    EXPECT_EQ(failure({kUp, gainNode("g", "1"), linkNode("*", "g")}), joinAt("g"));
    EXPECT_EQ(failure({gainNode("a", "1"), kUp, gainNode("g", "1"), linkNode("a", "g/1")}), joinAt("g"));
    EXPECT_EQ(failure({kUp, linkNode("*", "*")}), joinAt("*"));
    EXPECT_EQ(failure({kUp, kDown, linkNode("*", "*")}), "");
    EXPECT_EQ(failure({kUp, gainNode("g", "1"), kDown, gainNode("h", "1"), linkNode("*", "h")}), "");
    EXPECT_EQ(failure({kUp, gainNode("g", "1"), linkNode("*", "*/1")}), "");
}

TEST(CAudioProcessRatesTest, TheErrorNamesItsPlace) {
    CGraphTree tree(beside({{"audio:process-def", "q", {}, {kUp, gainNode("g", "1"), linkNode("*", "g")}}}));
    const CAudioProcessDefBase& def = tree.definition("p");
    CAudioProcess process;
    process.place({&tree.graph, nullptr, &def, "plugin.p", "p", -1});
    CError* error = process.init();
    ASSERT_NE(error, nullptr);
    std::string all;
    for (const CString* line : error->lines()) {
        all += line->toUtf8() + "\n";
    }
    EXPECT_NE(all.find("plugin.p.q"), std::string::npos) << all;
    delete error;
}

TEST(CAudioProcessRatesTest, RatesThatParametersChooseAreEqualIfTheParametersAre) {
    const CTestNode up = resampler("modUpsampler", "up", "^rate");
    const CTestNode down = resampler("modDownsampler", "down", "^rate");
    const CTestNode otherDown = resampler("modDownsampler", "down", "^other");
    EXPECT_EQ(failure({up, down, linkNode("*", "*")}), "");
    EXPECT_EQ(failure({up, otherDown, linkNode("*", "*")}), joinAt("*"));
    EXPECT_EQ(failure({up, gainNode("g", "1"), linkNode("*", "g")}), joinAt("g"));
    // Without a parameter that could change it the factor is known.
    EXPECT_EQ(failure({resampler("modUpsampler", "up", ""), kDown, linkNode("*", "*")}), "");
    EXPECT_EQ(failure({resampler("modUpsampler", "up", ""), linkNode("*", "*")}), joinAt("*"));
}

TEST(CAudioProcessRatesTest, CompositesAndStacksChangeRatesAsWhatTheyHold) {
    const CTestNode inner{"audio:process-def", "q", {}, {kUp}};
    EXPECT_EQ(failure({inner, kDown, linkNode("*", "*")}), "");
    EXPECT_EQ(failure({inner, linkNode("*", "*")}), joinAt("*"));
    const CTestNode stack{"audio:process-def", "s", {{"is-stacked", "true"}}, {kUp}};
    EXPECT_EQ(failure({stack, linkNode("*", "*")}), joinAt("*"));
}

TEST(CAudioProcessRatesTest, LinksThatAreNeverLiveTogetherMayDiffer) {
    EXPECT_EQ(failure({kUp, gainNode("g", "1", {{"is-outoforder", "true"}}), linkNode("*", "g", {{"state-id", "1"}}),
                       linkNode("up", "g", {{"state-id", "2"}})}),
              "");
    EXPECT_EQ(failure({kUp, gainNode("g", "1", {{"is-outoforder", "true"}}), linkNode("*", "g", {{"state-id", "1"}}),
                       linkNode("up", "g")}),
              joinAt("g"));
}

}  // namespace
}  // namespace tarv
