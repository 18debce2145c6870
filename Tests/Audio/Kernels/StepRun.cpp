#include "Tests/Audio/Kernels/StepRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <random>
#include <string>

#include "Audio/Kernels/ResampleKernels.h"
#include "Audio/Kernels/StandardKernels.h"
#include "Audio/Kernels/TubeKernels.h"

namespace tarv {

namespace {

/// Samples of the least storage of a signal.
constexpr int32_t kStorage = 256;
static_assert(CStepRun::kMostCount <= kStorage);

bool isRead(const CSteps& steps, size_t from, int32_t signal) {
    return std::any_of(steps.begin() + static_cast<int64_t>(from), steps.end(), [=](const CStep& step) {
        return std::find(step.operands.begin() + 1, step.operands.end(), signal) != step.operands.end();
    });
}

void appendBits(std::vector<uint64_t>& bits, const double* numbers, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        bits.push_back(std::bit_cast<uint64_t>(numbers[i]));
    }
}

}  // namespace

CStepRun::CStepRun(const CBlocks& blocks) : context(makeStandardContext()) {
    registerTubeKernels(*context);
    registerResampleKernels(*context);
    // A recorded call ends where a storage must be made.
    constexpr int32_t kMostSignals = 64;
    context->reserveBuffers(kMostSignals, kStorage * static_cast<int32_t>(sizeof(double)));
    std::mt19937 random(1);
    for (int32_t i = 0; i < kInputs; ++i) {
        signals_[i] = {context->takeSignal(kStorage), kMostCount};
        std::generate_n(context->signal(signals_[i].handle), kMostCount,
                        [&] { return 1.4 * (random() / 4294967296.0 - 0.5); });
    }
    sum_ = context->takeSignal(kStorage);
    std::fill_n(context->signal(sum_), kMostCount, 0.0);
    for (const std::vector<double>& block : blocks) {
        blockCounts_.push_back(static_cast<int32_t>(block.size()));
        blocks_.push_back(context->takeBuffer(blockCounts_.back() * static_cast<int32_t>(sizeof(double))));
        std::copy(block.begin(), block.end(), context->signal(blocks_.back()));
    }
}

CBufferHandle CStepRun::handleOf(int32_t operand) const {
    return operand < 0 ? blocks_.at(static_cast<size_t>(~operand)) : signals_.at(operand).handle;
}

void CStepRun::issueStep(const CStep& step) {
    if (step.operands[0] >= 0) {
        signals_[step.operands[0]] = {context->takeSignal(kStorage), step.count};
    }
    const int32_t kernel = context->findKernel(step.kernel);
    std::vector<CBufferHandle> o;
    for (const int32_t operand : step.operands) {
        o.push_back(handleOf(operand));
    }
    switch (o.size()) {
        case 2:
            return context->issue(kernel, step.count, step.immediate, {o[0], o[1]});
        case 3:
            return context->issue(kernel, step.count, step.immediate, {o[0], o[1], o[2]});
        default:
            return context->issue(kernel, step.count, step.immediate, {o[0], o[1], o[2], o[3]});
    }
}

void CStepRun::issue(const CSteps& steps) {
    for (size_t i = 0; i < steps.size(); ++i) {
        issueStep(steps[i]);
        for (const int32_t operand : steps[i].operands) {
            const auto read = signals_.find(operand);
            if (operand >= kInputs && operand != steps[i].operands[0] && !isRead(steps, i + 1, operand) &&
                read != signals_.end()) {
                context->releaseReference(read->second.handle);
                signals_.erase(read);
            }
        }
        if (i + 1 == steps.size() || std::string(steps[i].kernel) != steps[i + 1].kernel) {
            context->endProcess();
        }
    }
    for (auto signal = signals_.lower_bound(kInputs); signal != signals_.end(); signal = signals_.erase(signal)) {
        context->issue(context->commonKernel(CCommonKernel::Add2i), signal->second.count, 0.0,
                       {sum_, signal->second.handle});
        context->releaseReference(signal->second.handle);
    }
}

std::vector<uint64_t> CStepRun::bits(bool isSumAlone) const {
    context->flush();
    std::vector<uint64_t> bits;
    appendBits(bits, context->signal(sum_), kMostCount);
    for (size_t i = 0; i < blocks_.size() && !isSumAlone; ++i) {
        appendBits(bits, context->signal(blocks_[i]), blockCounts_[i]);
    }
    return bits;
}

int32_t joinedOf(const CSteps& steps, const CBlocks& blocks, CJoinedKernels kernels,
                 const std::function<std::unique_ptr<CRunJoiner>(const CQPLEXContext&)>& joiner, bool isSumAlone) {
    CStepRun plain(blocks);
    CStepRun recorded(blocks);
    recorded.context->setJoiner(kernels, joiner(*recorded.context));
    plain.issue(steps);
    recorded.context->startRecording();
    recorded.issue(steps);
    EXPECT_TRUE(recorded.context->endRecording());
    EXPECT_TRUE(recorded.bits(isSumAlone) == plain.bits(isSumAlone));
    for (int32_t i = 0; i < 2; ++i) {
        plain.issue(steps);
        recorded.context->repeat();
        EXPECT_TRUE(recorded.bits(isSumAlone) == plain.bits(isSumAlone)) << "repetition " << i;
    }
    return recorded.context->recordedRun().joinedCount();
}

}  // namespace tarv
