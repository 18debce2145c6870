#pragma once

#include <map>

#include "Audio/Graph/CAudioProcessDefBase.h"

namespace tarv {

class CAudioProcessBypassStateDef;
class CAudioProcessLinkDef;
struct CAudioLinkEnd;

/// Definition of a composite: child processes, the links between them and the states that switch them out.
class CAudioProcessDef : public CAudioProcessDefBase {
public:
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* finishInit() override;
    CAudioProcessBase* createProcess() const override;

    /// Consecutive children are chained in declared order.
    bool isAutoLinks() const { return isAutoLinks_; }
    const CArray<const CAudioProcessDefBase*, 16>& childDefs() const { return childDefs_; }
    const CArray<CAudioProcessLinkDef*, 4>& links() const { return links_; }
    const CArray<const CAudioProcessBypassStateDef*, 4>& bypassStates() const { return bypassStates_; }
    /// Children with `is-multiband`, and those with `is-prototype`.
    const CArray<const CAudioProcessDefBase*, 4>& multibandDefs() const { return multibandDefs_; }
    const CArray<const CAudioProcessDefBase*, 4>& prototypeDefs() const { return prototypeDefs_; }
    const CAudioProcessDefBase* findChildDef(const CString& name) const;
    const CAudioParamDef* findParamBelow(const CString& name) const override;
    /// Whether the automatic chain links these ends.
    bool isChained(const CAudioLinkEnd& src, const CAudioLinkEnd& dst) const;
    const CAudioProcessBypassStateDef* findBypassState(int32_t id) const;

protected:
    void sortChild(CObject* child, const CString& prefix) override;

private:
    bool isAutoLinks_ = true;
    CArray<const CAudioProcessDefBase*, 16> childDefs_;
    std::map<CString, const CAudioProcessDefBase*> childNames_;
    CArray<const CAudioProcessDefBase*, 4> multibandDefs_;
    CArray<const CAudioProcessDefBase*, 4> prototypeDefs_;
    CArray<CAudioProcessLinkDef*, 4> links_;
    CArray<const CAudioProcessBypassStateDef*, 4> bypassStates_;
};

}  // namespace tarv
