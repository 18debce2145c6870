#include "Audio/Parameters/CAudioParamData.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Audio/Parameters/CAudioParamChange.h"
#include "Audio/Parameters/CAudioParamInfo.h"

namespace tarv {

CAudioParamData& CAudioParamData::operator=(const CAudioParamData& other) {
    if (this == &other) {
        return *this;
    }
    elementSize_ = other.elementSize_;
    isString_ = other.isString_;
    itemType_ = other.itemType_;
    isValid_ = other.isValid_;
    strings_ = other.strings_;
    defaults_ = other.defaults_;
    defaultStrings_ = other.defaultStrings_;
    emptyGroups();
    growGroups(other.groupCount_);
    for (int32_t i = 0; i < groupCount_; ++i) {
        const CGroup& source = other.groups_[i];
        reserveGroup(i, source.elementCount);
        groups_[i].elementCount = source.elementCount;
        std::copy_n(source.values, source.elementCount * elementSize_, groups_[i].values);
    }
    return *this;
}

CAudioParamData& CAudioParamData::operator=(CAudioParamData&& other) noexcept {
    if (this != &other) {
        freeGroups();
        elementSize_ = other.elementSize_;
        isString_ = other.isString_;
        itemType_ = other.itemType_;
        isValid_ = std::exchange(other.isValid_, 0);
        strings_ = std::move(other.strings_);
        groups_ = std::move(other.groups_);
        groupCount_ = std::exchange(other.groupCount_, 0);
        defaults_ = std::move(other.defaults_);
        defaultStrings_ = std::move(other.defaultStrings_);
    }
    return *this;
}

void CAudioParamData::freeGroups() {
    for (CGroup& group : groups_) {
        CHeap::free(group.values);
    }
    groups_.clear();
    groupCount_ = 0;
}

void CAudioParamData::emptyGroups() {
    for (CGroup& group : groups_) {
        group.elementCount = 0;
    }
    groupCount_ = 0;
}

void CAudioParamData::growGroups(int32_t count) {
    if (count > groups_.count()) {
        groups_.resize(count);
    }
    groupCount_ = std::max(groupCount_, count);
}

void CAudioParamData::reserveGroup(int32_t group, int32_t elements) {
    CGroup& target = groups_[group];
    const int32_t needed = elements * elementSize_;
    if (needed > target.capacity) {
        target.values =
            static_cast<double*>(CHeap::realloc(target.values, static_cast<size_t>(needed) * sizeof(double)));
        target.capacity = needed;
    }
}

void CAudioParamData::reserve(int32_t group, int32_t elements, int32_t groups) {
    const bool all = group == kAllGroups;
    const int32_t last = all ? groups : group + 1;
    if (groups_.count() < last) {
        groups_.resize(last);
    }
    for (int32_t i = all ? 0 : group; i < last; ++i) {
        reserveGroup(i, elements);
    }
}

void CAudioParamData::reset(const CAudioParamInfo& info) {
    emptyGroups();
    strings_.clear();
    defaults_.clear();
    defaultStrings_.clear();
    elementSize_ = info.elementSize();
    isString_ = info.isString() ? 1 : 0;
    itemType_ = info.flags();
    isValid_ = 1;
    if (info.defaultRowCount() > 0) {
        const CAudioParamRow& row = info.defaultRow(0);
        for (int32_t i = 0; i < row.count(); ++i) {
            defaults_.append(isString_ ? defaultStrings_.copy(static_cast<int32_t>(row[i]), info.stringPool().strings_)
                                       : row[i]);
        }
    }
}

void CAudioParamData::resetWithDefaults(const CAudioParamInfo& info, int32_t group, int32_t elementHint) {
    reset(info);
    if (group < 0 || group >= kGroupLimit) {
        return;
    }
    growGroups(group + 1);
    const int32_t elements = std::max(defaults_.count() / elementSize_, elementHint);
    reserveGroup(group, elements);
    fillDefaults(groups_[group], 0, elements);
    groups_[group].elementCount = elements;
}

double CAudioParamData::defaultValue(int32_t element, int32_t index) const {
    if (index < 0 || index >= elementSize_) {
        return 0.0;
    }
    const bool hasElement = element > 0 && element < defaults_.count() / elementSize_;
    const int32_t place = (hasElement ? element * elementSize_ : 0) + index;
    return place < defaults_.count() ? defaults_[place] : 0.0;
}

double CAudioParamData::value(int32_t group, int32_t element, int32_t index) const {
    const int32_t source = (itemType_ & CAudioParamInfo::SingleGroup) != 0 ? 0 : group;
    if (element >= 0 && element < elementCount(source) && index >= 0 && index < elementSize_) {
        return groups_[source].values[element * elementSize_ + index];
    }
    return defaultValue(element, index);
}

CString CAudioParamData::text(int32_t group, int32_t element) const {
    const int32_t source = (itemType_ & CAudioParamInfo::SingleGroup) != 0 ? 0 : group;
    const bool isStored = element >= 0 && element < elementCount(source);
    const CAudioParamStringMap& map = isStored ? strings_ : defaultStrings_;
    const CString* found = map.get(static_cast<int32_t>(value(group, element)));
    return isString_ && found ? *found : CString();
}

bool CAudioParamData::isSameGroup(int32_t group, const CAudioParamData& other, int32_t otherGroup) const {
    const int32_t count = elementCount(group);
    if (count != other.elementCount(otherGroup)) {
        return false;
    }
    if (count == 0) {
        return true;
    }
    const double* own = groups_[group].values;
    const double* others = other.groups_[otherGroup].values;
    if (!isString_) {
        return std::memcmp(own, others, static_cast<size_t>(count * elementSize_) * sizeof(double)) == 0;
    }
    for (int32_t i = 0; i < count * elementSize_; ++i) {
        const CString* ownText = getString(static_cast<int32_t>(own[i]));
        const CString* otherText = other.getString(static_cast<int32_t>(others[i]));
        if (!ownText != !otherText || (ownText && *ownText != *otherText)) {
            return false;
        }
    }
    return true;
}

bool CAudioParamData::isSame(const CAudioParamData& other) const {
    for (int32_t i = 0; i < std::max(groupCount_, other.groupCount_); ++i) {
        if (!isSameGroup(i, other, i)) {
            return false;
        }
    }
    return true;
}

void CAudioParamData::clampTo(const CAudioParamInfo& info) {
    if (isString_) {
        return;
    }
    for (int32_t group = 0; group < groupCount_; ++group) {
        for (int32_t i = 0; i < groups_[group].elementCount * elementSize_; ++i) {
            double& number = groups_[group].values[i];
            const int32_t index = i % elementSize_;
            number = std::isnan(number) ? defaultValue(i / elementSize_, index) : info.clamp(index, number);
        }
    }
}

CAudioParamData CAudioParamData::onlyGroup(int32_t group, const CAudioParamInfo& info) const {
    CAudioParamData only;
    only.reset(info);
    only.growGroups(1);
    const int32_t count = elementCount(group);
    only.reserveGroup(0, count);
    only.groups_[0].elementCount = count;
    for (int32_t i = 0; i < count * elementSize_; ++i) {
        const double number = groups_[group].values[i];
        only.groups_[0].values[i] = isString_ ? only.strings_.copy(static_cast<int32_t>(number), strings_) : number;
    }
    return only;
}

bool CAudioParamData::takes(const CAudioParamChange& change) const {
    const int32_t groupLimit = (itemType_ & CAudioParamInfo::SingleGroup) != 0 ? 1 : kGroupLimit;
    const bool hasGroup = change.group == kAllGroups || (change.group >= 0 && change.group < groupLimit);
    return hasGroup && isValid() && change.elementSize == elementSize_ && change.isString == isString_ &&
           change.first >= 0 && change.count >= 0 && change.first <= kElementLimit &&
           change.count <= kElementLimit - change.first && change.values.count() >= change.count * elementSize_ &&
           (!isString_ || change.sourcePool);
}

void CAudioParamData::apply(const CAudioParamChange& change) {
    if (!takes(change)) {
        return;
    }
    if (change.group == kAllGroups) {
        for (int32_t i = 0; i < groupCount_; ++i) {
            applyToGroup(groups_[i], change);
        }
    } else {
        growGroups(change.group + 1);
        applyToGroup(groups_[change.group], change);
    }
}

void CAudioParamData::applyToGroup(CGroup& group, const CAudioParamChange& change) {
    const int32_t end = change.first + change.count;
    reserveGroup(static_cast<int32_t>(&group - groups_.data()), std::max(end, group.elementCount));
    if (change.first > group.elementCount) {
        fillDefaults(group, group.elementCount, change.first);
        group.elementCount = change.first;
    }
    const int32_t oldCount = group.elementCount;
    releaseElements(group, change.first, change.resize ? oldCount : std::min(oldCount, end));
    group.elementCount = change.resize ? end : std::max(oldCount, end);
    double* target = group.values + change.first * elementSize_;
    for (int32_t i = 0; i < change.count * elementSize_; ++i) {
        const double number = change.values[i];
        target[i] = isString_ ? strings_.copy(static_cast<int32_t>(number), change.sourcePool->strings_) : number;
    }
}

void CAudioParamData::fillDefaults(CGroup& group, int32_t from, int32_t to) {
    for (int32_t element = from; element < to; ++element) {
        for (int32_t index = 0; index < elementSize_; ++index) {
            const double number = defaultValue(element, index);
            group.values[element * elementSize_ + index] =
                isString_ ? strings_.copy(static_cast<int32_t>(number), defaultStrings_) : number;
        }
    }
}

void CAudioParamData::releaseElements(const CGroup& group, int32_t from, int32_t to) {
    if (isString_) {
        for (int32_t i = from * elementSize_; i < to * elementSize_; ++i) {
            strings_.release(static_cast<int32_t>(group.values[i]));
        }
    }
}

}  // namespace tarv
