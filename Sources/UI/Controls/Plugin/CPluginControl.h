#pragma once

#include "Audio/Client/CAudioInterfaceListeners.h"
#include "Core/CObject.h"
#include "UI/Controls/Plugin/CPluginControlDefPresetBridge.h"

namespace tarv {

/// A/B, copy and reset of the state that is live (`ui:plugin-control`), by the messages of a registry:
/// `interface-client` and `param-registry` are their paths. Handles the events `on-ab`, `on-copy`, `on-reset`. What the
/// registry says is live, and nothing else, sets these attributes, for views to follow:
///   is-alternate         whether B is live
///   ab-state             "b-state" while B is live, otherwise empty: for the attribute `state` of views
///   program-name         name of the current program, plain
///   default-preset-name, has-default-preset
/// Sends `default-preset-update` when the default preset has become another one. The editor's thread.
class CPluginControl : public CObject, public CAudioInterfaceRegistryListener {
public:
    static constexpr const char* kAlternateState = "b-state";

    CPluginControl() : defaultPreset_(*this) {}
    /// Subscribes the registry. Fails without the client, and as the engine does.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* finishInit() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    void onRegistryChanged(const CInterfaceRegistryState& state) override;

private:
    using COperation = CError* (CAudioInterfaceClient::*)(const CString& registry);

    template <COperation Operation>
    [[nodiscard]] CError* handle();
    [[nodiscard]] CError* defaultPresetChanged();
    [[nodiscard]] CError* show(const CInterfaceRegistryState& state);

    CPluginControlDefPresetBridge defaultPreset_;
};

}  // namespace tarv
