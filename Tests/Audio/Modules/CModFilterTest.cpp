#include "Audio/Modules/CModFilter.h"

#include <cmath>

#include "Tests/Audio/Modules/FilterModuleTree.h"

namespace tarv {
namespace {

using CSignal = std::vector<double>;

const std::vector<CTestNode> kTwoPoles = {poles("a", "1", "0.5"), poles("b", "1", "0.25"), arrayNode({"a", "b"})};

std::vector<CTestNode> with(std::vector<CTestNode> definitions, const CTestNode& node) {
    definitions.push_back(node);
    return definitions;
}

TEST(CModFilterTest, TheCountIsOneWhenUnsetAndRoundedOtherwise) {
    const struct {
        const char* count;
        int32_t chains;
    } rows[] = {{"", 1}, {"0", 0}, {"0.49", 0}, {"0.5", 1}, {"1.5", 2}, {"2.4", 2}, {"-3", 0}, {"1000", 64}};
    for (const auto& row : rows) {
        CFilter tree(with(kTwoPoles, filterNode(row.count, "0")));
        EXPECT_EQ(tree.module().chainCount(), row.chains) << row.count;
    }
}

TEST(CModFilterTest, WithoutFiltersTheInputPassesByReference) {
    const std::vector<CTestNode> arrays = {
        poles("a", "1", "0.5"),
        {"audio:fltgen-bypass", "none"},
        arrayNode({"none", "a"}),
        {"audio:fltgen-array",
         "holey",
         {},
         {{"audio:fltgen-array-item", "item", {{"index", "0"}, {"fltgen", "audio.a"}}},
          {"audio:fltgen-array-item", "item", {{"index", "2"}, {"fltgen", "audio.a"}}}}}};
    const struct {
        const char* what;
        CTestNode node;
    } rows[] = {
        {"count 0", filterNode("0", "1")},
        {"the bypass generator", filterNode("1", "0")},
        {"a position below the array", filterNode("1", "-1")},
        {"a position beyond it", filterNode("1", "2")},
        {"far beyond it", filterNode("1", "99999")},
        {"a hole in the array",
         {"audio:modFilter",
          "f",
          {{"gen-array", "audio.holey"}},
          {privateNode("index", "1"), allocNode("count", 0), allocNode("index", 1)}}},
        {"several bypasses", filterNode("3", "0")},
        {"no array", {"audio:modFilter", "f", {}, {allocNode("count", 0), allocNode("index", 1)}}},
        {"no such array",
         {"audio:modFilter", "f", {{"gen-array", "audio.none.such"}}, {allocNode("count", 0), allocNode("index", 1)}}},
        {"a design number without data",
         {"audio:modFilter",
          "f",
          {{"gen-array", "audio.arr"}},
          {privateNode("index", "1"), allocNode("count", 0), allocNode("index", 1), allocNode("freq", 2)}}},
    };
    for (const auto& row : rows) {
        CFilter tree(with(arrays, row.node));
        const uint64_t before = tree.graph.context->counters().operations;
        const CSignal in = noiseSignal(20);
        EXPECT_EQ(tree.runMono(in), in) << row.what;
        EXPECT_EQ(tree.graph.context->counters().operations, before) << row.what;
    }
}

TEST(CModFilterTest, TheIndexChoosesTheGenerator) {
    for (const auto& [index, k] : {std::pair{"0", 0.5}, {"0.49", 0.5}, {"0.5", 0.25}, {"1", 0.25}}) {
        CFilter tree(with(kTwoPoles, filterNode("", index)));
        COnePole pole{k};
        EXPECT_EQ(tree.runMono({1.0, 1.0}), (CSignal{pole.next(1.0), pole.next(1.0)})) << index;
    }
}

TEST(CModFilterTest, FilterJReadsTheElementsJBehindItsOwn) {
    CFilter tree(with({poles("a", "1"), poles("b", "1", "0.25"), arrayNode({"a", "b"})},
                      filterNode("3", "0,1,0", "0.5,99,0.75")));
    COnePole first{0.5};
    COnePole second{0.25};
    COnePole third{0.75};
    CSignal expected;
    const CSignal in = noiseSignal(50);
    for (const double x : in) {
        expected.push_back(third.next(second.next(first.next(x))));
    }
    EXPECT_EQ(tree.runMono(in, 7), expected);
}

TEST(CModFilterTest, InAStackTheElementsStandBehindTheStackPositionAndStayCurrent) {
    for (const bool isCountShared : {false, true}) {
        CTestNode filter = filterNode(isCountShared ? "" : "2", "0", "0.5");
        filter.children.push_back(remapNode("freq", "^^.freqs"));
        if (isCountShared) {
            filter.children.push_back(remapNode("count", "^^.filters"));
        }
        CGraphTree tree(
            {poles("a", "1"),
             arrayNode({"a"}),
             {"audio:process-def",
              "p",
              {},
              {numberNode("bands", "2"),
               numberNode("filters", "2"),
               numberNode("freqs", "1,0.5,0.25"),
               {"audio:process-def", "s", {{"is-stacked", "true"}, {"stack-param", "^.bands"}}, {filter}}}}});
        ASSERT_EQ(tree.build("p"), "");
        tree.start();
        const auto output = [&tree] { return tree.runMono({1.0})[0]; };
        // Position 0 has elements 0 and 1, position 1 has 1 and 2.
        EXPECT_EQ(output(), 1.0 * 0.5 * 0.5 * 0.25) << isCountShared;
        tree.process().reset();
        tree.set("plugin.p.freqs", 0, 2, 1.0);
        EXPECT_EQ(output(), 0.25) << isCountShared;
        tree.process().reset();
        tree.set("plugin.p.freqs", 0, 1, 1.0);
        EXPECT_EQ(output(), 1.0) << isCountShared;
    }
}

TEST(CModFilterTest, ADesignIsForTheRateOfThePlace) {
    CGraphTree tree({poles("a", "1", "0.5"),
                     arrayNode({"a"}),
                     {"audio:process-def", "p", {}, {{"audio:modInterpolator", "i"}, filterNode("", "0")}}});
    tree.graph.hostRate = 48000.0;
    ASSERT_EQ(tree.build("p"), "");
    tree.start();
    EXPECT_EQ(CTestGen::lastRate, 96000.0);
}

TEST(CModFilterTest, AChangeWithinATypeKeepsTheHistoryAndOneOfTheTypeClearsIt) {
    const std::vector<CTestNode> definitions = {
        poles("low", "1"),
        {"test:gen", "high", {{"type", "9"}, {"gains", "1"}, {"use-values", "true"}}},
        arrayNode({"low", "high"}),
        filterNode("", "0", "0.5")};
    CFilter tree(definitions);
    COnePole pole{0.5};
    EXPECT_EQ(tree.runMono({1.0}), CSignal{pole.next(1.0)});
    pole.k = 0.25;
    tree.set("plugin.f.freq", 0.25);
    EXPECT_EQ(tree.runMono({3.0}), CSignal{pole.next(3.0)});
    tree.set("plugin.f.index", 1.0);
    COnePole fresh{0.25};
    EXPECT_EQ(tree.runMono({3.0}), CSignal{3.0 - fresh.next(3.0)});
    // The change back starts from silence, too.
    tree.set("plugin.f.index", 0.0);
    EXPECT_EQ(tree.runMono({8.0}), CSignal{2.0});
}

/// Share of the new signal in a fade of n samples.
double newShare(int32_t i, int32_t n) {
    return 0.5 - 0.5 * std::sin((0.5 + i * 1.0 / n) * M_PI);
}

TEST(CModFilterTest, ASmoothChangeRunsBothFiltersFromTheSameHistoryIfTheTypesMatch) {
    for (const bool isTypeKept : {true, false}) {
        CFilter tree({poles("low", "1"),
                      {"test:gen", "low2", {{"type", "6"}, {"gains", "1"}, {"use-values", "true"}}},
                      arrayNode({"low", "low2"}),
                      filterNode("", "0", "0.5", {{"is-smooth-update", "true"}, {"xfade-length", "0.001"}})});
        const CSignal in = noiseSignal(144);
        CSignal out = tree.runMono(CSignal(in.begin(), in.begin() + 100));
        isTypeKept ? tree.set("plugin.f.freq", 0.125) : tree.set("plugin.f.index", 1.0);
        const CSignal fade = tree.runMono(CSignal(in.begin() + 100, in.end()));

        COnePole old{0.5};
        for (int32_t i = 0; i < 100; ++i) {
            old.next(in[static_cast<size_t>(i)]);
        }
        COnePole next{0.125, old.v};
        COnePole first{0.5};
        COnePole second{0.5};
        for (int32_t i = 0; i < 44; ++i) {
            const double x = in[static_cast<size_t>(100 + i)];
            const double share = newShare(i, 44);
            const double with = isTypeKept ? next.next(x) : second.next(first.next(x));
            EXPECT_NEAR(fade[static_cast<size_t>(i)], share * with + (1.0 - share) * old.next(x), 1e-13) << i;
        }
    }
}

TEST(CModFilterTest, AFurtherFilterStartsFromSilenceAndTheFirstGoesOn) {
    CFilter tree(with(kTwoPoles, filterNode("1", "0,1")));
    COnePole first{0.5};
    EXPECT_EQ(tree.runMono({1.0}), CSignal{first.next(1.0)});
    tree.set("plugin.f.count", 2.0);
    COnePole second{0.25};
    EXPECT_EQ(tree.runMono({1.0}), CSignal{second.next(first.next(1.0))});
    tree.set("plugin.f.count", 1.0);
    EXPECT_EQ(tree.runMono({1.0}), CSignal{first.next(1.0)});
}

TEST(CModFilterTest, AResetClearsTheHistory) {
    CFilter tree(with(kTwoPoles, filterNode("", "0")));
    const CSignal in = noiseSignal(20);
    const CSignal fresh = tree.runMono(in);
    EXPECT_NE(tree.runMono(in), fresh);
    tree.process().reset();
    EXPECT_EQ(tree.runMono(in), fresh);
}

TEST(CModFilterTest, ANewRateStartsFromSilenceWithAnotherDesign) {
    CFilter tree(with(kTwoPoles, filterNode("", "0")));
    const CSignal in = noiseSignal(20);
    const CSignal fresh = tree.runMono(in);
    tree.graph.hostRate = 96000.0;
    EXPECT_EQ(tree.runMono(in), fresh);
    EXPECT_EQ(CTestGen::lastRate, 96000.0);
}

TEST(CModFilterTest, AttributesAreRead) {
    CGraphTree tree({poles("a", "1", "0.5"),
                     arrayNode({"a"}),
                     filterNode("", "0"),
                     {"audio:modFilter", "g", {{"use-gain-always", "true"}}}});
    EXPECT_EQ(tree.definition<CModFilterDef>("f").genArray(), &tree.definition<CAudioFilterGenArray>("arr"));
    EXPECT_FALSE(tree.definition<CModFilterDef>("f").useGainAlways());
    EXPECT_EQ(tree.definition<CModFilterDef>("f").designParamCount(), 0);
    EXPECT_EQ(tree.definition<CModFilterDef>("g").genArray(), nullptr);
    EXPECT_TRUE(tree.definition<CModFilterDef>("g").useGainAlways());
}

}  // namespace
}  // namespace tarv
