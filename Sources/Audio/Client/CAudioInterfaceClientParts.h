#pragma once

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Audio/Client/CClientBoundValues.h"
#include "Audio/Client/CClientEdits.h"
#include "Audio/Client/CClientPresetStores.h"
#include "Audio/Client/CClientRequests.h"
#include "Audio/Client/CClientState.h"
#include "Audio/Client/CClientSubscriptions.h"
#include "Audio/Client/CGroupNamesParamListener.h"

namespace tarv {

/// The parts of the client object, in the order in which they need each other, and the tables of their handlers.
struct CAudioInterfaceClient::CParts final : public CHeapObject {
    using CHandler = CError* (CParts::*)(CPosInputStream& stream);
    struct CHandlerRow {
        uint32_t type;
        CHandler handle;
    };
    static const CHandlerRow kHandlers[kMessageCount - kFirstBaseMessage];
    static const CHandlerRow kDataHandlers[static_cast<uint32_t>(CDataKind::InputLabels) + 1];

    explicit CParts(CAudioInterfaceClient& client)
        : owner(client),
          subscriptions(client, sender, state),
          requests(sender),
          values(client, sender),
          edits(sender),
          state(client),
          presetStores(client) {}

    // The last of what each handler does is to call the editor's code, which may destroy all of this.
    template <auto Part, auto Handle>
    CError* call(CPosInputStream& stream) {
        return (this->*Part.*Handle)(stream);
    }
    CError* takeGroupNames(CPosInputStream& stream) { return groupNames ? groupNames->take(stream) : nullptr; }
    CError* takeData(CPosInputStream& stream);
    const CString& errorContextName() const { return owner.fullName(); }

    const CObject& owner;
    CClientSender sender;
    CClientSubscriptions subscriptions;
    CClientRequests requests;
    CClientBoundValues values;
    CClientEdits edits;
    CClientState state;
    CClientPresetStores presetStores;
    std::unique_ptr<CGroupNamesParamListener> groupNames;
};

}  // namespace tarv
