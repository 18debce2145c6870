#pragma once

#include "Audio/Graph/CAudioProcessBase.h"

namespace tarv {

/// Definition of a router (`audio:modRouter`): makes the channels of the graph, or (`is-output`) those of the host.
class CModRouterDef : public CAudioProcessDefBase {
public:
    [[nodiscard]] CError* init() override;
    CAudioProcessBase* createProcess() const override;
    bool isOutput() const { return isOutput_; }

private:
    bool isOutput_ = false;
};

/// Input side: element e of the graph takes the host's channel routing[e] (1 and up; 0: the element does not exist)
/// and belongs to group grouping[e]. Output side: element e goes to the host's channel routing[e]; of two the last
/// wins. A host channel that no element reaches gets a copy of the channel that its entry names, if the entry's element
/// does not exist and the named one does. Signals pass by reference.
class CModRouter : public CAudioProcessBase {
public:
    [[nodiscard]] CError* init() override;
    void process() override;

protected:
    void slotChanged(CAudioParamSlot& slot) override;

private:
    static constexpr int32_t kMaxElements = 32;
    const CModRouterDef& routerDef() const { return static_cast<const CModRouterDef&>(def()); }
    void readTables();
    void routeInputs();
    void routeOutputs();
    static const CAudioChannel* findElement(const CAudioPort& port, int32_t element);
    CBufferHandle silence(int32_t samples) const;

    int32_t routing_[kMaxElements] = {};
    int32_t grouping_[kMaxElements] = {};
    /// Counts the changes of an element's source; behind each the channel starts from silence.
    uint64_t serials_[kMaxElements] = {};
    uint64_t layout_ = 0;
};

}  // namespace tarv
