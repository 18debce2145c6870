// Computes the difference of two values of a parameter and applies one side of it, element by element.

#include "Audio/Presets/CAudioUndoValues.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Audio/Parameters/CAudioParamCollector.h"

namespace tarv {

namespace {

bool isSameBits(const double* a, const double* b, int32_t count) {
    return std::memcmp(a, b, static_cast<size_t>(count) * sizeof(double)) == 0;
}

template <class CRun>
void extend(CRun& run, int32_t count) {
    if (run.count() + count > run.capacity()) {
        run.reserve(2 * run.capacity() + count);
    }
    run.resize(run.count() + count);
}

void copyNumbers(const CAudioParamData& data, int32_t group, int32_t element, double* numbers) {
    for (int32_t i = 0; i < data.elementSize(); ++i) {
        numbers[i] = data.value(group, element, i);
    }
}

}  // namespace

CAudioUndoValues::CAudioUndoValues(const CAudioParamData& before, const CAudioParamData& after)
    : elementSize_(after.elementSize()), isString_(after.isString()) {
    for (int32_t group = 0; group < std::max(before.groupCount(), after.groupCount()); ++group) {
        if (!before.isSameGroup(group, after, group)) {
            addGroup(before, after, {group, before.elementCount(group), after.elementCount(group)});
        }
    }
}

void CAudioUndoValues::addGroup(const CAudioParamData& before, const CAudioParamData& after, const CGroupCount& count) {
    if (count.before != count.after) {
        counts_.append(count);
    }
    int32_t place = makeRoom();
    for (int32_t element = 0; element < std::max(count.before, count.after); ++element) {
        const bool isHeldBefore = element < count.before;
        const bool isHeldAfter = element < count.after;
        bool isSame = isHeldBefore == isHeldAfter;
        if (isString_) {
            texts_[place] = before.text(count.group, element);
            texts_[place + 1] = after.text(count.group, element);
            isSame = isSame && texts_[place] == texts_[place + 1];
        } else {
            double* const numbers = numbers_.data() + place;
            copyNumbers(before, count.group, element, numbers);
            copyNumbers(after, count.group, element, numbers + elementSize_);
            isSame = isSame && isSameBits(numbers, numbers + elementSize_, elementSize_);
        }
        if (!isSame) {
            elements_.append({count.group, element, place, isHeldBefore, isHeldAfter});
            place = makeRoom();
        }
    }
    if (isString_) {
        texts_.resize(place);
    } else {
        numbers_.resize(place);
    }
}

int32_t CAudioUndoValues::makeRoom() {
    const int32_t place = isString_ ? texts_.count() : numbers_.count();
    if (isString_) {
        extend(texts_, 2);
    } else {
        extend(numbers_, 2 * elementSize_);
    }
    return place;
}

void CAudioUndoValues::addElement(const CAudioUndoValues& later, const CElement& element) {
    int32_t index = elements_.count();
    while (index > 0 && elements_[index - 1].isBehind(element)) {
        --index;
    }
    const bool isThere = index > 0 && !element.isBehind(elements_[index - 1]);
    if (isThere) {
        --index;
        elements_[index].isHeldAfter = element.isHeldAfter;
    } else {
        CElement added = element;
        added.place = makeRoom();
        elements_.insert(index, added);
    }
    const int32_t place = elements_[index].place;
    if (isString_) {
        texts_[place + 1] = later.texts_[element.place + 1];
        if (!isThere) {
            texts_[place] = later.texts_[element.place];
        }
        return;
    }
    const int32_t first = isThere ? elementSize_ : 0;
    std::copy_n(later.numbers_.data() + element.place + first, 2 * elementSize_ - first,
                numbers_.data() + place + first);
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
    if (isEmpty()) {
        *this = std::move(later);
        return;
    }
    for (const CElement& element : later.elements_) {
        addElement(later, element);
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
    return isThere && isString_ ? &textOn(side, elements_[0]) : nullptr;
}

bool CAudioUndoValues::isPresent(const CAudioParamData& data, int32_t first, int32_t end, CSide side) const {
    CArray<double, 4> present;
    present.resize(elementSize_);
    for (int32_t i = first; i < end; ++i) {
        const CElement& element = elements_[i];
        if (isString_) {
            if (data.text(element.group, element.element) != textOn(side, element)) {
                return false;
            }
            continue;
        }
        copyNumbers(data, element.group, element.element, present.data());
        if (!isSameBits(present.data(), numbersOn(side, element), elementSize_)) {
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
        if (elements_[i].isHeldOn(side)) {
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
        double* const numbers = change->values.data() + (element - from) * elementSize_;
        if (isString_) {
            const CString text = isOfStep ? textOn(side, elements_[next]) : data.text(group, element);
            std::generate_n(numbers, elementSize_, [&] { return pool.addString(text); });
        } else if (isOfStep) {
            std::copy_n(numbersOn(side, elements_[next]), elementSize_, numbers);
        } else {
            copyNumbers(data, group, element, numbers);
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
