#pragma once

#include "Core/CObject.h"
#include "UI/Views/CSectorView.h"

namespace tarv {

class CSectorMap;
class CViewWindow;

/// The beginning of every view: its place in the tree of views, and its window. A view's parent in the tree is a view,
/// but for a root view's. Thread: that of the window.
class CViewBase : public CObject, public CSectorView {
public:
    /// Finds the views above; both stay null where there are none.
    [[nodiscard]] CError* init() override;

    CViewBase* parentView() const { return parentView_; }
    /// The view that a window shows; itself for a root view.
    CViewBase* rootView() const { return rootView_; }
    bool isRootView() const { return rootView_ == this; }
    /// Null before the window is there, and behind its end.
    CViewWindow* window() const { return rootView_ ? rootView_->ownWindow_ : nullptr; }
    /// Null without a window.
    CSectorMap* sectorMap() const;
    /// Of a root view: the window that shows it, or null.
    void setWindow(CViewWindow* window) { ownWindow_ = window; }

private:
    CViewBase* parentView_ = nullptr;
    CViewBase* rootView_ = nullptr;
    CViewWindow* ownWindow_ = nullptr;
};

}  // namespace tarv
