#include "Audio/Parameters/CAudioParamRoute.h"

namespace tarv {

void CAudioParamRoute::append(CAudioParamConsumer& consumer) {
    CAudioParamConsumer** end = &consumers_;
    while (*end) {
        end = &(*end)->next;
    }
    consumer.next = nullptr;
    *end = &consumer;
    consumerCount_.fetch_add(1, std::memory_order_relaxed);
}

CAudioParamConsumer* CAudioParamRoute::takeOut(const CAudioParamQueue* queue) {
    CAudioParamConsumer** link = &consumers_;
    while (*link && queue && (*link)->queue != queue) {
        link = &(*link)->next;
    }
    CAudioParamConsumer* consumer = *link;
    if (consumer) {
        *link = consumer->next;
        consumerCount_.fetch_sub(1, std::memory_order_relaxed);
    }
    return consumer;
}

uint32_t CAudioParamRoute::deliver(CAudioParamChange& change) {
    // There are fewer nodes only if the graph grew since the change was made.
    change.prepareNodes(nodeCount());
    waiting_.append(change, nullptr);
    uint32_t takers = 0;
    for (CAudioParamConsumer* consumer = consumers_; consumer; consumer = consumer->next) {
        if (consumer->wants(change)) {
            consumer->take(change);
            ++takers;
        }
    }
    return takers;
}

bool CAudioParamRoute::enterRound(uint32_t round) {
    const bool isFirst = round_ != round;
    round_ = round;
    return isFirst;
}

}  // namespace tarv
