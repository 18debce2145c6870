#pragma once

#include <functional>
#include <vector>

#include "Core/CObjectEventBridge.h"
#include "UI/Windows/CWindowClass.h"

namespace tarv {

/// The root object of an editor's tree (`ui:ui-event-bridge`, named `ui`): the anchor of its objects to the thread of
/// the user interface, with the hidden window that events of other threads arrive at and the classes of windows. Ends
/// the input of all windows before the tree goes, so that presses are cancelled and edits committed while every object
/// is still there.
class CUIEventBridge : public CStdEventBridge {
public:
    ~CUIEventBridge() override;
    [[nodiscard]] CError* init() override;
    /// Calls a function on the thread of the user interface when it takes its events; never if the tree ends before.
    /// It may destroy the tree. Any thread.
    [[nodiscard]] CError* call(std::function<void()> function);

protected:
    [[nodiscard]] CError* eventArrived(CAttributeMap& params) override;

private:
    CWindowClass windowClass_;
    CWindowClass bridgeClass_;
    CLock callLock_;
    std::vector<std::function<void()>> calls_;  ///< in their order
};

}  // namespace tarv
