#pragma once

#include "Audio/Client/CAudioInterfaceListeners.h"
#include "Audio/Client/CClientId.h"

namespace tarv {

class CAudioParamInfo;
class CClientState;

/// The client ends of the subscriptions of parameters, registries and visual records. A listener that is called may end
/// its own subscription or destroy the owner: after each call an entry is looked up again by its id. The editor's
/// thread.
class CClientSubscriptions {
public:
    /// The state of each registry that comes is noted in `state`, too.
    CClientSubscriptions(CObject& owner, CClientSender& sender, CClientState& state)
        : owner_(owner), sender_(sender), state_(state) {}

    [[nodiscard]] CError* addParam(const CString& param, CAudioInterfaceParamListener& listener);
    [[nodiscard]] CError* addRegistry(const CString& registry, CAudioInterfaceRegistryListener& listener);
    [[nodiscard]] CError* addVisual(const CString& source, CAudioInterfaceVizProcessor& processor);
    /// Ends all subscriptions of a listener, in the engine, too, while there is one.
    void forget(const CAudioInterfaceListener& listener);
    /// What is known of the parameter that a listener subscribed: null until its values have come.
    const CAudioParamInfo* paramInfo(const CAudioInterfaceParamListener& listener) const;
    const CAudioParamData* paramData(const CAudioInterfaceParamListener& listener) const;
    /// Asks for all values and states again.
    [[nodiscard]] CError* refresh() const;
    /// Notifies the listeners of parameters and registries that the engine has gone.
    void engineGone();

    // One message each.
    [[nodiscard]] CError* takeValues(CPosInputStream& stream);
    [[nodiscard]] CError* takeRegistry(CPosInputStream& stream);
    [[nodiscard]] CError* takeFrame(CPosInputStream& stream);

private:
    template <class Listener>
    struct CEntry : public CHeapObject {
        CEntry(CClientSender& sender, const CString& entryPath, Listener& entryListener)
            : id(sender), path(entryPath), listener(&entryListener) {}
        CClientId id;
        CString path;
        Listener* listener;
    };
    struct CParamEntry : public CEntry<CAudioInterfaceParamListener> {
        using CEntry::CEntry;
        const CAudioParamInfo* info = nullptr;  ///< of the shared tree, once the values have come
        CAudioParamData data;
    };
    struct CRegistryEntry : public CEntry<CAudioInterfaceRegistryListener> {
        using CEntry::CEntry;
        bool isAlternate = false;
    };
    using CVizEntry = CEntry<CAudioInterfaceVizProcessor>;

    template <class Entry>
    static Entry* find(const COwnedArray<Entry>& entries, uint32_t id);
    template <class Entry>
    void forgetIn(COwnedArray<Entry>& entries, const CAudioInterfaceListener& listener, uint32_t type);
    template <class Entry, class Notify>
    void notifyAll(const COwnedArray<Entry>& entries, Notify&& notify);
    [[nodiscard]] CError* takeWhole(CPosInputStream& stream, CParamEntry& entry);
    [[nodiscard]] CError* takePart(CPosInputStream& stream, CParamEntry& entry);
    const CString& errorContextName() const { return owner_.fullName(); }

    CObject& owner_;
    CClientSender& sender_;
    CClientState& state_;
    COwnedArray<CParamEntry> params_;
    COwnedArray<CRegistryEntry> registries_;
    COwnedArray<CVizEntry> visuals_;
};

}  // namespace tarv
