// What a view draws by, in the tile that is drawn now.

#include <cmath>

#include "Core/CApplication.h"
#include "Core/Log.h"
#include "UI/Views/CSectorMap.h"
#include "UI/Views/CView.h"

namespace tarv {

namespace {

constexpr int64_t kLoadOfImage = 500;

int32_t pixelAt(double position) {
    return static_cast<int32_t>(std::lround(position));
}

/// The visible rectangle moves with what is clipped, so nothing should be placed by it.
void warnOfClip(int32_t area, const char* operation) {
    if (area == CView::kVisibleArea) {
        logLine(CString(operation) + " CLIP 0");
    }
}

}  // namespace

CError* CView::drawInSector(const CSectorTarget& target) {
    target_ = target;
    return draw();
}

CError* CView::draw() {
    if (isFrameRange()) {
        drawStretched(kBoxArea);
    } else if (imageSet_) {
        drawImage(kBoxArea);
    } else if (!getAttrString("color").isEmpty()) {
        drawFilledRect(kWholeArea);
    }
    return nullptr;
}

void CView::setAreaRect(int32_t area, const CViewRect& rect) {
    if (area >= areas_.count()) {
        areas_.resize(area + 1);
    }
    areas_[area] = rect;
}

CIntRect CView::areaClip(int32_t area) const {
    if (area < 0 || area >= areas_.count() || areas_[area].isEmpty()) {
        return {};
    }
    return areaBox(area).intersection(target_.clip);
}

/// In pixels of the tile.
CIntRect CView::areaBox(int32_t area) const {
    const CViewRect& rect = areas_[area];
    return {pixelAt(rect.x) - target_.originX, pixelAt(rect.y) - target_.originY,
            pixelAt(rect.right()) - target_.originX, pixelAt(rect.bottom()) - target_.originY};
}

void CView::drawFilledRect(int32_t area, int32_t colorIndex, double opacity) {
    warnOfClip(area, "drawFilledRect");
    const CColor* color = this->color(colorIndex);
    if (color) {
        target_.bitmap->fillRect(areaClip(area), *color, opacity);
    }
}

void CView::drawInvertedRect(int32_t area) {
    warnOfClip(area, "drawInvertedRect");
    target_.bitmap->invertRect(areaClip(area));
}

void CView::drawImage(int32_t area, int32_t colorIndex, double opacity) {
    warnOfClip(area, "drawImage");
    const CImage* image = currentImage();
    const CColor* color = this->color(colorIndex);
    if (!image || !color || area < 0 || area >= areas_.count()) {
        return;
    }
    int32_t x = 0;
    int32_t y = 0;
    getAlignedImageCoords(area, *image, x, y);
    for (int32_t i = 0; i < image->layerCount(); ++i) {
        drawImageLayer(image->layer(i), x, y, area, *color, opacity, false);
    }
}

void CView::drawImageLayer(const CImageLayer& layer, int32_t x, int32_t y, int32_t area, const CColor& color,
                           double opacity, bool isScaled) {
    warnOfClip(area, "drawImageLayer");
    if (isScaled) {
        x = pixelAt(x * CApplication::uiScale());
        y = pixelAt(y * CApplication::uiScale());
    }
    const CIntRect clip = areaClip(area);
    if (clip.isEmpty()) {
        return;
    }
    const int64_t pixels =
        target_.bitmap->drawImage(layer, color, x - target_.originX, y - target_.originY, opacity, clip);
    if (CSectorMap* map = sectorMap()) {
        map->addLoad(kLoadOfImage + pixels);
    }
}

void CView::drawStretched(int32_t area, int32_t colorIndex, double opacity) {
    warnOfClip(area, "drawStretched");
    if (imageSet_ && hasRange_) {
        drawPieces(CFramePieces(*imageSet_, firstImage_, lastImage_), area, colorIndex, opacity, frame_);
    }
}

void CView::drawMiddle(int32_t area, int32_t colorIndex, double opacity) {
    warnOfClip(area, "drawMiddle");
    if (!isFrameRange()) {
        drawStretched(area, colorIndex, opacity);
        return;
    }
    constexpr uint32_t kMiddle = 4;
    const uint32_t frames = CFramePieces(*imageSet_, firstImage_, lastImage_).frameCount();
    const uint32_t middle = firstImage_ + frame_ % frames * CFramePieces::kPieces + kMiddle;
    drawPieces(CFramePieces(*imageSet_, middle, middle), area, colorIndex, opacity, 0);
}

void CView::drawPieces(const CFramePieces& pieces, int32_t area, int32_t colorIndex, double opacity, uint32_t frame) {
    const CColor* color = this->color(colorIndex);
    if (!color || area < 0 || area >= areas_.count() || areas_[area].isEmpty()) {
        return;
    }
    const CDrawnImages drawn = pieces.draw(*target_.bitmap, areaBox(area), *color, opacity, target_.clip, frame);
    if (CSectorMap* map = sectorMap()) {
        map->addLoad(kLoadOfImage * drawn.count + drawn.pixels);
    }
}

void CView::getAlignedImageCoords(int32_t area, const CImage& image, int32_t& x, int32_t& y) {
    warnOfClip(area, "getAlignedImageCoords");
    const CViewRect& rect = areas_[area];
    x = pixelAt(rect.x + (rect.width - image.getWidth()) * (imageAlignmentH_ + 1) / 2.0);
    y = pixelAt(rect.y + (rect.height - image.getHeight()) * (imageAlignmentV_ + 1) / 2.0);
}

}  // namespace tarv
