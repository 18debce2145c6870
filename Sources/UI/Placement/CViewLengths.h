#pragma once

#include <cstdint>

#include "Core/CString.h"

namespace tarv {

/// How a view stands in its parent.
enum class CViewPlacement : uint8_t {
    Inline = 1,
    Full = 2,
    Top = 3,
    Bottom = 4,
    Left = 5,
    Right = 6,
    Overlay = 7,
    WindowOverlay = 8,
    Match = 9,
    ScrollerH = 10,
    ScrollerV = 11,
    ScrollerP = 12
};

/// What a width or a height refers to.
enum class CViewLengthMode : uint8_t {
    Balanced = 1,   ///< an equal part of the base
    Compact = 2,    ///< the size of the content
    Fixed = 3,      ///< pixels
    Percentage = 4  ///< a part of the base
};

/// A width or a height, or the least one.
struct CViewLength {
    CViewLengthMode mode = CViewLengthMode::Compact;
    double value = 0.0;  ///< Fixed: device pixels, at least 0; Percentage: 0 to 1

    bool operator==(const CViewLength&) const = default;
};

/// Pixels at the four sides of a view.
struct CViewBorders {
    double bottom = 0.0;
    double left = 0.0;
    double right = 0.0;
    double top = 0.0;

    bool operator==(const CViewBorders&) const = default;
};

/// Reads the name of a placement; false for a text that is none.
bool parsePlacement(const CString& text, CViewPlacement& placement);

/// Reads `compact`, `full` (100 %), `balanced`, "n%" or a number, which is multiplied by `scale`. A text that is
/// nothing of these is the number 0.
CViewLength parseLength(const CString& text, double scale);

/// Reads a list of items: `*` (adds, instead of replacing), sides out of L, R, T, B (none: all four), perhaps `+`, and
/// a number, which counts as 0 where it is none. Each number is multiplied by `scale`, and rounded half away from zero
/// with `isRounded`, before it is added: a border of one pixel more is so at every scale.
CViewBorders parseBorders(const CString& text, double scale, bool isRounded);

/// Reads one of three names as -1, 0 or 1; false for another text.
bool parseAlignment(const CString& text, const char* low, const char* high, int32_t& alignment);

}  // namespace tarv
