#pragma once

#include "Audio/Parameters/CAudioParamConsumer.h"

namespace tarv {

/// Where the changes of one parameter go: into the queues of the processes that consume it, in the order in which they
/// were built, and into a queue for the parameter's engine-side value, which takes them one round later. Belongs to the
/// parameter; only the collector's CAudioParamDelivery works with it. Audio thread, or the thread that builds the
/// graph.
class CAudioParamRoute {
public:
    /// List nodes that a change needs to be delivered to all. Any thread.
    int32_t nodeCount() const { return consumerCount_.load(std::memory_order_relaxed) + 1; }
    /// The consumers, linked by `next`.
    CAudioParamConsumer* firstConsumer() const { return consumers_; }
    /// Puts a consumer behind the others.
    void append(CAudioParamConsumer& consumer);
    /// Takes the first consumer out whose process has that queue, or with null the first of all; null if there is none.
    CAudioParamConsumer* takeOut(const CAudioParamQueue* queue);

    /// Delivers a change; returns the number of consumers that took it.
    uint32_t deliver(CAudioParamChange& change);
    /// Delivered changes that the engine-side value does not have yet.
    CAudioParamQueue& waiting() { return waiting_; }

    /// Notes a delivery in the round of that number; returns whether it is the first in it.
    bool enterRound(uint32_t round);
    /// The next in the collector's list of parameters with waiting changes.
    CAudioParam* nextTouched = nullptr;

private:
    CAudioParamConsumer* consumers_ = nullptr;
    std::atomic<int32_t> consumerCount_{0};
    CAudioParamQueue waiting_;
    uint32_t round_ = 0;
};

}  // namespace tarv
