#include "Audio/Kernels/BandChain.h"

#include <gtest/gtest.h>

#include <bit>
#include <memory>
#include <random>
#include <vector>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/CTubeBlock.h"
#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/StandardKernels.h"
#include "Audio/Kernels/TubeKernels.h"
#include "Tests/Audio/Kernels/KernelCases.h"

namespace tarv {
namespace {

constexpr int32_t kMostFrames = 512;
constexpr int32_t kBytes = kMostFrames * 8;

const CKernelCase& caseOf(const char* name) {
    static const std::vector<CKernelCase> cases = allKernelCases();
    for (const CKernelCase& c : cases) {
        if (c.name == name) {
            return c;
        }
    }
    ADD_FAILURE() << name;
    return cases[0];
}

constexpr const char* kStageNames[kChainStages] = {"fltbiqcommong", "flthp1ag", "metatube"};

/// The memory of one band: input, the three outputs, the three blocks.
class CBandMemory {
public:
    explicit CBandMemory(int32_t count) : memory_(static_cast<size_t>(5 * (count + 8))) {
        for (double& x : memory_) {
            x = nextNoise();
        }
        count_ = count;
        for (int32_t s = 0; s < kChainStages; ++s) {
            caseOf(kStageNames[s]).operands[1].fill(blocks_[s]);
            gains_[s] = nextNoise();
        }
    }
    COperation* stage(int32_t s) {
        COperation& o = operations_[s];
        o.count = count_;
        o.immediate = gains_[s];
        o.pointers[0] = at(s + 1);
        o.pointers[1] = blocks_[s];
        o.pointers[2] = at(s);
        o.pointers[3] = at(0);
        return &o;
    }
    std::vector<uint64_t> bits() const {
        std::vector<uint64_t> all;
        for (const double x : memory_) {
            all.push_back(std::bit_cast<uint64_t>(x));
        }
        for (const auto& block : blocks_) {
            for (const double x : block) {
                all.push_back(std::bit_cast<uint64_t>(x));
            }
        }
        return all;
    }

    /// 0 is the input, 1 to 3 are what the stages write.
    std::vector<double> signal(int32_t number) const {
        const auto begin = memory_.begin() + number * (count_ + 8);
        return {begin, begin + count_};
    }
    std::vector<uint64_t> blockBits() const {
        const std::vector<uint64_t> all = bits();
        return {all.begin() + static_cast<int64_t>(memory_.size()), all.end()};
    }

private:
    double* at(int32_t signal) { return memory_.data() + signal * (count_ + 8); }

    std::vector<double> memory_;
    int32_t count_ = 0;
    double blocks_[kChainStages][27] = {};
    double gains_[kChainStages] = {};
    COperation operations_[kChainStages] = {};
};

TEST(BandChain, GivesTheBitsOfOneKernelAfterTheOther) {
    for (int32_t channels = 1; channels <= 9; ++channels) {
        for (const int32_t count : {0, 1, 2, 3, 4, 5, 6, 7, 8, 31, 70, 512}) {
            std::vector<CBandMemory> actual;
            for (int32_t c = 0; c < channels; ++c) {
                actual.emplace_back(count);
            }
            std::vector<CBandMemory> expected = actual;
            for (int32_t run = 0; run < 2; ++run) {
                std::vector<COperation*> stages[kChainStages];
                for (int32_t s = 0; s < kChainStages; ++s) {
                    for (CBandMemory& band : actual) {
                        stages[s].push_back(band.stage(s));
                    }
                }
                COperation* const* const all[] = {stages[0].data(), stages[1].data(), stages[2].data()};
                runBandChain(all, channels);
                for (int32_t c = 0; c < channels; ++c) {
                    const auto i = static_cast<size_t>(c);
                    for (int32_t s = 0; s < kChainStages; ++s) {
                        caseOf(kStageNames[s]).reference(*expected[i].stage(s));
                    }
                    ASSERT_EQ(actual[i].bits(), expected[i].bits()) << c << " of " << channels << ' ' << count;
                }
            }
        }
    }
}

TEST(BandChain, DoesNotWriteLinksWithoutADestination) {
    for (const int32_t channels : {1, 2, 3}) {
        for (const int32_t count : {1, 3, 4, 9, 64}) {
            std::vector<CBandMemory> whole;
            for (int32_t c = 0; c < channels; ++c) {
                whole.emplace_back(count);
            }
            std::vector<CBandMemory> bare = whole;
            const std::vector<CBandMemory> before = whole;
            const auto run = [&](std::vector<CBandMemory>& bands, bool hasLinks) {
                std::vector<COperation*> stages[kChainStages];
                for (int32_t s = 0; s < kChainStages; ++s) {
                    for (CBandMemory& band : bands) {
                        stages[s].push_back(band.stage(s));
                        if (!hasLinks && s + 1 < kChainStages) {
                            stages[s].back()->pointers[0] = nullptr;
                        }
                    }
                }
                COperation* const* const all[] = {stages[0].data(), stages[1].data(), stages[2].data()};
                runBandChain(all, channels);
            };
            run(whole, true);
            run(bare, false);
            for (size_t c = 0; c < whole.size(); ++c) {
                EXPECT_EQ(bare[c].signal(3), whole[c].signal(3)) << count;
                EXPECT_EQ(bare[c].signal(1), before[c].signal(1)) << count;
                EXPECT_EQ(bare[c].signal(2), before[c].signal(2)) << count;
                EXPECT_EQ(bare[c].blockBits(), whole[c].blockBits()) << count;
            }
        }
    }
}

/// Bands issued to a context as the processes of a graph do it.
class BandChainInContext : public testing::Test {
protected:
    BandChainInContext() : context(makeStandardContext()) {
        registerTubeKernels(*context);
        for (int32_t s = 0; s < kChainStages; ++s) {
            kernels[s] = context->findKernel((std::string("com.tarvelo.qplex.") + kStageNames[s]).c_str());
        }
    }
    CBufferHandle signal() const {
        const CBufferHandle handle = context->takeBuffer(kBytes);
        for (int32_t i = 0; i < kMostFrames; ++i) {
            context->signal(handle)[i] = nextNoise();
        }
        return handle;
    }
    CBufferHandle block(int32_t stage) const {
        const CBufferHandle handle = context->takeBuffer(27 * 8);
        caseOf(kStageNames[stage]).operands[1].fill(context->signal(handle));
        return handle;
    }
    /// Issues one stage of one channel; owns the reference of the input from then on, and returns the output.
    CBufferHandle issueStage(int32_t stage, CBufferHandle in, CBufferHandle state, CBufferHandle feed,
                             int32_t count = kMostFrames) const {
        const CBufferHandle out = context->takeBuffer(kBytes);
        if (stage == 2) {
            context->issue(kernels[stage], count, 0.0, {out, state, in, feed});
        } else {
            context->issue(kernels[stage], count, 0.9, {out, state, in});
        }
        context->releaseReference(in);
        return out;
    }
    std::vector<double> contents(CBufferHandle handle) const {
        return {context->signal(handle), context->signal(handle) + kMostFrames};
    }

    std::unique_ptr<CQPLEXContext> context;
    int32_t kernels[kChainStages];
};

TEST_F(BandChainInContext, ThreeProcessesOfTwoChannelsAreOneCall) {
    CBufferHandle blocks[kChainStages][2];
    CBufferHandle feeds[2];
    CBufferHandle signals[2];
    for (int32_t c = 0; c < 2; ++c) {
        feeds[c] = signal();
        signals[c] = feeds[c];
        context->addReference(feeds[c]);
        for (int32_t s = 0; s < kChainStages; ++s) {
            blocks[s][c] = block(s);
        }
    }
    const uint64_t before = context->counters().calls;
    for (int32_t s = 0; s < kChainStages; ++s) {
        for (int32_t c = 0; c < 2; ++c) {
            signals[c] = issueStage(s, signals[c], blocks[s][c], feeds[c]);
        }
        EXPECT_EQ(context->counters().calls, before) << s;
        context->endProcess();
    }
    EXPECT_EQ(context->counters().calls, before + 1);
    EXPECT_EQ(context->counters().operationsWaiting, 0);
    EXPECT_EQ(context->counters().buffersInUse, 10);  // six blocks, the feeds, the outputs
    EXPECT_EQ(context->references(feeds[0]), 1);
    EXPECT_EQ(context->references(signals[0]), 1);
}

TEST_F(BandChainInContext, ALinkWithAnotherReferenceIsWritten) {
    CBufferHandle blocks[kChainStages];
    for (int32_t s = 0; s < kChainStages; ++s) {
        blocks[s] = block(s);
    }
    const CBufferHandle in = signal();
    context->addReference(in);
    const CBufferHandle filtered = issueStage(0, in, blocks[0], kNoBuffer);
    context->addReference(filtered);
    std::vector<double> state(context->signal(blocks[0]), context->signal(blocks[0]) + 27);
    std::vector<double> expected(kMostFrames);
    std::vector<double> source = contents(in);
    COperation o = {};
    o.count = kMostFrames;
    o.immediate = 0.9;
    o.pointers[0] = expected.data();
    o.pointers[1] = state.data();
    o.pointers[2] = source.data();
    caseOf(kStageNames[0]).reference(o);
    context->endProcess();
    const CBufferHandle passed = issueStage(1, filtered, blocks[1], kNoBuffer);
    context->endProcess();
    issueStage(2, passed, blocks[2], in);
    context->endProcess();
    EXPECT_EQ(context->counters().calls, 1u);
    EXPECT_EQ(contents(filtered), expected);
}

TEST_F(BandChainInContext, AnyOtherKernelRunsWhatWasKept) {
    const CBufferHandle in = signal();
    const CBufferHandle filtered = issueStage(0, in, block(0), kNoBuffer);
    context->endProcess();
    EXPECT_EQ(context->counters().calls, 0u);
    const CBufferHandle scaled = context->takeBuffer(kBytes);
    context->issue(context->commonKernel(CCommonKernel::Mulc), kMostFrames, 0.5, {scaled, filtered});
    EXPECT_EQ(context->counters().calls, 1u);
    context->endProcess();
    EXPECT_EQ(context->counters().calls, 2u);
    EXPECT_EQ(context->signal(scaled)[7], context->signal(filtered)[7] * 0.5);
}

TEST_F(BandChainInContext, AProcessOfAnotherKernelIsNotKept) {
    const CBufferHandle a = signal();
    context->issue(context->commonKernel(CCommonKernel::Mulci), kMostFrames, 2.0, {a});
    context->endProcess();
    EXPECT_EQ(context->counters().operationsWaiting, 0);
    // Also when the chain's first kernel is among its operations.
    issueStage(0, signal(), block(0), kNoBuffer);
    context->issue(context->commonKernel(CCommonKernel::Mulci), kMostFrames, 2.0, {a});
    context->endProcess();
    EXPECT_EQ(context->counters().operationsWaiting, 0);
}

TEST_F(BandChainInContext, AFlushRunsAHalfBegunChain) {
    const CBufferHandle filtered = issueStage(0, signal(), block(0), kNoBuffer);
    context->endProcess();
    const CBufferHandle passed = issueStage(1, filtered, block(1), kNoBuffer);
    context->endProcess();
    EXPECT_EQ(context->counters().operationsWaiting, 2);
    context->flush();
    EXPECT_EQ(context->counters().operationsWaiting, 0);
    EXPECT_EQ(context->references(passed), 1);
}

TEST_F(BandChainInContext, StagesThatReadAnotherPlaceOfTheBufferAreNotJoined) {
    constexpr int32_t kHalf = kMostFrames / 2;
    const CBufferHandle in = signal();
    const CBufferHandle filtered = signal();
    const CBufferHandle passed = signal();
    const CBufferHandle out = signal();
    const std::vector<double> before = contents(filtered);
    const CBufferHandle state = block(1);
    std::vector<double> blockBefore(context->signal(state), context->signal(state) + 27);
    context->issue(kernels[0], kHalf, 0.9, {filtered, block(0), in});
    context->endProcess();
    context->issue(kernels[1], kHalf, 0.9, {passed, state, CQPLEXContext::offsetBy(filtered, kHalf * 8)});
    context->endProcess();
    context->issue(kernels[2], kHalf, 0.9, {out, block(2), passed, in});
    context->endProcess();
    std::vector<double> expected(kHalf);
    std::vector<double> source(before.begin() + kHalf, before.end());
    COperation o = {};
    o.count = kHalf;
    o.immediate = 0.9;
    o.pointers[0] = expected.data();
    o.pointers[1] = blockBefore.data();
    o.pointers[2] = source.data();
    caseOf(kStageNames[1]).reference(o);
    EXPECT_EQ(std::vector<double>(context->signal(passed), context->signal(passed) + kHalf), expected);
}

TEST_F(BandChainInContext, EndingAProcessWithoutOperationsKeepsNothing) {
    context->endProcess();
    EXPECT_EQ(context->counters().flushes, 2u);  // that one, and the one that registered the chain
}

TEST_F(BandChainInContext, WhereverProcessesEndTheResultIsThatOfOneByOne) {
    std::mt19937 random(11);
    const auto pick = [&](int32_t n) { return static_cast<int32_t>(random() % static_cast<uint32_t>(n)); };
    constexpr int32_t kSignals = 9;
    for (int32_t round = 0; round < 2000; ++round) {
        std::vector<CBufferHandle> signals;
        std::vector<CBufferHandle> blocks[kChainStages];
        std::vector<std::vector<double>> plainSignals;
        std::vector<std::vector<double>> plainBlocks[kChainStages];
        for (int32_t i = 0; i < kSignals; ++i) {
            signals.push_back(signal());
            plainSignals.push_back(contents(signals.back()));
        }
        for (int32_t s = 0; s < kChainStages; ++s) {
            for (int32_t i = 0; i < 2; ++i) {
                blocks[s].push_back(block(s));
                if (s == 2) {
                    static_cast<CTubeBlock*>(context->data(blocks[s].back()))->gainV = 0.01;
                }
                plainBlocks[s].emplace_back(context->signal(blocks[s].back()), context->signal(blocks[s].back()) + 27);
            }
        }
        size_t last[3] = {0, 1, 2};
        for (int32_t n = 0; n < 18; ++n) {  // few: the stages multiply signals, which must stay numbers
            // Mostly the next stage on what its channel wrote last, so that whole chains come about, and chains that
            // share a block, a feed or a destination with another.
            const int32_t stage = pick(12) ? n / 3 % kChainStages : pick(kChainStages);
            const auto channel = static_cast<size_t>(n % 3);
            const auto to = static_cast<size_t>(pick(kSignals));
            const auto from = pick(8) ? last[channel] : static_cast<size_t>(pick(kSignals));
            const auto feed = static_cast<size_t>(pick(kSignals));
            const auto state = static_cast<size_t>(pick(2));
            const int32_t count = pick(20) ? 40 : pick(40);
            COperation o = {};
            o.count = count;
            o.immediate = 0.9;
            o.pointers[0] = plainSignals[to].data();
            o.pointers[1] = plainBlocks[stage][state].data();
            o.pointers[2] = plainSignals[from].data();
            o.pointers[3] = plainSignals[feed].data();
            caseOf(kStageNames[stage]).reference(o);
            const CBufferHandle block = blocks[stage][state];
            if (stage == 2) {
                context->issue(kernels[stage], count, 0.9, {signals[to], block, signals[from], signals[feed]});
            } else {
                context->issue(kernels[stage], count, 0.9, {signals[to], block, signals[from]});
            }
            last[channel] = to;
            if (channel == 2 ? pick(12) : !pick(12)) {
                context->endProcess();
            }
        }
        context->flush();
        for (size_t i = 0; i < kSignals; ++i) {
            ASSERT_EQ(contents(signals[i]), plainSignals[i]) << round << ' ' << i;
            context->releaseReference(signals[i]);
        }
        for (int32_t s = 0; s < kChainStages; ++s) {
            for (const CBufferHandle handle : blocks[s]) {
                context->releaseReference(handle);
            }
        }
        ASSERT_EQ(context->counters().operationsWaiting, 0);
        ASSERT_EQ(context->counters().buffersInUse, 0);
    }
}

}  // namespace
}  // namespace tarv
