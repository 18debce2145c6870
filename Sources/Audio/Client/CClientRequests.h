#pragma once

#include "Audio/Client/CAudioInterfaceListeners.h"
#include "Audio/Client/CClientId.h"

namespace tarv {

/// Presets and banks that editor code asked for, until their answers come. A listener may destroy the client when its
/// answer has come. The editor's thread.
class CClientRequests {
public:
    explicit CClientRequests(CClientSender& sender) : sender_(sender) {}

    /// The answer comes to the listener with the number that `request` gets here.
    [[nodiscard]] CError* acquirePreset(const CString& registry, CAudioInterfaceRegistryListener& listener,
                                        uint32_t& request, bool fromRom, int32_t index, int32_t group);
    [[nodiscard]] CError* acquireBank(const CString& registry, CAudioInterfaceRegistryListener& listener,
                                      uint32_t& request, bool fromRom);
    /// Drops what a listener waits for.
    void forget(const CAudioInterfaceListener& listener);

    /// Of kData, behind its kind.
    [[nodiscard]] CError* takeAnswer(CPosInputStream& stream);

private:
    struct CEntry : public CHeapObject {
        CEntry(CClientSender& sender, CAudioInterfaceRegistryListener& waiting) : id(sender), listener(waiting) {}
        CClientId id;
        CAudioInterfaceRegistryListener& listener;
    };
    template <class... T>
    [[nodiscard]] CError* send(uint32_t type, const CString& registry, CAudioInterfaceRegistryListener& listener,
                               uint32_t& request, const T&... fields);
    void removeAt(int32_t index);

    CClientSender& sender_;
    COwnedArray<CEntry> entries_;
};

}  // namespace tarv
