#pragma once

#include "Audio/Parameters/CAudioParamConsumer.h"

namespace tarv {

/// Consumers in blocks of eight; each is made once and used again. No lock; the owner sees to one thread at a time.
class CAudioParamConsumerPool {
public:
    CAudioParamConsumerPool() = default;
    CAudioParamConsumerPool(const CAudioParamConsumerPool&) = delete;
    CAudioParamConsumerPool& operator=(const CAudioParamConsumerPool&) = delete;
    ~CAudioParamConsumerPool();

    /// A consumer with the contents of a former user. Allocates a block if none is free.
    CAudioParamConsumer& take();
    void giveBack(CAudioParamConsumer& consumer);
    /// Consumers that are taken.
    int32_t inUse() const { return inUse_; }

private:
    static constexpr int32_t kConsumersPerBlock = 8;
    struct CBlock : public CHeapObject {
        CBlock* next = nullptr;
        CAudioParamConsumer consumers[kConsumersPerBlock];
    };

    CAudioParamConsumer* free_ = nullptr;
    CBlock* blocks_ = nullptr;
    int32_t inUse_ = 0;
};

}  // namespace tarv
