#pragma once

#include <string>

#include "Platform/ByHand/CPictureByHand.h"
#include "UI/Views/CView.h"

namespace tarv {

/// Draws the outlines of the boxes of a view and of all shown views below it: static ones in cyan, dynamic ones in
/// yellow, those that a press would reach brighter.
void drawBoxes(CPictureByHand& picture, const CView& root);

/// Draws the edges of the tiles that a window is drawn by, dotted.
void drawTiles(CPictureByHand& picture);

/// Each pixel as a square of `zoom` pixels. False if the file can't be written.
[[nodiscard]] bool writePng(const CPictureByHand& picture, const std::string& path, int32_t zoom = 1);

/// Pixels without their fourth byte. False if the file is no PNG picture that can be read.
[[nodiscard]] bool readPng(const std::string& path, CPictureByHand& picture);

}  // namespace tarv
