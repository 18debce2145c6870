#pragma once

#include "Core/CArray.h"

namespace tarv {

class CAudioExtParam;
class CAudioExtParamList;

/// Gathers what changes of the host's parameters on this thread, while it lives, in place of notifying the host of each
/// change: an action may change a parameter several times, or notify of what stays the same. Several on one thread
/// nest. One thread at a time gathers for a list; the others' changes go to the host at once.
class CAudioExtParamGathering {
public:
    using CIndexes = CArray<int32_t, 32>;

    /// Without a list nothing is gathered.
    explicit CAudioExtParamGathering(CAudioExtParamList* list);
    ~CAudioExtParamGathering() { finish(); }
    CAudioExtParamGathering(const CAudioExtParamGathering&) = delete;
    CAudioExtParamGathering& operator=(const CAudioExtParamGathering&) = delete;

    /// Ends it, and gives the indexes, ascending, of the parameters that were changed and have another value, as the
    /// host sees it, than at the start. Empty at another call.
    CIndexes finish();

private:
    friend class CAudioExtParamList;
    void note(int32_t index) { isNoted_[index] = true; }

    CAudioExtParamList* list_;
    CAudioExtParamGathering* outer_ = nullptr;
    CArray<float, 32> before_;
    CArray<bool, 32> isNoted_;
};

}  // namespace tarv
