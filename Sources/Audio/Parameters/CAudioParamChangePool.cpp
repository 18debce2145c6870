#include "Audio/Parameters/CAudioParamChangePool.h"

namespace tarv {

namespace {

/// A record with room for more numbers than this releases it before it is reused.
constexpr int32_t kKeptNumbers = 256;

}  // namespace

CAudioParamChangePool::~CAudioParamChangePool() {
    for (const CBlock& block : blocks_) {
        for (int32_t i = 0; i < block.count; ++i) {
            block.records[i].~CAudioParamChange();
        }
        CHeap::free(block.records);
    }
}

void CAudioParamChangePool::prepare(int32_t records, int32_t nodes) {
    while (made_ < records) {
        addBlock();
    }
    for (const CBlock& block : blocks_) {
        for (int32_t i = 0; i < block.count; ++i) {
            CAudioParamChange& record = block.records[i];
            // The nodes of a record in use are linked into lists and cannot move.
            if (record.references_.load(std::memory_order_acquire) == 0 && record.nodes_.count() < nodes) {
                record.nodes_.resize(nodes);
            }
        }
    }
}

void CAudioParamChangePool::addBlock() {
    const int32_t count = kFirstBlock << blocks_.count();
    auto* records =
        static_cast<CAudioParamChange*>(CHeap::alloc(sizeof(CAudioParamChange) * static_cast<size_t>(count)));
    for (int32_t i = 0; i < count; ++i) {
        auto* record = new (records + i) CAudioParamChange;
        record->pool_ = this;
        record->next_ = free_;
        free_ = record;
    }
    blocks_.append({records, count});
    made_ += count;
}

CAudioParamChange* CAudioParamChangePool::take(int32_t nodes) {
    if (!free_) {
        free_ = returned_.exchange(nullptr, std::memory_order_acquire);
    }
    if (!free_) {
        addBlock();
    }
    CAudioParamChange* change = free_;
    free_ = change->next_;
    change->next_ = nullptr;
    change->previous_ = nullptr;
    change->time = 0.0;
    change->sourcePool = nullptr;
    change->values.clear();
    if (change->values.capacity() > kKeptNumbers) {
        change->values.reserve(0);
    }
    change->nodesUsed_ = 0;
    if (change->nodes_.count() < nodes) {
        change->nodes_.resize(nodes);
    }
    change->references_.store(1, std::memory_order_relaxed);
    return change;
}

void CAudioParamChangePool::giveBack(CAudioParamChange* change) {
    CAudioParamChange* head = returned_.load(std::memory_order_relaxed);
    do {
        change->next_ = head;
    } while (!returned_.compare_exchange_weak(head, change, std::memory_order_release, std::memory_order_relaxed));
}

}  // namespace tarv
