#pragma once

#include "Core/CObject.h"

namespace tarv {

/// Base of the object that is the history of an instance. Not there yet: steps, undo, redo; nothing is recorded.
class CAudioParamUndo : public CObject {
public:
    [[nodiscard]] CError* init() override;
    /// Longest length of the history (`undo-count-max`).
    int32_t undoCountMax() const { return undoCountMax_; }

private:
    int32_t undoCountMax_ = 0;
};

}  // namespace tarv
