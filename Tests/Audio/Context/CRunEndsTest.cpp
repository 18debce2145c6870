#include "Audio/Context/CRunEnds.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <vector>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/NoiseKernels.h"
#include "Audio/Kernels/StandardKernels.h"

namespace tarv {
namespace {

constexpr int32_t kCount = 300;
constexpr double kNoise = 1.1e-11;

/// A recorded run of some operations over signals of kCount samples.
class RunEnds : public testing::Test {
protected:
    RunEnds() : context_(makeStandardContext()) {
        registerNoiseKernels(*context_);
        context_->startRecording();
    }

    CBufferHandle take() { return context_->takeSignal(kCount); }
    /// A signal that the host gives.
    CBufferHandle input() {
        inputs_.push_back(take());
        std::fill_n(context_->signal(inputs_.back()), kCount, 0.25);
        return inputs_.back();
    }
    void addNoise(CBufferHandle out, CBufferHandle in) {
        const CBufferHandle seed = context_->takeBuffer(8);
        *static_cast<uint32_t*>(context_->data(seed)) = 5;
        issue(context_->findKernel(KernelName::kDenorm), {out, seed, in});
    }
    CBufferHandle noisy(CBufferHandle in) {
        const CBufferHandle out = take();
        addNoise(out, in);
        return out;
    }
    void multiply(CBufferHandle out, CBufferHandle in) {
        issue(context_->commonKernel(CCommonKernel::Mulc), {out, in}, 2.0);
    }
    CBufferHandle twice(CBufferHandle in) {
        const CBufferHandle out = take();
        multiply(out, in);
        return out;
    }
    void issue(int32_t kernel, std::initializer_list<CBufferHandle> operands, double immediate = 0.0) {
        context_->issue(kernel, kCount, immediate, operands);
        context_->endProcess();
    }

    /// Ends the run, whose outputs those are.
    void link(const std::vector<CBufferHandle>& outputs, CRunEnds::CFormat format = CRunEnds::CFormat::Doubles) {
        ASSERT_TRUE(context_->endRecording());
        std::vector<const double*> in;
        for (const CBufferHandle handle : inputs_) {
            in.push_back(context_->signal(handle));
        }
        std::vector<const double*> out;
        for (const CBufferHandle handle : outputs) {
            out.push_back(context_->signal(handle));
        }
        ends_.link(context_->recordedRun(), context_->endKernels(), format, in, out, kCount);
    }

    std::unique_ptr<CQPLEXContext> context_;
    std::vector<CBufferHandle> inputs_;
    CRunEnds ends_;
};

TEST_F(RunEnds, AreTheHostsBuffers) {
    const CBufferHandle out = twice(noisy(input()));
    link({out});
    ASSERT_TRUE(ends_.takesInput(0));
    ASSERT_TRUE(ends_.givesOutput(0));
    std::vector<double> host(kCount, 3.0);
    host[7] = std::numeric_limits<double>::quiet_NaN();
    std::vector<double> result(kCount + 1, 9.0);
    ends_.setInput(0, host.data());
    ends_.setOutput(0, result.data());
    context_->repeat();
    for (int32_t i = 0; i < kCount; ++i) {
        EXPECT_NEAR(result[static_cast<size_t>(i)], i == 7 ? 0.0 : 6.0, 2.0 * kNoise) << i;
    }
    EXPECT_EQ(result[kCount], 9.0);
    // Both at one place.
    ends_.setOutput(0, host.data());
    context_->repeat();
    EXPECT_NEAR(host[0], 6.0, 2.0 * kNoise);
    EXPECT_NEAR(host[7], 0.0, 2.0 * kNoise);
}

TEST_F(RunEnds, OfFloatsAreReadWhereTheyStand) {
    const CBufferHandle out = twice(noisy(input()));
    link({out}, CRunEnds::CFormat::Floats);
    ASSERT_TRUE(ends_.takesInput(0));
    EXPECT_FALSE(ends_.givesOutput(0));
    const std::vector<float> host(kCount, 0.1f);
    ends_.setInput(0, host.data());
    context_->repeat();
    EXPECT_NEAR(context_->signal(out)[kCount - 1], 2.0 * static_cast<double>(0.1f), 2.0 * kNoise);
}

TEST_F(RunEnds, AreCopiedWhereAnInputHasTwoReaders) {
    const CBufferHandle in = input();
    const CBufferHandle first = twice(noisy(in));
    const CBufferHandle second = twice(noisy(in));
    link({first, second});
    EXPECT_FALSE(ends_.takesInput(0));
    EXPECT_TRUE(ends_.givesOutput(0));
    EXPECT_TRUE(ends_.givesOutput(1));
}

TEST_F(RunEnds, AreCopiedWhereTheReaderTakesOnlySignals) {
    const CBufferHandle out = twice(input());
    link({out});
    EXPECT_FALSE(ends_.takesInput(0));
    EXPECT_TRUE(ends_.givesOutput(0));
}

TEST_F(RunEnds, AreCopiedWhereOneCallReadsAnInputAndASignal) {
    const CBufferHandle signal = twice(input());
    const CBufferHandle a = take();
    const CBufferHandle b = take();
    const CBufferHandle in = input();
    // Both in one call.
    const int32_t denorm = context_->findKernel(KernelName::kDenorm);
    const CBufferHandle seedA = context_->takeBuffer(8);
    const CBufferHandle seedB = context_->takeBuffer(8);
    context_->issue(denorm, kCount, 0.0, {a, seedA, signal});
    context_->issue(denorm, kCount, 0.0, {b, seedB, in});
    context_->endProcess();
    const CBufferHandle out = twice(b);
    link({out});
    EXPECT_EQ(context_->recordedRun().callCount(), 3);
    EXPECT_FALSE(ends_.takesInput(0));
    EXPECT_FALSE(ends_.takesInput(1));
}

TEST_F(RunEnds, AreCopiedWhereAnOutputIsAlsoRead) {
    const CBufferHandle out = twice(noisy(input()));
    const CBufferHandle other = twice(out);
    link({out, other});
    EXPECT_FALSE(ends_.givesOutput(0));
    EXPECT_TRUE(ends_.givesOutput(1));
}

TEST_F(RunEnds, AreCopiedWhereAnOutputIsWrittenBeforeAllInputsAreRead) {
    const CBufferHandle first = twice(noisy(input()));
    const CBufferHandle second = twice(noisy(input()));
    link({first, second});
    EXPECT_TRUE(ends_.takesInput(0));
    EXPECT_TRUE(ends_.takesInput(1));
    EXPECT_FALSE(ends_.givesOutput(0));
    EXPECT_TRUE(ends_.givesOutput(1));
}

TEST_F(RunEnds, AreCopiedWhereTheLastKernelAddsToWhatStandsThere) {
    const CBufferHandle out = twice(noisy(input()));
    issue(context_->commonKernel(CCommonKernel::Mulci), {out}, 2.0);
    link({out});
    EXPECT_FALSE(ends_.givesOutput(0));
}

TEST_F(RunEnds, AreCopiedWhereAnOutputIsGivenTwiceOrPieceByPiece) {
    const CBufferHandle in = noisy(input());
    const CBufferHandle twofold = twice(in);
    const CBufferHandle pieces = take();
    const int32_t copy = context_->commonKernel(CCommonKernel::Mulc);
    const int32_t half = kCount / 2;
    const auto offset = half * static_cast<int32_t>(sizeof(double));
    context_->issue(copy, half, 2.0, {pieces, in});
    context_->issue(copy, half, 2.0, {CQPLEXContext::offsetBy(pieces, offset), CQPLEXContext::offsetBy(in, offset)});
    link({twofold, twofold, pieces});
    EXPECT_FALSE(ends_.givesOutput(0));
    EXPECT_FALSE(ends_.givesOutput(1));
    EXPECT_FALSE(ends_.givesOutput(2));
}

TEST_F(RunEnds, MayTakeAPlaceWhereAnotherSignalStood) {
    const CBufferHandle reused = noisy(input());
    const CBufferHandle between = twice(reused);
    multiply(reused, between);
    link({reused});
    ASSERT_TRUE(ends_.takesInput(0));
    ASSERT_TRUE(ends_.givesOutput(0));
    const std::vector<double> host(kCount, 1.0);
    std::vector<double> result(kCount);
    ends_.setInput(0, host.data());
    ends_.setOutput(0, result.data());
    context_->repeat();
    EXPECT_NEAR(result[0], 4.0, 4.0 * kNoise);
    EXPECT_NEAR(context_->signal(reused)[0], 1.0, kNoise);
}

TEST_F(RunEnds, AreThoseOfEightChannels) {
    std::vector<CBufferHandle> ins;
    for (int32_t c = 0; c < 10; ++c) {
        ins.push_back(input());
    }
    std::vector<CBufferHandle> outs;
    for (const CBufferHandle in : ins) {
        outs.push_back(noisy(in));
    }
    for (CBufferHandle& out : outs) {
        out = twice(out);
    }
    link(outs);
    for (int32_t c = 0; c < 10; ++c) {
        EXPECT_EQ(ends_.takesInput(c), c < CRunEnds::kMostChannels) << c;
        EXPECT_EQ(ends_.givesOutput(c), c < CRunEnds::kMostChannels) << c;
    }
}

}  // namespace
}  // namespace tarv
