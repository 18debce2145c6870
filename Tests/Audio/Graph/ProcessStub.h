#pragma once

#include "Tests/Audio/Parameters/ParamTree.h"

namespace tarv {

/// A change as a process takes it from its queue.
struct CTaken {
    double time;
    int32_t group;
    int32_t first;
    std::vector<double> values;
    bool operator==(const CTaken&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const CTaken& taken) {
    out << taken.time << " g" << taken.group << " e" << taken.first << ':';
    for (double value : taken.values)
        out << ' ' << value;
    return out;
}

/// A process as the collector sees it: a queue, slots and a flag.
struct CProcessStub {
    CAudioParamQueue queue;
    CAudioParamSlot slot;
    uint8_t changed = 0;

    void consume(CAudioParam& param, int32_t group, int32_t element) {
        param.collector().addConsumer(param, slot, queue, changed, group, element);
    }
    /// Applies what is due to the slot, as a process does.
    std::vector<CTaken> take(double now = 1e300) {
        std::vector<CTaken> all;
        queue.takeDue(now, [&](const CAudioParamChange& change, CAudioParamSlot* target) {
            EXPECT_EQ(target, &slot);
            target->data.apply(change);
            all.push_back({change.time, change.group, change.first,
                           std::vector<double>(change.values.begin(), change.values.end())});
        });
        changed = 0;
        return all;
    }
};

}  // namespace tarv
