#include "Audio/Client/CGroupNamesParamListener.h"

namespace tarv {

CError* CAudioInterfaceClient::CGroupNamesParamListener::subscribe(const CString& param) {
    const uint32_t flags = kSendAtOnce | kAsGroupNames;
    return sender_.send(kSubscribeParam, id_.value(), param, flags, uint32_t{0});
}

CError* CAudioInterfaceClient::CGroupNamesParamListener::unsubscribe() {
    return sender_.send(kUnsubscribeParam, id_.value());
}

CError* CAudioInterfaceClient::CGroupNamesParamListener::refresh() const {
    return sender_.send(kRequestValues, id_.value());
}

CString CAudioInterfaceClient::CGroupNamesParamListener::name(int32_t group) const {
    return group >= 0 && group < names_.count() ? names_[group] : CString();
}

CError* CAudioInterfaceClient::CGroupNamesParamListener::take(CPosInputStream& stream) {
    uint32_t id = 0;
    uint32_t request = 0;
    CTextList names;
    TARV_TRY(takeMessage(stream, id, request, names));
    if (id != id_.value()) {
        return nullptr;
    }
    names_ = std::move(names);
    CAttributeMap none;
    return owner_.sendEvent("group-names-changed", none, false);
}

}  // namespace tarv
