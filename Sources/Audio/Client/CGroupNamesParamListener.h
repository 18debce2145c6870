#pragma once

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Audio/Client/CClientId.h"

namespace tarv {

/// Subscribes the parameter of the groups' names and keeps them for all editor code; they come as a message of their
/// own. The owner sends `group-names-changed` when they have come; its handlers may destroy it. The editor's thread.
class CAudioInterfaceClient::CGroupNamesParamListener : public CHeapObject {
public:
    CGroupNamesParamListener(CObject& owner, CClientSender& sender) : owner_(owner), sender_(sender), id_(sender) {}

    [[nodiscard]] CError* subscribe(const CString& param);
    [[nodiscard]] CError* unsubscribe();
    /// Asks for the names again.
    [[nodiscard]] CError* refresh() const;
    /// Empty for a group without a name.
    CString name(int32_t group) const;

    /// One message.
    [[nodiscard]] CError* take(CPosInputStream& stream);

private:
    const CString& errorContextName() const { return owner_.fullName(); }

    CObject& owner_;
    CClientSender& sender_;
    CClientId id_;
    CTextList names_;
};

}  // namespace tarv
