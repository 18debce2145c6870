// The posters' half of the collector: records, the user-side values and the batch that waits for the audio thread.

#include <algorithm>
#include <cmath>
#include <limits>

#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Parameters/CAudioParamCollector.h"

namespace tarv {

namespace {

/// Waiting changes beyond which a change is merged with any earlier one of its parameter and group, so that a host
/// that takes no blocks for hours does not fill the memory.
constexpr int32_t kCrowd = 256;

}  // namespace

void CAudioParamCollector::shape(CAudioParamChange& change, CAudioParam& param, int32_t group, int32_t first,
                                 int32_t count, bool resize) {
    change.param = &param;
    change.group = group;
    change.first = first;
    change.count = std::clamp(count, 0, CAudioParamData::kElementLimit);
    change.resize = resize ? 1 : 0;
    change.elementSize = param.info().elementSize();
    change.isString = param.info().isString() ? 1 : 0;
    change.values.resize(change.count * change.elementSize);
}

CAudioParamChange* CAudioParamCollector::createChange(CAudioParam& param, int32_t group, int32_t first, int32_t count,
                                                      bool resize) {
    CAudioParamChange* change = nullptr;
    {
        CLockScope scope(poolLock_);
        change = pool_.take(param.consumerCount_.load(std::memory_order_relaxed) + 1);
    }
    shape(*change, param, group, first, count, resize);
    return change;
}

CAudioParamChange* CAudioParamCollector::createEngineChange(CAudioParam& param, int32_t group, int32_t first,
                                                            int32_t count, bool resize) {
    CAudioParamChange* change = enginePool_.take(param.consumerCount_.load(std::memory_order_relaxed) + 1);
    shape(*change, param, group, first, count, resize);
    return change;
}

void CAudioParamCollector::postChange(CAudioParam& param, CAudioParamChange* change, bool queued, double time,
                                      const CAudioParamListener* origin) {
    const int32_t group = change->group;
    const int32_t first = change->first;
    const int32_t count = change->count;
    if (!queued) {
        change->time = time;
        if (param.isDefined() && !param.info_.isString() && param.engineData_.takes(*change)) {
            // No round may come for long: of the audio side's own changes a parameter keeps the newest record only.
            applyQueued(param);
            deliver(*change);
        }
        change->release();
        return;
    }
    bool isTaken = false;
    {
        CLockScope scope(param.lock_);
        isTaken = postUnderLock(param, change, time);
    }
    if (isTaken) {
        param.notifyListeners(group, first, count, origin);
    }
}

bool CAudioParamCollector::postWithoutNotifying(CAudioParam& param, CAudioParamChange* change) {
    CLockScope scope(param.lock_);
    return postUnderLock(param, change, 0.0);
}

bool CAudioParamCollector::assign(const CAssignment& assignment, CAudioParamData* before, CAudioParamData* after) {
    CAudioParam& param = *assignment.param;
    const CAudioParamData& data = assignment.data;
    CLockScope scope(param.lock_);
    if (!param.isDefined() || !data.isValid() || data.elementSize() != param.info_.elementSize() ||
        data.isString() != param.info_.isString()) {
        return false;
    }
    const bool isWhole = assignment.group < 0;
    const int32_t first = isWhole ? 0 : assignment.group;
    const int32_t wholeEnd =
        param.info_.isSingleGroup() ? 1 : std::max(param.userData_.groupCount(), data.groupCount());
    const int32_t end = isWhole ? wholeEnd : first + 1;
    bool isChanged = false;
    for (int32_t group = first; group < end; ++group) {
        const int32_t source = isWhole ? group : 0;
        if (param.userData_.isSameGroup(group, data, source)) {
            continue;
        }
        if (!isChanged && before) {
            *before = param.userData_;
        }
        const int32_t size = data.elementSize();
        CAudioParamChange* change = createChange(param, group, 0, data.elementCount(source), true);
        for (int32_t i = 0; i < change->values.count(); ++i) {
            change->values[i] = data.storedNumber(source, i / size, i % size);
        }
        change->sourcePool = &data;
        isChanged = postUnderLock(param, change, 0.0) || isChanged;
    }
    if (isChanged && after) {
        *after = param.userData_;
    }
    return isChanged;
}

bool CAudioParamCollector::postUnderLock(CAudioParam& param, CAudioParamChange* change, double time) {
    if (!param.isDefined() || !param.userData_.takes(*change)) {
        change->release();
        return false;
    }
    change->time = time;
    param.userData_.apply(*change);
    param.isRecordCurrent_ = false;
    param.engineSetsSeen_ = param.engineSets_.load(std::memory_order_acquire);
    if (param.info_.isString()) {
        // No process reads texts: they never travel to the audio thread.
        param.engineData_.apply(*change);
        change->release();
    } else {
        enqueue(param, change);
    }
    return true;
}

void CAudioParamCollector::enqueue(CAudioParam& param, CAudioParamChange* change) {
    // A merge can grow the record to all that the group holds: the room is made before the lock is taken.
    const int32_t room = param.userData_.elementCount(change->group) * change->elementSize;
    if (change->values.capacity() < room) {
        change->values.reserve(room);
    }
    CAudioParamChange* unneeded = nullptr;
    bool isForEachGroup = false;
    {
        CLockScope scope(env_->lock());
        const bool isRunning = env_->isRunning();
        const bool isCrowded = !isRunning || batch_.count() >= kCrowd;
        if (!isRunning) {
            change->time = 0.0;
        }
        isForEachGroup = isCrowded && change->group == CAudioParamData::kAllGroups;
        if (!isForEachGroup) {
            unneeded = mergeOrAppend(param, change, isCrowded);
        }
    }
    if (isForEachGroup) {
        enqueueEachGroup(param, *change);
        unneeded = change;
    }
    if (unneeded) {
        unneeded->release();
    }
}

// Records for all groups cannot be merged, so that a crowd of them would have no end.
void CAudioParamCollector::enqueueEachGroup(CAudioParam& param, const CAudioParamChange& change) {
    for (int32_t group = 0; group < param.userData_.groupCount(); ++group) {
        CAudioParamChange* part = createChange(param, group, change.first, change.count, change.resize != 0);
        part->time = change.time;
        part->values = change.values;
        enqueue(param, part);
    }
}

CAudioParamChange* CAudioParamCollector::mergeOrAppend(CAudioParam& param, CAudioParamChange* change, bool isCrowded) {
    constexpr double kSameTime = std::numeric_limits<double>::epsilon();
    CAudioParamChange* entry = change->group == CAudioParamData::kAllGroups ? nullptr : batch_.last();
    for (; entry; entry = batch_.previous(*entry)) {
        const bool isSameParam = entry->param == &param;
        if (entry->group == CAudioParamData::kAllGroups) {
            if (isSameParam) {
                break;  // merging with what stands before it would undo it
            }
            continue;
        }
        if (isSameParam && entry->group == change->group) {
            if (std::fabs(entry->time - change->time) > kSameTime) {
                break;
            }
            mergeInto(param, *entry, *change);
            batch_.replace(*entry, change);
            return entry;
        }
        if (!isCrowded) {
            break;
        }
    }
    batch_.append(change);
    return nullptr;
}

// The later record takes the range of both. What neither holds has the value that the user side holds.
void CAudioParamCollector::mergeInto(const CAudioParam& param, const CAudioParamChange& earlier,
                                     CAudioParamChange& later) {
    const int32_t size = later.elementSize;
    const int32_t laterFirst = later.first;
    const int32_t laterEnd = later.first + later.count;
    const int32_t earlierEnd = earlier.first + earlier.count;
    const int32_t first = std::min(earlier.first, laterFirst);
    const int32_t end = later.resize ? laterEnd : std::max(earlierEnd, laterEnd);
    later.values.resize((end - first) * size);
    const auto numberAt = [&](int32_t element, int32_t index) {
        if (element >= earlier.first && element < earlierEnd) {
            return earlier.values[(element - earlier.first) * size + index];
        }
        return param.userData_.value(later.group, element, index);
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

int32_t CAudioParamCollector::pendingCount() const {
    CLockScope scope(env_->lock());
    return batch_.count();
}

}  // namespace tarv
