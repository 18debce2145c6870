#pragma once

#include "Audio/CAudioParamChange.h"

namespace tarv {

/// Changes waiting for the next round, in order. The environment's lock guards it.
class CAudioParamChangeList {
public:
    bool isEmpty() const { return head_ == nullptr; }
    int32_t count() const { return count_; }
    CAudioParamChange* head() const { return head_; }
    CAudioParamChange* tail() const { return tail_; }
    void append(CAudioParamChange* change);
    CAudioParamChange* takeFirst();
    /// All entries, leaving none.
    CAudioParamChangeList takeAll();

private:
    CAudioParamChange* head_ = nullptr;
    CAudioParamChange* tail_ = nullptr;
    int32_t count_ = 0;
};

/// Change records, in blocks of 16, 32, 64 ...; each is made once and used again. One thread at a time takes (its owner
/// sees to that); any thread gives back, through a stack that it pushes to and that the taker empties in one exchange.
class CAudioParamChangePool {
public:
    CAudioParamChangePool() = default;
    CAudioParamChangePool(const CAudioParamChangePool&) = delete;
    CAudioParamChangePool& operator=(const CAudioParamChangePool&) = delete;
    ~CAudioParamChangePool();

    /// A record with one reference and room for `nodes` list nodes.
    CAudioParamChange* take(int32_t nodes);
    /// Any thread; never allocates, frees or waits.
    void giveBack(CAudioParamChange* change);
    /// Records made so far.
    int32_t madeCount() const { return made_; }

private:
    struct CBlock;
    void addBlock();

    CAudioParamChange* free_ = nullptr;
    std::atomic<CAudioParamChange*> returned_{nullptr};
    CBlock* blocks_ = nullptr;
    int32_t made_ = 0;
    int32_t nextBlock_ = 16;
};

}  // namespace tarv
