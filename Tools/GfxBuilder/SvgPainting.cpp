#include "SvgPainting.h"

#include <librsvg/rsvg.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <sstream>

#include "SvgSnapping.h"

namespace tarv {

namespace {

struct CSurfaceDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using CSurface = std::unique_ptr<cairo_surface_t, CSurfaceDeleter>;
struct CPenDeleter {
    void operator()(cairo_t* pen) const { cairo_destroy(pen); }
};
using CPen = std::unique_ptr<cairo_t, CPenDeleter>;
struct CHandleDeleter {
    void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
};
using CHandle = std::unique_ptr<RsvgHandle, CHandleDeleter>;

/// A pixel of a surface: premultiplied, alpha in the top byte.
uint32_t pixelAt(cairo_surface_t* surface, int x, int y) {
    const uint8_t* row =
        cairo_image_surface_get_data(surface) + static_cast<ptrdiff_t>(y) * cairo_image_surface_get_stride(surface);
    return reinterpret_cast<const uint32_t*>(row)[x];
}

CSurface newSurface(int width, int height) {
    return CSurface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
}

struct CInk {
    int left, top, right, bottom;  ///< right and bottom beyond the last pixel

    bool isEmpty() const { return left >= right; }
};

CInk inkOf(cairo_surface_t* surface) {
    CInk ink{1 << 20, 1 << 20, 0, 0};
    for (int y = 0; y < cairo_image_surface_get_height(surface); ++y) {
        for (int x = 0; x < cairo_image_surface_get_width(surface); ++x) {
            if (pixelAt(surface, x, y) >> 24) {
                ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
                       std::max(ink.bottom, y + 1)};
            }
        }
    }
    return ink;
}

/// The image alone, as a drawing in device pixels with the overhang around its box.
std::string documentOf(const CSvgSource& source, const CSvgImage& image, double scale, int width, int height) {
    pugi::xml_document document;
    pugi::xml_node root = document.append_child(source.root().name());
    for (pugi::xml_attribute attribute : source.root().attributes()) {
        const std::string name = attribute.name();
        if (name != "width" && name != "height" && name != "viewBox" && name != "x" && name != "y") {
            root.append_copy(attribute);
        }
    }
    root.append_attribute("width") = width;
    root.append_attribute("height") = height;
    for (pugi::xml_node child : source.root()) {
        if (svgName(child) == "defs" || svgName(child) == "style") {
            root.append_copy(child);
        }
    }
    char transform[160];
    std::snprintf(transform, sizeof(transform), "translate(%d,%d) scale(%.12g) translate(%.12g,%.12g)", kOverhang,
                  kOverhang, scale, -image.box.x, -image.box.y);
    pugi::xml_node place = root.append_child("g");
    place.append_attribute("transform") = transform;
    pugi::xml_node copy = place.append_copy(image.group);
    for (pugi::xml_node child = copy.first_child(), next; child; child = next) {
        next = child.next_sibling();
        if (std::string(child.attribute("class").value()) == "box") {
            copy.remove_child(child);
        }
    }
    snapImage(image, scale, copy);
    std::ostringstream text;
    document.save(text, "", pugi::format_raw);
    return text.str();
}

/// Draws a document; gives what went wrong, or nothing.
std::string drawDocument(const std::string& text, cairo_surface_t* surface) {
    GError* error = nullptr;
    const CHandle handle(rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(text.data()), text.size(), &error));
    if (handle) {
        const CPen pen(cairo_create(surface));
        const RsvgRectangle viewport{0, 0, static_cast<double>(cairo_image_surface_get_width(surface)),
                                     static_cast<double>(cairo_image_surface_get_height(surface))};
        rsvg_handle_render_document(handle.get(), pen.get(), &viewport, &error);
    }
    cairo_surface_flush(surface);
    std::string message = error ? error->message : "";
    g_clear_error(&error);
    return message;
}

/// Lays the drawing onto a surface that is as wide as the box in tiled directions, as often as it reaches in.
CSurface tiledSurface(const CSvgImage& image, cairo_surface_t* drawn, const CInk& ink, int width, int height) {
    const int marginX = image.isTiledX ? 0 : kOverhang, marginY = image.isTiledY ? 0 : kOverhang;
    CSurface surface = newSurface(width + 2 * marginX, height + 2 * marginY);
    const CPen pen(cairo_create(surface.get()));
    const int reachX = image.isTiledX ? kOverhang / width + 1 : 0, reachY = image.isTiledY ? kOverhang / height + 1 : 0;
    for (int copyY = -reachY; copyY <= reachY; ++copyY) {
        for (int copyX = -reachX; copyX <= reachX; ++copyX) {
            const int x = marginX - kOverhang + copyX * width, y = marginY - kOverhang + copyY * height;
            const bool reachesIn = x + ink.right > 0 && x + ink.left < width + 2 * marginX && y + ink.bottom > 0 &&
                                   y + ink.top < height + 2 * marginY;
            if (reachesIn) {
                cairo_set_source_surface(pen.get(), drawn, x, y);
                cairo_paint(pen.get());
            }
        }
    }
    cairo_surface_flush(surface.get());
    return surface;
}

/// What a premultiplied pixel is in the layout of the image.
void appendPixel(uint32_t pixel, int bytesPerPixel, std::vector<uint8_t>& bytes) {
    const uint32_t alpha = pixel >> 24;
    const auto part = [&](int shift) { return alpha ? std::min(255.0, (pixel >> shift & 0xff) * 255.0 / alpha) : 0.0; };
    const double red = part(16), green = part(8), blue = part(0);
    if (bytesPerPixel == 4) {
        for (double value : {blue, green, red}) {
            bytes.push_back(static_cast<uint8_t>(std::lround(value)));
        }
    } else if (bytesPerPixel == 2) {
        // Luma: a grey is its own step of the ramp.
        bytes.push_back(static_cast<uint8_t>(std::lround(0.2126 * red + 0.7152 * green + 0.0722 * blue)));
    }
    bytes.push_back(static_cast<uint8_t>(alpha));
}

/// Where the pieces of one side are cut, in device pixels from the box's corner.
struct CCuts {
    int at[4];

    CCuts(int length, double near, double far, double scale)
        : at{0, devicePixels(near * scale), length - devicePixels(far * scale), length} {}
    int start(int piece) const { return at[piece]; }
    int length(int piece) const { return at[piece + 1] - at[piece]; }
};

/// One of the nine pieces: what overhangs the box stays with the pieces at its edges.
CRaster pieceOf(const CRaster& whole, const CSvgImage& image, double scale) {
    const int column = image.piece % 3, row = image.piece / 3;
    const CCuts across(whole.width, image.slices.left, image.slices.right, scale);
    const CCuts down(whole.height, image.slices.top, image.slices.bottom, scale);
    CRaster part;
    part.width = across.length(column);
    part.height = down.length(row);
    part.bytesPerPixel = whole.bytesPerPixel;
    const int left = column == 0 ? whole.x : across.start(column);
    const int right = column == 2 ? whole.x + whole.drawnWidth : across.at[column + 1];
    const int top = row == 0 ? whole.y : down.start(row);
    const int bottom = row == 2 ? whole.y + whole.drawnHeight : down.at[row + 1];
    part.x = left - across.start(column);
    part.y = top - down.start(row);
    part.drawnWidth = right - left;
    part.drawnHeight = bottom - top;
    for (int y = top; y < bottom; ++y) {
        const auto from =
            whole.pixels.begin() +
            (static_cast<ptrdiff_t>(y - whole.y) * whole.drawnWidth + left - whole.x) * whole.bytesPerPixel;
        part.pixels.insert(part.pixels.end(), from, from + static_cast<ptrdiff_t>(right - left) * whole.bytesPerPixel);
    }
    return part;
}

}  // namespace

CDefinitionFailure paintImage(const CSvgSource& source, const CSvgImage& image, double scale, CRaster& raster) {
    const int width = devicePixels(image.box.width * scale), height = devicePixels(image.box.height * scale);
    const int canvasWidth = width + 2 * kOverhang, canvasHeight = height + 2 * kOverhang;
    CSurface surface = newSurface(canvasWidth, canvasHeight);
    const std::string message =
        drawDocument(documentOf(source, image, scale, canvasWidth, canvasHeight), surface.get());
    if (!message.empty()) {
        return source.errorAt(image.group, image.id, "it can't be drawn: " + message);
    }
    const CInk ink = inkOf(surface.get());
    if (!ink.isEmpty() && (ink.left == 0 || ink.top == 0 || ink.right == canvasWidth || ink.bottom == canvasHeight)) {
        return source.errorAt(image.group, image.id, "it reaches more than 63 pixels out of its box");
    }
    if (image.isTiledX || image.isTiledY) {
        surface = tiledSurface(image, surface.get(), ink, width, height);
    }
    raster = CRaster();
    raster.width = width;
    raster.height = height;
    raster.x = image.isTiledX ? 0 : -kOverhang;
    raster.y = image.isTiledY ? 0 : -kOverhang;
    raster.drawnWidth = cairo_image_surface_get_width(surface.get());
    raster.drawnHeight = cairo_image_surface_get_height(surface.get());
    raster.bytesPerPixel = image.bytesPerPixel;
    for (int y = 0; y < raster.drawnHeight; ++y) {
        for (int x = 0; x < raster.drawnWidth; ++x) {
            appendPixel(pixelAt(surface.get(), x, y), image.bytesPerPixel, raster.pixels);
        }
    }
    if (image.isSliced) {
        raster = pieceOf(raster, image, scale);
    }
    return std::nullopt;
}

}  // namespace tarv
