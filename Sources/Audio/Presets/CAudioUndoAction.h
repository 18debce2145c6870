#pragma once

#include "Audio/Parameters/CAudioParam.h"

namespace tarv {

/// What a step of the history did apart from values of parameters.
class CAudioUndoAction : public CHeapObject {
public:
    /// Notified after its actions were undone or redone, outside all locks. Outlives the history.
    class CObserver {
    public:
        virtual void actionsMoved() = 0;

    protected:
        ~CObserver() = default;
    };
    /// Parameters and observers to notify when the locks are released.
    struct CTouched {
        CArray<CAudioParam*, 16> params;
        CArray<CObserver*, 1> observers;
        void add(CAudioParam& param);
        void add(CObserver& observer);
        /// Notifies them. The caller holds no lock.
        void notify() const;
    };

    virtual ~CAudioUndoAction() = default;
    /// Called before the step's values change, with the history's lock held and no other. Parts that no longer apply
    /// are left out.
    virtual void undo(CTouched& touched) = 0;
    virtual void redo(CTouched& touched) = 0;
    /// Takes over a later action of the same gesture; returns whether it could.
    virtual bool merge(CAudioUndoAction& later) = 0;
};

}  // namespace tarv
