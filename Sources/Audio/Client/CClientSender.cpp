#include "Audio/Client/CClientSender.h"

namespace tarv {

namespace {

constexpr uint32_t kNumbers = 0xffff;

}  // namespace

CError* CClientSender::deliver(const CByteBuffer& message) const {
    if (!connector_) {
        TARV_FAIL("@tarvstr_CClientSender_deliver_NoConnector No client connector defined.");
    }
    return connector_->sendToBase(message);
}

uint32_t CClientSender::newId() {
    const uint32_t client = tickIdOf(clientId());
    do {
        lastNumber_ = lastNumber_ % kNumbers + 1;
    } while (held_.count(client | lastNumber_) > 0);
    return client | lastNumber_;
}

}  // namespace tarv
