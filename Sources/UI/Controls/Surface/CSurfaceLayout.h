#pragma once

#include <cstdint>

#include "Platform/IntRect.h"

namespace tarv {

/// Where the columns of a surface stand, and which pixel a value has: device pixels of the window. Columns are equal,
/// of whole pixels, along the longer edge of a bar the range of values; what is left over is split between both ends. A
/// vertical surface has its columns side by side and its range, a multiple of eight pixels, from the bottom up. A
/// horizontal one has rows, and its range from left to right.
class CSurfaceLayout {
public:
    CSurfaceLayout() = default;
    /// `isFilling`: the bars leave no gaps between the columns. `scale` is that of the editor.
    CSurfaceLayout(const CIntRect& box, bool isVertical, int32_t count, bool isFilling, double scale);

    const CIntRect& box() const { return box_; }
    bool isVertical() const { return isVertical_; }
    int32_t count() const { return count_; }
    /// From one column to the next; 0 where there is no room.
    int32_t pitch() const { return pitch_; }
    /// Of the range of values: its lower end, in the direction of rising values, and its pixels.
    int32_t rangeStart() const { return rangeStart_; }
    int32_t rangeLength() const { return rangeLength_; }

    /// The box's part that belongs to a column.
    CIntRect column(int32_t index) const;
    /// What lies behind a bar; column to gap is 3 to 1.
    CIntRect pit(int32_t index) const;
    /// Of a bar between two pixels of the range: at least kCap pixels long, with its end at `to`.
    CIntRect bar(int32_t index, int32_t from, int32_t to) const;
    /// A bar that is shorter shows these pixels, on both sides of `from` where it has no length.
    static constexpr int32_t kCap = 2;
    /// Column at a pixel of the box, -1 for none.
    int32_t columnAt(int32_t x, int32_t y) const;
    /// The same, but beyond the outermost columns the nearest one; -1 without columns.
    int32_t nearestColumn(int32_t x, int32_t y) const;
    /// Middle of a column, across the range.
    double middle(int32_t index) const;

    /// Pixel of a position in 0 to 1, rounded.
    int32_t pixel(double position) const;
    /// Pixel of a line at that position: as pixel, but the last one of the range at its lower end.
    int32_t linePixel(double position) const;
    /// Position of a pixel, along the range.
    double position(double pixel) const;
    /// Of a point: what counts along the range, and across it.
    int32_t along(int32_t x, int32_t y) const { return isVertical_ ? y : x; }
    int32_t across(int32_t x, int32_t y) const { return isVertical_ ? x : y; }

    bool operator==(const CSurfaceLayout&) const = default;

private:
    CIntRect rect(int32_t acrossStart, int32_t acrossEnd, int32_t alongStart, int32_t alongEnd) const;

    CIntRect box_;
    bool isVertical_ = true;
    bool isFilling_ = false;
    int32_t count_ = 0;
    int32_t pitch_ = 0;
    int32_t first_ = 0;  ///< where the first column begins
    int32_t rangeStart_ = 0;
    int32_t rangeLength_ = 0;
    int32_t inset_ = 0;  ///< from pit to bar
};

}  // namespace tarv
