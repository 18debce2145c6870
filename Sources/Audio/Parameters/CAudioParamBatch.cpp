#include "Audio/Parameters/CAudioParamBatch.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Audio/Parameters/CAudioEnv.h"

namespace tarv {

namespace {

/// Waiting changes beyond which a change is merged with any earlier one of its parameter and group.
constexpr int32_t kCrowd = 256;

// The later record takes the range of both. What neither holds has the present value.
void mergeInto(const CAudioParamData& present, const CAudioParamChange& earlier, CAudioParamChange& later) {
    const int32_t size = later.elementSize;
    const int32_t laterFirst = later.first;
    const int32_t laterEnd = later.first + later.count;
    const int32_t earlierEnd = earlier.first + earlier.count;
    const int32_t first = std::min(earlier.first, laterFirst);
    const int32_t end = later.resize ? laterEnd : std::max(earlierEnd, laterEnd);
    // Each of them is written below.
    later.values.resizeUnset((end - first) * size);
    const auto numberAt = [&](int32_t element, int32_t index) {
        if (element >= earlier.first && element < earlierEnd) {
            return earlier.values[(element - earlier.first) * size + index];
        }
        return present.value(later.group, element, index);
    };
    // From the end: the later record's own numbers move up in their array.
    for (int32_t element = end - 1; element >= first; --element) {
        for (int32_t index = size - 1; index >= 0; --index) {
            const bool isOwn = element >= laterFirst && element < laterEnd;
            later.values[(element - first) * size + index] =
                isOwn ? later.values[(element - laterFirst) * size + index] : numberAt(element, index);
        }
    }
    later.first = first;
    later.count = end - first;
    later.resize = earlier.resize || later.resize ? 1 : 0;
    later.time = earlier.time;
}

}  // namespace

CAudioParamBatch::~CAudioParamBatch() {
    while (CAudioParamChange* change = changes_.takeFirst()) {
        change->release();
    }
}

bool CAudioParamBatch::add(CAudioParamChange* change, const CAudioParamData& present) {
    // A merge can grow the record to all that the group holds: the room is made before the lock is taken.
    const int32_t room = present.elementCount(change->group) * change->elementSize;
    if (change->values.capacity() < room) {
        change->values.reserve(room);
    }
    CAudioParamChange* merged = nullptr;
    {
        CLockScope scope(env_->lock());
        const bool isRunning = env_->isRunning();
        const bool isCrowded = !isRunning || changes_.count() >= kCrowd;
        if (!isRunning) {
            change->time = 0.0;
        }
        if (isCrowded && change->group == CAudioParamData::kAllGroups) {
            return false;
        }
        merged = mergeOrAppend(change, present, isCrowded);
    }
    if (merged) {
        merged->release();
    }
    return true;
}

// Returns the record that the change replaced, if there is one.
CAudioParamChange* CAudioParamBatch::mergeOrAppend(CAudioParamChange* change, const CAudioParamData& present,
                                                   bool isCrowded) {
    constexpr double kSameTime = std::numeric_limits<double>::epsilon();
    CAudioParamChange* entry = change->group == CAudioParamData::kAllGroups ? nullptr : changes_.last();
    for (; entry; entry = changes_.previous(*entry)) {
        const bool isSameParam = entry->param == change->param;
        if (entry->group == CAudioParamData::kAllGroups) {
            if (isSameParam) {
                break;  // merging with a change before it would undo it
            }
            continue;
        }
        if (isSameParam && entry->group == change->group) {
            if (std::fabs(entry->time - change->time) > kSameTime) {
                break;
            }
            mergeInto(present, *entry, *change);
            changes_.replace(*entry, change);
            return entry;
        }
        if (!isCrowded) {
            break;
        }
    }
    changes_.append(change);
    return nullptr;
}

CAudioParamChangeList CAudioParamBatch::takeAll() {
    CLockScope scope(env_->lock());
    return changes_.takeAll();
}

int32_t CAudioParamBatch::count() const {
    CLockScope scope(env_->lock());
    return changes_.count();
}

}  // namespace tarv
