#include "CSheetCanvas.h"

#include <cairo.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "UI/Drawing/CFramePieces.h"
#include "UI/Resources/FontCodes.h"

namespace tarv {

namespace {

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "GfxSheets: %s\n", what.c_str());
    std::exit(1);
}

}  // namespace

CSheetCanvas::CSheetCanvas(CSheetResources& resources, const std::string& palette, double width, double height)
    : resources_(resources), palette_(resources.palette(palette)) {
    if (CError* error = bitmap_.resize(pixels(width), pixels(height))) {
        fail(error->lines()[0]->toUtf8());
    }
}

int32_t CSheetCanvas::pixels(double length) const {
    return static_cast<int32_t>(std::floor(length * scale() + 0.5));
}

CIntRect CSheetCanvas::rect(const CBox& box) const {
    return {pixels(box.x), pixels(box.y), pixels(box.right()), pixels(box.bottom())};
}

const CColor& CSheetCanvas::color(const std::string& name) const {
    // As views do it, which look a name up when it changes and not when they draw.
    const CColor*& known = colors_[name];
    if (!known) {
        known = palette_.findColor(CString(name.c_str()));
    }
    if (!known) {
        fail("no colour '" + name + "'");
    }
    return *known;
}

void CSheetCanvas::fill(const CBox& box, const std::string& colorName, double opacity) {
    bitmap_.fillRect(rect(box).intersection(bitmap_.bounds()), color(colorName), opacity);
}

void CSheetCanvas::image(const std::string& set, const std::string& range, const std::string& colorName,
                         const CBox& box, uint32_t frame, double opacity) {
    const CImageSet& images = resources_.images(set);
    uint32_t first = 0;
    uint32_t last = 0;
    if (!images.findRange(CString(range.c_str()), first, last) || !images.getImage(first + frame)) {
        fail(set + " has no range '" + range + "'");
    }
    const CImage& picture = *images.getImage(first + frame);
    const CIntRect to = rect(box);
    const int32_t x = to.left + (to.width() - picture.getWidth()) / 2;
    const int32_t y = to.top + (to.height() - picture.getHeight()) / 2;
    for (int32_t i = 0; i < picture.layerCount(); ++i) {
        bitmap_.drawImage(picture.layer(i), color(colorName), x, y, opacity, bitmap_.bounds());
    }
}

void CSheetCanvas::frame(const std::string& set, const std::string& range, const std::string& colorName,
                         const CBox& box, double opacity, const CBox* clip) {
    const CImageSet& images = resources_.images(set);
    uint32_t first = 0;
    uint32_t last = 0;
    if (!images.findRange(CString(range.c_str()), first, last)) {
        fail(set + " has no range '" + range + "'");
    }
    const CIntRect within = clip ? rect(*clip).intersection(bitmap_.bounds()) : bitmap_.bounds();
    CFramePieces(images, first, last).draw(bitmap_, rect(box), color(colorName), opacity, within);
}

double CSheetCanvas::drawGlyph(const CFont& font, uint32_t code, const CColor* color, double pen, const CIntRect& to) {
    const CImage* glyph = font.getGlyph(code);
    if (!glyph) {
        return 0;
    }
    if (color) {
        const int32_t y = to.top + (to.height() - font.getHeight()) / 2;
        bitmap_.drawImage(glyph->layer(0), *color, static_cast<int32_t>(std::floor(pen + 0.5)), y, 1.0,
                          bitmap_.bounds());
    }
    return glyph->getAdvance();
}

int32_t CSheetCanvas::walk(const std::string& fontName, const std::string& line, const std::string* colorName,
                           int32_t x, const CIntRect& to) {
    const CColor* ramp = colorName ? &color(*colorName) : nullptr;
    const CFont* font = &resources_.font(fontName);
    const CString units = CString::fromUtf8(line.data(), line.size());
    double pen = x;
    for (int32_t i = 0; i < units.length(); ++i) {
        if (units.at(i) == '[') {
            const int32_t end = units.indexOf(']', i);
            const std::string mark = units.substring(i + 1, end - i - 1).toUtf8();
            if (mark == "B" || mark == "/B") {
                font = &resources_.font(fontName + (mark == "B" ? "_b" : ""));
                i = end;
                continue;
            }
            if (mark.rfind("IMG=", 0) == 0) {
                const size_t hash = mark.find('#');
                const size_t colon = mark.find(':');
                const std::string set = mark.substr(7, hash - 7);  // behind "IMG=is."
                const std::string range = mark.substr(hash + 1, colon - hash - 1);
                uint32_t first = 0;
                uint32_t last = 0;
                if (!resources_.images(set).findRange(CString(range.c_str()), first, last)) {
                    fail(set + " has no range '" + range + "'");
                }
                const CImage& picture = *resources_.images(set).getImage(first);
                if (ramp) {
                    const int32_t y = to.top + (to.height() - picture.getHeight()) / 2;
                    bitmap_.drawImage(picture.layer(0), color(mark.substr(colon + 1)),
                                      static_cast<int32_t>(std::floor(pen + 0.5)), y, 1.0, bitmap_.bounds());
                }
                pen += picture.getWidth();
                i = end;
                continue;
            }
        }
        const uint32_t code = fontCodeOf(units.at(i));
        pen += drawGlyph(*font, code, ramp, pen, to);
    }
    return static_cast<int32_t>(std::ceil(pen)) - x;
}

int32_t CSheetCanvas::textWidth(const std::string& font, const std::string& line) {
    return walk(font, line, nullptr, 0, {});
}

void CSheetCanvas::text(const std::string& font, const std::string& line, const std::string& colorName, const CBox& box,
                        CSheetAlign align) {
    const CIntRect to = rect(box);
    int32_t x = to.left;
    if (align != CSheetAlign::Left) {
        const int32_t free = to.width() - textWidth(font, line);
        x += align == CSheetAlign::Right ? free : free / 2;
    }
    walk(font, line, &colorName, x, to);
}

bool CSheetCanvas::writePng(const std::string& path, int32_t zoom) const {
    cairo_surface_t* surface =
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, bitmap_.width() * zoom, bitmap_.height() * zoom);
    unsigned char* data = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    for (int32_t y = 0; y < bitmap_.height() * zoom; ++y) {
        auto* target = reinterpret_cast<CPixel*>(data + int64_t{stride} * y);
        for (int32_t x = 0; x < bitmap_.width() * zoom; ++x) {
            target[x] = bitmap_.row(y / zoom)[x / zoom];
        }
    }
    cairo_surface_mark_dirty(surface);
    const bool isWritten = cairo_surface_write_to_png(surface, path.c_str()) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(surface);
    return isWritten;
}

}  // namespace tarv
