#pragma once

#include <cmath>

#include "Core/CString.h"
#include "Platform/IntRect.h"

namespace tarv {

/// Where a popup stands against its opener, by the attribute `window-alignment`.
enum class CWindowAlignment : uint8_t {
    Bottom,             ///< below the opener, along its left edge
    BottomCenter,       ///< below the opener, centred
    BottomLocalCenter,  ///< below the opener, centred in the opener's window; never over the opener
    Center,             ///< centred over the opener's window; without one, on the monitor
    CenterOverlay,      ///< centred over the main window
    Left,               ///< to the left of the opener, along its top edge
    Right,              ///< to the right of the opener, along its top edge; to the left where only that has room
    Cursor              ///< at the pointer
};

/// A length of views as whole pixels of the screen.
inline int32_t pixels(double length) {
    return static_cast<int32_t>(std::lround(length));
}

/// What a popup is placed by, in pixels of the screen.
struct CWindowSurroundings {
    CIntRect opener;        ///< the view that opens it; empty without one
    CIntRect openerWindow;  ///< empty without one
    CIntRect mainWindow;    ///< empty without one
    CIntRect monitor;       ///< work area of the opener's monitor
    int32_t pointerX = 0;
    int32_t pointerY = 0;
    int32_t shiftX = 0;  ///< added to the place
    int32_t shiftY = 0;
    int32_t constrainY = 0;  ///< lowest y, if it is on
    bool isConstrained = false;
};

/// False for a name that is no alignment.
bool readWindowAlignment(const CString& name, CWindowAlignment& alignment);
/// The place of a window of that size: where the alignment puts it, not above `constrainY`, and moved into the monitor;
/// one that is larger than the monitor keeps its top left corner there.
CIntRect placeWindow(CWindowAlignment alignment, const CWindowSurroundings& around, int32_t width, int32_t height);
/// A place that is given, held in the same limits.
CIntRect placeWindowAt(int32_t x, int32_t y, const CWindowSurroundings& around, int32_t width, int32_t height);

}  // namespace tarv
