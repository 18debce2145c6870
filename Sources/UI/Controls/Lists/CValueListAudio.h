#pragma once

#include "UI/Binding/CUIParamUpdateHandler.h"
#include "UI/Controls/Lists/CRoutingLabels.h"
#include "UI/Controls/Lists/CValueList.h"

namespace tarv {

class CAudioInterfaceClient;
class CAudioParamInfo;
class CParamBridge;
class CParamBridgeAudio;
class CParamGroupSelector;
class CUIParam;

/// A value list that follows the engine (`ui:value-list`). `mode`:
///   manual                the `content` children (default)
///   audio-groups          names of the groups, values from 0; dimmed: groups without a channel; with `group-selector`,
///                         which other groups are to be chosen for, its group and no other
///   audio-curgroup        name of the group of `group-selector`
///   audio-channels        internal channels, "1 L", values from 0; dimmed: those that receive nothing
///   audio-ins, audio-outs the host's channels, values from 1
///   audio-min-max         numbers from `min-value` to `max-value` (default: the range of `bridge`) in steps of 1; with
///                         `value-count`, that many: in equal steps of the parameter's curve unless it counts states
///   audio-routing-labels  what the group of `group-selector` receives, without a selector an item for each group; by
///                         `routing-label-mode`: `full` (default), `active-channels` (that the host has, and that are
///                         not muted), `active-groups` (the same, without the groups that have none)
///   audio-enum-value      the states of the parameter behind `bridge`
///   audio-param-values    the elements of that parameter in the group of `group-selector`: a text each; the value is
///                         that of the parameter, of texts the position
/// Texts of numbers: `format` (as CNumberFormat; default "%.0f"), unless `format-id` says otherwise: `normal` and
/// `knob-circle` are the parameter's full and short text, `automation-string` has the unit, too; `none` is `format`.
///
/// The values that a mode needs come by params below the list: `ui-param-grouping`, `ui-param-group-names`,
/// `ui-param-in-channel-names`, `ui-param-in-routing`, `ui-param-ms-pairs`, `ui-param-channel-mute`. Those that are not
/// declared are made if their bridge stands (`ui.grouping-bridge` and so on). Counts and names of groups are those of
/// `ui.interface-client`. While `ui-param-value` is active, `selected-item` is the position of its value. A value
/// outside the list (itemOf) is dimmed and has its own name: a host's input that is not there at present.
/// Events that it handles: `update-values`, `update-io-channel-counts`, `update-internal-channel-count`,
/// `update-group-count`.
class CValueListAudio : public CValueList, public CUIParamUpdateHandler {
public:
    /// Fails for a path where no selector or bridge stands, and for an unknown `routing-label-mode`.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* finishInit() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    [[nodiscard]] CError* onParamChanged(CUIParam& param) override;
    [[nodiscard]] CError* onParamActivity(CUIParam& param) override;
    [[nodiscard]] CError* onParamRangeChanged(CUIParam& param) override;
    void onParamRemoved(CUIParam& param) override;

protected:
    /// Fails without the client, if the mode needs it.
    [[nodiscard]] CError* updateValues() override;
    CItem missingItem(double value) const override;

private:
    enum CSource {
        Grouping,
        GroupNames,
        InChannelNames,
        InRouting,
        MsPairs,
        ChannelMute,
        Value,
        Content,
        kSourceCount
    };
    using CFill = void (CValueListAudio::*)(CItems& items) const;
    struct CMode {
        const char* name;
        CFill fill;
        bool needsClient;
        bool needsRouting;
    };
    static const CMode kModes[];
    static const char* const kSourceNames[];

    [[nodiscard]] CError* contentChanged();
    [[nodiscard]] CError* labelModeChanged();
    [[nodiscard]] CError* selectorChanged();
    [[nodiscard]] CError* bridgeChanged();
    /// Fails for an unknown `routing-label-mode`.
    [[nodiscard]] CError* checkLabelMode() const;
    [[nodiscard]] CError* bindSelector();
    [[nodiscard]] CError* bindContent();
    [[nodiscard]] CError* bindSources();
    [[nodiscard]] CError* makeSource(CSource source, const CString& bridge);
    [[nodiscard]] CError* select();
    const CMode* mode() const;
    CParamBridge* bridge(CSource source) const;
    const CParamBridgeAudio* content() const;
    int32_t group() const;

    void fillGroups(CItems& items) const;
    void fillCurrentGroup(CItems& items) const;
    void fillChannels(CItems& items) const;
    void fillInputs(CItems& items) const;
    void fillOutputs(CItems& items) const;
    void fillNumbers(CItems& items) const;
    void fillRoutingLabels(CItems& items) const;
    void fillStates(CItems& items) const;
    void fillElements(CItems& items) const;

    CString groupTitle(int32_t index) const;
    CString numberText(double value) const;
    double onCurve(double from, double to, double part) const;
    CString outputName(int32_t output) const;
    CRoutingLabels routing() const;

    CParamGroupSelector* selector_ = nullptr;
    CAudioInterfaceClient* client_ = nullptr;
    CUIParam* sources_[kSourceCount] = {};
    bool isContentOwn_ = false;  ///< made for `bridge`
};

}  // namespace tarv
