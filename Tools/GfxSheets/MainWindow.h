#pragma once

#include "CSheetCanvas.h"

namespace tarv {

/// Size of the editor's main window at scale 1.0.
inline constexpr double kMainWindowWidth = 640.0;
inline constexpr double kMainWindowHeight = 400.0;

/// The main window with the program "Strange Stereo", laid out by hand until the editor's views lay it out. The canvas
/// has the window's size.
void drawMainWindow(CSheetCanvas& canvas);

}  // namespace tarv
