#include "Sheets.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "UI/Resources/FontCodes.h"

namespace tarv {

namespace {

using CBox = CSheetCanvas::CBox;

constexpr double kMargin = 12.0;
constexpr double kImageSheetWidth = 720.0;

/// The base colours in which the editor draws a set; a sheet shows them in all their states.
struct CSetColors {
    const char* set;
    std::vector<const char*> frames;  ///< of ranges of nine pieces
    std::vector<const char*> icons;   ///< of all others
};
const CSetColors kSetColors[] = {
    {"autoscroll", {}, {"Action"}},
    {"button", {"Button", "Custom1"}, {"Action", "ActionAlt", "DisabledText"}},
    {"buttonab", {"ButtonAB", "ButtonABIndicator"}, {}},
    {"close", {}, {"Action"}},
    {"csurface", {"Custom1", "Custom2", "CSSliderBarPit", "CSSliderBarUnderlay"}, {"Custom1", "CSSelectLine"}},
    {"editbox", {"Field"}, {"Action"}},
    {"frame", {"Panel"}, {"Panel"}},
    {"groupcaption", {"GroupCaption"}, {}},
    {"history", {"Button"}, {"Action"}},
    {"instancename", {"InstanceName"}, {}},
    {"listoutline", {"ListOutline"}, {}},
    {"palicon", {}, {"PalIconRedInner", "PalIconBlueInner"}},
    {"popup", {"Border", "WindowTitle"}, {}},
    {"popup2", {"Popup"}, {}},
    {"ruler", {}, {"RulerTick"}},
    {"scroller", {"ScrollerBar", "ScrollerButton"}, {"Action"}},
    {"statusbar", {"StatusBar"}, {}},
    {"tarvelo", {}, {"Logo"}},
    {"texture", {}, {"PanelTexture"}},
};

/// A base colour and its states, without the frames of those that move.
std::vector<std::string> statesOf(const CPalette& palette, const std::string& base) {
    std::vector<std::string> names;
    for (int32_t i = 0; i < palette.colorCount(); ++i) {
        const std::string name = palette.color(i).name.toUtf8();
        if (name == base || (name.starts_with(base + "_") && name.find('|') == name.npos)) {
            names.push_back(name);
        }
    }
    return names;
}

struct CCell {
    std::string range;
    uint32_t first = 0;
    uint32_t count = 0;

    bool isFrame() const { return count == 9; }
};

std::vector<CCell> cellsOf(const CImageSet& set) {
    std::vector<CCell> cells;
    for (int32_t i = 0; i < set.rangeCount(); ++i) {
        CCell cell{set.rangeName(i).toUtf8()};
        uint32_t last = 0;
        if (set.findRange(set.rangeName(i), cell.first, last)) {
            cell.count = last - cell.first + 1;
            cells.push_back(cell);
        }
    }
    return cells;
}

/// Room of a cell at scale 1.0.
CBox sizeOf(const CImageSet& set, const CCell& cell, double scale) {
    if (cell.isFrame()) {
        return {0, 0, 72, 40};
    }
    double width = 0;
    double height = 0;
    for (uint32_t i = 0; i < cell.count; ++i) {
        const CImage* image = set.getImage(cell.first + i);
        width += image ? image->getWidth() / scale + 6 : 0;
        height = std::max(height, image ? image->getHeight() / scale : 0.0);
    }
    return {0, 0, width, height};
}

void drawCell(CSheetCanvas& canvas, const std::string& set, const CCell& cell, const std::string& color,
              const CBox& at) {
    if (cell.isFrame()) {
        canvas.frame(set, cell.range, color, {at.x, at.y, at.width, at.height});
        return;
    }
    double x = at.x;
    for (uint32_t i = 0; i < cell.count; ++i) {
        const CImage* image = canvas.resources().images(set).getImage(cell.first + i);
        const double width = image ? image->getWidth() / canvas.scale() : 0.0;
        canvas.image(set, cell.range, color, {x, at.y, width, at.height}, i);
        x += width + 6;
    }
}

double luminanceOf(CPixel pixel) {
    const auto linear = [](uint32_t byte) {
        const double v = byte / 255.0;
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(pixel >> 16 & 255) + 0.7152 * linear(pixel >> 8 & 255) + 0.0722 * linear(pixel & 255);
}

std::string contrastOf(CPixel a, CPixel b) {
    const double la = luminanceOf(a);
    const double lb = luminanceOf(b);
    char text[16];
    std::snprintf(text, sizeof(text), "%.2f", (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05));
    return text;
}

/// Draws the cells of one kind in one colour from `y` on; gives where the next row may begin. Without a canvas it only
/// measures.
double layOutCells(CSheetCanvas* canvas, const std::string& set, const CImageSet& images, double scale, bool ofFrames,
                   const std::string& color, double y) {
    double x = kMargin;
    double rowHeight = 0;
    for (const CCell& cell : cellsOf(images)) {
        if (cell.isFrame() != ofFrames) {
            continue;
        }
        const CBox size = sizeOf(images, cell, scale);
        const double width = std::max(size.width, 60.0);
        if (x > kMargin && x + width > kImageSheetWidth - kMargin) {
            x = kMargin;
            y += rowHeight + 24;
            rowHeight = 0;
        }
        if (canvas) {
            drawCell(*canvas, set, cell, color, {x, y, size.width, size.height});
            canvas->text("micro-sm", cell.range.empty() ? "(default)" : cell.range, "TextDim",
                         {x, y + size.height + 5, 100, 12});
        }
        x += width + 14;
        rowHeight = std::max(rowHeight, size.height);
    }
    return y + rowHeight + 28;
}

}  // namespace

bool writeImageSheet(CSheetResources& resources, const std::string& set, const std::string& path) {
    const CImageSet& images = resources.images(set);
    const CSetColors* colors = std::find_if(std::begin(kSetColors), std::end(kSetColors),
                                            [&](const CSetColors& row) { return set == row.set; });
    if (colors == std::end(kSetColors)) {
        std::fprintf(stderr, "GfxSheets: no colours are listed for '%s'\n", set.c_str());
        return false;
    }
    // Two passes over one layout: the first finds the height.
    const auto layOut = [&](CSheetCanvas* canvas) {
        double y = kMargin;
        for (const bool ofFrames : {true, false}) {
            for (const char* base : ofFrames ? colors->frames : colors->icons) {
                for (const std::string& color : statesOf(resources.palette("Default"), base)) {
                    const double below = layOutCells(nullptr, set, images, resources.scale(), ofFrames, color, y + 18);
                    if (canvas) {
                        canvas->text("micro", set + "  " + color, "TextDim", {kMargin, y, 400, 14});
                        // What stands on an active button is dark.
                        if (!ofFrames && color.find("_Active") != color.npos) {
                            canvas->frame("button", "Active", "Button_Active",
                                          {kMargin - 6, y + 14, kImageSheetWidth - 2 * kMargin + 12, below - y - 20});
                        }
                        layOutCells(canvas, set, images, resources.scale(), ofFrames, color, y + 18);
                    }
                    y = below;
                }
            }
        }
        return y;
    };
    const double height = layOut(nullptr);
    CSheetCanvas canvas(resources, "Default", kImageSheetWidth, height);
    canvas.fill({0, 0, kImageSheetWidth, height}, "Background");
    canvas.frame("frame", "", "Panel", {2, 2, kImageSheetWidth - 4, height - 4});
    layOut(&canvas);
    return canvas.writePng(path);
}

bool writeFontSheet(CSheetResources& resources, const std::string& font, const std::string& path) {
    constexpr double kWidth = 560.0;
    constexpr double kHeight = 330.0;
    CSheetCanvas canvas(resources, "Default", kWidth, kHeight);
    canvas.frame("frame", "", "Panel", {0, 0, kWidth, kHeight});
    canvas.text("micro", font, "TextDim", {kMargin, 8, 300, 14});
    const CFont& face = resources.font(font);
    double y = 28;
    double x = kMargin;
    const double line = face.getHeight() / resources.scale() + 4;
    for (int32_t i = 0; i < face.imageCount(); ++i) {
        const std::string letter = [&] {
            CString text;
            text.appendChar(static_cast<uint16_t>(fontCharacterOf(face.imageIndex(i))));
            return text.toUtf8();
        }();
        const double width = canvas.textWidth(font, letter) / resources.scale() + 5;
        if (x + width > kWidth - kMargin) {
            x = kMargin;
            y += line;
        }
        canvas.text(font, letter, "Text", {x, y, width, line});
        x += width;
    }
    y += line + 10;
    const char* const lines[] = {
        "The quick brown fox jumps over the lazy dog, 0123456789.",
        "+12.0  -12.0  \u221212.0  +1.5  -0.5  1K  12K  44.1 kHz  \u00b11 dB  90\u00b0",
        "Group 1: L R, sides \u201cA\u201d and \u2018B\u2019 \u2013 in \u2192 out \u2026 100 %",
        "\u00c4rger, \u00e9t\u00e9, ma\u00f1ana, \u00d8resund, \u00dcbung, stra\u00dfe"};
    for (const char* text : lines) {
        canvas.text(font, text, "Text", {kMargin, y, kWidth, line});
        y += line;
        canvas.text(font, text, "TextDim", {kMargin, y, kWidth, line});
        y += line;
    }
    return canvas.writePng(path);
}

bool writePaletteSheet(CSheetResources& resources, const std::string& palette, const std::string& path) {
    constexpr double kColumn = 250.0;
    constexpr double kRow = 12.0;
    const CPalette& colors = resources.palette(palette);
    std::vector<const CColor*> shown;
    for (int32_t i = 0; i < colors.colorCount(); ++i) {
        // Of an animation the first frame stands for all.
        const std::string name = colors.color(i).name.toUtf8();
        const size_t bar = name.find('|');
        if (bar == std::string::npos || name.substr(bar) == "|0") {
            shown.push_back(&colors.color(i));
        }
    }
    const int32_t rows = (static_cast<int32_t>(shown.size()) + 3) / 4;
    CSheetCanvas canvas(resources, palette, 4 * kColumn + 2 * kMargin, rows * kRow + 110);
    canvas.frame("frame", "", "Panel", {0, 0, 4 * kColumn + 2 * kMargin, rows * kRow + 110});
    canvas.text("title", "[B]" + palette + "[/B]", "Text", {kMargin, 8, 300, 20});
    for (size_t i = 0; i < shown.size(); ++i) {
        const double x = kMargin + kColumn * static_cast<double>(i / static_cast<size_t>(rows));
        const double y = 36 + kRow * static_cast<double>(i % static_cast<size_t>(rows));
        const CIntRect strip = canvas.rect({x, y + 1, 128, kRow - 2});
        for (int32_t px = strip.left; px < strip.right; ++px) {
            const int32_t step = (px - strip.left) * (kRampLength - 1) / std::max(strip.width() - 1, 1);
            for (int32_t py = strip.top; py < strip.bottom; ++py) {
                canvas.bitmap().row(py)[px] = shown[i]->ramp[step];
            }
        }
        canvas.text("micro-sm", shown[i]->name.toUtf8(), "TextDim", {x + 134, y, 116, kRow});
    }
    const struct {
        const char* what;
        const char* front;
        const char* back;
        double least;
    } pairs[] = {{"text on panel", "Text", "Panel", 7.0},
                 {"dim on panel", "TextDim", "Panel", 4.5},
                 {"bar 1 on pit", "Custom1", "CSSliderBarPit", 4.5},
                 {"bar 2 on pit", "Custom2", "CSSliderBarPit", 4.5},
                 {"active on inactive button", "Button_Active", "Button", 3.0}};
    double y = 36 + rows * kRow + 6;
    // Surfaces are seen at the step of their face.
    constexpr int32_t kFace = 192;
    for (const auto& pair : pairs) {
        const CPixel back = canvas.color(pair.back).ramp[kFace];
        const bool isSurface = std::string(pair.front) == "Button_Active";
        const CPixel front = isSurface ? canvas.color(pair.front).ramp[kFace] : canvas.color(pair.front).full();
        char least[32];
        std::snprintf(least, sizeof(least), " (at least %.1f)", pair.least);
        canvas.text("micro", std::string(pair.what) + ": " + contrastOf(front, back) + least, "Text",
                    {kMargin, y, 400, kRow});
        y += kRow;
    }
    return canvas.writePng(path);
}

}  // namespace tarv
