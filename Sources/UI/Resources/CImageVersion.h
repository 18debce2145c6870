#pragma once

#include <cstdint>

#include "Core/CStreams.h"

namespace tarv {

class CDataReader;

/// One picture at one scale: its place, and its rows in runs.
///
/// The block of the rows is stored as in the file: the count of the rows (u16), the row table (a u32 for each row), and
/// the runs. Offsets count from the start of the block, its first byte being the count of the rows, so that no row can
/// begin at 0, which stands for an empty one. Rows may share their bytes with another one whole, or not at all.
class CImageVersion : public CHeapObject {
public:
    /// Nominal size, what the layout uses, in device pixels at this version's scale.
    void setSize(int32_t width, int32_t height);
    /// Pen advance of a glyph in pixels.
    void setAdvance(double advance) { advance_ = advance; }
    /// Codes `width` * `height` pixels without gaps: alpha (1 byte), ramp index and alpha (2), or blue, green, red and
    /// alpha (4). Their top-left lies at x, y from the nominal one. What is transparent around them is cut off; the
    /// nominal size stays. Fails on sizes and places that can't be stored.
    [[nodiscard]] CError* encode(const uint8_t* pixels, int32_t width, int32_t height, int32_t bytesPerPixel, int32_t x,
                                 int32_t y);

    int32_t width() const { return width_; }
    int32_t height() const { return height_; }
    double advance() const { return advance_; }
    /// Where the stored rectangle lies from the nominal top-left.
    int32_t x() const { return x_; }
    int32_t y() const { return y_; }
    int32_t storedWidth() const { return storedWidth_; }
    int32_t storedHeight() const { return storedHeight_; }
    /// Runs of a row in 0..storedHeight-1, which cover the stored width exactly; null for an empty row.
    const uint8_t* row(int32_t index) const {
        // Written out, since compilers make one load of it.
        const uint8_t* entry = block_.data() + kTable + 4 * static_cast<int64_t>(index);
        const uint32_t offset = static_cast<uint32_t>(entry[0]) | static_cast<uint32_t>(entry[1]) << 8 |
                                static_cast<uint32_t>(entry[2]) << 16 | static_cast<uint32_t>(entry[3]) << 24;
        return offset == 0 ? nullptr : block_.data() + offset;
    }

    /// Fewest bytes in a file.
    static constexpr uint32_t kLeastBytes = 38;
    [[nodiscard]] CError* read(CDataReader& reader, int32_t bytesPerPixel);
    [[nodiscard]] CError* write(COutputStream& output) const;
    int64_t getSize() const;

private:
    /// Where the row table stands, behind the count of the rows.
    static constexpr int32_t kTable = 2;

    int32_t width_ = 0;
    int32_t height_ = 0;
    double advance_ = 0.0;
    int32_t x_ = 0;
    int32_t y_ = 0;
    int32_t storedWidth_ = 0;
    int32_t storedHeight_ = 0;
    CByteBuffer block_;
};

}  // namespace tarv
