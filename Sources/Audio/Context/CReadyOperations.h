#pragma once

#include <cstdint>

#include "Audio/Context/CKernelTable.h"
#include "Audio/Context/CQueuedOperation.h"

namespace tarv {

/// The operations that wait for nothing, in one list for each kernel. Hands them out in batches of one kernel and one
/// sample count: kernels in the order in which their first operation became ready, operations oldest first.
class CReadyOperations {
public:
    CReadyOperations() = default;
    CReadyOperations(const CReadyOperations&) = delete;
    CReadyOperations& operator=(const CReadyOperations&) = delete;

    void add(CQueuedOperation& operation) {
        CKernelList& list = lists_[operation.kernelNumber];
        operation.next = nullptr;
        if (list.first != nullptr) {
            list.last->next = &operation;
            list.last = &operation;
            return;
        }
        list.first = &operation;
        list.last = &operation;
        list.nextActive = nullptr;
        if (firstActive_ == nullptr) {
            firstActive_ = &list;
        } else {
            lastActive_->nextActive = &list;
        }
        lastActive_ = &list;
    }
    /// Writes the operations of the next batch, kMaxBatch at most, and returns how many; 0: none is ready. All ready
    /// operations of a kernel come before those that become ready meanwhile.
    int32_t takeBatch(CQueuedOperation** batch) {
        if (next_ == nullptr) {
            if (firstActive_ == nullptr) {
                return 0;
            }
            CKernelList& list = *firstActive_;
            firstActive_ = list.nextActive;
            next_ = list.first;
            list.first = nullptr;
        }
        const int32_t count = next_->count;
        int32_t n = 0;
        while (next_ != nullptr && n < kMaxBatch && next_->count == count) {
            batch[n++] = next_;
            next_ = next_->next;
        }
        return n;
    }

private:
    struct CKernelList {
        CQueuedOperation* first = nullptr;
        CQueuedOperation* last = nullptr;
        CKernelList* nextActive = nullptr;
    };

    CKernelList lists_[CKernelTable::kKernelCount];
    CKernelList* firstActive_ = nullptr;  // lists that hold operations
    CKernelList* lastActive_ = nullptr;
    CQueuedOperation* next_ = nullptr;  // of the list that is being handed out
};

}  // namespace tarv
