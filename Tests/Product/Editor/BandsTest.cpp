// The bars of the main window, by hand: what the engine and the host hold afterwards.

#include <cmath>

#include "ProductEditor.h"
#include "UI/Controls/Surface/CControlSurface.h"

namespace tarv {

namespace {

constexpr int32_t kBands = 7;
constexpr const char* kGains = "modBrindleXEQ.xeq-gains";
constexpr const char* kFrequencies = "modBrindleXEQ.xeq-freqs";
constexpr const char* kOutput = "modOutGain.gain";
/// The whole height of the range is 24 dB.
constexpr double kRange = 24.0;

struct CViewRow {
    const char* view;
    int32_t group;
    int32_t firstParameter;  ///< the host's number of the first band's gain
};
constexpr CViewRow kViews[] = {{"xeq1", 0, 1}, {"xeq2", 1, 9}};

std::string number(int32_t value) {
    return std::to_string(value);
}

class Bands : public CProductEditor {
protected:
    double pixelsToDecibels(const std::string& surface, int32_t pixels) {
        return kRange * pixels / (8.0 * std::floor(box(surface).height / 8.0));
    }
    std::string label(const std::string& ruler, int32_t index) {
        return ruler + ".label" + (index > 0 ? "#" + number(index) : "");
    }
};

TEST_F(Bands, EachBarFollowsTheDragOneToOne) {
    for (const CViewRow& row : kViews) {
        for (int32_t band = 0; band < kBands; ++band) {
            const CSpot spot = column(row.view, band);
            heard();
            drag(spot, 0, band % 2 == 0 ? -50 : 50);
            const double expected = pixelsToDecibels(spot.path, band % 2 == 0 ? 50 : -50);
            EXPECT_NEAR(decibels(kGains, row.group, band), expected, 1e-9) << row.view << band;
            const std::string parameter = number(row.firstParameter + band);
            EXPECT_EQ(heardGestures(), "begin " + parameter + ", automate " + parameter + ", end " + parameter);
        }
    }
}

TEST_F(Bands, APressAloneTouchesAndChangesNothing) {
    const std::string before = chunk(false);
    heard();
    click(column("xeq1", 3));
    EXPECT_EQ(decibels(kGains, 0, 3), 0.0);
    EXPECT_EQ(chunk(false), before);
    EXPECT_EQ(heard(), "begin 4, end 4");  // hosts that write while a control is touched
}

TEST_F(Bands, EachBarTakesTheWheelAndADoubleClick) {
    for (const CViewRow& row : kViews) {
        for (int32_t band = 0; band < kBands; ++band) {
            wheel(column(row.view, band), 3.0);
            EXPECT_NEAR(decibels(kGains, row.group, band), 1.5, 1e-9) << row.view << band;
            doubleClick(column(row.view, band));
            EXPECT_NEAR(decibels(kGains, row.group, band), 0.0, 1e-9) << row.view << band;
        }
    }
}

TEST_F(Bands, ShiftMakesTheWheelFiner) {
    system_.input().holdKeys(true, false, false);
    wheel(column("xeq1", 2), 1.0);
    EXPECT_NEAR(decibels(kGains, 0, 2), 0.25, 1e-9);
}

TEST_F(Bands, TheCurveIsScaledInvertedAndReset) {
    for (const CViewRow& row : kViews) {
        const std::string head = std::string("c.") + row.view + ".title-frame-head.";
        setEngine(kGains, row.group, 0, std::pow(10.0, 2.0 / 20.0));
        setEngine(kGains, row.group, 1, std::pow(10.0, -4.0 / 20.0));
        click(head + "eq-invert-scale.invert");
        EXPECT_NEAR(decibels(kGains, row.group, 0), -2.0, 1e-9) << row.view;
        EXPECT_NEAR(decibels(kGains, row.group, 1), 4.0, 1e-9) << row.view;
        double mean = 0.0;
        double before[kBands];
        for (int32_t band = 0; band < kBands; ++band) {
            before[band] = decibels(kGains, row.group, band);
            mean += before[band] / kBands;
        }
        constexpr int32_t kPixels = 20;
        drag(head + "eq-invert-scale.scale", 0, -kPixels);
        // The default of drag-precision is 0.7.
        const double factor = std::pow(2.0, kPixels * 0.7 / 50.0);
        for (int32_t band = 0; band < kBands; ++band) {
            EXPECT_NEAR(decibels(kGains, row.group, band), mean + (before[band] - mean) * factor, 1e-9) << row.view;
        }
        setEngine(kFrequencies, row.group, 2, 400.0);
        click(head + "param-reset-button");
        for (int32_t band = 0; band < kBands; ++band) {
            EXPECT_EQ(decibels(kGains, row.group, band), 0.0) << row.view;
        }
        EXPECT_EQ(engine(kFrequencies, row.group, 2), 400.0) << row.view;
    }
}

TEST_F(Bands, EachValueIsTypedAndTabGoesOn) {
    for (const CViewRow& row : kViews) {
        const std::string ruler = std::string("c.") + row.view + ".cs-sliders.ruler-values";
        const CObject* labels[kBands];
        for (int32_t band = 0; band < kBands; ++band) {
            labels[band] = &at(label(ruler, band));
        }
        click(label(ruler, 0));
        for (int32_t band = 0; band < kBands; ++band) {
            system_.input().type(u"-" + std::u16string(1, static_cast<char16_t>(u'1' + band)) + u",5");
            tap(kKeyTab);
        }
        tap(kKeyEscape);
        for (int32_t band = 0; band < kBands; ++band) {
            EXPECT_NEAR(decibels(kGains, row.group, band), -1.5 - band, 1e-9) << row.view << band;
            EXPECT_EQ(&at(label(ruler, band)), labels[band]) << "the ruler stays as it is";
        }
    }
}

TEST_F(Bands, EachFrequencyIsTyped) {
    for (const CViewRow& row : kViews) {
        for (int32_t band = 0; band < kBands; ++band) {
            click(label(std::string("c.") + row.view + ".cs-sliders.ruler-freqs", band));
            type(u"1" + std::u16string(1, static_cast<char16_t>(u'0' + band)) + u"0");
            EXPECT_NEAR(engine(kFrequencies, row.group, band), 100.0 + 10.0 * band, 1e-6) << row.view << band;
        }
    }
    click(label("c.xeq1.cs-sliders.ruler-freqs", 3));
    type(u"1.2K");
    EXPECT_NEAR(engine(kFrequencies, 0, 3), 1200.0, 1e-6);
}

TEST_F(Bands, TheOutputGainsAreDraggedTurnedResetAndTyped) {
    for (const CViewRow& row : kViews) {
        const std::string view = std::string("c.") + row.view + ".cs-gain.";
        const std::string parameter = number(row.firstParameter + kBands);
        heard();
        drag(view + "control-surface", 0, -25);
        EXPECT_NEAR(decibels(kOutput, row.group), pixelsToDecibels(view + "control-surface", 25), 1e-9) << row.view;
        EXPECT_EQ(heardGestures(), "begin " + parameter + ", automate " + parameter + ", end " + parameter);
        doubleClick(view + "control-surface");
        EXPECT_NEAR(decibels(kOutput, row.group), 0.0, 1e-9) << row.view;
        wheel(view + "control-surface", -1.0);
        EXPECT_NEAR(decibels(kOutput, row.group), -0.5, 1e-9) << row.view;
        click(label(view + "ruler-values", 0));
        type(u"+2 dB");
        EXPECT_NEAR(decibels(kOutput, row.group), 2.0, 1e-9) << row.view;
    }
}

TEST_F(Bands, ArrowsMoveTheBarThatWasPressedUntilEscapeOrAPressElsewhere) {
    for (const CViewRow& row : kViews) {
        const std::string path = std::string("c.") + row.view + ".cs-sliders.control-surface";
        const auto& surface = at<CControlSurface>(path);
        click(column(row.view, 2));
        tap(kKeyUp);
        tap(kKeyRight);
        tap(kKeyDown);
        EXPECT_NEAR(decibels(kGains, row.group, 2), 0.5, 1e-9) << row.view;
        EXPECT_NEAR(decibels(kGains, row.group, 3), -0.5, 1e-9) << row.view;
        EXPECT_EQ(surface.selectedPoint(), 3) << row.view;
        tap(kKeyEscape);
        EXPECT_EQ(surface.selectedPoint(), -1) << row.view;
        tap(kKeyUp);
        EXPECT_NEAR(decibels(kGains, row.group, 3), -0.5, 1e-9) << row.view;
        click(column(row.view, 2));
        click(std::string("c.") + row.view + ".title-frame-head.param-reset-button");
        EXPECT_EQ(surface.selectedPoint(), -1) << row.view;
    }
}

TEST_F(Bands, ARightPressMarksTheColumnThatItsMenuActsOn) {
    const std::string path = "c.xeq1.cs-sliders.control-surface";
    setEngine(kGains, 0, 5, std::pow(10.0, 5.0 / 20.0));
    click(column("xeq1", 1));
    tap(kKeyRight);
    auto& surface = at<CControlSurface>(path);
    EXPECT_EQ(surface.selectedPoint(), 2);
    click(column("xeq1", 5), CPointerButton::Right);
    EXPECT_EQ(surface.selectedPoint(), 5) << "while it is open, too";
    choose(1);  // reset
    EXPECT_NEAR(decibels(kGains, 0, 5), 0.0, 1e-9);
    EXPECT_EQ(surface.selectedPoint(), 5);
    tap(kKeyUp);
    EXPECT_NEAR(decibels(kGains, 0, 5), 0.5, 1e-9) << "and keys go on there";
    click(column("xeq1", 4), CPointerButton::Right);
    EXPECT_EQ(surface.selectedPoint(), 4);
    click("window-title.bypass");  // closes the menu
    EXPECT_EQ(surface.selectedPoint(), surface.window()->keyFocusView() == &surface ? 4 : -1);
    click("window-title.bypass");
    EXPECT_EQ(surface.selectedPoint(), -1);
}

TEST_F(Bands, TabWaitsUntilABarIsReleased) {
    auto& surface = at<CControlSurface>("c.xeq1.cs-sliders.control-surface");
    press(column("xeq1", 3));
    moveBy(0, -20);
    tap(kKeyTab);
    EXPECT_EQ(surface.selectedPoint(), 3);
    EXPECT_EQ(surface.window()->keyFocusView(), &surface);
    moveBy(0, -20);
    release();
    EXPECT_NEAR(decibels(kGains, 0, 3), pixelsToDecibels("c.xeq1.cs-sliders.control-surface", 40), 1e-9);
    tap(kKeyUp);
    EXPECT_NEAR(decibels(kGains, 0, 3), pixelsToDecibels("c.xeq1.cs-sliders.control-surface", 40) + 0.5, 1e-9);
    tap(kKeyTab);
    EXPECT_EQ(surface.selectedPoint(), -1) << "the keys go on to the next view, and no bar is marked";
    EXPECT_NE(surface.window()->keyFocusView(), &surface);
}

TEST_F(Bands, CopyToInTheMenuMeansWhatItMeansInThePanel) {
    setEngine(kGains, 0, 3, std::pow(10.0, 5.0 / 20.0));
    setEngine(kOutput, 0, 0, std::pow(10.0, 1.0 / 20.0));
    setEngine(kFrequencies, 0, 1, 200.0);
    for (const char* surface : {"c.xeq1.cs-sliders.control-surface", "c.xeq1.cs-gain.control-surface"}) {
        click(surface, CPointerButton::Right);
        const auto& list = at<CTextView>("ui.window-app-popup-list.list");
        const int32_t last = list.paragraphCount() - 1;
        EXPECT_EQ(list.paragraphText(last).toUtf8(), "Copy to group 2");
        choose(last);
        EXPECT_NEAR(decibels(kGains, 1, 3), 5.0, 1e-9);
        EXPECT_NEAR(decibels(kOutput, 1), 1.0, 1e-9);
        EXPECT_NEAR(engine(kFrequencies, 1, 1), 200.0, 1e-9);
        EXPECT_EQ(text("c.buttons.history.button-undo", "hint"), "Undo: Group 1 to 2 copy");
        click("c.buttons.history.button-undo");
        EXPECT_NEAR(decibels(kGains, 1, 3), 0.0, 1e-9) << "one step";
        EXPECT_NEAR(decibels(kOutput, 1), 0.0, 1e-9);
    }
}

TEST_F(Bands, WhatTheHostAutomatesShows) {
    effect_->setParameter(effect_, 4, 0.75F);
    wait();
    EXPECT_EQ(at<CTextView>(label("c.xeq1.cs-sliders.ruler-values", 3)).paragraphText(0).toUtf8(), "6.0");
    EXPECT_EQ(heard(), "");
}

TEST_F(Bands, AValueIsTypedOnTheScreen) {
    click("c.xeq1.cs-sliders.ruler-values.label#2");
    for (const char* key : {"minus", "four", "point", "two", "five", "backspace", "enter"}) {
        click(std::string("ui.virtual-keyboard-digit.") + key);
    }
    EXPECT_NEAR(decibels("modBrindleXEQ.xeq-gains", 0, 2), -4.2, 1e-9);
}

TEST_F(Bands, FrequenciesAreShortAndTheHoveredOneIsWhole) {
    const std::string fourth = "c.xeq1.cs-sliders.ruler-freqs.label#3";
    EXPECT_EQ(text("c.xeq1.cs-sliders.ruler-freqs.label", "title"), "64");
    EXPECT_EQ(text(fourth, "title"), "1k");
    point(column("xeq1", 3));
    EXPECT_EQ(text(fourth, "title"), "1.00k");
    EXPECT_EQ(text("c.xeq1.cs-sliders.ruler-freqs.label#4", "title"), "2k");
    point(fourth);
    EXPECT_EQ(text(fourth, "title"), "1.00k");
    point("c.buttons.reset");
    EXPECT_EQ(text(fourth, "title"), "1k");
}

}  // namespace

}  // namespace tarv
