#pragma once

namespace tarv {

class CSectorMap;
class CViewBaseCtlEvents;

/// Which view a point of a window belongs to. Thread: that of the window.
class CInputTarget {
public:
    /// The topmost view at a point that is not click-through; null for none. Disabled views count. With
    /// `climbToControl` the view that takes what is aimed at it: the first ancestor from the root down that intercepts,
    /// otherwise the nearest input view from it up.
    static CViewBaseCtlEvents* hit(const CSectorMap& map, double x, double y, bool climbToControl);
    /// The view that takes what is aimed at `hit`, which may be null; hit's with `climbToControl`.
    static CViewBaseCtlEvents* takerOf(CViewBaseCtlEvents* hit);
    /// The ancestor that intercepts what is aimed at `hit`, or `hit` itself.
    static CViewBaseCtlEvents* unintercepted(CViewBaseCtlEvents* hit);
    /// Shown, and neither the view nor an ancestor is disabled.
    static bool takesInput(const CViewBaseCtlEvents& view);
    /// The nearest view from `view` up that has a hint, or null.
    static CViewBaseCtlEvents* hintOf(CViewBaseCtlEvents* view);
    /// The view from `view` up to its control, or a child of that control, whose text is shown in part only; or null.
    static const CViewBaseCtlEvents* shortenedAt(const CViewBaseCtlEvents* view);
    /// The next focusable view that takes input, in the order in which the views below `root` are read: of the children
    /// of one view row by row, in a row from left to right, each with all below it. Goes around the end; backwards on
    /// request. Begins at the first (last) where `from` is null. Null if there is none but `from`.
    static CViewBaseCtlEvents* nextFocus(CViewBaseCtlEvents& root, CViewBaseCtlEvents* from, bool isBackwards);
};

}  // namespace tarv
