#pragma once

#include "Audio/Parameters/CAudioParamChange.h"

namespace tarv {

/// The changes delivered to one process, in order, each with the slot that it is for. Audio thread (or the one that
/// builds the graph). Neither appending nor taking allocates, frees or waits.
class CAudioParamQueue {
public:
    CAudioParamQueue() = default;
    CAudioParamQueue(const CAudioParamQueue&) = delete;
    CAudioParamQueue& operator=(const CAudioParamQueue&) = delete;
    ~CAudioParamQueue() { clear(); }

    bool isEmpty() const { return head_ == nullptr; }
    /// Puts a change behind the others, with one reference and one of its list nodes, of which one must be free.
    void append(CAudioParamChange& change, CAudioParamSlot* slot);
    /// Passes the entries with a time at or before `now` to `take(const CAudioParamChange&, CAudioParamSlot*)` in order
    /// and drops them; later ones stay in their order. `take` must not touch this queue.
    template <class Take>
    void takeDue(double now, Take&& take);
    /// Passes every entry to `take` as takeDue does.
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
