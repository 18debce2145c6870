#include "Audio/Parameters/CAudioParamChange.h"

#include <algorithm>

#include "Audio/Parameters/CAudioParamChangePool.h"

namespace tarv {

void CAudioParamChange::release() {
    if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        pool_->giveBack(this);
    }
}

void CAudioParamChange::linkTo(CAudioParamQueue& queue, CAudioParamSlot* slot) {
    CAudioParamQueueNode& node = nodes_[nodesUsed_++];
    node.change = this;
    node.slot = slot;
    references_.fetch_add(1, std::memory_order_relaxed);
    queue.append(node);
}

void CAudioParamQueue::append(CAudioParamQueueNode& node) {
    node.next = nullptr;
    if (tail_) {
        tail_->next = &node;
    } else {
        head_ = &node;
    }
    tail_ = &node;
}

double CAudioParamQueue::nextTime(double otherwise) const {
    if (!head_) {
        return otherwise;
    }
    double time = head_->change->time;
    for (const CAudioParamQueueNode* node = head_->next; node; node = node->next) {
        time = std::min(time, node->change->time);
    }
    return time;
}

void CAudioParamQueue::clear() {
    takeAll([](const CAudioParamChange&, CAudioParamSlot*) {});
}

}  // namespace tarv
