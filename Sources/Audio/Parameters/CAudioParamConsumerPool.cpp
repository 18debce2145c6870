#include "Audio/Parameters/CAudioParamConsumerPool.h"

namespace tarv {

CAudioParamConsumerPool::~CAudioParamConsumerPool() {
    while (CBlock* block = blocks_) {
        blocks_ = block->next;
        delete block;
    }
}

CAudioParamConsumer& CAudioParamConsumerPool::take() {
    if (!free_) {
        auto* block = new CBlock;
        block->next = blocks_;
        blocks_ = block;
        for (CAudioParamConsumer& consumer : block->consumers) {
            consumer.next = free_;
            free_ = &consumer;
        }
    }
    CAudioParamConsumer& consumer = *free_;
    free_ = consumer.next;
    ++inUse_;
    return consumer;
}

void CAudioParamConsumerPool::giveBack(CAudioParamConsumer& consumer) {
    consumer.next = free_;
    free_ = &consumer;
    --inUse_;
}

}  // namespace tarv
