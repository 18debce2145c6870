#include "Audio/Context/CRecordedRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/StandardKernels.h"
#include "Audio/Kernels/TubeKernels.h"
#include "Tests/Audio/Kernels/KernelCases.h"

namespace tarv {
namespace {

constexpr int32_t kCount = 50;

/// A context with some signals and blocks, and a run of bands, sums and gains on them.
class CSubject {
public:
    CSubject() : context(makeStandardContext()) {
        registerTubeKernels(*context);
        filter_ = context->findKernel("com.tarvelo.qplex.fltbiqcommong");
        highPass_ = context->findKernel("com.tarvelo.qplex.flthp1ag");
        tube_ = context->findKernel("com.tarvelo.qplex.metatube");
        std::mt19937 random(5);
        for (int32_t i = 0; i < kSignals; ++i) {
            signals_.push_back(context->takeSignal(kCount));
            for (int32_t k = 0; k < kCount; ++k) {
                context->signal(signals_.back())[k] = 1e-3 * static_cast<double>(random() % 1000);
            }
        }
        static const std::vector<std::vector<double>> contents = blockContents();
        for (int32_t s = 0; s < kChainStages; ++s) {
            for (int32_t channel = 0; channel < kChannels; ++channel) {
                const std::vector<double>& from = contents[static_cast<size_t>(s * kChannels + channel)];
                blocks_[s][channel] = context->takeBuffer(kBlockNumbers * 8);
                std::copy(from.begin(), from.end(), context->signal(blocks_[s][channel]));
            }
        }
    }

    void issueRun() const {
        CBufferHandle at[kChannels];
        for (int32_t c = 0; c < kChannels; ++c) {
            at[c] = signals_[static_cast<size_t>(c)];
            context->addReference(at[c]);
        }
        const auto each = [&](auto issue) {
            for (int32_t c = 0; c < kChannels; ++c) {
                const CBufferHandle out = context->takeSignal(kCount);
                issue(out, c);
                context->releaseReference(at[c]);
                at[c] = out;
            }
            context->endProcess();
        };
        each([&](CBufferHandle out, int32_t c) { context->issue(filter_, kCount, 0.9, {out, blocks_[0][c], at[c]}); });
        each([&](CBufferHandle out, int32_t c) {
            context->issue(highPass_, kCount, 1.0, {out, blocks_[1][c], at[c]});
        });
        each([&](CBufferHandle out, int32_t c) {
            context->issue(tube_, kCount, 0.0, {out, blocks_[2][c], at[c], signals_[static_cast<size_t>(c)]});
        });
        each([&](CBufferHandle out, int32_t c) {
            context->issue(context->commonKernel(CCommonKernel::Mulc), kCount, 1e-6, {out, at[c]});
        });
        for (int32_t c = 0; c < kChannels; ++c) {
            // Each run changes its input, so a repetition goes on where the one before ended.
            context->issue(context->commonKernel(CCommonKernel::Add2i), kCount, 0.0,
                           {signals_[static_cast<size_t>(c)], at[c]});
            context->releaseReference(at[c]);
        }
    }
    std::vector<double> contents() const {
        context->flush();
        std::vector<double> all;
        for (const CBufferHandle handle : signals_) {
            all.insert(all.end(), context->signal(handle), context->signal(handle) + kCount);
        }
        return all;
    }

    std::unique_ptr<CQPLEXContext> context;

private:
    static constexpr int32_t kSignals = 5;
    static constexpr int32_t kChannels = 3;
    static constexpr int32_t kBlockNumbers = 27;

    /// The blocks of each stage and channel; the same for every subject.
    static std::vector<std::vector<double>> blockContents() {
        std::vector<std::vector<double>> all;
        for (const char* name : {"fltbiqcommong", "flthp1ag", "metatube"}) {
            for (const CKernelCase& c : allKernelCases()) {
                for (int32_t channel = 0; c.name == name && channel < kChannels; ++channel) {
                    all.emplace_back(kBlockNumbers);
                    c.operands[1].fill(all.back().data());
                }
            }
        }
        return all;
    }

    int32_t filter_ = 0;
    int32_t highPass_ = 0;
    int32_t tube_ = 0;
    std::vector<CBufferHandle> signals_;
    CBufferHandle blocks_[kChainStages][kChannels] = {};
};

TEST(CRecordedRun, RepeatingGivesTheBitsOfIssuingAgain) {
    const CSubject issued;
    const CSubject repeated;
    repeated.context->startRecording();
    repeated.issueRun();
    ASSERT_TRUE(repeated.context->endRecording());
    issued.issueRun();
    const std::vector<double> first = issued.contents();
    EXPECT_EQ(repeated.contents(), first);
    for (int32_t i = 0; i < 7; ++i) {
        issued.issueRun();
        issued.context->flush();
        ASSERT_TRUE(repeated.context->isRecorded());
        repeated.context->repeat();
        ASSERT_EQ(repeated.contents(), issued.contents()) << i;
    }
    EXPECT_NE(issued.contents(), first);
    EXPECT_EQ(repeated.context->counters().repeats, 7u);
}

TEST(CRecordedRun, WhatWasQueuedBeforeDoesNotBelongToIt) {
    const CSubject subject;
    const CBufferHandle signal = subject.context->takeSignal(1);
    subject.context->signal(signal)[0] = 1.0;
    subject.context->issue(subject.context->commonKernel(CCommonKernel::Mulci), 1, 2.0, {signal});
    subject.context->startRecording();
    subject.context->issue(subject.context->commonKernel(CCommonKernel::Mulci), 1, 3.0, {signal});
    ASSERT_TRUE(subject.context->endRecording());
    subject.context->repeat();
    EXPECT_EQ(subject.context->signal(signal)[0], 18.0);
}

TEST(CRecordedRun, IsDroppedWhenABufferIsTakenOrAnOperationIssued) {
    const CSubject subject;
    CQPLEXContext& context = *subject.context;
    EXPECT_FALSE(context.isRecorded());
    const CBufferHandle signal = context.takeSignal(1);
    const auto record = [&] {
        context.startRecording();
        context.issue(context.commonKernel(CCommonKernel::Mulci), 1, 3.0, {signal});
        return context.endRecording();
    };
    ASSERT_TRUE(record());
    context.flush();
    EXPECT_TRUE(context.isRecorded());
    context.releaseReference(context.takeSignal(1));
    EXPECT_FALSE(context.isRecorded());
    ASSERT_TRUE(record());
    context.issue(context.commonKernel(CCommonKernel::Mulci), 1, 3.0, {signal});
    EXPECT_FALSE(context.isRecorded());
    ASSERT_TRUE(record());
    context.releaseReference(context.takeBuffer(100000));  // of a size that was never there
    EXPECT_FALSE(context.isRecorded());
}

TEST(CRecordedRun, WithTooManyCallsIsNotKept) {
    const CSubject subject;
    CQPLEXContext& context = *subject.context;
    const CBufferHandle signal = context.takeSignal(1);
    const auto record = [&](int32_t operations) {
        context.signal(signal)[0] = 1.0;
        context.startRecording();
        for (int32_t i = 0; i < operations; ++i) {
            // Each waits for the one before it: a call for each.
            context.issue(context.commonKernel(CCommonKernel::Mulci), 1, 2.0, {signal});
        }
        const bool isKept = context.endRecording();
        EXPECT_EQ(context.signal(signal)[0], std::ldexp(1.0, operations));
        return isKept;
    };
    EXPECT_TRUE(record(CRecordedRun::kMostCalls));
    EXPECT_EQ(context.recordedRun().callCount(), CRecordedRun::kMostCalls);
    EXPECT_FALSE(record(CRecordedRun::kMostCalls + 1));
    EXPECT_FALSE(context.isRecorded());
    EXPECT_TRUE(record(3));
}

TEST(CRecordedRun, WithTooManyOperationsIsNotKept) {
    const CSubject subject;
    CQPLEXContext& context = *subject.context;
    std::vector<CBufferHandle> signals;
    for (int32_t i = 0; i < kMaxBatch; ++i) {
        signals.push_back(context.takeSignal(1));
    }
    // A kernel on several operations at once is one call.
    const auto record = [&](int32_t operations) {
        for (const CBufferHandle signal : signals) {
            context.signal(signal)[0] = 1.0;
        }
        context.startRecording();
        for (int32_t i = 0; i < operations; ++i) {
            context.issue(context.commonKernel(CCommonKernel::Mulci), 1, 2.0, {signals[i % signals.size()]});
        }
        const bool isKept = context.endRecording();
        EXPECT_EQ(context.signal(signals[0])[0], std::ldexp(1.0, (operations + kMaxBatch - 1) / kMaxBatch));
        return isKept;
    };
    EXPECT_TRUE(record(CRecordedRun::kMostOperations));
    EXPECT_EQ(context.recordedRun().operationCount(), CRecordedRun::kMostOperations);
    EXPECT_LT(context.recordedRun().callCount(), CRecordedRun::kMostCalls);
    EXPECT_FALSE(record(CRecordedRun::kMostOperations + 1));
    EXPECT_FALSE(context.isRecorded());
}

/// Counts how often it was asked, and fills a signal with 2.0.
class CTwos final : public CRunInputs {
public:
    explicit CTwos(double* signal) : signal_(signal) {}
    void fill() override {
        ++count;
        *signal_ = 2.0;
    }
    int32_t count = 0;

private:
    double* signal_;
};

TEST(CRecordedRun, RunsWhenItEndsOrIsFlushed) {
    const CSubject subject;
    CQPLEXContext& context = *subject.context;
    const int32_t multiply = context.commonKernel(CCommonKernel::Mulci);
    const CBufferHandle signal = context.takeSignal(1);
    double& value = *context.signal(signal);
    value = 1.0;
    context.startRecording();
    context.issue(multiply, 1, 3.0, {signal});
    context.endProcess();
    EXPECT_EQ(value, 1.0);
    context.flush();
    EXPECT_EQ(value, 3.0);
    context.issue(multiply, 1, 5.0, {signal});
    EXPECT_EQ(value, 3.0);
    ASSERT_TRUE(context.endRecording());
    EXPECT_EQ(value, 15.0);
    context.repeat();
    EXPECT_EQ(value, 225.0);
}

TEST(CRecordedRun, AsksForItsInputsBeforeItRuns) {
    const CSubject subject;
    CQPLEXContext& context = *subject.context;
    const CBufferHandle in = context.takeSignal(1);
    const CBufferHandle other = context.takeSignal(1);
    const CBufferHandle out = context.takeSignal(1);
    CTwos twos(context.signal(in));
    context.startRecording(&twos);
    EXPECT_FALSE(context.isRecordedIn(in));
    context.issue(context.commonKernel(CCommonKernel::Mulc), 1, 3.0, {out, in});
    EXPECT_TRUE(context.isRecordedIn(in));
    EXPECT_FALSE(context.isRecordedIn(other));
    EXPECT_EQ(twos.count, 0);
    ASSERT_TRUE(context.endRecording());
    EXPECT_EQ(twos.count, 1);
    EXPECT_EQ(*context.signal(out), 6.0);
    context.repeat();
    EXPECT_EQ(twos.count, 1);
}

TEST(CRecordedRun, PutsOperationsThatAreApartIntoOneCall) {
    const CSubject subject;
    CQPLEXContext& context = *subject.context;
    const int32_t multiply = context.commonKernel(CCommonKernel::Mulc);
    CBufferHandle s[6];
    for (CBufferHandle& signal : s) {
        signal = context.takeSignal(2);
    }
    const auto calls = [&](auto&& issue) {
        context.startRecording();
        issue();
        EXPECT_TRUE(context.endRecording());
        return context.recordedRun().callCount();
    };
    const auto mulc = [&](CBufferHandle out, CBufferHandle in, int32_t count = 2) {
        context.issue(multiply, count, 1.0, {out, in});
    };
    EXPECT_EQ(calls([&] { mulc(s[1], s[0]), mulc(s[3], s[2]), mulc(s[4], s[0]); }), 1);
    EXPECT_EQ(calls([&] { mulc(s[1], s[0]), mulc(s[2], s[1]); }), 2) << "reads what the first one writes";
    EXPECT_EQ(calls([&] { mulc(s[1], s[0]), mulc(s[0], s[2]); }), 2) << "writes what the first one reads";
    EXPECT_EQ(calls([&] { mulc(s[1], s[0]), mulc(s[1], s[2]); }), 2) << "writes what the first one writes";
    EXPECT_EQ(calls([&] { mulc(s[1], s[0]), mulc(s[3], s[2], 1); }), 2) << "another count";
    EXPECT_EQ(calls([&] { mulc(s[1], s[0]), context.endProcess(), mulc(s[3], s[2]); }), 2) << "another process";
}

TEST(CRecordedRun, PutsOperationsIntoOneCallHoweverManyWereRecordedBefore) {
    const CSubject subject;
    CQPLEXContext& context = *subject.context;
    const int32_t multiply = context.commonKernel(CCommonKernel::Mulci);
    CBufferHandle signals[kMaxBatch];
    for (CBufferHandle& signal : signals) {
        signal = context.takeSignal(1);
    }
    // Numbers of operands have 32 bits: they begin again at 0 behind 2^29 operations.
    const int64_t most = std::getenv("TARV_LONG") ? (int64_t{1} << 29) + 10000 : 100000;
    for (int64_t done = 0; done < most; done += CRecordedRun::kMostOperations) {
        const CBufferHandle fresh[] = {context.takeSignal(1), context.takeSignal(1)};
        context.startRecording();
        context.issue(multiply, 0, 1.0, {fresh[0]});
        context.issue(multiply, 0, 1.0, {fresh[1]});
        ASSERT_TRUE(context.endRecording());
        ASSERT_EQ(context.recordedRun().callCount(), 1) << done;
        context.releaseReference(fresh[0]);
        context.releaseReference(fresh[1]);
        context.startRecording();
        for (int32_t i = 0; i < CRecordedRun::kMostOperations; ++i) {
            context.issue(multiply, 0, 1.0, {signals[i % kMaxBatch]});
        }
        ASSERT_TRUE(context.endRecording());
        ASSERT_EQ(context.recordedRun().callCount(), CRecordedRun::kMostOperations / kMaxBatch) << done;
    }
}

TEST(CRecordedRun, ACallEndsWhereAStorageIsTakenAgain) {
    const CSubject subject;
    CQPLEXContext& context = *subject.context;
    const int32_t multiply = context.commonKernel(CCommonKernel::Mulc);
    const CBufferHandle in = context.takeSignal(kCount);
    const CBufferHandle out = context.takeSignal(kCount);
    CBufferHandle passing = context.takeSignal(kCount);
    std::fill_n(context.signal(in), kCount, 1.0);
    std::fill_n(context.signal(passing), kCount, 10.0);
    const uint64_t growths = context.counters().storageGrowths;
    context.startRecording();
    context.issue(multiply, kCount, 2.0, {out, passing});
    context.releaseReference(passing);
    // No other signal is free.
    passing = context.takeSignal(kCount);
    context.issue(multiply, kCount, 3.0, {passing, in});
    ASSERT_TRUE(context.endRecording());
    EXPECT_EQ(context.counters().storageGrowths, growths);
    EXPECT_EQ(context.recordedRun().callCount(), 2);
    for (int32_t i = 0; i < kCount; ++i) {
        EXPECT_EQ(context.signal(out)[i], 20.0);
        EXPECT_EQ(context.signal(passing)[i], 3.0);
    }
}

TEST(CRecordedRun, NotifiesOfAWriteWhenItIsDone) {
    const CSubject subject;
    CQPLEXContext& context = *subject.context;
    const CBufferHandle signal = context.takeSignal(1);
    context.signal(signal)[0] = 1.0;
    uint8_t isWritten[2] = {};
    context.notifyOnWrite(signal, &isWritten[0], &isWritten[1]);
    context.startRecording();
    context.issue(context.commonKernel(CCommonKernel::Mulci), 1, 3.0, {signal});
    EXPECT_EQ(isWritten[0] + isWritten[1], 2);
    EXPECT_EQ(context.signal(signal)[0], 3.0);
    context.endRecording();
    EXPECT_EQ(context.signal(signal)[0], 3.0);
}

TEST(CRecordedRun, HoldsStateBlocksUntilNothingWaitsForThem) {
    const CSubject subject;
    CQPLEXContext& context = *subject.context;
    const CBufferHandle out = context.takeSignal(1);
    const auto writeState = [&](double value) {
        const CBufferHandle state = context.takeBuffer(sizeof(double));
        *context.signal(state) = value;
        context.issue(context.commonKernel(CCommonKernel::Add2i), 1, 0.0, {out, state});
        context.releaseReference(state);
        return state;
    };
    *context.signal(out) = 0.0;
    context.startRecording();
    writeState(0.25);
    writeState(0.5);  // no other block is free: what waits runs
    EXPECT_EQ(*context.signal(out), 0.25);
    context.endRecording();
    EXPECT_EQ(*context.signal(out), 0.75);
    *context.signal(out) = 0.0;
    context.reserveBuffers(2, sizeof(double));
    context.startRecording();
    const CBufferHandle first = writeState(1.0);
    EXPECT_NE(writeState(10.0), first) << "the operation that reads the first has not run";
    context.flush();
    EXPECT_EQ(*context.signal(out), 11.0);
    writeState(100.0);
    context.endRecording();
    EXPECT_EQ(*context.signal(out), 111.0);
}

}  // namespace
}  // namespace tarv
