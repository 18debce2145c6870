#include "Audio/Parameters/CAudioParam.h"

#include <cmath>

#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Parameters/CAudioParamStorage.h"

namespace tarv {

bool CAudioParamConsumer::wants(const CAudioParamChange& change) const {
    const bool isForGroup =
        change.group == CAudioParamData::kAllGroups || change.group == group || group == -1 || group == -2;
    const bool isForElement =
        change.resize != 0 || element == -1 || (element >= change.first && element < change.first + change.count);
    return isForGroup && isForElement;
}

CAudioParam::CAudioParam(CAudioParamCollector& collector, const CString& fullName)
    : collector_(collector), fullName_(fullName) {}

double CAudioParam::value(int32_t group, int32_t element, int32_t index) const {
    CLockScope scope(lock_);
    return userData_.value(group, element, index);
}

CString CAudioParam::text(int32_t group, int32_t element) const {
    CLockScope scope(lock_);
    return userData_.text(group, element);
}

const CByteBuffer& CAudioParam::storedRecord() const {
    if (!isRecordCurrent_) {
        record_.clear();
        CBufferWriter writer(record_);
        TARV_CONSUME(CAudioParamStorage::save(writer, info_, userData_));
        isRecordCurrent_ = true;
    }
    return record_;
}

void CAudioParam::fillElement(CAudioParamChange& change, double value, int32_t index) const {
    for (int32_t i = 0; i < info_.elementSize(); ++i) {
        change.values[i] = i == index ? info_.clamp(i, value) : userData_.value(change.group, change.first, i);
    }
}

bool CAudioParam::takesNumber(double value, int32_t index) const {
    return isDefined() && !info_.isString() && !std::isnan(value) && index >= 0 && index < info_.elementSize();
}

void CAudioParam::setValue(int32_t group, int32_t element, double value, int32_t index,
                           const CAudioParamListener* origin) {
    if (!takesNumber(value, index)) {
        return;
    }
    {
        // Held until the change is queued, so that the order of the changes is that of the user-side values.
        CLockScope scope(lock_);
        CAudioParamChange* change = collector_.createChange(*this, group, element, 1);
        fillElement(*change, value, index);
        collector_.postUnderLock(*this, change, 0.0);
    }
    notifyListeners(group, element, 1, origin);
}

void CAudioParam::setEngineValue(int32_t group, int32_t element, double value, int32_t index) {
    if (!takesNumber(value, index)) {
        return;
    }
    CAudioParamChange* change = collector_.createEngineChange(*this, group, element, 1);
    for (int32_t i = 0; i < info_.elementSize(); ++i) {
        change->values[i] = i == index ? info_.clamp(i, value) : engineData_.value(group, element, i);
    }
    if (group == 0 && element == 0 && index == 0) {
        engineNumber_.store(change->values[0], std::memory_order_relaxed);
        engineSets_.fetch_add(1, std::memory_order_release);
    }
    collector_.postChange(*this, change, false, -1.0);
}

bool CAudioParam::takeEngineValue() {
    CLockScope scope(lock_);
    const uint32_t sets = engineSets_.load(std::memory_order_acquire);
    if (sets == engineSetsSeen_) {
        return false;
    }
    engineSetsSeen_ = sets;
    const double number = engineNumber_.load(std::memory_order_relaxed);
    if (number == userData_.value(0, 0)) {
        return false;
    }
    CAudioParamChange change;
    change.count = 1;
    change.elementSize = info_.elementSize();
    change.values.resize(change.elementSize);
    fillElement(change, number, 0);
    userData_.apply(change);
    isRecordCurrent_ = false;
    return true;
}

void CAudioParam::setText(int32_t group, int32_t element, const CString& text, const CAudioParamListener* origin) {
    if (!isDefined() || !info_.isString()) {
        return;
    }
    {
        CLockScope scope(lock_);
        CAudioParamData pool;
        CAudioParamChange* change = collector_.createChange(*this, group, element, 1);
        change->values[0] = pool.addString(text);
        change->sourcePool = &pool;
        collector_.postUnderLock(*this, change, 0.0);
    }
    notifyListeners(group, element, 1, origin);
}

void CAudioParam::notifyAll() {
    notifyListeners(CAudioParamData::kAllGroups, 0, CAudioParamData::kElementLimit, nullptr);
}

void CAudioParam::addListener(CAudioParamListener& listener) {
    CLockScope scope(lock_);
    listeners_.append(&listener);
}

void CAudioParam::removeListener(CAudioParamListener& listener) {
    CLockScope scope(lock_);
    const int32_t index = listeners_.indexOf(&listener);
    if (index >= 0) {
        listeners_.removeAt(index);
    }
}

void CAudioParam::notifyListeners(int32_t group, int32_t first, int32_t count, const CAudioParamListener* origin) {
    // Room for every host parameter of one table: hosts automate from their audio thread, too.
    CArray<CAudioParamListener*, 31> listeners;
    {
        CLockScope scope(lock_);
        for (CAudioParamListener* listener : listeners_) {
            listeners.append(listener);
        }
    }
    for (CAudioParamListener* listener : listeners) {
        if (listener != origin) {
            listener->onParamChanged(*this, group, first, count);
        }
    }
}

}  // namespace tarv
