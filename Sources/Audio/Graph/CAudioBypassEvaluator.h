#pragma once

#include "Audio/Graph/CAudioProcessBypassStateDef.h"
#include "Audio/Parameters/CAudioParam.h"

namespace tarv {

/// Decides whether one bypass state of a composite is active, from copies of the parameters. Audio thread.
class CAudioBypassEvaluator : public CHeapObject {
public:
    explicit CAudioBypassEvaluator(const CAudioProcessBypassStateDef& def) : def_(def) {}

    const CAudioProcessBypassStateDef& def() const { return def_; }
    CAudioParamSlot& slot() { return slot_; }
    CAudioParamSlot& andSlot() { return andSlot_; }
    bool isActive() const { return isActive_; }
    /// Reads the slots again; true if a rounded value differs from the one before.
    bool evaluate();

private:
    const CAudioProcessBypassStateDef& def_;
    CAudioParamSlot slot_;
    CAudioParamSlot andSlot_;
    double value_ = 0.0;
    double andValue_ = 0.0;
    bool isActive_ = false;
};

}  // namespace tarv
