#pragma once

#include <map>
#include <memory>

#include "Audio/Presets/CAudioUndoAction.h"
#include "Audio/Presets/CAudioUndoValues.h"

namespace tarv {

/// One step of a history: a label, and what it changed of the parameters that it touched.
class CAudioParamUndoStep : public CHeapObject {
public:
    static constexpr int32_t kNoKey = -1;

    using CValueMap = std::map<CAudioParam*, CAudioUndoValues, std::less<CAudioParam*>,
                               CHeapAllocator<std::pair<CAudioParam* const, CAudioUndoValues>>>;

    explicit CAudioParamUndoStep(const CString& stepLabel) : label(stepLabel) {}
    /// A gesture's step: it merges with the step before it if that has the same key.
    CAudioParamUndoStep(const CString& stepLabel, int32_t key) : label(stepLabel), coalesce(1), coalesceKey(key) {}

    /// Adds what differs between two values; of an element that is touched again the first value before stays.
    void add(CAudioParam& param, const CAudioParamData& before, const CAudioParamData& after);
    void add(CAudioParam& param, CAudioUndoValues&& difference);
    bool isEmpty() const { return values.empty() && !action; }

    /// Takes over a later step of the same gesture: same key and program, and no parameter beyond those of this one.
    /// Returns whether it could; otherwise both are as they were.
    bool mergeGesture(CAudioParamUndoStep& later);
    /// Takes over a part of the record that this step is, also an action that values became; returns whether it could.
    /// A part of another program does not fit.
    bool mergePart(CAudioParamUndoStep& part);

    CString label;
    uint8_t coalesce = 0;
    int32_t coalesceKey = kNoKey;
    CValueMap values;
    std::unique_ptr<CAudioUndoAction> action;
    /// The program whose values the step changed; they are undone and redone only while it is current. 0: any.
    uint64_t programId = 0;

private:
    void addValues(CAudioParamUndoStep& later);
};

}  // namespace tarv
