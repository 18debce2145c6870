#pragma once

namespace tarv {

class CDragInfo;
class CHIDInfoUpdateHandler;
class CViewBaseCtlEvents;

/// What views report to the input of their window, and what they ask of it. Thread: that of the window.
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

    /// The press that is held.
    virtual const CDragInfo& drag() const = 0;
    /// Reports mouse and keyboard to a handler with each move, until the press that is held ends. Null ends it at once;
    /// without a press nothing happens.
    virtual void follow(CHIDInfoUpdateHandler* handler) = 0;

protected:
    ~CInputListener() = default;
};

}  // namespace tarv
