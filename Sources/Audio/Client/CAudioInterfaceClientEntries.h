#pragma once

#include "Audio/Client/CAudioInterfaceClient.h"

namespace tarv {

/// The client ends of the subscriptions. A listener may end its own, or destroy the client: after each call an entry is
/// looked up anew by its id.
struct CAudioInterfaceClient::CParamEntry : public CHeapObject {
    uint32_t id = 0;
    CString path;
    CAudioInterfaceParamListener* listener = nullptr;
    const CAudioParamInfo* info = nullptr;  ///< of the shared tree, once the values have come
    CAudioParamData data;
};

struct CAudioInterfaceClient::CRegistryEntry : public CHeapObject {
    uint32_t id = 0;
    CString path;
    CAudioInterfaceRegistryListener* listener = nullptr;
    bool isAlternate = false;
};

struct CAudioInterfaceClient::CVizEntry : public CHeapObject {
    uint32_t id = 0;
    CAudioInterfaceVizProcessor* listener = nullptr;
};

struct CAudioInterfaceClient::CBoundEntry : public CHeapObject {
    uint32_t id = 0;
    CNumberList numbers;
};

/// Keeps the names of the groups for all editor code; they come as a message of their own.
class CAudioInterfaceClient::CGroupNamesParamListener final : public CAudioInterfaceListener {
public:
    uint32_t id = 0;
    CString path;
    CTextList names;
};

template <class Entry>
Entry* CAudioInterfaceClient::entryOf(const COwnedArray<Entry>& entries, uint32_t id) {
    for (Entry* entry : entries) {
        if (entry->id == id) {
            return entry;
        }
    }
    return nullptr;
}

}  // namespace tarv
