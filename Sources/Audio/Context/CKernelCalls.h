#pragma once

#include <algorithm>
#include <cstdint>

#include "Audio/Context/CKernel.h"
#include "Audio/Context/CQueuedOperation.h"
#include "Audio/Context/CRecordedRun.h"

namespace tarv {

/// Calls kernels, and records the calls of one run so that they can be repeated.
class CKernelCalls {
public:
    /// Runs `count` (1 to kMaxBatch) operations of one kernel and sample count.
    void call(const CKernel& kernel, CQueuedOperation* const* batch, int32_t count) {
        COperation* operations[kMaxBatch] = {};
        std::copy_n(batch, count, operations);
        const CKernelBatchFunction together = count > 1 ? kernel.batch : nullptr;
        if (isRecording_) [[unlikely]] {
            record(kernel, together, batch, count);
        }
        if (together != nullptr) {
            together(operations, count);
            ++callCount_;
            return;
        }
        for (int32_t i = 0; i < count; ++i) {
            kernel.function(*operations[i]);
        }
        callCount_ += static_cast<uint64_t>(count);
    }
    /// Runs `count` channels of a chain; the others as CRecordedRun::addChain documents them.
    void callChain(CChainFunction chain, COperation* const* const* stages, const int32_t (&operandCounts)[kChainStages],
                   const uint8_t* lastReads, int32_t count);

    /// All calls up to endRecording are recorded.
    void startRecording();
    /// False if there were too many calls to be kept. Any of `joiners` may be null.
    bool endRecording(const std::unique_ptr<CRunJoiner> (&joiners)[kJoinerCount]);
    /// Something changed that the recorded run does not know: it must not be repeated.
    void dropRecording() { isRecorded_ = false; }
    /// A run was recorded and not dropped since.
    bool isRecorded() const { return isRecorded_; }
    /// Makes the recorded calls again.
    void repeat();

    /// Calls so far; a batch counts once, repeated calls do not count.
    uint64_t callCount() const { return callCount_; }
    uint64_t repeatCount() const { return repeatCount_; }

    /// Calls of the recorded run, those that stand for several, and operations.
    const CRecordedRun& recording() const { return recording_; }

private:
    void record(const CKernel& kernel, CKernelBatchFunction together, CQueuedOperation* const* batch, int32_t count);

    CRecordedRun recording_;
    bool isRecording_ = false;
    bool isRecorded_ = false;
    uint64_t callCount_ = 0;
    uint64_t repeatCount_ = 0;
};

}  // namespace tarv
