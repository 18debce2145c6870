#pragma once

namespace tarv {

class CViewBaseCtlEvents;

/// What views report to the input of their window. Thread: that of the window.
class CInputListener {
public:
    /// A view is being destroyed: it gets no event any more.
    virtual void viewGoes(CViewBaseCtlEvents& view) = 0;
    /// The root view is about to be destroyed, with all views below it still whole: a press that is held is cancelled.
    virtual void rootViewGoes() = 0;
    /// Views have become disabled or hidden: they lose hover, a press and the key focus.
    virtual void viewsChanged() = 0;
    /// The hint of a view has another text.
    virtual void hintChanged(CViewBaseCtlEvents& view) = 0;

protected:
    ~CInputListener() = default;
};

}  // namespace tarv
