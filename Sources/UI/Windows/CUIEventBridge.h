#pragma once

#include "Core/CObjectEventBridge.h"

namespace tarv {

/// The root object of an editor's tree (`ui:ui-event-bridge`, named `ui`): the anchor of its objects to the thread of
/// the user interface, with the hidden window that events of other threads arrive at. Ends the input of all windows
/// before the tree goes, so that presses are cancelled and edits committed while every object is still there.
class CUIEventBridge : public CStdEventBridge {
public:
    ~CUIEventBridge() override;
};

}  // namespace tarv
