#include "ViewPicture.h"

#include <cairo.h>
#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <fstream>

#include "UI/Views/CSector.h"

namespace tarv {

namespace {

constexpr uint32_t kStatic = 0x00d0d0;
constexpr uint32_t kDynamic = 0xf0e000;
constexpr uint32_t kTile = 0xff40ff;
constexpr uint32_t kColorBits = 0xffffff;

std::string bigEndian(uint32_t number) {
    return {static_cast<char>(number >> 24), static_cast<char>(number >> 16), static_cast<char>(number >> 8),
            static_cast<char>(number)};
}

/// A part of a PNG file: its length, its kind, its bytes, and the check of both.
std::string chunk(const std::string& kind, const std::string& bytes) {
    const std::string checked = kind + bytes;
    const uLong check = crc32(0, reinterpret_cast<const Bytef*>(checked.data()), static_cast<uInt>(checked.size()));
    return bigEndian(static_cast<uint32_t>(bytes.size())) + checked + bigEndian(static_cast<uint32_t>(check));
}

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
    const int32_t width = picture.width * zoom;
    const int32_t height = picture.height * zoom;
    std::string rows;
    rows.reserve((static_cast<size_t>(width) * 3 + 1) * static_cast<size_t>(height));
    for (int32_t y = 0; y < height; ++y) {
        rows += '\0';
        for (int32_t x = 0; x < width; ++x) {
            const uint32_t pixel = picture.at(x / zoom, y / zoom);
            rows += {static_cast<char>(pixel >> 16), static_cast<char>(pixel >> 8), static_cast<char>(pixel)};
        }
    }
    uLongf size = compressBound(static_cast<uLong>(rows.size()));
    std::string packed(size, '\0');
    if (compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(rows.data()),
                  static_cast<uLong>(rows.size()), Z_BEST_COMPRESSION) != Z_OK) {
        return false;
    }
    packed.resize(size);
    // 8 bits a channel, red, green and blue; no filters, no lacing.
    const std::string header = bigEndian(static_cast<uint32_t>(width)) + bigEndian(static_cast<uint32_t>(height)) +
                               std::string("\x08\x02\0\0\0", 5);
    std::ofstream file(path, std::ios::binary);
    file << "\x89PNG\r\n\x1a\n" << chunk("IHDR", header) << chunk("IDAT", packed) << chunk("IEND", "");
    return static_cast<bool>(file.flush());
}

bool readPng(const std::string& path, CPictureByHand& picture) {
    cairo_surface_t* surface = cairo_image_surface_create_from_png(path.c_str());
    const bool isRead = cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS;
    if (isRead) {
        picture = CPictureByHand(cairo_image_surface_get_width(surface), cairo_image_surface_get_height(surface), 0);
        const unsigned char* data = cairo_image_surface_get_data(surface);
        const int64_t stride = cairo_image_surface_get_stride(surface);
        for (int32_t y = 0; y < picture.height; ++y) {
            const auto* row = reinterpret_cast<const uint32_t*>(data + stride * y);
            for (int32_t x = 0; x < picture.width; ++x) {
                picture.at(x, y) = row[x] & kColorBits;
            }
        }
    }
    cairo_surface_destroy(surface);
    return isRead;
}

}  // namespace tarv
