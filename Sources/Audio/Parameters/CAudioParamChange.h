#pragma once

#include <atomic>

#include "Audio/Parameters/CAudioParamData.h"

namespace tarv {

class CAudioParam;
class CAudioParamChangePool;
class CAudioParamQueue;
struct CAudioParamSlot;

/// A change's place in one list. Belongs to the change.
struct CAudioParamQueueNode {
    CAudioParamQueueNode* next = nullptr;
    CAudioParamChange* change = nullptr;
    CAudioParamSlot* slot = nullptr;  ///< null in the parameter's own queue
};

/// One change of one parameter. A pooled record: made by CAudioParamCollector::createChange, filled by the poster,
/// taken over by postChange, read-only from then on, and back in the pool when the last list drops it.
struct CAudioParamChange : public CHeapObject {
    double time = 0.0;  ///< when it takes effect; -1.0 for an initial value
    CAudioParam* param = nullptr;
    int32_t group = 0;   ///< index, or CAudioParamData::kAllGroups
    int32_t first = 0;   ///< first element
    int32_t count = 0;   ///< elements
    int32_t resize = 0;  ///< nonzero: the group's element count becomes first + count
    int32_t elementSize = 1;
    int32_t isString = 0;
    CArray<double, 16> values;                    ///< count * elementSize numbers
    const CAudioParamData* sourcePool = nullptr;  ///< where ids of a string change are valid, until postChange returns

    /// Drops one reference; the last one gives the record back. Any thread, never allocates, frees or waits.
    void release();

private:
    friend class CAudioParamChangePool;
    friend class CAudioParamChangeList;
    friend class CAudioParamCollector;

    /// Appends the change to a queue with the next of its nodes, which must be there, and one reference.
    void linkTo(CAudioParamQueue& queue, CAudioParamSlot* slot);

    std::atomic<int32_t> references_{0};
    CAudioParamChangePool* pool_ = nullptr;
    CAudioParamChange* next_ = nullptr;      ///< in the batch, the pool's list or the returned records
    CAudioParamChange* previous_ = nullptr;  ///< in the batch
    CArray<CAudioParamQueueNode, 8> nodes_;
    int32_t nodesUsed_ = 0;
};

/// The changes delivered to one process, in order, each with the slot that it is for. Audio thread (or the one that
/// builds). Neither appending nor taking allocates, frees or waits.
class CAudioParamQueue {
public:
    CAudioParamQueue() = default;
    CAudioParamQueue(const CAudioParamQueue&) = delete;
    CAudioParamQueue& operator=(const CAudioParamQueue&) = delete;
    ~CAudioParamQueue() { clear(); }

    bool isEmpty() const { return head_ == nullptr; }
    void append(CAudioParamQueueNode& node);
    /// Hands the entries with a time at or before `now` to `take(const CAudioParamChange&, CAudioParamSlot*)` in order
    /// and drops them; later ones stay in their order. `take` must not touch this queue.
    template <class Take>
    void takeDue(double now, Take&& take);
    /// Hands every entry over as takeDue does.
    template <class Take>
    void takeAll(Take&& take);
    template <class Visit>
    void forEach(Visit&& visit) const {
        for (const CAudioParamQueueNode* node = head_; node; node = node->next) {
            visit(static_cast<const CAudioParamChange&>(*node->change));
        }
    }
    /// The earliest time of a waiting entry, or `otherwise`.
    double nextTime(double otherwise) const;
    /// Drops all entries.
    void clear();

private:
    CAudioParamQueueNode* head_ = nullptr;
    CAudioParamQueueNode* tail_ = nullptr;
};

template <class Take>
void CAudioParamQueue::takeDue(double now, Take&& take) {
    CAudioParamQueueNode** link = &head_;
    tail_ = nullptr;
    while (CAudioParamQueueNode* node = *link) {
        if (node->change->time <= now) {
            *link = node->next;
            take(static_cast<const CAudioParamChange&>(*node->change), node->slot);
            node->change->release();
        } else {
            tail_ = node;
            link = &node->next;
        }
    }
}

template <class Take>
void CAudioParamQueue::takeAll(Take&& take) {
    while (CAudioParamQueueNode* node = head_) {
        head_ = node->next;
        take(static_cast<const CAudioParamChange&>(*node->change), node->slot);
        node->change->release();
    }
    tail_ = nullptr;
}

}  // namespace tarv
