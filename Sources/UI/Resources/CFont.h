#pragma once

#include "UI/Resources/CImageSet.h"

namespace tarv {

/// Glyphs by character code (of 8 bits; FontCodes.h), one bytes-per-pixel-1 layer each, and three measures.
class CFont : public CImageSet {
public:
    /// Line height, the space from its top to the capitals (metric 2) and the one from the base line to its bottom
    /// (metric 3), in pixels at scale 1.0, each in 0..65535.
    void setMetrics(int32_t height, int32_t metric2, int32_t metric3);

    /// Null for a code without a glyph.
    const CImage* getGlyph(uint32_t code) const { return getImage(code); }
    /// Line height in device pixels at the scale of the stored glyphs in effect, halves rounded up.
    int32_t getHeight() const;
    /// The two spaces at the same scale: what stands beside text of this font is aligned by them.
    int32_t getSpaceAbove() const { return atStoredScale(metric2_); }
    int32_t getSpaceBelow() const { return atStoredScale(metric3_); }
    int32_t nominalHeight() const { return height_; }
    int32_t metric2() const { return metric2_; }
    int32_t metric3() const { return metric3_; }

    [[nodiscard]] CError* read(CInputStream& input) override;
    [[nodiscard]] CError* write(COutputStream& output) const override;
    using CImageSet::getSize;
    int64_t getSize() const override;

private:
    [[nodiscard]] CError* readFont(CDataReader& reader);
    int32_t atStoredScale(int32_t length) const;

    int32_t height_ = 0;
    int32_t metric2_ = 0;
    int32_t metric3_ = 0;
};

}  // namespace tarv
