#pragma once

#include <atomic>

#include "Audio/Parameters/CAudioParamData.h"

namespace tarv {

class CAudioParam;
class CAudioParamChangePool;
struct CAudioParamSlot;

/// A change's place in one queue. Belongs to the change.
struct CAudioParamQueueNode {
    CAudioParamQueueNode* next = nullptr;
    CAudioParamChange* change = nullptr;
    CAudioParamSlot* slot = nullptr;  ///< null in the queue of a parameter's engine-side value
};

/// One change of one parameter. A pooled record: CAudioParamCollector::createChange makes it, the poster fills it,
/// postChange takes it over. It is read-only from then on, and returns to its pool when the last queue drops it.
struct CAudioParamChange : public CHeapObject {
    double time = 0.0;  ///< when it takes effect; -1.0 for an initial value
    CAudioParam* param = nullptr;
    int32_t group = 0;   ///< index, or CAudioParamData::kAllGroups
    int32_t first = 0;   ///< first element
    int32_t count = 0;   ///< elements
    int32_t resize = 0;  ///< nonzero: the group's element count becomes first + count
    int32_t elementSize = 1;
    int32_t isString = 0;
    CArray<double, 16> values;                    ///< count * elementSize numbers
    const CAudioParamData* sourcePool = nullptr;  ///< where ids of a string change are valid, until postChange returns

    /// Sets the target, the range and the parameter's shape, with room for `count` elements.
    void shape(CAudioParam& target, int32_t targetGroup, int32_t firstElement, int32_t elementCount, bool isResizing);
    /// Sets a change of one element: number `index` to `value`, brought into the range of `info`, the others to what
    /// `present` holds there.
    void fillElement(const CAudioParamInfo& info, const CAudioParamData& present, int32_t index, double value);

    /// Makes room for `count` list nodes. Only before the first of them is used.
    void prepareNodes(int32_t count) {
        if (nodes_.count() < count) {
            nodes_.resize(count);
        }
    }
    /// The next unused list node, which must exist. Adds a reference.
    CAudioParamQueueNode& takeNode() {
        CAudioParamQueueNode& node = nodes_[nodesUsed_++];
        node.change = this;
        references_.fetch_add(1, std::memory_order_relaxed);
        return node;
    }
    /// Drops one reference; the last one returns the record to its pool. Any thread, never allocates, frees or waits.
    void release();

private:
    friend class CAudioParamChangePool;
    friend class CAudioParamChangeList;

    std::atomic<int32_t> references_{0};
    CAudioParamChangePool* pool_ = nullptr;
    CAudioParamChange* next_ = nullptr;      ///< in a list, or in the pool's free or returned records
    CAudioParamChange* previous_ = nullptr;  ///< in a list
    CArray<CAudioParamQueueNode, 8> nodes_;
    int32_t nodesUsed_ = 0;
};

}  // namespace tarv
