// The room of FIR sections: designs on the audio thread allocate nothing, longer filters keep their history, and what
// exceeds the room waits for a preparation.

#include <memory>

#include "Audio/Kernels/StandardKernels.h"
#include "Tests/Audio/Modules/FilterModuleTree.h"

namespace tarv {
namespace {

using CSignal = std::vector<double>;

/// A generator of FIR sections that delay by one sample less than the first design number says.
CTestNode delayNode(const std::string& name, const std::string& gains = "1") {
    return {"test:gen", name, {{"type", "21"}, {"gains", gains}, {"numerators", ""}, {"use-length", "true"}}};
}

/// The filter "f" over the array "arr", with the parameter `freq` of 1 to `most`.
CTestNode lengthFilter(const std::string& freq, const std::string& most, const char* isSmooth) {
    CTestNode node = filterNode("", "0", "", {{"is-smooth-update", isSmooth}, {"xfade-length", "0.0001"}});
    node.children.push_back(allocNode("freq", 2));
    node.children.push_back(paramNode("freq", "real", "1", most, freq, {{"is-storable", "true"}}));
    return node;
}

/// Runs one block and counts what the process takes from the heap and gives back meanwhile.
uint64_t heapCallsOfABlock(CFilter& tree, const CSignal& in, CSignal& out) {
    tree.collector().applyPendingChanges(tree.graph.now);
    const auto count = static_cast<int32_t>(in.size());
    CAudioPort& port = tree.process().input(0);
    port.samples = count;
    port.rate = CGraphTree::kRate;
    const CBufferHandle block = tree.graph.context->takeSignal(count);
    std::copy(in.begin(), in.end(), tree.graph.context->signal(block));
    port.add(0, 0, 0, block);
    const CHeapCounters before = CHeap::counters();
    tree.process().process();
    tree.graph.context->flush();
    const CHeapCounters after = CHeap::counters();
    CAudioPort& result = tree.process().output(0);
    const double* const samples = tree.graph.context->signal(result.channels[0].handle);
    out.insert(out.end(), samples, samples + count);
    result.release(*tree.graph.context);
    tree.graph.now += count;
    return after.allocations - before.allocations + after.frees - before.frees;
}

/// What the core does at a resume, with room for the signals of a block.
void prepare(CFilter& tree) {
    tree.graph.context->reserveBuffers(64, 4096);
    tree.graph.context->reserveBuffers(64, 64);
    tree.process().makeSpares();
}

TEST(FirRoomTest, ALongerFilterAllocatesNothingAndKeepsItsHistory) {
    for (const char* isSmooth : {"true", "false"}) {
        CFilter tree({delayNode("fir"), arrayNode({"fir"}), lengthFilter("3", "3000", isSmooth)});
        const CSignal in = noiseSignal(512 * 40);
        CSignal output;
        uint64_t calls = 0;
        tree.run({{0, 0, CSignal(512, 0.0)}});
        prepare(tree);
        int32_t round = 0;
        for (const double length : {3.0, 3000.0, 2.0, 700.0, 3000.0, 256.0, 257.0, 1.0}) {
            tree.set("plugin.f.freq", length);
            const int32_t delay = static_cast<int32_t>(length) - 1;
            // The fade of four samples is over, and the delay line of the last preparation is full again.
            for (int32_t block = 0; block < 5; ++block, ++round) {
                const auto from = in.begin() + round * 512;
                calls += heapCallsOfABlock(tree, CSignal(from, from + 512), output);
                for (int32_t i = 5; i < 512; ++i) {
                    const int32_t at = round * 512 + i;
                    const double expected = at >= delay ? in[static_cast<size_t>(at - delay)] : 0.0;
                    ASSERT_NEAR(output[static_cast<size_t>(at)], expected, 1e-12) << length << ' ' << at << isSmooth;
                }
            }
        }
        EXPECT_EQ(calls, 0u) << isSmooth;
    }
}

TEST(FirRoomTest, AnotherGeneratorAllocatesNothingAndKeepsTheHistoryOfItsPlace) {
    // Nothing, one section, two sections, and a section behind one of another type.
    for (const char* isSmooth : {"true", "false"}) {
        CFilter tree({{"audio:fltgen-bypass", "none"},
                      delayNode("one"),
                      delayNode("two", "1 1"),
                      poles("pole", "1", "0.5"),
                      arrayNode({"none", "one", "two", "pole"}),
                      lengthFilter("600", "600", isSmooth)});
        const CSignal in = noiseSignal(512 * 60);
        CSignal output;
        tree.run({{0, 0, CSignal(512, 0.0)}});
        prepare(tree);
        uint64_t calls = 0;
        int32_t round = 0;
        for (const double index : {1.0, 0.0, 2.0, 1.0, 3.0, 2.0, 0.0, 1.0, 2.0}) {
            tree.set("plugin.f.index", index);
            for (int32_t block = 0; block < 4; ++block, ++round) {
                const auto from = in.begin() + round * 512;
                calls += heapCallsOfABlock(tree, CSignal(from, from + 512), output);
            }
            const int32_t delay = index == 1.0 ? 599 : index == 2.0 ? 2 * 599 : 0;
            for (int32_t at = round * 512 - 300; index != 3.0 && at < round * 512; ++at) {
                ASSERT_NEAR(output[static_cast<size_t>(at)], in[static_cast<size_t>(at - delay)], 1e-12) << index;
            }
        }
        EXPECT_EQ(calls, 0u) << isSmooth;
    }
}

TEST(FirRoomTest, WhatExceedsTheRoomWaitsForThePreparation) {
    for (const char* isSmooth : {"true", "false"}) {
        CFilter tree({delayNode("fir"), arrayNode({"fir"}), lengthFilter("3", "100000", isSmooth)});
        const auto taps = [&] { return tree.module().chain(0).list().sections[0].numerators.count(); };
        CSignal output;
        tree.run({{0, 0, CSignal(64, 0.0)}});
        prepare(tree);
        EXPECT_EQ(tree.module().chain(0).room().taps, CModFilterModule::kMostPreparedTaps);
        const CSignal in = noiseSignal(64);
        tree.set("plugin.f.freq", CModFilterModule::kMostPreparedTaps + 1.0);
        EXPECT_EQ(heapCallsOfABlock(tree, in, output), 0u) << isSmooth;
        EXPECT_EQ(taps(), 3);
        for (size_t i = 2; i < in.size(); ++i) {
            ASSERT_NEAR(output[i], in[i - 2], 1e-12) << i;
        }
        // Values with room act at once, also behind some without.
        tree.set("plugin.f.freq", CModFilterModule::kMostPreparedTaps);
        EXPECT_EQ(heapCallsOfABlock(tree, in, output), 0u) << isSmooth;
        EXPECT_EQ(taps(), CModFilterModule::kMostPreparedTaps);
        tree.set("plugin.f.freq", CModFilterModule::kMostPreparedTaps + 2.0);
        EXPECT_EQ(heapCallsOfABlock(tree, in, output), 0u) << isSmooth;
        tree.process().reset();
        tree.start();
        EXPECT_EQ(taps(), CModFilterModule::kMostPreparedTaps + 2);
    }
}

TEST(FirRoomTest, ALongFilterHoldsItsSpectraInFewBuffers) {
    CFilter tree({delayNode("fir"), arrayNode({"fir"}), lengthFilter("40000", "40000", "false")});
    const CSignal in = noiseSignal(41000);
    const CSignal out = tree.runMono(in, 512);
    for (size_t i = 39999; i < in.size(); ++i) {
        ASSERT_NEAR(out[i], in[i - 39999], 1e-12) << i;
    }
    EXPECT_LT(tree.graph.context->counters().buffersInUse, 20);
}

TEST(FirRoomTest, WithoutBuffersASectionIsSilent) {
    const std::unique_ptr<CQPLEXContext> made = makeStandardContext();
    CQPLEXContext& context = *made;
    std::vector<CBufferHandle> all;
    for (CBufferHandle handle; (handle = context.takeBuffer(64)) != kNoBuffer;) {
        all.push_back(handle);
    }
    CFirSection section(context, 1000);
    for (int32_t i = 0; i < 8; ++i) {
        context.releaseReference(all.back());
        all.pop_back();
    }
    const double tap = 1.0;
    EXPECT_TRUE(section.setTaps(&tap, 1));
    const CBufferHandle in = context.takeSignal(50);
    std::fill_n(context.signal(in), 50, 1.0);
    const CBufferHandle out = section.run(in, 50);
    context.flush();
    for (int32_t i = 0; i < 50; ++i) {
        EXPECT_EQ(context.signal(out)[i], 0.0);
    }
    context.releaseReference(in);
    context.releaseReference(out);
}

}  // namespace
}  // namespace tarv
