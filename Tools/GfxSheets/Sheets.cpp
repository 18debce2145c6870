#include "Sheets.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <vector>

#include "UI/Resources/FontCodes.h"

namespace tarv {

namespace {

using CBox = CSheetCanvas::CBox;

constexpr double kMargin = 12.0;

/// The colours that a set wears in the editor, in the states that a sheet shows.
const std::map<std::string, std::vector<std::string>> kSetColors = {
    {"button", {"Button", "Button_Hover", "Button_Active", "Button_Error"}},
    {"buttonab", {"ButtonAB", "ButtonAB_Hover"}},
    {"history", {"Button", "Button_Hover", "Button_Active"}},
    {"csurface", {"Custom1", "Custom1_Hover", "Custom2"}},
    {"ruler", {"RulerTick", "RulerTick_Hilite"}},
    {"editbox", {"Field", "Field_Hover", "Field_Error"}},
    {"instancename", {"InstanceName", "InstanceName_Hover"}},
    {"scroller", {"ScrollerButton", "ScrollerButton_Hover", "ScrollerButton_Active"}},
    {"frame", {"Panel"}},
    {"groupcaption", {"GroupCaption"}},
    {"listoutline", {"ListOutline"}},
    {"popup", {"Border", "WindowTitle"}},
    {"popup2", {"Popup"}},
    {"statusbar", {"StatusBar"}},
    {"texture", {"PanelTexture"}},
    {"tarvelo", {"Logo"}},
    {"palicon", {"PalIconRedInner", "PalIconBlueInner"}},
    {"autoscroll", {"Action", "Action_Hover"}},
    {"close", {"Action", "Action_Hover"}},
};

struct CCell {
    std::string range;
    uint32_t first = 0;
    uint32_t count = 0;
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
    if (cell.count == 9) {
        return {0, 0, 96, 56};
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
    if (cell.count == 9) {
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

}  // namespace

bool writeImageSheet(CSheetResources& resources, const std::string& set, const std::string& path) {
    const CImageSet& images = resources.images(set);
    const std::vector<CCell> cells = cellsOf(images);
    const auto found = kSetColors.find(set);
    const std::vector<std::string> colors = found != kSetColors.end() ? found->second : std::vector<std::string>{"Action"};
    // Two passes over one layout: the first finds the height.
    constexpr double kWidth = 720.0;
    const auto layOut = [&](CSheetCanvas* canvas) {
        double x = kMargin;
        double y = kMargin + 20;
        double rowHeight = 0;
        for (const std::string& color : colors) {
            if (canvas) {
                canvas->text("micro", set + "  " + color, "TextDim", {kMargin, y, 400, 14});
            }
            y += 20;
            for (const CCell& cell : cells) {
                const CBox size = sizeOf(images, cell, resources.scale());
                const double width = std::max(size.width, 60.0);
                if (x + width > kWidth - kMargin) {
                    x = kMargin;
                    y += rowHeight + 30;
                    rowHeight = 0;
                }
                if (canvas) {
                    drawCell(*canvas, set, cell, color, {x, y, size.width, size.height});
                    canvas->text("micro-sm", cell.range.empty() ? "(default)" : cell.range, "TextDim",
                                 {x, y + size.height + 6, 100, 12});
                }
                x += width + 14;
                rowHeight = std::max(rowHeight, size.height);
            }
            x = kMargin;
            y += rowHeight + 36;
            rowHeight = 0;
        }
        return y;
    };
    CSheetCanvas canvas(resources, "Default", kWidth, layOut(nullptr));
    canvas.fill({0, 0, kWidth, 100000}, "Panel");
    layOut(&canvas);
    return canvas.writePng(path);
}

bool writeFontSheet(CSheetResources& resources, const std::string& font, const std::string& path) {
    constexpr double kWidth = 560.0;
    constexpr double kHeight = 330.0;
    CSheetCanvas canvas(resources, "Default", kWidth, kHeight);
    canvas.fill({0, 0, kWidth, kHeight}, "Panel");
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
    const char* const lines[] = {"The quick brown fox jumps over the lazy dog, 0123456789.",
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
    canvas.fill({0, 0, 4 * kColumn + 2 * kMargin, rows * kRow + 110}, "Panel");
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
