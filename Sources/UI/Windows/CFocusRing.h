#pragma once

#include "Core/CHeap.h"

namespace tarv {

class CViewBaseCtlEvents;

/// The ring around the view that has the key focus, in one window: the view `focus-ring` of the template
/// `ui:focus-ring` below the root view, made when it is first needed. A window whose tree has no such template has no
/// ring. Thread: that of the window.
class CFocusRing {
public:
    /// Lays the ring around a view below `root`, or takes it away with null. Once a tick; what is unchanged costs
    /// nothing. A failure is logged, and leaves no ring.
    void follow(CViewBaseCtlEvents& root, CViewBaseCtlEvents* view);
    /// A view is being destroyed.
    void viewGone(const CViewBaseCtlEvents& view);

private:
    CViewBaseCtlEvents* view_ = nullptr;
    bool isStale_ = false;  ///< view_ has been destroyed, and the ring is still shown
};

}  // namespace tarv
