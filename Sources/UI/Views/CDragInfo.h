#pragma once

#include "Core/CHeap.h"
#include "UI/Views/CHIDInfoUpdateHandler.h"

namespace tarv {

class CViewBaseCtlEvents;

/// A press that is held: where it began, where the pointer is, and the view that took it.
class CDragInfo : public CHIDInfoUpdateHandler, public CHeapObject {
public:
    /// `view` may be null: a press that no view takes.
    void begin(CViewBaseCtlEvents* view, CPointerButton button, const CHIDInfo& info) {
        view_ = view;
        button_ = button;
        start_ = info;
        last_ = info;
    }
    void end() {
        view_ = nullptr;
        button_ = CPointerButton::None;
    }
    /// The view gets nothing any more; the button stays down.
    void dropView() { view_ = nullptr; }
    [[nodiscard]] CError* onHIDUpdate(const CHIDInfo& info) override {
        last_ = info;
        return nullptr;
    }

    bool isActive() const { return button_ != CPointerButton::None; }
    CViewBaseCtlEvents* view() const { return view_; }
    /// None while no press is held.
    CPointerButton button() const { return button_; }
    const CHIDInfo& start() const { return start_; }
    const CHIDInfo& last() const { return last_; }

private:
    CViewBaseCtlEvents* view_ = nullptr;
    CPointerButton button_ = CPointerButton::None;
    CHIDInfo start_;
    CHIDInfo last_;
};

}  // namespace tarv
