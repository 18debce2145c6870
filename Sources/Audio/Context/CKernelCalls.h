#pragma once

#include <algorithm>
#include <cstdint>

#include "Audio/Context/CKernel.h"
#include "Audio/Context/CQueuedOperation.h"
#include "Audio/Context/CRecordedRun.h"
#include "Audio/Context/CRunInputs.h"

namespace tarv {

/// Calls kernels, and holds the run that is or was recorded.
class CKernelCalls {
public:
    /// Runs `count` (1 to kMaxBatch) operations of one kernel and sample count.
    void call(const CKernel& kernel, CQueuedOperation* const* batch, int32_t count) {
        COperation* operations[kMaxBatch] = {};
        std::copy_n(batch, count, operations);
        const CKernelBatchFunction together = count > 1 ? kernel.batch : nullptr;
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
    /// Runs `count` channels of a chain.
    void callChain(CChainFunction chain, COperation* const* const* stages, int32_t count) {
        chain(stages, count);
        ++callCount_;
    }

    /// Operations are recorded up to endRecording. `joiners` and `inputs`, which may be null, stay until then.
    void startRecording(const CRunJoiners& joiners, CRunInputs* inputs);
    bool isRecording() const { return isRecording_; }
    /// The run that is being recorded, with room for an operation.
    CRecordedRun& roomyRecording() {
        if (!recording_.hasRoom()) [[unlikely]] {
            makeRoom();
        }
        return recording_;
    }
    CRecordedRun& recording() { return recording_; }
    /// Runs what was recorded and waits.
    void settle();
    /// Settles; false if there were too many calls to be kept.
    bool endRecording();
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
    void makeRoom();

    CRecordedRun recording_;
    const CRunJoiners* joiners_ = nullptr;
    CRunInputs* inputs_ = nullptr;
    bool isRecording_ = false;
    bool isWhole_ = false;  ///< all calls of the recorded run had room
    bool isRecorded_ = false;
    uint64_t callCount_ = 0;
    uint64_t repeatCount_ = 0;
};

}  // namespace tarv
