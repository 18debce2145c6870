#pragma once

#include <cstdint>

#include "Audio/Context/CQueuedOperation.h"

namespace tarv {

/// The records of queued operations. The record that was given back last is taken first, one that was never used last:
/// a context takes as much of the pool's memory as it needs at a time.
class COperationPool {
public:
    static constexpr int32_t kOperationCount = 512;

    // Leaves the records unwritten.
    COperationPool() {}
    COperationPool(const COperationPool&) = delete;
    COperationPool& operator=(const COperationPool&) = delete;

    /// All records are in use.
    bool isEmpty() const { return free_ == nullptr && usedCount_ == kOperationCount; }
    /// A record with undefined contents. The pool is not empty.
    CQueuedOperation& take() {
        ++inUse_;
        if (free_ == nullptr) [[unlikely]] {
            return operations_[usedCount_++];
        }
        CQueuedOperation& operation = *free_;
        free_ = operation.next;
        return operation;
    }
    void giveBack(CQueuedOperation& operation) {
        operation.next = free_;
        free_ = &operation;
        --inUse_;
    }
    /// Place of a record in the pool, 0 to kOperationCount - 1.
    int32_t numberOf(const CQueuedOperation& operation) const { return static_cast<int32_t>(&operation - operations_); }
    CQueuedOperation& at(int32_t number) { return operations_[number]; }
    int32_t inUse() const { return inUse_; }

private:
    CQueuedOperation operations_[kOperationCount];
    CQueuedOperation* free_ = nullptr;
    int32_t usedCount_ = 0;  ///< the records behind were never used
    int32_t inUse_ = 0;
};

}  // namespace tarv
