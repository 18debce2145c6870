#pragma once

#include <cstdint>

#include "Audio/Context/CQueuedOperation.h"

namespace tarv {

/// The records of queued operations. The record that was given back last is taken first.
class COperationPool {
public:
    static constexpr int32_t kOperationCount = 512;

    COperationPool() {
        for (CQueuedOperation& operation : operations_) {
            operation.next = free_;
            free_ = &operation;
        }
    }
    COperationPool(const COperationPool&) = delete;
    COperationPool& operator=(const COperationPool&) = delete;

    /// All records are in use.
    bool isEmpty() const { return free_ == nullptr; }
    /// A record with undefined contents. The pool is not empty.
    CQueuedOperation& take() {
        CQueuedOperation& operation = *free_;
        free_ = operation.next;
        ++inUse_;
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
    int32_t inUse_ = 0;
};

}  // namespace tarv
