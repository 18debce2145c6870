#pragma once

#include "Audio/Parameters/CAudioParamChange.h"

namespace tarv {

/// Changes in order, linked through the records. The owner guards it.
class CAudioParamChangeList {
public:
    bool isEmpty() const { return head_ == nullptr; }
    int32_t count() const { return count_; }
    CAudioParamChange* last() const { return tail_; }
    CAudioParamChange* previous(const CAudioParamChange& change) const;
    void append(CAudioParamChange* change);
    /// Puts `change` in the place of an entry, which leaves the list.
    void replace(CAudioParamChange& entry, CAudioParamChange* change);
    /// Takes the first entry out; null if there is none.
    CAudioParamChange* takeFirst();
    /// Moves all entries to the result.
    CAudioParamChangeList takeAll();

private:
    CAudioParamChange* head_ = nullptr;
    CAudioParamChange* tail_ = nullptr;
    int32_t count_ = 0;
};

}  // namespace tarv
