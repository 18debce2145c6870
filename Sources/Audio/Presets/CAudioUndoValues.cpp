// Computes the difference of two values of a parameter and applies one side of it, element by element.

#include "Audio/Presets/CAudioUndoValues.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Audio/Parameters/CAudioParamCollector.h"

namespace tarv {

CAudioUndoValues::CState CAudioUndoValues::stateOf(const CAudioParamData& data, int32_t group, int32_t element) {
    CState state;
    state.isHeld = element < data.elementCount(group);
    if (data.isString()) {
        state.text = data.text(group, element);
        return state;
    }
    for (int32_t i = 0; i < data.elementSize(); ++i) {
        state.numbers.append(data.value(group, element, i));
    }
    return state;
}

bool CAudioUndoValues::isSame(const CState& a, const CState& b) {
    const auto byteCount = static_cast<size_t>(a.numbers.count()) * sizeof(double);
    return a.isHeld == b.isHeld && a.text == b.text && a.numbers.count() == b.numbers.count() &&
           (byteCount == 0 || std::memcmp(a.numbers.data(), b.numbers.data(), byteCount) == 0);
}

CAudioUndoValues::CAudioUndoValues(const CAudioParamData& before, const CAudioParamData& after) {
    for (int32_t group = 0; group < std::max(before.groupCount(), after.groupCount()); ++group) {
        const CGroupCount count{group, before.elementCount(group), after.elementCount(group)};
        if (count.before != count.after) {
            counts_.append(count);
        }
        for (int32_t element = 0; element < std::max(count.before, count.after); ++element) {
            CElement entry{group, element, stateOf(before, group, element), stateOf(after, group, element)};
            if (!isSame(entry.before, entry.after)) {
                elements_.append(std::move(entry));
            }
        }
    }
}

void CAudioUndoValues::addElement(CElement&& later) {
    int32_t place = elements_.count();
    while (place > 0 && elements_[place - 1].isBehind(later)) {
        --place;
    }
    if (place > 0 && !later.isBehind(elements_[place - 1])) {
        elements_[place - 1].after = std::move(later.after);
    } else {
        elements_.insert(place, std::move(later));
    }
}

void CAudioUndoValues::addCount(const CGroupCount& later) {
    for (CGroupCount& count : counts_) {
        if (count.group == later.group) {
            count.after = later.after;
            return;
        }
    }
    counts_.append(later);
}

void CAudioUndoValues::add(CAudioUndoValues&& later) {
    for (CElement& element : later.elements_) {
        addElement(std::move(element));
    }
    for (const CGroupCount& count : later.counts_) {
        addCount(count);
    }
}

const CAudioUndoValues::CGroupCount* CAudioUndoValues::countOf(int32_t group) const {
    for (const CGroupCount& count : counts_) {
        if (count.group == group) {
            return &count;
        }
    }
    return nullptr;
}

const CString* CAudioUndoValues::firstText(CSide side) const {
    const bool isThere = !elements_.isEmpty() && elements_[0].group == 0 && elements_[0].element == 0;
    return isThere ? &elements_[0].on(side).text : nullptr;
}

bool CAudioUndoValues::isPresent(const CAudioParamData& data, int32_t first, int32_t end, CSide side) const {
    for (int32_t i = first; i < end; ++i) {
        CState present = stateOf(data, elements_[i].group, elements_[i].element);
        present.isHeld = elements_[i].on(side).isHeld;
        if (!isSame(present, elements_[i].on(side))) {
            return false;
        }
    }
    return true;
}

// The group's count on that side. If something else changed the count since the step, the present one, grown to hold
// the step's elements.
int32_t CAudioUndoValues::countFor(const CAudioParamData& data, int32_t first, int32_t end, CSide side) const {
    const int32_t group = elements_[first].group;
    const int32_t present = data.elementCount(group);
    const CGroupCount* count = countOf(group);
    if (count && present == count->on(side == CSide::Before ? CSide::After : CSide::Before)) {
        return count->on(side);
    }
    int32_t needed = present;
    for (int32_t i = first; i < end; ++i) {
        if (elements_[i].on(side).isHeld) {
            needed = std::max(needed, elements_[i].element + 1);
        }
    }
    return needed;
}

// Posts one change from the first element of the step in this group to the last, or to the end if the count changes.
bool CAudioUndoValues::assignGroup(CAudioParam& param, int32_t first, int32_t end, CSide side) const {
    const CAudioParamData& data = param.userData();
    const int32_t group = elements_[first].group;
    const int32_t present = data.elementCount(group);
    const int32_t count = countFor(data, first, end, side);
    if (count == present && isPresent(data, first, end, side)) {
        return false;
    }
    const int32_t from = std::min({elements_[first].element, present, count});
    const int32_t to = count == present ? std::min(elements_[end - 1].element + 1, count) : count;
    CAudioParamCollector& collector = param.collector();
    CAudioParamChange* change = collector.createChange(param, group, from, std::max(to - from, 0), count != present);
    CAudioParamData pool;
    int32_t next = first;
    for (int32_t element = from; element < to; ++element) {
        while (next < end && elements_[next].element < element) {
            ++next;
        }
        const bool isOfStep = next < end && elements_[next].element == element;
        const CState state = isOfStep ? elements_[next].on(side) : stateOf(data, group, element);
        for (int32_t i = 0; i < data.elementSize(); ++i) {
            change->values[(element - from) * data.elementSize() + i] =
                data.isString() ? pool.addString(state.text) : state.numbers[i];
        }
    }
    change->sourcePool = &pool;
    return collector.postWithoutNotifying(param, change);
}

bool CAudioUndoValues::assignTo(CAudioParam& param, CSide side) const {
    CLockScope scope(param.lock());
    bool isChanged = false;
    for (int32_t first = 0; first < elements_.count();) {
        int32_t end = first + 1;
        while (end < elements_.count() && elements_[end].group == elements_[first].group) {
            ++end;
        }
        isChanged = assignGroup(param, first, end, side) || isChanged;
        first = end;
    }
    return isChanged;
}

}  // namespace tarv
