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
            giveBack(consumer);
        }
    }
    CAudioParamConsumer& consumer = *free_;
    free_ = consumer.next;
    return consumer;
}

void CAudioParamConsumerPool::giveBack(CAudioParamConsumer& consumer) {
    consumer.next = free_;
    free_ = &consumer;
}

}  // namespace tarv
