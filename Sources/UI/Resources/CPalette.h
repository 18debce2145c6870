#pragma once

#include <cstdint>

#include "UI/Resources/CDataSet.h"

namespace tarv {

/// A pixel as bitmaps hold it: 0x00RRGGBB, that is the bytes blue, green, red and an unused one.
using CPixel = uint32_t;

inline constexpr int32_t kRampLength = 256;

/// A colour of a palette: a ramp from dark to full brightness, and how much it covers.
struct CColor : CHeapObject {
    CString name;
    double opacity = 1.0;  ///< 0 to 1
    CPixel ramp[kRampLength] = {};

    /// The colour's own full brightness.
    CPixel full() const { return ramp[kRampLength - 1]; }
};

/// Colours by name, and the frame counts of those that are animated. In a file both ascend by name.
class CPalette : public CDataSet {
public:
    /// `ramp` holds kRampLength pixels; their unused byte is dropped. Fails on a name that stands already, on
    /// characters of more than 8 bits, and on an opacity that is not in 0 to 1.
    [[nodiscard]] CError* addColor(const CString& name, double opacity, const CPixel* ramp);
    /// The colour `name` has the frames `name|0` to `name|count-1`. Fails on a name that stands already, on characters
    /// of more than 8 bits, and on a count of 0.
    [[nodiscard]] CError* setFrameCount(const CString& name, uint32_t count);
    void clear();

    /// Null for a name that the palette lacks.
    const CColor* findColor(const CString& name) const;
    /// 0 for a colour without frames.
    uint32_t getFrameCount(const CString& name) const;
    /// The colour of a view: `base`, followed by `_` and the state unless that is empty, followed by `|` and the frame
    /// (modulo the frame count) if this name has frames. If there is no such colour, the base alone; null if that is
    /// missing too.
    const CColor* findColor(const CString& base, const CString& state, uint32_t frame) const;
    int32_t colorCount() const { return colors_.count(); }
    const CColor& color(int32_t position) const { return *colors_[position]; }
    int32_t frameTableCount() const { return frames_.count(); }
    const CString& frameTableName(int32_t position) const { return frames_[position].name; }

    [[nodiscard]] CError* read(CInputStream& input) override;
    [[nodiscard]] CError* write(COutputStream& output) const override;
    int64_t getSize() const override;

private:
    struct CFrames {
        CString name;
        uint32_t count;
    };
    [[nodiscard]] CError* readPalette(CDataReader& reader);
    [[nodiscard]] CError* readColors(CDataReader& reader);
    [[nodiscard]] CError* readFrames(CDataReader& reader);
    /// First position whose name is not below.
    int32_t colorPosition(const CString& name) const;
    int32_t framesPosition(const CString& name) const;

    COwnedArray<CColor, 1> colors_;
    CArray<CFrames, 1> frames_;
};

}  // namespace tarv
