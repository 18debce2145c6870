#pragma once

#include <cstdint>

#include "UI/Resources/CDataSet.h"

namespace tarv {

/// Dots of one width for drawing lines: for each stored scale, and for each position of a 1/16 pixel step in x and y, a
/// stamp of coverage. A line is drawn by blending the stamp of each point's fractional position at its whole pixel.
class CBrush : public CHeapObject {
public:
    /// Steps of a pixel as a power of two; no other is stored.
    static constexpr int32_t kSubpixelBits = 4;
    static constexpr int32_t kSubpixels = 1 << kSubpixelBits;
    static constexpr int32_t kStamps = kSubpixels * kSubpixels;
    static constexpr int32_t kMaxStampSide = 1024;

    /// Nominal line width in pixels at scale 1.0.
    explicit CBrush(double width = 0.0) : width_(width) {}

    /// Enters the stamps of one scale: kStamps * side * side bytes of coverage, the stamp of the steps (sx, sy) being
    /// number sy * 16 + sx, rows from the top. `dotWidth` is the width that a line really has. Fails on a scale that
    /// stands already or can't be stored, on a side that is not in 1..kMaxStampSide, and on a negative width.
    [[nodiscard]] CError* addVersion(double scale, int32_t stampSide, double dotWidth, const uint8_t* table);
    void chooseScale(double scale);

    double width() const { return width_; }
    int32_t versionCount() const { return versions_.count(); }
    double scaleAt(int32_t index) const { return scales_[index]; }
    /// At the scale in effect. There is at least one.
    int32_t stampSide() const { return versions_[chosen_].side; }
    double dotWidth() const { return versions_[chosen_].dotWidth; }
    /// side * side bytes of coverage for a position of subX, subY sixteenths, each in 0..15.
    const uint8_t* stamp(int32_t subX, int32_t subY) const;

    /// Fewest bytes in a file: one scale, and of its version all but the table.
    static constexpr uint32_t kLeastVersionBytes = 16;
    static constexpr uint32_t kLeastBytes = 16 + 8 + kLeastVersionBytes;
    [[nodiscard]] CError* read(CDataReader& reader);
    [[nodiscard]] CError* write(COutputStream& output) const;
    int64_t getSize() const;

private:
    struct CVersion {
        int32_t side = 0;
        double dotWidth = 0.0;
        CByteBuffer table;
    };
    [[nodiscard]] static CError* readVersion(CDataReader& reader, CVersion& version);

    double width_;
    int32_t chosen_ = 0;
    double wanted_ = 1.0;
    CArray<double, 3> scales_;
    CArray<CVersion, 3> versions_;
};

/// Brushes by index.
class CBrushSet : public CDataSet {
public:
    /// Takes the brush over, behind the others.
    void addBrush(CBrush* brush);
    int32_t brushCount() const { return brushes_.count(); }
    /// Null outside 0..brushCount-1.
    const CBrush* getBrush(int32_t index) const;

    [[nodiscard]] CError* read(CInputStream& input) override;
    [[nodiscard]] CError* write(COutputStream& output) const override;
    int64_t getSize() const override;

private:
    [[nodiscard]] CError* readBrushes(CDataReader& reader);

    COwnedArray<CBrush, 3> brushes_;
};

}  // namespace tarv
