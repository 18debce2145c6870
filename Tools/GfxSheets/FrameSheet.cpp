// How a frame is put together: its nine pieces apart, and views of several sizes drawn from them.

#include <algorithm>

#include "Sheets.h"

namespace tarv {

namespace {

using CBox = CSheetCanvas::CBox;

constexpr double kMargin = 14.0;
constexpr double kGap = 7.0;
constexpr double kRowHeight = 112.0;
constexpr double kWidth = 360.0;
constexpr int kZoom = 3;

struct CShownFrame {
    const char* set;
    const char* range;
    const char* color;
};
constexpr CShownFrame kShown[] = {
    {"editbox", "Active", "Field_Hover"}, {"button", "Active", "Button_Active"}, {"popup2", "", "Popup"}};
constexpr CBox kViews[] = {{0, 0, 12, 12}, {22, 0, 24, 24}, {56, 0, 70, 24}, {136, 0, 80, 54}};

/// The nine pieces, apart; gives where they end.
double drawPieces(CSheetCanvas& canvas, const CShownFrame& shown, double left, double top) {
    const CImageSet& images = canvas.resources().images(shown.set);
    uint32_t first = 0;
    uint32_t last = 0;
    if (!images.findRange(shown.range, first, last)) {
        return left;
    }
    double x = left;
    double y = top;
    double end = left;
    for (uint32_t i = 0; i <= last - first; ++i) {
        const CImage& piece = *images.getImage(first + i);
        const double width = piece.getWidth() / canvas.scale();
        const double height = piece.getHeight() / canvas.scale();
        canvas.image(shown.set, shown.range, shown.color, {x, y, width, height}, i);
        x += width + kGap;
        end = std::max(end, x);
        if (i % 3 == 2) {
            x = left;
            y += height + kGap;
        }
    }
    return end;
}

}  // namespace

bool writeFrameSheet(CSheetResources& resources, const std::string& path) {
    const double height = kRowHeight * static_cast<double>(std::size(kShown)) + kMargin;
    CSheetCanvas canvas(resources, "Default", kWidth, height);
    canvas.fill({0, 0, kWidth, height}, "Background");
    double y = kMargin;
    for (const CShownFrame& shown : kShown) {
        drawPieces(canvas, shown, kMargin, y);
        for (const CBox& view : kViews) {
            canvas.frame(shown.set, shown.range, shown.color, {128 + view.x, y + 4, view.width, view.height});
        }
        y += kRowHeight;
    }
    return canvas.writePng(path, kZoom);
}

}  // namespace tarv
