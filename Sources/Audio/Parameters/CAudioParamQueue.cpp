#include "Audio/Parameters/CAudioParamQueue.h"

#include <algorithm>

namespace tarv {

void CAudioParamQueue::append(CAudioParamChange& change, CAudioParamSlot* slot) {
    CAudioParamQueueNode& node = change.takeNode();
    node.next = nullptr;
    node.slot = slot;
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
