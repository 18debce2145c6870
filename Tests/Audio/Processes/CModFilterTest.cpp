#include "Audio/Processes/CModFilter.h"

#include <cmath>

#include "Tests/Audio/CTestGen.h"
#include "Tests/Audio/GraphTree.h"

namespace tarv {
namespace {

using CSignal = std::vector<double>;

/// One-pole low-pass as the kernels run it: v += (x - v) k.
struct COnePole {
    double k;
    double v = 0.0;
    double next(double x) { return v += (x - v) * k; }
};

/// A generator of one-pole sections, one for each gain, with the coefficient k (the first design number if empty).
CTestNode poles(const std::string& name, const std::string& gains, const std::string& k = "",
                CTestAttributes more = {}) {
    CTestAttributes attributes = {{"type", "5"}, {"gains", gains}};
    attributes.emplace_back(k.empty() ? "use-values" : "numerators", k.empty() ? "true" : k);
    attributes.insert(attributes.end(), more.begin(), more.end());
    return {"test:gen", name, attributes};
}

/// The array "arr" of generators of these names, from position 0.
CTestNode arrayNode(const std::vector<std::string>& names) {
    CTestNode array{"audio:fltgen-array", "arr"};
    for (size_t i = 0; i < names.size(); ++i) {
        array.children.push_back(
            {"audio:fltgen-array-item", "item", {{"index", std::to_string(i)}, {"fltgen", "audio." + names[i]}}});
    }
    return array;
}

/// The filter "f" with the parameters count, index and, on demand, freq.
CTestNode filterNode(const std::string& count, const std::string& index, const std::string& freq = "",
                     CTestAttributes more = {}) {
    CTestNode node{"audio:modFilter", "f", {{"gen-array", "audio.arr"}}};
    node.attributes.insert(node.attributes.end(), more.begin(), more.end());
    node.children = {allocNode("count", 0), allocNode("index", 1), numberNode("index", index)};
    if (!count.empty()) {
        node.children.push_back(numberNode("count", count));
    }
    if (!freq.empty()) {
        node.children.push_back(allocNode("freq", 2));
        node.children.push_back(numberNode("freq", freq));
    }
    return node;
}

class CFilter : public CGraphTree {
public:
    explicit CFilter(const std::vector<CTestNode>& definitions) : CGraphTree(definitions) {
        EXPECT_EQ(build("f"), "");
        start();
    }
    const CModFilterModule& module() const { return as<CModFilter>().module(0); }
};

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
        poles("a", "1", "0.5"), {"audio:fltgen-bypass", "none"}, arrayNode({"none", "a"})};
    const struct {
        const char* what;
        CTestNode node;
    } rows[] = {
        {"count 0", filterNode("0", "1")},
        {"the bypass generator", filterNode("1", "0")},
        {"a position below the array", filterNode("1", "-1")},
        {"a position beyond it", filterNode("1", "2")},
        {"far beyond it", filterNode("1", "99999")},
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
        const auto heard = [&tree] { return tree.runMono({1.0})[0]; };
        // Position 0 has elements 0 and 1, position 1 has 1 and 2.
        EXPECT_EQ(heard(), 1.0 * 0.5 * 0.5 * 0.25) << isCountShared;
        tree.process().reset();
        tree.set("plugin.p.freqs", 0, 2, 1.0);
        EXPECT_EQ(heard(), 0.25) << isCountShared;
        tree.process().reset();
        tree.set("plugin.p.freqs", 0, 1, 1.0);
        EXPECT_EQ(heard(), 1.0) << isCountShared;
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
    // And the way back starts from silence, too.
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

TEST(CModFilterTest, TheGainOfASeriesIsAppliedOnceAtItsEnd) {
    for (const bool isAlways : {false, true}) {
        CFilter tree({poles("a", "0.1 0.7 1.3", "0.3"), arrayNode({"a"}),
                      filterNode("", "0", "", {{"use-gain-always", isAlways ? "true" : "false"}})});
        COnePole first{0.3};
        COnePole second{0.3};
        COnePole third{0.3};
        CSignal expected;
        const CSignal in = noiseSignal(100);
        for (const double x : in) {
            expected.push_back(isAlways ? third.next(second.next(first.next(x) * 0.1) * 0.7) * 1.3
                                        : third.next(second.next(first.next(x))) * (0.1 * 0.7 * 1.3));
        }
        EXPECT_EQ(tree.runMono(in), expected) << isAlways;
    }
}

TEST(CModFilterTest, TheGainPassesFromFilterToFilterUpToTheLastWithSections) {
    // The last of the three is a bypass.
    CFilter tree({poles("a", "0.1", "0.3"),
                  poles("b", "0.7", "0.6"),
                  {"audio:fltgen-bypass", "none"},
                  arrayNode({"a", "b", "none"}),
                  filterNode("3", "0,1,2")});
    COnePole first{0.3};
    COnePole second{0.6};
    CSignal expected;
    const CSignal in = noiseSignal(100);
    for (const double x : in) {
        expected.push_back(second.next(first.next(x)) * (0.1 * 0.7));
    }
    EXPECT_EQ(tree.runMono(in), expected);
}

TEST(CModFilterTest, AParallelListSumsItsSections) {
    CFilter tree(
        {{"test:gen", "two", {{"type", "5"}, {"gains", "0.5 3"}, {"numerators", "0.25"}, {"is-parallel", "true"}}},
         arrayNode({"two"}),
         filterNode("", "0")});
    COnePole pole{0.25};
    CSignal expected;
    const CSignal in = noiseSignal(100);
    for (const double x : in) {
        const double v = pole.next(x);
        expected.push_back(v * 0.5 + v * 3.0);
    }
    EXPECT_EQ(tree.runMono(in), expected);
    EXPECT_EQ(tree.module().chain(0).list().isParallel, 1);
}

TEST(CModFilterTest, OneSectionIsNoParallelList) {
    CFilter tree({poles("one", "2", "0.25", {{"is-parallel", "true"}}), arrayNode({"one"}), filterNode("", "0")});
    EXPECT_EQ(tree.module().chain(0).list().isParallel, 0);
    EXPECT_EQ(tree.runMono({1.0}), CSignal{0.5});
}

TEST(CModFilterTest, TheGainOfASeriesIsAppliedBeforeAParallelListBehindIt) {
    for (const char* index : {"0,1", "0,2,1", "0,2,1,2", "0,2,2,1"}) {
        const std::string count = std::to_string(CString(index).split(',').count());
        CFilter tree({poles("a", "0.1", "0.3"),
                      poles("sum", "2 5", "0.5", {{"is-parallel", "true"}}),
                      {"audio:fltgen-bypass", "none"},
                      arrayNode({"a", "sum", "none"}),
                      filterNode(count, index)});
        COnePole first{0.3};
        COnePole second{0.5};
        CSignal expected;
        const CSignal in = noiseSignal(50);
        for (const double x : in) {
            const double v = second.next(first.next(x) * 0.1);
            expected.push_back(v * 2.0 + v * 5.0);
        }
        EXPECT_EQ(tree.runMono(in), expected) << index;
    }
}

TEST(CModFilterTest, TheLevelDependentSectionTakesTheGainOnlyWhereTheSeriesEnds) {
    // Without recursion and with its level followers at rest the section's output is its input times the gain.
    CFilter tree({{"test:gen", "heq", {{"type", "22"}, {"gains", "3 5"}, {"numerators", "0 0 0 0 1 1 0 0 0 0"}}},
                  arrayNode({"heq"}),
                  filterNode("", "0")});
    EXPECT_EQ(tree.runMono({1.0, -0.5}), (CSignal{15.0, -7.5}));
}

CSignal convolved(const CSignal& in, const CSignal& taps) {
    CSignal out;
    for (size_t i = 0; i < in.size(); ++i) {
        double sum = 0.0;
        for (size_t k = 0; k < taps.size() && k <= i; ++k) {
            sum += taps[k] * in[i - k];
        }
        out.push_back(sum);
    }
    return out;
}

void expectNear(const CSignal& actual, const CSignal& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t i = 0; i < actual.size(); ++i) {
        ASSERT_NEAR(actual[i], expected[i], 1e-13) << i;
    }
}

TEST(CModFilterTest, AnFirSectionConvolves) {
    const CSignal in = noiseSignal(2000);
    const struct {
        const char* gains;
        CSignal taps;
    } rows[] = {{"1", {1.0, -0.5, 0.25}}, {"3", {3.0, -1.5, 0.75}}, {"3 2", {6.0, -6.0, 4.5, -1.5, 0.375}}};
    for (const auto& row : rows) {
        for (const int32_t block : {512, 100, 1}) {
            CFilter tree({{"test:gen", "fir", {{"type", "21"}, {"gains", row.gains}, {"numerators", "1 -0.5 0.25"}}},
                          arrayNode({"fir"}),
                          filterNode("", "0")});
            expectNear(tree.runMono(in, block), convolved(in, row.taps));
        }
    }
}

TEST(CModFilterTest, AnFirSectionFadesFromItsOldTapsToItsNewOnes) {
    CFilter tree({{"test:gen", "fir", {{"type", "21"}, {"gains", "1"}, {"numerators", "1"}, {"use-values", "true"}}},
                  arrayNode({"fir"}),
                  filterNode("", "0", "0.5", {{"is-smooth-update", "true"}, {"xfade-length", "0.001"}})});
    const CSignal ones(100, 1.0);
    EXPECT_NEAR(tree.runMono(ones)[99], 1.5, 1e-13);
    tree.set("plugin.f.freq", -0.5);
    const CSignal out = tree.runMono(ones);
    EXPECT_NEAR(out[0], 1.5, 1e-13);
    EXPECT_NEAR(out[22], 1.0, 1e-13);
    EXPECT_NEAR(out[44], 0.5, 1e-13);
}

TEST(CModFilterTest, TheLatenciesOfTheFiltersAddUp) {
    CFilter tree({poles("a", "1", "0.5", {{"latency", "10"}}),
                  {"audio:fltgen-firlp", "lp"},
                  arrayNode({"a", "lp"}),
                  filterNode("2", "0,0")});
    EXPECT_EQ(tree.process().outputDelay(), 20);
    EXPECT_EQ(tree.module().latency(), 20);
    tree.graph.delaysChanged = false;
    tree.runMono({1.0});
    EXPECT_FALSE(tree.graph.delaysChanged);
    tree.set("plugin.f.count", 3.0);
    tree.runMono({1.0});
    EXPECT_TRUE(tree.graph.delaysChanged);
    EXPECT_EQ(tree.process().placeDelay(7), 37);
}

TEST(CModFilterTest, APeakAt0DbIsNoPassThrough) {
    CTestNode node = filterNode("", "0", "1000");
    node.children.insert(node.children.end(),
                         {numberNode("gain", "1"), numberNode("bw", "1.5"), allocNode("gain", 3), allocNode("bw", 4)});
    CFilter tree({{"audio:fltgen-magnus", "peak", {{"type", "1"}}}, arrayNode({"peak"}), node});
    EXPECT_EQ(tree.module().chain(0).list().sections.count(), 1);
    EXPECT_NE(tree.module().chain(0).state(0), kNoBuffer);
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
