#include "UI/Drawing/CFramePieces.h"

#include <algorithm>

namespace tarv {

namespace {

// Beyond any bitmap, and far enough from the ends of the integers for sums with a place.
constexpr int32_t kFar = 1 << 28;

/// Both ends of a side whose corners are `near` and `far` long: where the room is short, the longer one yields.
void fitCorners(int32_t room, int32_t& near, int32_t& far) {
    if (near + far <= room) {
        return;
    }
    const int32_t shorter = std::min(near, far);
    if (shorter * 2 > room) {
        near = room / 2;
        far = room - near;
        return;
    }
    (near >= far ? near : far) = room - shorter;
}

}  // namespace

int32_t CFramePieces::widthOf(uint32_t index) const {
    const CImage* image = images_.getImage(index);
    return image ? std::max(image->getWidth(), 1) : 1;
}

int32_t CFramePieces::heightOf(uint32_t index) const {
    const CImage* image = images_.getImage(index);
    return image ? std::max(image->getHeight(), 1) : 1;
}

COverhang CFramePieces::overhang() const {
    COverhang most;
    for (uint32_t i = 0; i < count_; ++i) {
        const CImage* image = images_.getImage(first_ + i);
        // Of a frame, a piece is cut where the next one begins.
        const uint32_t column = isFrame() ? i % 3 : 0;
        const uint32_t row = isFrame() ? i / 3 % 3 : 0;
        for (int32_t k = 0; image && k < image->layerCount(); ++k) {
            const CImageVersion& version = image->layer(k).version();
            if (column == 0) {
                most.left = std::max(most.left, -version.x());
            }
            if (row == 0) {
                most.top = std::max(most.top, -version.y());
            }
            if (column == 2 || !isFrame()) {
                most.right = std::max(most.right, version.x() + version.storedWidth() - image->getWidth());
            }
            if (row == 2 || !isFrame()) {
                most.bottom = std::max(most.bottom, version.y() + version.storedHeight() - image->getHeight());
            }
        }
    }
    return most;
}

CFramePieces::CSpan CFramePieces::CSpan::within(int32_t from, int32_t to) const {
    // A piece may overhang its place, so that one more is drawn on either side.
    const int32_t skipped = std::max((from - start) / step - 1, 0);
    return {start + skipped * step, step, std::min(end, to + std::min(step, kFar)), clipStart, clipEnd};
}

/// Outwards a corner may overhang; inwards, and along a side that is repeated, it ends where the next piece begins.
void CFramePieces::cut(int32_t from, int32_t to, int32_t near, int32_t middle, int32_t far, CSpan (&spans)[3]) {
    int32_t nearRoom = near;
    int32_t farRoom = far;
    fitCorners(to - from, nearRoom, farRoom);
    spans[0] = {from, kFar, from + 1, -kFar, from + nearRoom};
    spans[1] = {from + nearRoom, middle, to - farRoom, from + nearRoom, to - farRoom};
    spans[2] = {to - far, kFar, to - far + 1, to - farRoom, kFar};
}

void CFramePieces::drawPiece(CLinearBitmap& target, uint32_t index, const CSpan& column, const CSpan& row,
                             const CColor& color, double opacity, const CIntRect& clip, CDrawnImages& drawn) const {
    const CImage* image = images_.getImage(index);
    const CIntRect seen =
        clip.intersection(target.bounds()).intersection({column.clipStart, row.clipStart, column.clipEnd, row.clipEnd});
    if (!image || seen.isEmpty()) {
        return;
    }
    const CSpan x = column.within(seen.left, seen.right);
    const CSpan y = row.within(seen.top, seen.bottom);
    const int32_t count = x.start < x.end ? (x.end - x.start + x.step - 1) / x.step : 0;
    if (image->layerCount() == 1) {
        for (int32_t top = y.start; top < y.end; top += y.step) {
            const int64_t pixels =
                target.drawImageRow(image->layer(0), color, x.start, top, x.step, count, opacity, seen);
            drawn.pixels += pixels;
            drawn.count += pixels > 0 ? count : 0;
        }
        return;
    }
    // Layers of one picture lie on one another before the next one is drawn.
    for (int32_t top = y.start; top < y.end; top += y.step) {
        for (int32_t left = x.start; left < x.end; left += x.step) {
            for (int32_t i = 0; i < image->layerCount(); ++i) {
                const int64_t pixels = target.drawImage(image->layer(i), color, left, top, opacity, seen);
                drawn.pixels += pixels;
                drawn.count += pixels > 0 ? 1 : 0;
            }
        }
    }
}

CDrawnImages CFramePieces::draw(CLinearBitmap& target, const CIntRect& box, const CColor& color, double opacity,
                                const CIntRect& clip, uint32_t frame) const {
    CDrawnImages drawn;
    const uint32_t pieces = pieceCount();
    const uint32_t first = first_ + frame % frameCount() * pieces;
    if (box.isEmpty()) {
        return drawn;
    }
    if (pieces == 1) {
        const CSpan x{box.left, widthOf(first), box.right, box.left, box.right};
        const CSpan y{box.top, heightOf(first), box.bottom, box.top, box.bottom};
        drawPiece(target, first, x, y, color, opacity, clip, drawn);
        return drawn;
    }
    CSpan columns[3];
    CSpan rows[3];
    cut(box.left, box.right, widthOf(first), widthOf(first + 1), widthOf(first + 2), columns);
    cut(box.top, box.bottom, heightOf(first), heightOf(first + 3), heightOf(first + 6), rows);
    for (uint32_t i = 0; i < kPieces; ++i) {
        drawPiece(target, first + i, columns[i % 3], rows[i / 3], color, opacity, clip, drawn);
    }
    return drawn;
}

}  // namespace tarv
