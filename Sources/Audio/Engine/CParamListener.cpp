#include "Audio/Engine/CParamListener.h"

#include <algorithm>

#include "Audio/Parameters/CAudioParamStorage.h"

namespace tarv {

CAudioInterfaceBase::CParamListener::CParamListener(const CEngineSender& sender, CAudioParam& param)
    : sender_(sender), param_(param) {
    param_.addListener(*this);
}

CAudioInterfaceBase::CParamListener::~CParamListener() {
    param_.removeListener(*this);
}

void CAudioInterfaceBase::CParamListener::add(uint32_t id, bool asGroupNames) {
    CLockScope scope(lock_);
    subscribers_.append({id, asGroupNames});
    count_.store(subscribers_.count(), std::memory_order_release);
}

void CAudioInterfaceBase::CParamListener::remove(uint32_t id) {
    CLockScope scope(lock_);
    for (int32_t i = subscribers_.count() - 1; i >= 0; --i) {
        if (subscribers_[i].id == id) {
            subscribers_.removeAt(i);
        }
    }
    count_.store(subscribers_.count(), std::memory_order_release);
}

CError* CAudioInterfaceBase::CParamListener::writeWhole(COutputStream& stream) const {
    CLockScope scope(param_.lock());
    TARV_TRY(putFields(stream, static_cast<uint32_t>(CValuesForm::Whole), param_.info().definitionPath()));
    TARV_TRY(CAudioParamStorage::save(stream, param_.info(), param_.userData()));
    return nullptr;
}

CError* CAudioInterfaceBase::CParamListener::writePart(COutputStream& stream, int32_t group, int32_t first,
                                                       int32_t count) const {
    CLockScope scope(param_.lock());
    const CAudioParamData& data = param_.userData();
    const int32_t held = data.elementCount(group);
    const int32_t from = std::min(first, held);
    const int32_t end = from + std::min(count, held - from);
    const int32_t size = data.isString() ? 0 : data.elementSize();
    TARV_TRY(putFields(stream, static_cast<uint32_t>(CValuesForm::Part), group, from, end - from, held, size));
    for (int32_t element = from; element < end; ++element) {
        if (data.isString()) {
            TARV_TRY(putField(stream, data.text(group, element)));
        }
        for (int32_t i = 0; i < size; ++i) {
            TARV_TRY(putField(stream, data.storedNumber(group, element, i)));
        }
    }
    return nullptr;
}

CError* CAudioInterfaceBase::CParamListener::sendGroupNames(const CSubscriber& subscriber, uint32_t request) const {
    CTextList names;
    {
        CLockScope scope(param_.lock());
        const CAudioParamData& data = param_.userData();
        for (int32_t i = 0; i < data.elementCount(0); ++i) {
            names.append(data.text(0, i));
        }
    }
    TARV_TRY(sender_.sendTo(subscriber.id, kGroupNames, subscriber.id, request, names));
    return nullptr;
}

CError* CAudioInterfaceBase::CParamListener::send(const CSubscriber& subscriber, uint32_t request,
                                                  const CByteBuffer& body) const {
    if (subscriber.asGroupNames) {
        TARV_TRY(sendGroupNames(subscriber, request));
        return nullptr;
    }
    CByteBuffer message;
    TARV_TRY(packMessage(message, kParamValues, subscriber.id, request));
    CBufferWriter writer(message);
    TARV_TRY(writer.write(body.data(), body.count()));
    TARV_TRY(sender_.deliver(clientOf(subscriber.id), message));
    return nullptr;
}

void CAudioInterfaceBase::CParamListener::sendWhole(uint32_t id, uint32_t request) {
    CLockScope scope(lock_);
    CByteBuffer body;
    CBufferWriter writer(body);
    if (CError* error = writeWhole(writer)) {
        TARV_CONSUME(error);
        return;
    }
    for (const CSubscriber& subscriber : subscribers_) {
        if (id == kNoRequest || subscriber.id == id) {
            TARV_CONSUME(send(subscriber, request, body));
        }
    }
}

void CAudioInterfaceBase::CParamListener::sendEngineValue() {
    if (param_.takeEngineValue()) {
        onParamChanged(param_, 0, 0, 1);
    }
}

void CAudioInterfaceBase::CParamListener::onParamChanged(CAudioParam&, int32_t group, int32_t first, int32_t count) {
    // Hosts automate on their audio threads: without a subscriber no lock is taken and no message built.
    if (count_.load(std::memory_order_acquire) == 0) {
        return;
    }
    if (group == CAudioParamData::kAllGroups) {
        sendWhole(kNoRequest, 0);
        return;
    }
    CLockScope scope(lock_);
    CByteBuffer body;
    CBufferWriter writer(body);
    if (CError* error = writePart(writer, group, first, count)) {
        TARV_CONSUME(error);
        return;
    }
    for (const CSubscriber& subscriber : subscribers_) {
        TARV_CONSUME(send(subscriber, 0, body));
    }
}

}  // namespace tarv
