#pragma once

#include <map>

#include "Audio/Graph/CAudioBypassEvaluator.h"
#include "Audio/Graph/CAudioProcessBase.h"
#include "Audio/Graph/CAudioProcessLinkDef.h"

namespace tarv {

/// The composite: child processes, the links between them, and the order in which they run.
class CAudioProcess : public CAudioProcessBase {
public:
    [[nodiscard]] CError* init() override;
    void clearBuffers() override;
    bool takeQuietChanges() override;
    void updateIdle() override;
    void changeRate(CAudioRate& rate) const override;
    const CAudioProcessBase* findInner(const CString& childName) const override { return findProcess(childName); }
    void process() override;
    void reset() override;
    void makeSpares() override;
    int32_t placeDelay(int32_t inputDelay) override;
    void visitChildren(void (*visit)(void* user, CAudioProcessBase& child), void* user) const override;

    /// Creates a child and registers it under a name that no other child has.
    [[nodiscard]] CError* addProcess(const CAudioProcessDefBase& def, const CString& name);
    CAudioProcessBase* findProcess(const CString& name) const;

    /// A link as built. A null end is the composite's own port.
    struct CLink {
        CAudioProcessBase* src = nullptr;
        int32_t srcPort = 0;
        CAudioProcessBase* dst = nullptr;
        int32_t dstPort = 0;
        const CAudioProcessLinkDef* def = nullptr;  ///< null for one made by the chain
    };
    const CArray<CLink, 16>& links() const { return links_; }
    /// In run order, as of the last step.
    const CArray<CAudioProcessBase*, 16>& runOrder() const { return order_; }
    const COwnedArray<CAudioBypassEvaluator>& bypassStates() const { return states_; }
    /// Only links of this state (and those of every state) are live. Takes effect on the next step.
    void setLinkState(int32_t state);

protected:
    void slotChanged(CAudioParamSlot& slot) override;

private:
    /// The blocks of one port that go to another behind a process's step.
    struct CTransfer {
        CAudioPort* src;
        CAudioPort* dst;
        bool isLast;    ///< the source's references move to the target
        bool mayMerge;  ///< other links lead to the same port
        bool isFirst;   ///< of the links to that port
    };
    /// A child with the run of transfers that follows it; a null child stands for the composite's own inputs.
    struct CStep {
        CAudioProcessBase* child;
        int32_t firstTransfer;
        int32_t transferCount;
    };

    [[nodiscard]] CError* buildChildren(const CAudioProcessDef& def);
    void buildLinks(const CAudioProcessDef& def);
    [[nodiscard]] CError* findRates();
    struct CRates;
    [[nodiscard]] CError* joinRates(const CRates& rates, const CAudioProcessBase* dst, CAudioRate& rate) const;
    static bool mayMeet(const CLink& a, const CLink& b);
    void addLink(const CLink& link);
    void buildStates(const CAudioProcessDef& def);

    void rebuildOrder();
    void collectLiveLinks();
    void appendSources(const CLink& link, int32_t depth);
    bool isBypassed(const CAudioProcessBase* child) const;
    bool isLive(const CLink& link) const;
    bool isStateActive(int32_t id) const;
    void sortChildren();
    bool isReady(const CAudioProcessBase* child) const;
    void buildSteps();
    void addStep(CAudioProcessBase* child);
    int32_t delayBefore(const CAudioProcessBase* process, int32_t inputDelay) const;
    void runTransfers(const CStep& step);
    void mergeChannel(CAudioPort& dst, const CAudioChannel& channel);

    COwnedArray<CAudioProcessBase, 16> children_;
    std::map<CString, CAudioProcessBase*> names_;
    CArray<CLink, 16> links_;
    CAudioRate ownRate_;  ///< the change that the whole makes
    COwnedArray<CAudioBypassEvaluator> states_;
    int32_t linkState_ = -1;
    bool isStructureDirty_ = true;

    CArray<CLink, 16> liveLinks_;
    CArray<CAudioProcessBase*, 16> order_;
    CArray<CAudioProcessBase*, 4> idle_;  ///< children that do not run
    CArray<CStep, 16> steps_;
    CArray<CTransfer, 16> transfers_;
};

}  // namespace tarv
