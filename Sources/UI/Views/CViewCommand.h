#pragma once

#include "Core/CObject.h"

namespace tarv {

class CViewBaseState;

/// What the view above does at an event (`ui:view-command`): `on-event` names it; `condition-state-set` and
/// `condition-state-unset` are the states of the target that it depends on. Then, in this order: `run-event`,
/// `set-state`, `unset-state`, `toggle-state`, `toggle-attr`, `reset-shared-attr` (one setting, or several with blanks
/// between them). Paths begin at the view. Thread: that of the window.
class CViewCommand : public CObject {
public:
    const CString& onEvent() const { return getAttrString("on-event"); }
    /// Runs for an event of `view` with its parameters. May destroy both. A command that runs already does nothing.
    [[nodiscard]] CError* run(CViewBaseState& view, const CAttributeMap& params);

private:
    /// Null without one, which is logged; the view itself if the attribute is empty.
    CObject* targetOf(CViewBaseState& view, const char* attribute);
    bool areConditionsMet(const CViewBaseState* target) const;
    [[nodiscard]] CError* runSteps(CViewBaseState& view, const CAttributeMap& params);
    [[nodiscard]] CError* runEvent(CViewBaseState& view, const CAttributeMap& params);
    [[nodiscard]] CError* changeStates(CViewBaseState& target);
    [[nodiscard]] CError* toggleAttribute(CViewBaseState& view);
    [[nodiscard]] CError* resetSharedAttributes(CViewBaseState& view);

    bool isRunning_ = false;
    CAttributeMap sent_;  ///< parameters of `run-event`
};

}  // namespace tarv
