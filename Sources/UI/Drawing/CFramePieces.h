#pragma once

#include "UI/Drawing/CLinearBitmap.h"
#include "UI/Resources/CImageSet.h"

namespace tarv {

/// What was drawn, for the load counter.
struct CDrawnImages {
    int64_t count = 0;   ///< images of which the clip left something
    int64_t pixels = 0;  ///< of their stored rectangles, clipped
};

/// Pixels beyond the four sides of a box.
struct COverhang {
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;

    bool operator==(const COverhang&) const = default;
};

/// A range of pictures that stretches over a box. Nine pictures are the pieces of a frame, row by row: corners are
/// drawn once, edges and the middle are repeated from their top left, and what overhangs is drawn outside the box.
/// Where the box is shorter than two corners, the longer one yields; where it is shorter than twice the shorter one,
/// both have half of it. Nines beyond are frames of an animation. Of a range of another count each picture is a
/// texture, which is repeated over the box; those beyond the first are an animation, too. Drawing allocates nothing.
class CFramePieces {
public:
    static constexpr uint32_t kPieces = 9;

    /// `first` to `last`, both included, of images that outlive this object. A picture that the set lacks is left out.
    CFramePieces(const CImageSet& images, uint32_t first, uint32_t last)
        : images_(images), first_(first), count_(last - first + 1) {}

    /// Nine pictures, or frames of nine.
    bool isFrame() const { return pieceCount() == kPieces; }
    /// Of the animation; 1 for none.
    uint32_t frameCount() const { return count_ / pieceCount(); }
    /// How far pictures of the range reach beyond the box, or beyond their nominal rectangle where they are no frame.
    COverhang overhang() const;
    /// `box` and `clip` are pixels of the bitmap; `frame` counts modulo frameCount.
    CDrawnImages draw(CLinearBitmap& target, const CIntRect& box, const CColor& color, double opacity,
                      const CIntRect& clip, uint32_t frame = 0) const;

private:
    /// Where the pieces of one column or row go.
    struct CSpan {
        int32_t start;  ///< of the first piece
        int32_t step;   ///< to the next one
        int32_t end;    ///< of the last one
        int32_t clipStart;
        int32_t clipEnd;

        /// Without the pieces that a clip leaves nothing of.
        CSpan within(int32_t from, int32_t to) const;
    };
    uint32_t pieceCount() const { return count_ % kPieces == 0 ? kPieces : 1; }
    int32_t widthOf(uint32_t index) const;
    int32_t heightOf(uint32_t index) const;
    static void cut(int32_t from, int32_t to, int32_t near, int32_t middle, int32_t far, CSpan (&spans)[3]);
    void drawPiece(CLinearBitmap& target, uint32_t index, const CSpan& column, const CSpan& row, const CColor& color,
                   double opacity, const CIntRect& clip, CDrawnImages& drawn) const;

    const CImageSet& images_;
    uint32_t first_;
    uint32_t count_;
};

}  // namespace tarv
