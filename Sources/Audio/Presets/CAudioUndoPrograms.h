#pragma once

#include <cstdint>

namespace tarv {

class CAudioParamUndoStep;

/// The owner of the programs whose values the history's steps change: a master registry's session bank. Its operations
/// are called with the history's lock held and may take the locks that follow it in the order.
class CAudioUndoPrograms {
public:
    /// The identity of the current program, never 0.
    virtual uint64_t currentProgramId() const = 0;
    /// A step comes into the history: values that belong to programs become an action of it.
    virtual void adoptStep(CAudioParamUndoStep& step) = 0;

protected:
    ~CAudioUndoPrograms() = default;
};

}  // namespace tarv
