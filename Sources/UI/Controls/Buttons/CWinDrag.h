#pragma once

#include "UI/Views/CFrame.h"

namespace tarv {

/// The root view of a window (`ui:window-drag`). With `is-window-draggable` a press that no control takes drags the
/// window, which stays under the pointer; an embedded window stays where it is. The event `flash-title`, which comes
/// when the user presses what waits for this window, sets the state `flash` of the child `window-title` for as long as
/// that view's `duration` says. Thread: that of the window.
class CWinDrag : public CFrame {
public:
    ~CWinDrag() override;
    bool isInputView() const override { return isDraggable() || CFrame::isInputView(); }
    [[nodiscard]] CError* mousePress(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseMove(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseRelease(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseCancel(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseTakeBack(CAttributeMap& params) override;

protected:
    [[nodiscard]] CError* inputEvent(const CString& name, CAttributeMap& params) override;

private:
    [[nodiscard]] CError* flashTitle();
    bool isDraggable() const { return getAttrBool("is-window-draggable"); }
    /// Where the pointer holds the window, in pixels of it.
    int32_t heldX_ = 0;
    int32_t heldY_ = 0;
    CIntRect boundsBefore_;  ///< of the window at the press
    bool isHeld_ = false;
};

}  // namespace tarv
