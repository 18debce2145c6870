#pragma once

#include "Audio/Context/COperation.h"
#include "Core/CHeap.h"

namespace tarv {

/// The kernel calls of one run of a graph in the order in which they were made, each with its addresses, counts and
/// constants. While the storages exist and the next run would issue the same operations, making the calls again gives
/// the bits of that run, without the graph and without scheduling. Audio thread. Allocates only in the constructor.
class CRecordedRun {
public:
    CRecordedRun();
    ~CRecordedRun();
    CRecordedRun(const CRecordedRun&) = delete;
    CRecordedRun& operator=(const CRecordedRun&) = delete;

    void clear();
    /// Adds a kernel on each of `count` operations, one by one or, with `batch`, in one call.
    void add(CKernelFunction function, CKernelBatchFunction batch, COperation* const* operations, int32_t count);
    /// Adds a chain; `stages` as CChainFunction documents it.
    void addChain(CChainFunction chain, COperation* const* const* stages, int32_t count);
    /// All that was added had room.
    bool isWhole() const { return isWhole_; }
    int32_t operationCount() const { return operationCount_; }
    int32_t callCount() const { return callCount_; }
    /// Makes the calls again, in order.
    void run() const;

private:
    static constexpr int32_t kMostOperations = 1024;

    struct CCall {
        CKernelFunction function;
        CKernelBatchFunction batch;
        CChainFunction chain;
        int32_t first;
        int32_t count;
    };

    bool takeCall(const CCall& call, int32_t operationCount);
    void append(const COperation& operation) { operations_[operationCount_++] = operation; }

    COperation* operations_;
    CCall* calls_;
    int32_t operationCount_ = 0;
    int32_t callCount_ = 0;
    bool isWhole_ = true;
};

}  // namespace tarv
