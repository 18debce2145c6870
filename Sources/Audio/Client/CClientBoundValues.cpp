#include "Audio/Client/CClientBoundValues.h"

namespace tarv {

int32_t CClientBoundValues::indexOf(uint32_t id) const {
    for (int32_t i = 0; i < entries_.count(); ++i) {
        if (entries_[i]->id.value() == id) {
            return i;
        }
    }
    return -1;
}

void CClientBoundValues::removeAt(int32_t index) {
    delete entries_[index];
    entries_.removeAt(index);
}

CError* CClientBoundValues::bind(const CString& name, int32_t count, uint32_t& id) {
    auto entry = std::make_unique<CEntry>(sender_);
    id = entry->id.value();
    TARV_TRY(sender_.send(kBindValue, id, name, count));
    entry->numbers.resize(count);
    entries_.append(entry.release());
    return nullptr;
}

CError* CClientBoundValues::unbind(uint32_t id) {
    const int32_t index = indexOf(id);
    if (index >= 0) {
        removeAt(index);
    }
    return sender_.send(kUnbindValue, id);
}

void CClientBoundValues::unbindAll() {
    while (!entries_.isEmpty()) {
        TARV_CONSUME(unbind(entries_.last()->id.value()));
    }
}

double CClientBoundValues::value(uint32_t id, int32_t index) const {
    const int32_t at = indexOf(id);
    const bool isThere = at >= 0 && index >= 0 && index < entries_[at]->numbers.count();
    return isThere ? entries_[at]->numbers[index] : 0.0;
}

CError* CClientBoundValues::refresh() const {
    for (const CEntry* entry : entries_) {
        TARV_TRY(sender_.send(kRequestValues, entry->id.value()));
    }
    return nullptr;
}

CError* CClientBoundValues::take(CPosInputStream& stream) {
    uint32_t id = 0;
    CNumberList numbers;
    TARV_TRY(takeMessage(stream, id, numbers));
    const int32_t index = indexOf(id);
    if (index < 0) {
        return nullptr;  // it was on its way when the binding ended
    }
    entries_[index]->numbers = std::move(numbers);
    CAttributeMap params;
    params["id"] = CAttributeValue::fromInt(static_cast<int32_t>(id));
    return owner_.sendEvent("bound-value-changed", params, false);
}

}  // namespace tarv
