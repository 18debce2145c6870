#include "MainWindow.h"

#include <cmath>
#include <cstdio>

namespace tarv {

namespace {

using CBox = CSheetCanvas::CBox;

constexpr double kRange = 12.0;  // dB to each side
constexpr int kBands = 7;

/// The two groups of "Strange Stereo" in dB, and their output gains.
constexpr double kGains[2][kBands] = {{-0.5, -4.8, -1.9, 2.8, 3.3, 2.5, 5.3}, {9.6, 4.7, 0.5, -1.1, 0.4, 2.1, -1.8}};
constexpr double kOutGains[2] = {0.0, 1.7};
constexpr const char* kFrequencies[kBands] = {"64", "150", "350", "1K", "2K", "6K", "12K"};

std::string decibels(double value) {
    char text[16];
    std::snprintf(text, sizeof(text), "%.1f", value);
    return text;
}

void button(CSheetCanvas& canvas, const CBox& box, const std::string& title, bool isActive = false,
            const std::string& font = "base") {
    canvas.frame("button", isActive ? "Active" : "", isActive ? "Button_Active" : "Button", box);
    canvas.text(font, title, isActive ? "ButtonText_Active" : "ButtonText", box, CSheetAlign::Center);
}

void titleBar(CSheetCanvas& canvas, const CBox& bar) {
    canvas.frame("popup", "Title", "WindowTitle", bar);
    canvas.text("micro", "v1.8", "TextDim", {bar.x + 10, bar.y, 40, bar.height});
    const CBox name{bar.x + 40, bar.y + 5, 110, 18};
    canvas.frame("instancename", "", "InstanceName", name);
    canvas.text("small", "Unnamed instance", "InstanceNameText", {name.x + 6, name.y, name.width - 12, name.height});
    canvas.text("title", "[B]Brindle XEQ[/B]", "WindowTitleText", bar, CSheetAlign::Center);
    canvas.text("small", "Auto", "ActionText", {bar.right() - 122, bar.y, 35, bar.height}, CSheetAlign::Center);
    canvas.frame("button", "", "Bypass", {bar.right() - 78, bar.y + 2, 70, 24});
    canvas.text("base", "Bypass", "BypassText", {bar.right() - 78, bar.y + 2, 70, 24}, CSheetAlign::Center);
}

void buttonRow(CSheetCanvas& canvas, const CBox& row) {
    double x = row.x + 4;
    const auto next = [&](double width) {
        const CBox box{x, row.y + 4, width, 24};
        x += width + 4;
        return box;
    };
    const CBox presets = next(92);
    button(canvas, presets, "");
    canvas.text("base", "Presets", "ButtonText", {presets.x, presets.y, presets.width - 22, presets.height},
                CSheetAlign::Center);
    canvas.image("button", "ArrowSm", "Action", {presets.right() - 22, presets.y, 20, presets.height});
    const char* const parts[] = {"Left", "Middle", "Right"};
    const char* const icons[] = {"Undo", "List", "Redo"};
    for (int i = 0; i < 3; ++i) {
        const CBox box = next(28);
        x -= 4;
        canvas.frame("history", parts[i], "Button", box);
        canvas.image("button", icons[i], i == 2 ? "DisabledText" : "Action", box);
    }
    x += 4;
    const CBox ab = next(48);
    canvas.frame("buttonab", "", "ButtonAB", ab);
    canvas.frame("buttonab", "Indicator", "ButtonABIndicator_0", {ab.x + 3, ab.y + 3, 21, 18});
    canvas.text("base", "[B]A[/B]", "ButtonABText", {ab.x + 3, ab.y, 21, ab.height}, CSheetAlign::Center);
    canvas.text("base", "[B]B[/B]", "ButtonABTextInactive", {ab.x + 24, ab.y, 21, ab.height}, CSheetAlign::Center);
    button(canvas, next(44), "A[IMG=is.button#ArrowRight:Action]B");
    button(canvas, next(48), "Reset");
    button(canvas, next(62), "Routing");
    button(canvas, {row.right() - 92, row.y + 4, 88, 24}, "Settings [IMG=is.button#Arrow:Action]");
}

double yOf(const CBox& area, double value) {
    return area.y + area.height * (kRange - value) / (2 * kRange);
}

/// The part of an area that the column of a band takes.
CBox columnOf(const CBox& area, int band) {
    const double pitch = area.width / kBands;
    const double width = std::floor(pitch * 0.75);
    return {std::floor(area.x + pitch * band + (pitch - width) / 2), area.y, width, area.height};
}

/// The bars of a column: the other group's behind, the group's, hanging from zero or standing on it.
void bars(CSheetCanvas& canvas, const CBox& area, double x, double width, double value, double underlay,
          const std::string& color) {
    const double zero = yOf(area, 0.0);
    const auto bar = [&](double v, double left, double across, const char* up, const char* down,
                         const std::string& colorName) {
        const double y = yOf(area, v);
        if (canvas.pixels(y) == canvas.pixels(zero)) {
            return;
        }
        canvas.frame("csurface", y < zero ? up : down, colorName,
                     {left, std::min(y, zero), across, std::fabs(y - zero)});
    };
    bar(underlay, x + 1, width - 2, "Underlay", "UnderlayDown", "CSSliderBarUnderlay");
    bar(value, x + 2, width - 4, "Bar", "BarDown", color);
}

void scale(CSheetCanvas& canvas, const CBox& area, double rulerRight) {
    for (int value = 12; value >= -12; value -= 3) {
        const double y = yOf(area, value);
        const bool isMajor = value % 6 == 0;
        if (isMajor) {
            canvas.text("micro", (value > 0 ? "+" : "") + std::to_string(value), "RulerText",
                        {rulerRight - 30, y - 6, 23, 12}, CSheetAlign::Right);
        }
        canvas.fill({rulerRight - (isMajor ? 5 : 3), y, isMajor ? 5.0 : 3.0, 1.0 / canvas.scale()}, "RulerTick");
    }
}

void hairlines(CSheetCanvas& canvas, const CBox& area) {
    for (int value = 12; value >= -12; value -= 6) {
        canvas.fill({area.x, yOf(area, value), area.width, 1.0 / canvas.scale()},
                    value == 0 ? "GraphZero" : "GraphLines");
    }
}

void surface(CSheetCanvas& canvas, const CBox& box, int shown, int behind, const std::string& color) {
    const CBox area{box.x + 30, box.y + 18, box.width - 30 - 62, box.height - 38};
    canvas.frame("frame", "Inset", "Panel", {area.x - 4, area.y - 3, area.width + 8, area.height + 6});
    scale(canvas, area, area.x - 6);
    for (int band = 0; band < kBands; ++band) {
        canvas.frame("csurface", "Pit", "CSSliderBarPit", columnOf(area, band));
    }
    hairlines(canvas, area);
    const double pitch = area.width / kBands;
    for (int band = 0; band < kBands; ++band) {
        const CBox column = columnOf(area, band);
        const CBox label{area.x + pitch * band, box.y, pitch, 14};
        canvas.text("micro", kFrequencies[band], "RulerText", label, CSheetAlign::Center);
        bars(canvas, area, column.x, column.width, kGains[shown][band], kGains[behind][band], color);
        canvas.text("small", decibels(kGains[shown][band]), "ReadOutText", {label.x, area.bottom() + 5, pitch, 14},
                    CSheetAlign::Center);
    }
    canvas.fill({area.x, yOf(area, 0.0), area.width, 1.0 / canvas.scale()}, "GraphZero");
    const CBox out{box.right() - 46, area.y, 32, area.height};
    canvas.text("micro", "OUT", "RulerText", {out.x - 8, box.y, out.width + 16, 14}, CSheetAlign::Center);
    canvas.frame("frame", "Inset", "Panel", {out.x - 4, area.y - 3, out.width + 8, area.height + 6});
    canvas.frame("csurface", "Pit", "CSSliderBarPit", {out.x + 2, out.y, out.width - 4, out.height});
    hairlines(canvas, out);
    bars(canvas, area, out.x + 2, out.width - 4, kOutGains[shown], kOutGains[behind], color);
    canvas.fill({out.x, yOf(area, 0.0), out.width, 1.0 / canvas.scale()}, "GraphZero");
    canvas.text("small", decibels(kOutGains[shown]), "ReadOutText", {out.x - 8, area.bottom() + 5, out.width + 16, 14},
                CSheetAlign::Center);
}

void selector(CSheetCanvas& canvas, const CBox& row, const std::string& label, int chosen, bool hasCopy) {
    canvas.text("small", label, "TextDim", {row.x + 4, row.y, 66, row.height});
    const double left = row.x + 70;
    for (int i = 0; i < 8; ++i) {
        const CBox box{left + 21.5 * i, row.y, 21.5, row.height};
        canvas.frame("button", i == chosen ? "Active" : "", i == chosen ? "Button_Active" : "Button", box);
        canvas.text("small", std::to_string(i + 1), i == chosen ? "ButtonText_Active" : "ButtonText", box,
                    CSheetAlign::Center);
    }
    if (hasCopy) {
        button(canvas, {row.right() - 56, row.y, 53, row.height}, "Copy to", false, "small");
    }
}

void equalizer(CSheetCanvas& canvas, const CBox& view, int number) {
    const int shown = number - 1;
    const int behind = 1 - shown;
    canvas.frame("frame", "", "Panel", view);
    canvas.frame("texture", "", "PanelTexture", view.inset(1));
    const CBox head{view.x + 8, view.y + 4, view.width - 16, 28};
    canvas.text("title", "[B]EQ " + std::to_string(number) + "[/B]", "Text", head);
    double x = head.right();
    button(canvas, {x -= 46, head.y + 2, 46, 24}, "Reset");
    button(canvas, {x -= 38, head.y + 2, 34, 24}, "Inv");
    button(canvas, {x -= 30, head.y + 2, 26, 24}, "[IMG=is.button#ArrowUpDn:Action]");
    const CBox label{view.x + 8, view.y + 34, view.width - 16, 16};
    canvas.frame("groupcaption", "", "GroupCaption", label);
    canvas.text("small", shown == 0 ? "L" : "R", "GroupCaptionText",
                {label.x + 10, label.y, label.width - 20, label.height});
    const CBox foot{view.x + 6, view.bottom() - 50, view.width - 12, 46};
    surface(canvas, {view.x + 4, label.bottom() + 6, view.width - 8, foot.y - label.bottom() - 8}, shown, behind,
            shown == 0 ? "Custom1" : "Custom2");
    selector(canvas, {foot.x, foot.y, foot.width, 20}, "Edit group", shown, true);
    selector(canvas, {foot.x, foot.y + 23, foot.width, 20}, "Underlay", behind, false);
}

}  // namespace

void drawMainWindow(CSheetCanvas& canvas) {
    const CBox window{0, 0, kMainWindowWidth, kMainWindowHeight};
    canvas.frame("popup", "", "Border", window);
    const CBox inner = window.inset(1);
    canvas.fill(inner, "Background");
    const CBox bar{inner.x, inner.y, inner.width, 28};
    titleBar(canvas, bar);
    const CBox buttons{inner.x, bar.bottom(), inner.width, 32};
    const CBox status{inner.x, inner.bottom() - 24, inner.width, 24};
    buttonRow(canvas, buttons);
    const double height = status.y - buttons.bottom() - 2;
    const double half = inner.width / 2;
    equalizer(canvas, {inner.x + 3, buttons.bottom(), half - 5, height}, 1);
    equalizer(canvas, {inner.x + half + 2, buttons.bottom(), half - 5, height}, 2);
    canvas.frame("statusbar", "", "StatusBar", status);
    canvas.text("base", "Graphic equalizer view 1.", "StatusBarText",
                {status.x + 10, status.y, status.width - 20, status.height});
}

}  // namespace tarv
