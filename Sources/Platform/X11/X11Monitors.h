#pragma once

#include "Platform/IntRect.h"
#include "Platform/X11/CX11Display.h"

namespace tarv {

/// The part of the monitor at a point, or of the nearest one, that panels leave free; the whole screen where the server
/// has no word for monitors, and the whole monitor where no desktop says what is free.
CIntRect x11MonitorArea(const CX11Display& display, int32_t x, int32_t y);

}  // namespace tarv
