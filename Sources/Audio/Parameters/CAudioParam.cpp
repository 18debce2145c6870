#include "Audio/Parameters/CAudioParam.h"

#include <cmath>

#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Parameters/CAudioParamStorage.h"

namespace tarv {

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

void CAudioParam::setValue(int32_t group, int32_t element, double value, int32_t index,
                           const CAudioParamListener* origin) {
    collector_.postValue(*this, group, element, value, index, origin);
}

void CAudioParam::setText(int32_t group, int32_t element, const CString& text, const CAudioParamListener* origin) {
    collector_.postText(*this, group, element, text, origin);
}

void CAudioParam::setEngineValue(int32_t group, int32_t element, double value, int32_t index) {
    collector_.postEngineValue(*this, group, element, value, index);
}

bool CAudioParam::bind(const CAudioParamInfo& info) {
    CLockScope scope(lock_);
    if (isDefined()) {
        return false;
    }
    info_ = info;
    for (CAudioParamData* data : {&userData_, &engineData_}) {
        data->reset(info);
        data->reserve(info.isSingleGroup() ? 0 : CAudioParamData::kAllGroups, kReadyElements);
        data->resetWithDefaults(info, 0);
    }
    defined_.store(true, std::memory_order_release);
    return true;
}

bool CAudioParam::takesNumber(double value, int32_t index) const {
    return isDefined() && !info_.isString() && !std::isnan(value) && index >= 0 && index < info_.elementSize();
}

bool CAudioParam::applyUserChange(const CAudioParamChange& change) {
    if (!isDefined() || !userData_.takes(change)) {
        return false;
    }
    userData_.apply(change);
    isRecordCurrent_ = false;
    engineSetsSeen_ = engineSets_.load(std::memory_order_acquire);
    if (info_.isString()) {
        engineData_.apply(change);
    }
    return true;
}

bool CAudioParam::takesEngineChange(const CAudioParamChange& change) const {
    return isDefined() && !info_.isString() && engineData_.takes(change);
}

void CAudioParam::noteEngineNumber(double number) {
    engineNumber_.store(number, std::memory_order_relaxed);
    engineSets_.fetch_add(1, std::memory_order_release);
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
    change.shape(*this, 0, 0, 1, false);
    change.fillElement(info_, userData_, 0, number);
    userData_.apply(change);
    isRecordCurrent_ = false;
    return true;
}

void CAudioParam::notifyAll() {
    notify(CAudioParamData::kAllGroups, 0, CAudioParamData::kElementLimit);
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

void CAudioParam::notify(int32_t group, int32_t first, int32_t count, const CAudioParamListener* origin) {
    // Room for every host parameter of one table: hosts automate from their audio thread, too.
    CArray<CAudioParamListener*, 31> listeners;
    {
        CLockScope scope(lock_);
        listeners.reserve(listeners_.count());
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
