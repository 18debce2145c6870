#pragma once

#include "Audio/Parameters/CAudioParamChange.h"

namespace tarv {

/// Change records in blocks of 16, 32, 64 ...; each is made once and reused. One thread at a time takes records, which
/// the owner ensures. Any thread gives them back, by a push to a stack that the taker empties in one exchange.
class CAudioParamChangePool {
public:
    CAudioParamChangePool() = default;
    CAudioParamChangePool(const CAudioParamChangePool&) = delete;
    CAudioParamChangePool& operator=(const CAudioParamChangePool&) = delete;
    ~CAudioParamChangePool();

    /// Makes blocks ahead of the first use until there are `records` records, and room for `nodes` list nodes in each
    /// that is not in use. The taker's thread.
    void prepare(int32_t records, int32_t nodes);
    /// A record with one reference, no values and room for `nodes` list nodes.
    CAudioParamChange* take(int32_t nodes);
    /// Any thread; never allocates, frees or waits.
    void giveBack(CAudioParamChange* change);

private:
    static constexpr int32_t kFirstBlock = 16;

    struct CBlock {
        CAudioParamChange* records;
        int32_t count;
    };
    void addBlock();

    CAudioParamChange* free_ = nullptr;
    std::atomic<CAudioParamChange*> returned_{nullptr};
    CArray<CBlock, 4> blocks_;
    int32_t made_ = 0;
};

}  // namespace tarv
