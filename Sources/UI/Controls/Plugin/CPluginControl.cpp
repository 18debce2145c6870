#include "UI/Controls/Plugin/CPluginControl.h"

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Core/CObjectWatch.h"

namespace tarv {

namespace {

constexpr const char* kDefaultPresetEvent = "default-preset-update";

}  // namespace

CError* CPluginControl::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CPluginControl::handle<&CAudioInterfaceClient::swapAB>>("on-ab");
    descriptor.addHandler<&CPluginControl::handle<&CAudioInterfaceClient::copyToAlternate>>("on-copy");
    descriptor.addHandler<&CPluginControl::handle<&CAudioInterfaceClient::resetState>>("on-reset");
    descriptor.addHandler<&CPluginControl::defaultPresetChanged>(kDefaultPresetEvent);
    return nullptr;
}

CError* CPluginControl::init() {
    TARV_TRY(CObject::init());
    const CString& path = getAttrString("interface-client");
    auto* found = findObjectOf<CAudioInterfaceClient>(path);
    if (!found) {
        TARV_FAIL("@tarvstr_CPluginControl_init_NoInterfaceClient No interfacing object '%1' found.", path);
    }
    TARV_TRY(found->addRegistryListener(getAttrString("param-registry"), *this));
    listenObject(found->fullName(), kDefaultPresetEvent, kDefaultPresetEvent);
    return nullptr;
}

CError* CPluginControl::finishInit() {
    TARV_TRY(CObject::finishInit());
    TARV_TRY(show({}));
    return client() ? defaultPreset_.show(*client()) : nullptr;
}

/// Without effect once the client has gone.
template <CPluginControl::COperation Operation>
CError* CPluginControl::handle() {
    return client() ? (client()->*Operation)(getAttrString("param-registry")) : nullptr;
}

void CPluginControl::onRegistryChanged(const CInterfaceRegistryState& state) {
    TARV_CONSUME(show(state));
}

CError* CPluginControl::show(const CInterfaceRegistryState& state) {
    const CObjectWatch watch(*this);
    const bool hasName = state.currentProgram >= 0 && state.currentProgram < state.programs.count();
    const CString name = hasName ? state.programs[state.currentProgram] : CString();
    CError* error = setAttributePlain("program-name", name);
    if (!error && watch.isAlive()) {
        error = setAttribute("is-alternate", CAttributeValue::fromBool(state.isAlternate));
    }
    if (!error && watch.isAlive()) {
        error = setAttribute("ab-state", CString(state.isAlternate ? kAlternateState : ""));
    }
    return error;
}

CError* CPluginControl::defaultPresetChanged() {
    const CObjectWatch watch(*this);
    CError* error = client() ? defaultPreset_.show(*client()) : nullptr;
    if (error || !watch.isAlive()) {
        return error;
    }
    CAttributeMap none;
    return sendEvent(kDefaultPresetEvent, none, false);
}

}  // namespace tarv
