// How a filter runs the lists that its generators deliver: gains, series, parallel sections, convolutions.

#include "Tests/Audio/Modules/FilterModuleTree.h"

namespace tarv {
namespace {

using CSignal = std::vector<double>;

TEST(CModFilterSectionsTest, TheGainOfASeriesIsAppliedOnceAtItsEnd) {
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

TEST(CModFilterSectionsTest, TheGainPassesFromFilterToFilterUpToTheLastWithSections) {
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

TEST(CModFilterSectionsTest, AParallelListSumsItsSections) {
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

TEST(CModFilterSectionsTest, OneSectionIsNoParallelList) {
    CFilter tree({poles("one", "2", "0.25", {{"is-parallel", "true"}}), arrayNode({"one"}), filterNode("", "0")});
    EXPECT_EQ(tree.module().chain(0).list().isParallel, 0);
    EXPECT_EQ(tree.runMono({1.0}), CSignal{0.5});
}

TEST(CModFilterSectionsTest, TheGainOfASeriesIsAppliedBeforeAParallelListBehindIt) {
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

TEST(CModFilterSectionsTest, TheLevelDependentSectionTakesTheGainOnlyWhereTheSeriesEnds) {
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

TEST(CModFilterSectionsTest, AnFirSectionConvolves) {
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

TEST(CModFilterSectionsTest, AnFirSectionFadesFromItsOldTapsToItsNewOnes) {
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

/// A filter of 301 taps, of which the last is the parameter `freq`: its output is 300 samples late.
std::vector<CTestNode> lateTap(CTestAttributes attributes) {
    std::string zeros;
    for (int32_t i = 0; i < 300; ++i) {
        zeros += i == 0 ? "0" : " 0";
    }
    return {{"test:gen", "fir", {{"type", "21"}, {"gains", "1"}, {"numerators", zeros}, {"use-values", "true"}}},
            arrayNode({"fir"}),
            filterNode("", "0", "0.5", std::move(attributes))};
}

TEST(CModFilterSectionsTest, AnFirSectionKeepsItsHistoryOverARedesign) {
    const CSignal in = noiseSignal(2000);
    for (const char* isSmooth : {"true", "false"}) {
        for (const int32_t block : {100, 512}) {
            CFilter tree(lateTap({{"is-smooth-update", isSmooth}, {"xfade-length", "0.001"}}));
            const auto half = in.begin() + 1000;
            const CSignal first = tree.runMono({in.begin(), half}, block);
            tree.set("plugin.f.freq", 2.0);
            const CSignal second = tree.runMono({half, in.end()}, block);
            // Behind the fade of 44 samples: what came before the redesign, with the new tap.
            for (size_t i = 44; i < second.size(); ++i) {
                ASSERT_NEAR(second[i], 2.0 * in[1000 + i - 300], 1e-12) << i << ' ' << isSmooth << ' ' << block;
            }
            ASSERT_NEAR(first[999], 0.5 * in[699], 1e-12);
        }
    }
}

TEST(CModFilterSectionsTest, ARedesignOfAnFirSectionAllocatesNothing) {
    for (const char* isSmooth : {"true", "false"}) {
        CFilter tree(lateTap({{"is-smooth-update", isSmooth}, {"xfade-length", "0.001"}}));
        tree.graph.context->reserveBuffers(32, 4096);
        tree.graph.context->reserveBuffers(32, 64);
        const CSignal in = noiseSignal(512);
        const CTestChannels channels = {{0, 0, in}};
        tree.run(channels);
        for (int32_t round = 0; round < 20; ++round) {
            tree.set("plugin.f.freq", 1.0 + round);
            tree.collector().applyPendingChanges(tree.graph.now);
            CAudioPort& port = tree.process().input(0);
            port.samples = 512;
            port.rate = CGraphTree::kRate;
            const CBufferHandle block = tree.graph.context->takeSignal(512);
            std::copy(in.begin(), in.end(), tree.graph.context->signal(block));
            port.add(0, 0, 0, block);
            const CHeapCounters before = CHeap::counters();
            tree.process().process();
            tree.graph.context->flush();
            EXPECT_EQ(CHeap::counters().allocations, before.allocations) << round << ' ' << isSmooth;
            EXPECT_EQ(CHeap::counters().frees, before.frees) << round << ' ' << isSmooth;
            tree.process().output(0).release(*tree.graph.context);
            tree.graph.now += 512;
        }
    }
}

TEST(CModFilterSectionsTest, MoreTapsThanThereIsRoomForKeepTheHistoryToo) {
    // One generator has 3 taps, the other 600; the change of the index is one of the generator.
    std::string taps;
    for (int32_t i = 0; i < 600; ++i) {
        taps += i == 0 ? "1" : " 0";
    }
    for (const char* isSmooth : {"true", "false"}) {
        CFilter tree({{"test:gen", "short", {{"type", "21"}, {"gains", "1"}, {"numerators", "0 0 1"}}},
                      {"test:gen", "long", {{"type", "21"}, {"gains", "1"}, {"numerators", "0 0 0 1 " + taps}}},
                      arrayNode({"short", "long"}),
                      filterNode("", "0", "", {{"is-smooth-update", isSmooth}, {"xfade-length", "0.0001"}})});
        const CSignal in = noiseSignal(600);
        tree.runMono({in.begin(), in.begin() + 300}, 100);
        tree.set("plugin.f.index", 1.0);
        const CSignal out = tree.runMono({in.begin() + 300, in.end()}, 100);
        for (size_t i = 4; i < out.size(); ++i) {
            ASSERT_NEAR(out[i], in[300 + i - 3] + in[300 + i - 4], 1e-12) << i << ' ' << isSmooth;
        }
    }
}

TEST(CModFilterSectionsTest, TheLatenciesOfTheFiltersAddUp) {
    CFilter tree({poles("a", "1", "0.5", {{"latency", "10"}}),
                  {"audio:fltgen-firlp", "lp"},
                  arrayNode({"a", "lp"}),
                  filterNode("2", "0,0")});
    EXPECT_EQ(tree.process().outputDelay(), 20);
    EXPECT_EQ(tree.module().latency(), 20);
    tree.graph.confirmDelays();
    tree.runMono({1.0});
    EXPECT_TRUE(tree.graph.areDelaysValid());
    tree.set("plugin.f.count", 3.0);
    tree.runMono({1.0});
    EXPECT_FALSE(tree.graph.areDelaysValid());
    EXPECT_EQ(tree.process().placeDelay(7), 37);
}

TEST(CModFilterSectionsTest, APeakAt0DbIsNoPassThrough) {
    CTestNode node = filterNode("", "0", "1000");
    node.children.insert(node.children.end(),
                         {numberNode("gain", "1"), numberNode("bw", "1.5"), allocNode("gain", 3), allocNode("bw", 4)});
    CFilter tree({{"audio:fltgen-magnus", "peak", {{"type", "1"}}}, arrayNode({"peak"}), node});
    EXPECT_EQ(tree.module().chain(0).list().sections.count(), 1);
    EXPECT_NE(tree.module().chain(0).state(0), kNoBuffer);
}

}  // namespace
}  // namespace tarv
