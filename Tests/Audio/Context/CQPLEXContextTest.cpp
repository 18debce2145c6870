#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/StandardKernels.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace tarv {
namespace {

constexpr int32_t kFrames = 16;
constexpr int32_t kBytes = kFrames * 8;

std::vector<std::string> ranKernels;  // filled by the recording kernels below

void addOne(COperation& operation) {
    for (int32_t i = 0; i < operation.count; ++i) {
        operation.signal(0)[i] = operation.signal(1)[i] + 1.0;
    }
    ranKernels.push_back("addOne");
}

void addOneBatch(COperation* const* operations, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        addOne(*operations[i]);
        ranKernels.pop_back();
    }
    ranKernels.push_back("addOne x" + std::to_string(count));
}

void doNothing(COperation&) {}

class CQPLEXContextTest : public testing::Test {
protected:
    CQPLEXContextTest() : context(makeStandardContext()) { ranKernels.clear(); }

    int32_t common(CCommonKernel kernel) const { return context->commonKernel(kernel); }
    CBufferHandle filled(double value) {
        const CBufferHandle handle = context->takeBuffer(kBytes);
        for (int32_t i = 0; i < kFrames; ++i) {
            context->signal(handle)[i] = value;
        }
        return handle;
    }
    void expectAll(CBufferHandle handle, double value) const {
        for (int32_t i = 0; i < kFrames; ++i) {
            ASSERT_EQ(context->signal(handle)[i], value) << i;
        }
    }

    std::unique_ptr<CQPLEXContext> context;
};

TEST_F(CQPLEXContextTest, AnOperationRunsAtTheFlushAndNotBefore) {
    const CBufferHandle a = filled(2.0);
    const CBufferHandle b = filled(0.0);
    context->issue(common(CCommonKernel::Mulc), kFrames, 3.0, {b, a});
    expectAll(b, 0.0);
    context->flush();
    expectAll(b, 6.0);
}

TEST_F(CQPLEXContextTest, AReaderWaitsForTheWriterBeforeIt) {
    const CBufferHandle a = filled(2.0);
    const CBufferHandle b = filled(0.0);
    const CBufferHandle c = filled(0.0);
    context->issue(common(CCommonKernel::Mulc), kFrames, 3.0, {b, a});
    context->issue(common(CCommonKernel::Addc), kFrames, 1.0, {c, b});
    context->flush();
    expectAll(c, 7.0);
}

TEST_F(CQPLEXContextTest, AWriterWaitsForTheReadersBeforeIt) {
    const CBufferHandle a = filled(1.0);
    const CBufferHandle slow = filled(0.0);
    const CBufferHandle first = filled(0.0);
    const CBufferHandle second = filled(0.0);
    context->issue(common(CCommonKernel::Fillc), kFrames, 5.0, {slow});
    context->issue(common(CCommonKernel::Add2), kFrames, 0.0, {first, a, slow});
    context->issue(common(CCommonKernel::Mulc), kFrames, 2.0, {second, a});
    context->issue(common(CCommonKernel::Fillc), kFrames, 100.0, {a});
    context->flush();
    expectAll(first, 6.0);
    expectAll(second, 2.0);
    expectAll(a, 100.0);
}

TEST_F(CQPLEXContextTest, WritersOfOneBufferRunInTheOrderOfTheirIssue) {
    const CBufferHandle a = filled(0.0);
    context->issue(common(CCommonKernel::Fillc), kFrames, 1.0, {a});
    context->issue(common(CCommonKernel::Mulci), kFrames, 10.0, {a});
    context->issue(common(CCommonKernel::Fillc), kFrames, 7.0, {a});
    context->issue(common(CCommonKernel::Mulci), kFrames, 3.0, {a});
    context->flush();
    expectAll(a, 21.0);
}

TEST_F(CQPLEXContextTest, AReaderBetweenTwoWritersSeesTheFirst) {
    const CBufferHandle a = filled(0.0);
    const CBufferHandle seen = filled(0.0);
    const CBufferHandle after = filled(0.0);
    context->issue(common(CCommonKernel::Fillc), kFrames, 1.0, {a});
    context->issue(common(CCommonKernel::Copy), kFrames, 0.0, {seen, a});
    context->issue(common(CCommonKernel::Fillc), kFrames, 2.0, {a});
    context->issue(common(CCommonKernel::Copy), kFrames, 0.0, {after, a});
    context->flush();
    expectAll(seen, 1.0);
    expectAll(after, 2.0);
}

TEST_F(CQPLEXContextTest, AnOperationMayNameOneBufferSeveralTimesAtSeveralOffsets) {
    const CBufferHandle a = filled(1.0);
    const CBufferHandle half = CQPLEXContext::offsetBy(a, kBytes / 2);
    context->issue(common(CCommonKernel::Addc), kFrames / 2, 1.0, {half, a});
    context->issue(common(CCommonKernel::Add2), kFrames / 2, 0.0, {a, half, half});
    context->flush();
    for (int32_t i = 0; i < kFrames; ++i) {
        EXPECT_EQ(context->signal(a)[i], i < kFrames / 2 ? 4.0 : 2.0) << i;
    }
    EXPECT_EQ(context->references(a), 1);
}

TEST_F(CQPLEXContextTest, AnUpdateReadsTheStateThatTheQueuedRunLeaves) {
    const CSectionKernels& section = context->sectionKernels(9);  // one-pole high-pass
    const CBufferHandle coefficients = filled(0.5);
    const CBufferHandle old = context->takeBuffer(section.stateSize * 8);
    const CBufferHandle fresh = context->takeBuffer(section.stateSize * 8);
    const CBufferHandle in = filled(1.0);
    const CBufferHandle out = filled(0.0);
    context->issue(section.init, 0, 0.0, {old, coefficients});
    context->issue(section.run, 1, 1.0, {out, old, in});
    context->issue(section.update, 0, 0.0, {fresh, coefficients, old});
    context->issue(section.run, 1, 1.0, {out, old, in});
    context->flush();
    EXPECT_EQ(context->signal(fresh)[1], 0.5);  // one step towards 1
    EXPECT_EQ(context->signal(old)[1], 0.75);   // two steps
}

TEST_F(CQPLEXContextTest, AnyOrderOfDependentOperationsGivesWhatOneByOneGives) {
    std::mt19937 random(7);
    constexpr int32_t kBuffers = 12;
    for (int32_t round = 0; round < 50; ++round) {
        std::vector<CBufferHandle> handles;
        std::vector<std::vector<double>> plain;
        for (int32_t b = 0; b < kBuffers; ++b) {
            handles.push_back(filled(b + 1.0));
            plain.emplace_back(kFrames, b + 1.0);
        }
        for (int32_t n = 0; n < 900; ++n) {  // more than the table holds
            const auto pick = [&] { return static_cast<int32_t>(random() % kBuffers); };
            const int32_t to = pick();
            const int32_t a = pick();
            const int32_t b = pick();
            const double c = static_cast<double>(random() % 100) / 64.0 - 0.7;
            switch (random() % 3) {
                case 0:
                    context->issue(common(CCommonKernel::Mix), kFrames, c, {handles[to], handles[a], handles[b]});
                    for (int32_t i = 0; i < kFrames; ++i) {
                        plain[to][i] = (plain[a][i] - plain[b][i]) * c + plain[b][i];
                    }
                    break;
                case 1:
                    context->issue(common(CCommonKernel::Addc), kFrames, c, {handles[to], handles[a]});
                    for (int32_t i = 0; i < kFrames; ++i) {
                        plain[to][i] = plain[a][i] + c;
                    }
                    break;
                default:
                    context->issue(common(CCommonKernel::Sub2), kFrames / 2, 0.0,
                                   {handles[to], handles[a], handles[b]});
                    for (int32_t i = 0; i < kFrames / 2; ++i) {
                        plain[to][i] = plain[a][i] - plain[b][i];
                    }
                    break;
            }
        }
        context->flush();
        for (int32_t b = 0; b < kBuffers; ++b) {
            for (int32_t i = 0; i < kFrames; ++i) {
                ASSERT_EQ(context->signal(handles[b])[i], plain[b][i]) << round << ' ' << b << ' ' << i;
            }
            context->releaseReference(handles[b]);
        }
    }
    EXPECT_GT(context->counters().forcedFlushes, 0u);
    EXPECT_EQ(context->counters().operationsWaiting, 0);
    EXPECT_EQ(context->counters().buffersInUse, 0);
}

TEST_F(CQPLEXContextTest, ReadyOperationsOfOneKernelAndCountGoTogether) {
    const int32_t kernel = context->registerKernel("test.addOne", addOne, 2, 1, 0, addOneBatch);
    const CBufferHandle in = filled(1.0);
    for (const int32_t count : {4, 4, 4, 5, 4}) {
        context->issue(kernel, count, 0.0, {filled(0.0), in});
    }
    context->flush();
    EXPECT_EQ(ranKernels, (std::vector<std::string>{"addOne x3", "addOne", "addOne"}));
}

TEST_F(CQPLEXContextTest, ChannelsOfAChainGoTogetherStageByStage) {
    const int32_t kernel = context->registerKernel("test.addOne", addOne, 2, 1, 0, addOneBatch);
    CBufferHandle outs[2];
    for (CBufferHandle& out : outs) {
        const CBufferHandle middle = filled(0.0);
        out = filled(0.0);
        context->issue(kernel, kFrames, 0.0, {middle, filled(1.0)});
        context->issue(kernel, kFrames, 0.0, {out, middle});
    }
    context->flush();
    EXPECT_EQ(ranKernels, (std::vector<std::string>{"addOne x2", "addOne x2"}));
    expectAll(outs[0], 3.0);
    expectAll(outs[1], 3.0);
}

TEST_F(CQPLEXContextTest, AnUnrunOperationKeepsItsBuffers) {
    const CBufferHandle a = filled(2.0);
    const CBufferHandle b = filled(0.0);
    context->issue(common(CCommonKernel::Addc), kFrames, 1.0, {b, a});
    context->releaseReference(a);
    for (int32_t i = 0; i < 8; ++i) {
        const CBufferHandle other = filled(99.0);
        EXPECT_NE(other, a);
        context->releaseReference(other);
    }
    context->flush();
    expectAll(b, 3.0);
    EXPECT_EQ(context->takeBuffer(kBytes), a);  // free again, and given back last
}

TEST_F(CQPLEXContextTest, ReferencesIgnoreTheOffset) {
    const CBufferHandle a = filled(0.0);
    const CBufferHandle inside = CQPLEXContext::offsetBy(CQPLEXContext::offsetBy(a, 16), 8);
    context->addReference(inside);
    EXPECT_EQ(context->references(a), 2);
    EXPECT_EQ(context->signal(inside), context->signal(a) + 3);
    context->releaseReference(inside);
    context->releaseReference(inside);
    EXPECT_EQ(context->counters().buffersInUse, 0);
    EXPECT_EQ(CQPLEXContext::offsetBy(kNoBuffer, 8), kNoBuffer);
}

TEST_F(CQPLEXContextTest, NoBufferIsNoReference) {
    context->addReference(kNoBuffer);
    context->releaseReference(kNoBuffer);
    EXPECT_EQ(context->counters().buffersInUse, 0);
    EXPECT_EQ(context->references(kNoBuffer), 0);
    EXPECT_EQ(context->capacity(kNoBuffer), 0);
    EXPECT_EQ(context->data(kNoBuffer), nullptr);
    uint8_t bytes[2] = {};
    context->notifyOnWrite(kNoBuffer, &bytes[0], &bytes[1]);
    // No entry of the table is watched: all of them are taken and written, and the bytes stay 0.
    for (int32_t i = 0; i < CQPLEXContext::kUsableBuffers; ++i) {
        const CBufferHandle taken = context->takeBuffer(64);
        ASSERT_NE(handleIndex(taken), handleIndex(kNoBuffer));
        context->issue(common(CCommonKernel::Fill0), 1, 0.0, {taken});
    }
    context->flush();
    EXPECT_EQ(bytes[0] + bytes[1], 0);
}

TEST_F(CQPLEXContextTest, AFullBufferTableFlushesAndThenGivesNone) {
    const CBufferHandle in = filled(1.0);
    int32_t taken = 1;
    for (; taken < CQPLEXContext::kUsableBuffers - 1; ++taken) {
        ASSERT_NE(context->takeBuffer(64), kNoBuffer);
    }
    const CBufferHandle last = context->takeBuffer(kBytes);
    context->issue(common(CCommonKernel::Copy), kFrames, 0.0, {last, in});
    context->releaseReference(last);  // only the operation holds it now
    const CBufferHandle again = context->takeBuffer(kBytes);
    EXPECT_EQ(again, last);
    EXPECT_EQ(context->takeBuffer(64), kNoBuffer);
    context->issue(common(CCommonKernel::Copy), kFrames, 0.0, {kNoBuffer, in});
    EXPECT_EQ(context->counters().rejected, 1u);
    EXPECT_EQ(context->references(in), 1);
}

TEST_F(CQPLEXContextTest, AnOperationOfNoKernelOrOfWrongOperandsIsNotRun) {
    const CBufferHandle a = filled(1.0);
    context->issue(-1, kFrames, 0.0, {a});
    context->issue(511, kFrames, 0.0, {a});
    context->issue(common(CCommonKernel::Fillc), -1, 5.0, {a});
    context->issue(common(CCommonKernel::Copy), kFrames, 0.0, {a});
    context->flush();
    expectAll(a, 1.0);
    EXPECT_EQ(context->counters().rejected, 4u);
}

TEST_F(CQPLEXContextTest, KernelsRegisteredBehindQueuedOperationsChangeNothingOfThem) {
    const CBufferHandle a = filled(1.0);
    const CBufferHandle b = context->takeBuffer(kBytes);
    context->issue(common(CCommonKernel::Copy), kFrames, 0.0, {b, a});
    context->issue(common(CCommonKernel::Addc), kFrames, 2.0, {a, b});
    for (int32_t i = 0; i < 300; ++i) {
        const std::string name = "test.kernel." + std::to_string(i);
        ASSERT_GE(context->registerKernel(
                      name.c_str(), [](COperation&) {}, 1, 1),
                  0);
    }
    context->flush();
    expectAll(b, 1.0);
    expectAll(a, 3.0);
}

TEST_F(CQPLEXContextTest, ANoticeOfABufferThatIsGivenBackIsForgotten) {
    uint8_t bytes[2] = {};
    const CBufferHandle a = filled(1.0);
    context->notifyOnWrite(a, &bytes[0], &bytes[1]);
    context->releaseReference(a);
    const CBufferHandle again = context->takeBuffer(kBytes);
    ASSERT_EQ(again, a);
    uint8_t others[2] = {};
    context->notifyOnWrite(again, &others[0], &others[1]);
    context->notifyOnWrite(filled(2.0), &bytes[0], &bytes[1]);
    context->issue(common(CCommonKernel::Fill0), kFrames, 0.0, {again});
    context->flush();
    EXPECT_EQ(bytes[0] + bytes[1], 0);
    EXPECT_EQ(others[0] + others[1], 2);
}

TEST_F(CQPLEXContextTest, TheNextWriteSetsBothNotifyBytesOnce) {
    const CBufferHandle a = filled(1.0);
    const CBufferHandle b = filled(1.0);
    uint8_t first = 0;
    uint8_t second = 0;
    context->notifyOnWrite(a, &first, &second);
    context->issue(common(CCommonKernel::Copy), kFrames, 0.0, {b, a});
    context->flush();
    EXPECT_EQ(first + second, 0);  // a read is no write
    context->issue(common(CCommonKernel::Fill0), kFrames, 0.0, {a});
    context->flush();
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
    first = second = 0;
    context->issue(common(CCommonKernel::Fill0), kFrames, 0.0, {a});
    context->flush();
    EXPECT_EQ(first + second, 0);
}

TEST_F(CQPLEXContextTest, AKernelRegisteredAgainWithEqualValuesKeepsItsNumber) {
    const int32_t number = context->registerKernel("test.k", doNothing, 3, 5, 9);
    EXPECT_GE(number, 0);
    EXPECT_EQ(context->registerKernel("test.k", doNothing, 3, 5, 9), number);
    EXPECT_EQ(context->findKernel("test.k"), number);
    EXPECT_EQ(context->findKernel("test.other"), -1);
}

TEST_F(CQPLEXContextTest, AKernelNameWithOtherValuesIsRefused) {
    ASSERT_GE(context->registerKernel("test.k", doNothing, 3, 5, 9), 0);
    EXPECT_EQ(context->registerKernel("test.k", addOne, 3, 5, 9), -1);
    EXPECT_EQ(context->registerKernel("test.k", doNothing, 2, 5, 9), -1);
    EXPECT_EQ(context->registerKernel("test.k", doNothing, 3, 4, 9), -1);
    EXPECT_EQ(context->registerKernel("test.k", doNothing, 3, 5, 8), -1);
}

TEST_F(CQPLEXContextTest, AnOperandCountOutsideOneToEightIsRefused) {
    EXPECT_EQ(context->registerKernel("test.none", doNothing, 0, 1), -1);
    EXPECT_EQ(context->registerKernel("test.nine", doNothing, 9, 1), -1);
    EXPECT_GE(context->registerKernel("test.eight", doNothing, 8, 1), 0);
}

TEST_F(CQPLEXContextTest, KernelNamesCountUpToTheSixtyFourthCharacter) {
    const std::string name(64, 'n');
    const int32_t number = context->registerKernel(name.c_str(), doNothing, 1, 1);
    EXPECT_EQ(context->findKernel((name + "tail").c_str()), number);
    EXPECT_EQ(context->registerKernel((name + "other").c_str(), doNothing, 1, 1), number);
    EXPECT_EQ(std::string(context->kernel(number).name), name);
}

TEST_F(CQPLEXContextTest, TheKernelTableHoldsFiveHundredAndTwelve) {
    int32_t last = -1;
    for (int32_t i = 0;; ++i) {
        const int32_t number = context->registerKernel(("test." + std::to_string(i)).c_str(), doNothing, 1, 1);
        if (number < 0) {
            break;
        }
        last = number;
    }
    EXPECT_EQ(last, 511);
    EXPECT_EQ(context->findKernel("test.0") >= 0, true);
}

TEST_F(CQPLEXContextTest, CommonKernelsAreTheFirstThirtyTwoInTheirOrder) {
    EXPECT_EQ(common(CCommonKernel::Copy), context->findKernel("com.tarvelo.qplex.copy"));
    EXPECT_EQ(common(CCommonKernel::Mulc), context->findKernel("com.tarvelo.qplex.mulc"));
    EXPECT_EQ(common(CCommonKernel::Xfade), context->findKernel("com.tarvelo.qplex.xfade"));
    for (int32_t i = 0; i < 32; ++i) {
        EXPECT_EQ(common(static_cast<CCommonKernel>(i)), i);
    }
}

TEST_F(CQPLEXContextTest, StateBlocksAndSignalsKeepToTheirOwnStorages) {
    const CBufferHandle state = context->takeBuffer(48);
    const CBufferHandle signal = context->takeBuffer(4096);
    context->releaseReference(signal);
    context->releaseReference(state);
    const CBufferHandle secondSignal = context->takeBuffer(4096);
    EXPECT_EQ(secondSignal, signal);
    const CBufferHandle secondState = context->takeBuffer(40);
    EXPECT_EQ(secondState, state);
    const CBufferHandle thirdState = context->takeBuffer(40);
    EXPECT_EQ(context->capacity(thirdState), 64);
}

TEST_F(CQPLEXContextTest, AReservedStorageServesEverySmallerSignalWithoutAllocating) {
    context->reserveBuffers(4, 32768);
    context->reserveBuffers(4, 1024);
    const uint64_t before = context->counters().storageGrowths;
    for (const int32_t bytes : {8, 64, 800, 1024, 1032, 4096, 4104, 32768}) {
        const CBufferHandle handle = context->takeBuffer(bytes);
        EXPECT_GE(context->capacity(handle), bytes);
        context->releaseReference(handle);
    }
    context->reserveBuffers(4, 32768);
    EXPECT_EQ(context->counters().storageGrowths, before);
}

TEST_F(CQPLEXContextTest, SteadyStateAllocatesNothing) {
    const auto block = [&](int32_t frames) {
        const CBufferHandle in = context->takeBuffer(frames * 8);
        context->issue(common(CCommonKernel::Fill0), frames, 0.0, {in});
        for (int32_t channel = 0; channel < 4; ++channel) {
            const CBufferHandle out = context->takeBuffer(frames * 8);
            context->issue(common(CCommonKernel::Addc), frames, 1.0, {out, in});
            context->releaseReference(out);
        }
        context->releaseReference(in);
        context->flush();
    };
    block(512);
    const CHeapCounters before = CHeap::counters();
    for (int32_t round = 0; round < 1000; ++round) {
        block(512 - round % 200);
    }
    EXPECT_EQ(CHeap::counters().allocations, before.allocations);
    EXPECT_EQ(CHeap::counters().frees, before.frees);
}

TEST_F(CQPLEXContextTest, NeighbouringSignalsStartAtDifferentPlacesOfTheirPages) {
    std::vector<uintptr_t> places;
    for (int32_t i = 0; i < 16; ++i) {
        places.push_back(reinterpret_cast<uintptr_t>(context->data(context->takeBuffer(4096))) % 4096 / 64);
        for (size_t k = 0; k + 1 < places.size(); ++k) {
            EXPECT_NE(places[k], places.back());
        }
    }
}

TEST_F(CQPLEXContextTest, ABlockOfNoFramesRunsEveryKernelHarmlessly) {
    const CBufferHandle a = filled(1.0);
    const CBufferHandle b = filled(2.0);
    context->issue(common(CCommonKernel::Mix), 0, 0.5, {a, b, b});
    context->flush();
    expectAll(a, 1.0);
}

}  // namespace
}  // namespace tarv
