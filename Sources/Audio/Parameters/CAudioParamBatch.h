#pragma once

#include "Audio/Parameters/CAudioParamChangeList.h"

namespace tarv {

class CAudioEnv;

/// The posted changes of a collector that wait for its next round. A change of the same parameter, group and time as
/// the last one is merged with it; while the engine does not run, or when very many wait, with any earlier one, so that
/// a host that takes no blocks for hours does not fill the memory. Takes the environment's lock for each access.
class CAudioParamBatch {
public:
    CAudioParamBatch() = default;
    CAudioParamBatch(const CAudioParamBatch&) = delete;
    CAudioParamBatch& operator=(const CAudioParamBatch&) = delete;
    /// Releases what waits.
    ~CAudioParamBatch();

    /// Connects the environment, which outlives the batch. Once, before all else.
    void setEnv(const CAudioEnv& env) { env_ = &env; }
    /// Takes a change over. `present` is the user-side value with the change applied; its lock is held. Returns false,
    /// and leaves the change to the caller, if it is for all groups and has to be divided: records for all groups
    /// cannot be merged, so that they would have no bound. Any thread.
    bool add(CAudioParamChange* change, const CAudioParamData& present);
    /// Takes everything out. Audio thread; holds the lock for a swap.
    CAudioParamChangeList takeAll();
    int32_t count() const;

private:
    CAudioParamChange* mergeOrAppend(CAudioParamChange* change, const CAudioParamData& present, bool isCrowded);

    const CAudioEnv* env_ = nullptr;
    CAudioParamChangeList changes_;
};

}  // namespace tarv
