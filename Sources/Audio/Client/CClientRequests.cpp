#include "Audio/Client/CClientRequests.h"

namespace tarv {

template <class... T>
CError* CClientRequests::send(uint32_t type, const CString& registry, CAudioInterfaceRegistryListener& listener,
                              uint32_t& request, const T&... fields) {
    auto entry = std::make_unique<CEntry>(sender_, listener);
    request = entry->id.value();
    TARV_TRY(sender_.send(type, registry, request, fields...));
    entries_.append(entry.release());
    return nullptr;
}

CError* CClientRequests::acquirePreset(const CString& registry, CAudioInterfaceRegistryListener& listener,
                                       uint32_t& request, bool fromRom, int32_t index, int32_t group) {
    return send(kAcquirePreset, registry, listener, request, fromRom, index, group);
}

CError* CClientRequests::acquireBank(const CString& registry, CAudioInterfaceRegistryListener& listener,
                                     uint32_t& request, bool fromRom) {
    return send(kAcquireBank, registry, listener, request, fromRom);
}

void CClientRequests::removeAt(int32_t index) {
    delete entries_[index];
    entries_.removeAt(index);
}

void CClientRequests::forget(const CAudioInterfaceListener& listener) {
    for (int32_t i = entries_.count() - 1; i >= 0; --i) {
        if (&entries_[i]->listener == &listener) {
            removeAt(i);
        }
    }
}

CError* CClientRequests::takeAnswer(CPosInputStream& stream) {
    uint32_t request = 0;
    CByteBuffer bytes;
    TARV_TRY(takeMessage(stream, request, bytes));
    for (int32_t i = 0; i < entries_.count(); ++i) {
        if (entries_[i]->id.value() == request) {
            CAudioInterfaceRegistryListener& listener = entries_[i]->listener;
            removeAt(i);
            listener.onDataAcquired(request, bytes);
            return nullptr;
        }
    }
    return nullptr;  // the listener left meanwhile
}

}  // namespace tarv
