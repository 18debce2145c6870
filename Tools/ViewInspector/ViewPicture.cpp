#include "ViewPicture.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>

#include "UI/Views/CSector.h"

namespace tarv {

namespace {

constexpr uint32_t kStatic = 0x00d0d0;
constexpr uint32_t kDynamic = 0xf0e000;
constexpr uint32_t kTile = 0xff40ff;

/// Halfway to a colour, or with `isStrong` the colour.
void mark(uint32_t& pixel, uint32_t color, bool isStrong) {
    pixel = isStrong ? color : (pixel >> 1 & 0x7f7f7f) + (color >> 1 & 0x7f7f7f);
}

void drawOutline(CPictureByHand& picture, const CViewRect& rect, uint32_t color, bool isStrong) {
    const CIntRect box{static_cast<int32_t>(std::lround(rect.x)), static_cast<int32_t>(std::lround(rect.y)),
                       static_cast<int32_t>(std::lround(rect.right())),
                       static_cast<int32_t>(std::lround(rect.bottom()))};
    const CIntRect seen = box.intersection(picture.bounds());
    for (int32_t y = seen.top; y < seen.bottom; ++y) {
        for (int32_t x = seen.left; x < seen.right; ++x) {
            if (x == box.left || x == box.right - 1 || y == box.top || y == box.bottom - 1) {
                mark(picture.at(x, y), color, isStrong);
            }
        }
    }
}

}  // namespace

void drawBoxes(CPictureByHand& picture, const CView& root) {
    if (root.isShown()) {
        drawOutline(picture, root.area().box(), root.isDynamic() ? kDynamic : kStatic,
                    root.isInputView() && !root.isDecorative());
    }
    for (const CObject* child : root.children()) {
        const auto* view = dynamic_cast<const CView*>(child);
        if (view && view->parentView() == &root) {
            drawBoxes(picture, *view);
        }
    }
}

void drawTiles(CPictureByHand& picture) {
    for (int32_t y = 0; y < picture.height; ++y) {
        for (int32_t x = 0; x < picture.width; ++x) {
            const bool isEdge = x % CSector::kSize == 0 || y % CSector::kSize == 0;
            if (isEdge && (x + y) % 4 < 2) {
                picture.at(x, y) = kTile;
            }
        }
    }
}

bool writePng(const CPictureByHand& picture, const std::string& path, int32_t zoom) {
    cairo_surface_t* surface =
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, picture.width * zoom, picture.height * zoom);
    unsigned char* data = cairo_image_surface_get_data(surface);
    const int64_t stride = cairo_image_surface_get_stride(surface);
    for (int32_t y = 0; y < picture.height * zoom; ++y) {
        auto* row = reinterpret_cast<uint32_t*>(data + stride * y);
        for (int32_t x = 0; x < picture.width * zoom; ++x) {
            row[x] = picture.at(x / zoom, y / zoom);
        }
    }
    cairo_surface_mark_dirty(surface);
    const bool isWritten = cairo_surface_write_to_png(surface, path.c_str()) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(surface);
    return isWritten;
}

}  // namespace tarv
