#include "CSheetCanvas.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "UI/Resources/FontCodes.h"

namespace tarv {

namespace {

constexpr int32_t kFar = 1 << 20;
constexpr uint32_t kFramePieces = 9;

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "GfxSheets: %s\n", what.c_str());
    std::exit(1);
}

/// Both ends of a side whose corners are `near` and `far` long: where the room is short, the longer one yields.
void fitCorners(int32_t room, int32_t& near, int32_t& far) {
    if (near + far <= room) {
        return;
    }
    int32_t& longer = near >= far ? near : far;
    const int32_t shorter = std::min(near, far);
    if (shorter * 2 > room) {
        near = room / 2;
        far = room - near;
    } else {
        longer = room - shorter;
    }
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
    const CIntRect to = rect(box).intersection(bitmap_.bounds());
    bitmap_.fillRect(to, color(colorName), opacity);
    drawn_ += to.isEmpty() ? 0 : int64_t{to.width()} * to.height();
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
        drawn_ += bitmap_.drawImage(picture.layer(i), color(colorName), x, y, opacity, bitmap_.bounds());
    }
}

/// Where the pieces of one column or row of a frame go.
struct CSheetCanvas::CSpan {
    int32_t start;  ///< of the first piece
    int32_t step;   ///< to the next one
    int32_t end;    ///< of the last one
    int32_t clipStart;
    int32_t clipEnd;
};

void CSheetCanvas::drawPiece(const CImage& image, const CColor& color, const CSpan& x, const CSpan& y, double opacity) {
    const CIntRect clip = bitmap_.bounds().intersection({x.clipStart, y.clipStart, x.clipEnd, y.clipEnd});
    for (int32_t top = y.start; top < y.end; top += y.step) {
        for (int32_t left = x.start; left < x.end; left += x.step) {
            for (int32_t i = 0; i < image.layerCount(); ++i) {
                drawn_ += bitmap_.drawImage(image.layer(i), color, left, top, opacity, clip);
            }
        }
    }
}

void CSheetCanvas::frame(const std::string& set, const std::string& range, const std::string& colorName,
                         const CBox& box, double opacity) {
    const CImageSet& images = resources_.images(set);
    uint32_t first = 0;
    uint32_t last = 0;
    if (!images.findRange(CString(range.c_str()), first, last)) {
        fail(set + " has no range '" + range + "'");
    }
    const CColor& painted = color(colorName);
    const CIntRect to = rect(box);
    if (to.isEmpty()) {
        return;
    }
    const auto sizeOf = [&](uint32_t index, bool isWidth) {
        const CImage& image = *images.getImage(first + index);
        return std::max(isWidth ? image.getWidth() : image.getHeight(), 1);
    };
    // Outwards a corner may overhang; inwards, and along a side that is repeated, it ends where the next begins.
    const auto spans = [&](int32_t from, int32_t end, int32_t near, int32_t middle, int32_t far, CSpan(&out)[3]) {
        int32_t nearRoom = near;
        int32_t farRoom = far;
        fitCorners(end - from, nearRoom, farRoom);
        out[0] = {from, kFar, from + 1, -kFar, from + nearRoom};
        out[1] = {from + nearRoom, middle, end - farRoom, from + nearRoom, end - farRoom};
        out[2] = {end - far, kFar, end - far + 1, end - farRoom, kFar};
    };
    if (last - first + 1 != kFramePieces) {
        const CSpan x{to.left, sizeOf(0, true), to.right, to.left, to.right};
        const CSpan y{to.top, sizeOf(0, false), to.bottom, to.top, to.bottom};
        drawPiece(*images.getImage(first), painted, x, y, opacity);
        return;
    }
    CSpan columns[3];
    CSpan rows[3];
    spans(to.left, to.right, sizeOf(0, true), sizeOf(1, true), sizeOf(2, true), columns);
    spans(to.top, to.bottom, sizeOf(0, false), sizeOf(3, false), sizeOf(6, false), rows);
    for (uint32_t index = 0; index < kFramePieces; ++index) {
        drawPiece(*images.getImage(first + index), painted, columns[index % 3], rows[index / 3], opacity);
    }
}

double CSheetCanvas::drawGlyph(const CFont& font, uint32_t code, const CColor* color, double pen, const CIntRect& to) {
    const CImage* glyph = font.getGlyph(code);
    if (!glyph) {
        return 0;
    }
    if (color) {
        const int32_t y = to.top + (to.height() - font.getHeight()) / 2;
        drawn_ += bitmap_.drawImage(glyph->layer(0), *color, static_cast<int32_t>(std::floor(pen + 0.5)), y, 1.0,
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
                    drawn_ += bitmap_.drawImage(picture.layer(0), color(mark.substr(colon + 1)),
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
