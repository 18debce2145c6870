#include "Audio/Engine/CEngineSender.h"

namespace tarv {

CClientList CEngineSender::clients() const {
    return connector_ ? connector_->clients() : CClientList();
}

CError* CEngineSender::requireClient(uint32_t id) const {
    if (!hasClient(clientOf(id))) {
        TARV_FAIL("@tarvstr_CEngineSender_requireClient_UnknownClient Unknown client %1.",
                  CString::fromInt(clientOf(id)));
    }
    return nullptr;
}

CError* CEngineSender::deliver(int32_t client, const CByteBuffer& message) const {
    if (connector_) {
        TARV_TRY(connector_->sendToClient(client, message));
    }
    return nullptr;
}

}  // namespace tarv
