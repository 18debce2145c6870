#pragma once

#include "Audio/Context/COperation.h"
#include "Core/CHeap.h"

namespace tarv {

/// The kernel calls of one run of a graph in the order in which they were made, each with the addresses, counts and
/// constants that it had. As long as the storages stand and the next run would issue the same, running them once more
/// gives what that run would, without the graph and without scheduling. Audio thread. Allocates only when it is made.
class CRecordedRun {
public:
    CRecordedRun();
    ~CRecordedRun();
    CRecordedRun(const CRecordedRun&) = delete;
    CRecordedRun& operator=(const CRecordedRun&) = delete;

    void clear();
    /// A kernel on each of `count` operations one by one; with `batch` in one call.
    void add(CKernelFunction function, CKernelBatchFunction batch, COperation* const* operations, int32_t count);
    /// A chain; operations as its function takes them.
    void addChain(CChainFunction chain, COperation* const* const* stages, int32_t count);
    /// Everything that was added had room.
    bool isWhole() const { return isWhole_; }
    int32_t operationCount() const { return operationCount_; }
    int32_t callCount() const { return callCount_; }
    /// The calls once more, in order.
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
