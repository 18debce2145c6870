#pragma once

#include "Audio/Engine/CEngineSender.h"

namespace tarv {

class CAudioParam;
class CAudioParamCollector;
class CAudioParamUndo;
class CEngineGestures;
class CEngineRegistries;
class CEngineStatus;
class CEngineSubscriptions;

/// The messages that set values: reads them, posts the changes, adds the step to the history and notifies, in that
/// order. Under the connector's call lock; takes the history's lock, then the parameter's. The parameter's listeners
/// are called under neither.
class CEngineEdits {
public:
    CEngineEdits(CAudioParamUndo& undo, CAudioParamCollector& collector, const CEngineSubscriptions& subscriptions,
                 const CEngineRegistries& registries, const CEngineStatus& status, CEngineGestures& gestures,
                 const CEngineSender& sender)
        : undo_(undo),
          collector_(collector),
          subscriptions_(subscriptions),
          registries_(registries),
          status_(status),
          gestures_(gestures),
          sender_(sender) {}

    // One message each. A failure has changed nothing.
    [[nodiscard]] CError* setValues(CInputStream& stream);
    [[nodiscard]] CError* importLabels(CInputStream& stream);

private:
    struct CEdit;
    [[nodiscard]] CError* requirePlace(const CEdit& edit) const;
    [[nodiscard]] CError* readElements(CInputStream& stream, CEdit& edit) const;
    void editGroup(const CEdit& edit, int32_t group) const;
    void carryOut(const CEdit& edit);
    /// Posts the changes and adds their step. Returns the count of elements to notify: also those that a replacing edit
    /// removes, since they are at their defaults then, which the host has to know.
    int32_t postEdit(const CEdit& edit);
    CString labelOf(const CEdit& edit) const;
    const CString& errorContextName() const { return sender_.errorContextName(); }

    CAudioParamUndo& undo_;
    CAudioParamCollector& collector_;
    const CEngineSubscriptions& subscriptions_;
    const CEngineRegistries& registries_;
    const CEngineStatus& status_;
    CEngineGestures& gestures_;
    const CEngineSender& sender_;
};

}  // namespace tarv
