#pragma once

#include "Core/CObject.h"

namespace tarv {

class CParamBridge;
class CParamGesture;
class CParamGroupSelector;

/// Copies the group that a selector shows to another one, and resets it (`ui:param-group-controller`), for the
/// parameters of its children: each names its `bridge`, one with `is-reset-disabled` is only copied. Each is one step
/// of the history, and with `is-undo-disabled` none. `interface-client` and `group-selector` are paths. The attribute
/// `group-index` is that of the selector. Events that it handles: `copy-group` with `index`, the target; `reset-group`;
/// `popup-result` of a list of all groups, as `copy-group`. The editor's thread.
class CParamGroupController : public CObject {
public:
    /// Fails without the client and the selector.
    [[nodiscard]] CError* init() override;
    /// Fails for a child whose bridge is missing.
    [[nodiscard]] CError* finishInit() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

private:
    enum class CAction { Copy, Reset };

    [[nodiscard]] CError* groupChanged();
    [[nodiscard]] CError* copyGroup(CAttributeMap& params);
    [[nodiscard]] CError* resetGroup();
    [[nodiscard]] CError* carryOut(CAction action, int32_t target, const CString& label);
    /// Those that an action concerns, and that have values.
    CArray<CParamBridge*, 4> bridges(CAction action) const;
    CString groupName(int32_t group) const;

    CParamGroupSelector* selector_ = nullptr;
};

}  // namespace tarv
