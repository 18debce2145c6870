// Surfaces with bars, as an equalizer view shows them: flat, at the ends of the range, and near zero.

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Sheets.h"

namespace tarv {

namespace {

using CBox = CSheetCanvas::CBox;

constexpr int kBands = 7;
constexpr double kRange = 12.0;  // dB to each side
constexpr const char* kFrequencies[kBands] = {"64", "150", "350", "1K", "2K", "6K", "12K"};
constexpr const char* kMinus = "\u2212";

struct CSetting {
    const char* title;
    int group;   ///< number of the group, from 1
    int behind;  ///< that of the underlay
    double gains[kBands];
    double others[kBands];
};
constexpr CSetting kSettings[] = {
    {"Flat", 1, 2, {0, 0, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 0, 0}},
    {"Extreme", 2, 1, {12, -12, 12, -12, 12, -12, 12}, {-12, 12, -12, 12, -12, 12, -12}},
    {"Small", 1, 2, {0.5, -0.5, 1, -1, 0.1, -0.1, 0}, {2, -2, -1, 1, 0, 0, 0.4}},
    {"Usual", 2, 5, {9.6, 4.7, 0.5, -1.1, 0.4, 2.1, -1.8}, {-0.5, -4.8, -1.9, 2.8, 3.3, 2.5, 5.3}},
};

/// Lengths of the surface in device pixels at a scale: whole ones, so that the rhythm is even.
struct CSurfacePixels {
    explicit CSurfacePixels(double scale)
        : pitch(static_cast<int>(std::floor(31 * scale))),
          column(pitch * 3 / 4),
          step(static_cast<int>(std::floor(25 * scale))) {}

    int pitch;   ///< from column to column
    int column;  ///< width of a pit
    int step;    ///< 3 dB
    int height() const { return 8 * step; }
    int width() const { return kBands * pitch; }
};

/// A surface whose top left stands at a whole pixel.
class CSurface {
public:
    CSurface(CSheetCanvas& canvas, int x, int y, const CSetting& setting)
        : canvas_(canvas), setting_(setting), pixels_(canvas.scale()), x_(x), y_(y) {}

    void draw() {
        canvas_.frame("frame", "Inset", "Panel", box(-4, -4, pixels_.width() + 8, pixels_.height() + 8));
        for (int band = 0; band < kBands; ++band) {
            canvas_.frame("csurface", "Pit", "CSSliderBarPit", box(left(band), 0, pixels_.column, pixels_.height()));
        }
        drawScale();
        for (int band = 0; band < kBands; ++band) {
            drawUnderlay(band);
        }
        canvas_.fill(box(0, zero(), pixels_.width(), 1), "GraphZero");
        for (int band = 0; band < kBands; ++band) {
            drawBar(band);
            const CBox label = box(band * pixels_.pitch, 0, pixels_.pitch, 0);
            canvas_.text("micro", kFrequencies[band], "RulerText", {label.x, label.y - 18, label.width, 14},
                         CSheetAlign::Center);
            canvas_.text("micro", decibels(setting_.gains[band]), "ReadOutText",
                         {label.x, label.y + pixels_.height() / canvas_.scale() + 4, label.width, 14},
                         CSheetAlign::Center);
        }
    }

    static std::string color(int group) { return "Custom" + std::to_string(group); }
    int bottom() const { return y_ + pixels_.height(); }

private:
    /// Device pixels from the surface's top left.
    CBox box(int x, int y, int width, int height) const {
        const double scale = canvas_.scale();
        return {(x_ + x) / scale, (y_ + y) / scale, width / scale, height / scale};
    }
    int left(int band) const { return band * pixels_.pitch + (pixels_.pitch - pixels_.column) / 2; }
    int zero() const { return pixels_.height() / 2; }
    int yOf(double value) const {
        return static_cast<int>(std::lround(pixels_.height() * (kRange - value) / (2 * kRange)));
    }
    static std::string decibels(double value) {
        char text[16];
        std::snprintf(text, sizeof(text), "%.1f", std::fabs(value));
        return (value < 0 ? kMinus : "") + std::string(text);
    }

    /// From the zero line to the value; two pixels high where it has no length. With the glow, but not across zero.
    void drawBar(int band) {
        constexpr int kCap = 2;
        constexpr int kWhole = 4;  // of the picture's end, which a shorter bar is cut out of
        constexpr int kGlow = 3;
        const int x = left(band) + 2;
        const int width = pixels_.column - 4;
        const int y = yOf(setting_.gains[band]);
        const bool isDown = y > zero();
        const int height = std::max(std::abs(y - zero()), kCap);
        const int top = isDown ? zero() : std::min(y, zero() - kCap / 2);
        const int whole = std::max(height, kWhole);
        const CBox clip = box(x - kGlow, isDown ? top : top - kGlow, width + 2 * kGlow, height + kGlow);
        canvas_.frame("csurface", isDown ? "BarDown" : "Bar", color(setting_.group),
                      box(x, isDown ? top + height - whole : top, width, whole), 1.0, &clip);
    }

    /// Faint, with a line at the value.
    void drawUnderlay(int band) {
        constexpr double kLine = 0.45;
        const int x = left(band) + 2;
        const int width = pixels_.column - 4;
        const int y = yOf(setting_.others[band]);
        const bool isDown = y > zero();
        const int height = std::abs(y - zero());
        if (height > 0) {
            canvas_.frame("csurface", isDown ? "UnderlayDown" : "Underlay", color(setting_.behind),
                          box(x, std::min(y, zero()), width, height), canvas_.color("CSSliderBarUnderlay").opacity);
        }
        canvas_.fill(box(x, isDown ? y - 1 : y, width, 1), color(setting_.behind), kLine);
    }

    void drawScale() {
        for (int step = 0; step <= 8; ++step) {
            const int y = std::min(step * pixels_.step, pixels_.height() - 1);
            const bool isMajor = step % 2 == 0;
            if (isMajor) {
                const int value = 12 - 3 * step;
                const std::string sign = value > 0 ? "+" : value < 0 ? kMinus : "";
                const CBox at = box(-42, y, 30, 1);
                canvas_.fill(box(0, y, pixels_.width(), 1), "GraphLines");
                canvas_.text("micro", sign + std::to_string(std::abs(value)), "RulerText",
                             {at.x, at.y - 6, at.width, 12}, CSheetAlign::Right);
            }
            canvas_.fill(box(isMajor ? -10 : -8, y, isMajor ? 5 : 3, 1), "RulerTick");
        }
    }

    CSheetCanvas& canvas_;
    const CSetting& setting_;
    CSurfacePixels pixels_;
    int x_;
    int y_;
};

/// Eight buttons of one width; the chosen group's is filled with its colour, that of the underlay outlined in it.
void drawSelectors(CSheetCanvas& canvas, double x, double y, const CSetting& setting) {
    const double width = std::floor(172 * canvas.scale() / 8) / canvas.scale();
    for (int row = 0; row < 2; ++row) {
        const int chosen = row == 0 ? setting.group : setting.behind;
        for (int group = 1; group <= 8; ++group) {
            const CBox box{x + (group - 1) * width, y + 23 * row, width, 20};
            const std::string color = CSurface::color(group);
            const bool isChosen = group == chosen;
            canvas.frame("button",
                         row == 1 && isChosen ? "OutlineActive"
                         : isChosen           ? "Active"
                                              : "",
                         isChosen ? color + "_Active" : "Button", box);
            canvas.text("small", std::to_string(group),
                        !isChosen  ? "ButtonText"
                        : row == 0 ? color + "Text_Active"
                                   : "Text",
                        box, CSheetAlign::Center);
        }
    }
}

}  // namespace

bool writeBarSheet(CSheetResources& resources, const std::string& palette, const std::string& path) {
    constexpr double kWidth = 285.0;
    constexpr double kHeight = 330.0;
    const int count = static_cast<int>(std::size(kSettings));
    CSheetCanvas canvas(resources, palette, count * kWidth + 4, kHeight + 4);
    canvas.fill({0, 0, count * kWidth + 4, kHeight + 4}, "Background");
    for (int i = 0; i < count; ++i) {
        const CBox panel{4 + i * kWidth, 4, kWidth - 4, kHeight - 4};
        canvas.frame("frame", "", "Panel", panel);
        canvas.frame("texture", "", "PanelTexture", panel.inset(1));
        canvas.text("title", std::string("[B]") + kSettings[i].title + "[/B]", "Text",
                    {panel.x + 8, panel.y + 4, 200, 24});
        CSurface surface(canvas, canvas.pixels(panel.x + 48), canvas.pixels(panel.y + 50), kSettings[i]);
        surface.draw();
        const double y = surface.bottom() / canvas.scale() + 22;
        canvas.text("small", "Edit group", "TextDim", {panel.x + 8, y, 70, 20});
        canvas.text("small", "Underlay", "TextDim", {panel.x + 8, y + 23, 70, 20});
        drawSelectors(canvas, panel.x + 78, y, kSettings[i]);
    }
    return canvas.writePng(path);
}

}  // namespace tarv
