#include <cmath>
#include <numbers>

#include "Tests/Tools/GfxBuilder/PaletteTestHelp.h"

namespace tarv {
namespace {

TEST(Palettes, HaveTheSameNamesInTheOrderOfTheirBytes) {
    std::vector<std::string> names;
    for (const auto& [name, color] : computed("Default").colors) {
        names.push_back(name);
    }
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    for (const char* palette : kPalettes) {
        std::vector<std::string> other;
        for (const auto& [name, color] : computed(palette).colors) {
            other.push_back(name);
        }
        EXPECT_EQ(other, names) << palette;
        EXPECT_EQ(computed(palette).frameCounts, computed("Default").frameCounts) << palette;
    }
}

// What the editor draws with, but Custom1 to Custom9 and their texts.
constexpr const char* kVocabulary[] = {"Action",
                                       "ActionAlt",
                                       "ActionAltText",
                                       "ActionError",
                                       "ActionErrorText",
                                       "ActionText",
                                       "Alarm",
                                       "AlarmText",
                                       "Background",
                                       "BackgroundText",
                                       "Border",
                                       "Button",
                                       "ButtonAB",
                                       "ButtonABIndicator",
                                       "ButtonABText",
                                       "ButtonABTextInactive",
                                       "ButtonText",
                                       "ButtonUnderlay",
                                       "ButtonUnderlayText",
                                       "Bypass",
                                       "BypassText",
                                       "CSPointOff",
                                       "CSSelectBG",
                                       "CSSelectLine",
                                       "CSSliderBar",
                                       "CSSliderBarPit",
                                       "CSSliderBarUnderlay",
                                       "ComplexButton",
                                       "ComplexButtonText",
                                       "Default",
                                       "Disabled",
                                       "DisabledText",
                                       "GraphLines",
                                       "HIDIcon",
                                       "HoveredParagraph",
                                       "Indicator1",
                                       "Indicator2",
                                       "Indicator3",
                                       "Indicator4",
                                       "Knob",
                                       "KnobCaption",
                                       "KnobIndicator",
                                       "KnobLabels",
                                       "KnobLabelsText",
                                       "KnobText",
                                       "LevelMeter",
                                       "PalIconRedInner",
                                       "Panel",
                                       "PanelGradient",
                                       "PanelTexture",
                                       "ScrollerBar",
                                       "ScrollerButton",
                                       "Selection",
                                       "SelectionText",
                                       "SpectrumMain",
                                       "Text",
                                       "WindowBlocker",
                                       "WindowTitle"};

TEST(Palettes, NameTheWholeVocabularyOfTheSurfaces) {
    std::vector<std::string> names(std::begin(kVocabulary), std::end(kVocabulary));
    for (char digit = '1'; digit <= '9'; ++digit) {
        names.push_back(std::string("Custom") + digit);
        names.push_back(names.back() + "Text");
    }
    for (const std::string& name : names) {
        EXPECT_TRUE(computed("Default").colors.count(name)) << name;
    }
    for (const char* button : {"Button", "ButtonText", "ComplexButton", "Action", "ActionText"}) {
        for (const char* state :
             {"Hover", "Active", "ActiveHover", "Error", "ErrorHover", "ActiveError", "ActiveErrorHover"}) {
            EXPECT_TRUE(computed("Default").colors.count(std::string(button) + "_" + state)) << button << state;
        }
    }
    for (const char* name : {"Text_Hilite", "Text_HiliteHover", "Custom1_Hover", "Custom9_Hover", "CSSliderBar_Hover",
                             "ButtonABIndicator_0", "ButtonABIndicator_0Hover"}) {
        EXPECT_TRUE(computed("Default").colors.count(name)) << name;
    }
}

TEST(Palettes, HoldTheColoursOfTheDefaultLook) {
    const std::pair<const char*, CRgb> kFull[] = {
        {"Text", {0xEF, 0xE6, 0xDA}},       {"TextDim", {0xA9, 0x9A, 0x8A}}, {"Action", {0xF2, 0xB3, 0x5E}},
        {"ButtonText", {0xE6, 0xD9, 0xC8}}, {"Border", {0x0B, 0x09, 0x08}},  {"ButtonText_Active", {0x1A, 0x12, 0x0A}},
        {"Custom1", {0xF5, 0xA6, 0x38}},    {"Custom2", {0x35, 0x9C, 0x90}}, {"Custom3", {0xE8, 0x70, 0x5A}},
        {"Custom9", {0x8F, 0xA3, 0xAD}},    {"Panel", {0x3A, 0x2F, 0x27}},
    };
    for (const auto& [name, color] : kFull) {
        EXPECT_EQ(full(computed("Default"), name), color) << name;
    }
    const std::pair<const char*, CRgb> kFaces[] = {
        {"Background", {0x15, 0x11, 0x0E}}, {"Panel", {0x22, 0x1B, 0x16}},         {"WindowTitle", {0x1B, 0x15, 0x11}},
        {"Button", {0x33, 0x29, 0x1F}},     {"Button_Active", {0xC7, 0x7B, 0x2A}}, {"Alarm", {0xFF, 0x5A, 0x3C}},
    };
    for (const auto& [name, color] : kFaces) {
        EXPECT_EQ(face(computed("Default"), name), color) << name;
    }
}

TEST(Palettes, KeepTextAndBarsReadable) {
    for (const char* name : kPalettes) {
        const CPaletteSource& palette = computed(name);
        EXPECT_GE(contrast(full(palette, "Text"), face(palette, "Panel")), 7) << name;
        EXPECT_GE(contrast(full(palette, "TextDim"), face(palette, "Panel")), 4.5) << name;
        EXPECT_GE(contrast(full(palette, "RulerText"), face(palette, "Background")), 4.5) << name;
        EXPECT_GE(contrast(face(palette, "Button_Active"), face(palette, "Button")), 3) << name;
        for (char digit = '1'; digit <= '9'; ++digit) {
            const std::string bar = std::string("Custom") + digit;
            EXPECT_GE(contrast(full(palette, bar), full(palette, "CSSliderBarPit")), 4.5) << name << ' ' << bar;
            EXPECT_GE(contrast(full(palette, bar), full(palette, bar + "Text")), 4.5) << name << ' ' << bar;
        }
        for (const char* state : {"", "_Hover", "_Active", "_ActiveHover", "_Error", "_ActiveError"}) {
            EXPECT_GE(contrast(full(palette, std::string("ButtonText") + state),
                               face(palette, std::string("Button") + state)),
                      4.5)
                << name << state;
        }
        EXPECT_LT(luminance(full(palette, "CSSliderBarPit")), luminance(face(palette, "Panel"))) << name;
    }
}

TEST(Palettes, KeepTheFirstTwoGroupsApartByLightnessToo) {
    for (const char* name : kPalettes) {
        EXPECT_GE(std::abs(lightness(full(computed(name), "Custom1")) - lightness(full(computed(name), "Custom2"))), 12)
            << name;
    }
}

TEST(Palettes, LiftLightnessUnderThePointer) {
    for (const char* name : kPalettes) {
        for (const auto& [color, entry] : computed(name).colors) {
            const std::string hover = color + (color.find('_') == color.npos ? "_Hover" : "Hover");
            const auto found = computed(name).colors.find(hover);
            if (found != computed(name).colors.end()) {
                EXPECT_GT(lightness(found->second.ramp[192]), lightness(entry.ramp[192])) << name << ' ' << hover;
                EXPECT_EQ(found->second.opacity, entry.opacity);
            }
        }
    }
}

TEST(Palettes, HaveRampsThatRiseFromNearBlack) {
    int rising = 0;
    for (const char* name : kPalettes) {
        for (const auto& [color, entry] : computed(name).colors) {
            const CRgb dark = entry.ramp[0];
            if (dark == entry.ramp[255]) {
                continue;  // flat
            }
            ++rising;
            EXPECT_LT(lightness(dark), lightness(full(computed(name), "Border"))) << name << ' ' << color;
            for (size_t i = 1; i < 256; ++i) {
                // Rounding to bytes leaves less than a tenth of a step of lightness.
                EXPECT_GT(lightness(entry.ramp[i]), lightness(entry.ramp[i - 1]) - 0.35) << name << ' ' << color << i;
            }
        }
    }
    EXPECT_GT(rising, 2000);
}

// Text on them is dark: it must be read at the dimmest frame, too.
TEST(Palettes, KeepTextReadableWhileTheyBreathe) {
    for (const char* name : kPalettes) {
        const CPaletteSource& palette = computed(name);
        for (const auto& [color, count] : palette.frameCounts) {
            const size_t state = color.find('_');
            const std::string text =
                color.substr(0, state) + "Text" + (state == std::string::npos ? "" : color.substr(state));
            for (int32_t frame = 0; frame < static_cast<int32_t>(count); ++frame) {
                EXPECT_GE(contrast(full(palette, text), face(palette, color + "|" + std::to_string(frame))), 3.5)
                    << name << ' ' << color << frame;
            }
        }
    }
}

TEST(Palettes, BreatheInSixColours) {
    for (const char* name : kPalettes) {
        const CPaletteSource& palette = computed(name);
        ASSERT_EQ(palette.frameCounts.size(), 6u);
        for (const auto& [color, count] : palette.frameCounts) {
            EXPECT_EQ(count, 32u);
            for (int frame = 0; frame < 32; ++frame) {
                const double light = 0.78 + 0.22 * (0.5 + 0.5 * std::cos(2 * std::numbers::pi * frame / 32));
                const CRamp& ramp = palette.colors.at(color + "|" + std::to_string(frame)).ramp;
                EXPECT_NEAR(ramp[255].red, full(palette, color).red * light, 0.5) << color << frame;
                EXPECT_NEAR(ramp[100].green, palette.colors.at(color).ramp[100].green * light, 0.5) << color << frame;
            }
            EXPECT_FALSE(palette.colors.count(color + "|32"));
        }
    }
}

TEST(Palettes, LetThroughWhereTheirColoursSay) {
    const std::pair<const char*, double> kOpacities[] = {
        {"WindowBlocker", 0.7},
        {"PanelTexture", 0.05},
        {"BackgroundTexture", 0.025},
        {"PanelGradient", 0.15},
        {"CSPointOff", 0.75},
        {"CSSelectBG", 0.25},
        {"CSSliderBarUnderlay", 0.12},
        {"CSSliderBarUnderlay_Hover", 0.12},
        {"Panel", 1.0},
    };
    for (const auto& [name, opacity] : kOpacities) {
        EXPECT_EQ(computed("Green").colors.at(name).opacity, opacity) << name;
    }
}

TEST(Palettes, ShowEachOthersColoursInTheirIcons) {
    for (const char* worn : kPalettes) {
        EXPECT_EQ(full(computed(worn), "PalIconRedInner"), full(computed("Red"), "Custom1"));
        EXPECT_EQ(face(computed(worn), "PalIconBlueOuter"), face(computed("Blue"), "Panel"));
    }
}

struct CBadRules {
    const char* rules;
    const char* message;
};

constexpr CBadRules kBadRules[] = {
    {"A = coat\n", "rules.txt:1:1: error: colour 'A': 'NAME = COLOUR RAMP ...' is expected"},
    {"# x\nA = coat steep\n",
     "rules.txt:2:1: error: colour 'A': a ramp is down, bar, flat, lit or lit=COLOUR, not 'steep'"},
    {"A = cloak down\n", "rules.txt:1:1: error: colour 'A': there is no base colour 'cloak'"},
    {"A = @Other.coat down\n", "Other.palette: error: the file can't be opened"},
    {"A = @Own.cloak down\n", "rules.txt:1:1: error: colour 'A': there is no base colour '@Own.cloak'"},
    {"A = @Own down\n", "rules.txt:1:1: error: colour 'A': another palette's colour is '@PALETTE.KEY', not '@Own'"},
    {"A = coat/brighter down\n",
     "rules.txt:1:1: error: colour 'A': an operation is lighter, darker, shade:P% or mix:KEY:P%, not 'brighter'"},
    {"A = coat/shade:120% down\n",
     "rules.txt:1:1: error: colour 'A': an operation is lighter, darker, shade:P% or mix:KEY:P%, not 'shade:120%'"},
    {"A = coat down 101%\n", "rules.txt:1:1: error: colour 'A': '101%' is no opacity from 0% to 100%"},
    {"A = coat down pushed=coat\n",
     "rules.txt:1:1: error: colour 'A': 'pushed=coat' is neither an opacity nor a state with its colour"},
    {"A = coat down active\n",
     "rules.txt:1:1: error: colour 'A': 'active' is neither an opacity nor a state with its colour"},
    {"A = coat down active=cloak\n", "rules.txt:1:1: error: colour 'A': there is no base colour 'cloak'"},
    {"A = coat down\nA = coat down\n", "rules.txt:2:1: error: colour 'A' is there already"},
    {"A[9-1] = coat down\n", "rules.txt:1:1: error: colour 'A[9-1]': a repetition is one of the form [1-9]"},
    {"base coat\n", "rules.txt:1:1: error: 'base KEY = RRGGBB' is expected"},
    {"dark\n", "rules.txt:1:1: error: 'dark KEY' is expected"},
    {"dark cloak\n", "rules.txt:1:1: error: colour 'dark': there is no base colour 'cloak'"},
    {"frames 1 50% A\n", "rules.txt:1:1: error: 'frames COUNT LOW% NAME...' is expected, with a count from 2 to 256"},
    {"frames 32 50% A\n", "rules.txt:1:1: error: 'A' is no colour without frames above this line"},
};

TEST(PaletteRules, WithAFaultFailWithTheirPlace) {
    const CTestFolder folder;
    const std::string path = folder.file("Own.palette", "coat = 102030\n");
    for (const CBadRules& bad : kBadRules) {
        folder.file("rules.txt", bad.rules);
        CPaletteSource palette;
        const auto failure = computePalette(path, palette);
        ASSERT_TRUE(failure) << bad.message;
        EXPECT_EQ(withoutFolder(failure->message()), bad.message);
    }
}

TEST(PaletteRules, RefuseBaseColoursOfAnotherForm) {
    const CTestFolder folder;
    const std::pair<const char*, const char*> kBad[] = {
        {"coat = 12345\n", "a.palette:1:1: error: colour 'coat' isn't of the form RRGGBB"},
        {"coat = 12345g\n", "a.palette:1:1: error: colour 'coat' isn't of the form RRGGBB"},
        {"coat = 123456 7\n", "a.palette:1:1: error: colour 'coat' isn't of the form RRGGBB"},
        {"coat = 123456\ncoat = 123456\n", "a.palette:2:1: error: 'coat' is given twice"},
    };
    for (const auto& [text, message] : kBad) {
        CBaseColors colors;
        const auto failure = readBaseColors(folder.file("a.palette", text), colors);
        ASSERT_TRUE(failure) << message;
        EXPECT_EQ(withoutFolder(failure->message()), message);
    }
}

TEST(PaletteRules, GiveAPaletteItsOwnValueOfABaseColourBeforeTheCommonOne) {
    const CTestFolder folder;
    folder.file("rules.txt", "base x = 101010\nbase y = 202020\nA = x flat\nB = y flat\n");
    CPaletteSource palette;
    ASSERT_FALSE(computePalette(folder.file("a.palette", "x = 303030\n"), palette));
    EXPECT_EQ(full(palette, "A"), (CRgb{0x30, 0x30, 0x30}));
    EXPECT_EQ(full(palette, "B"), (CRgb{0x20, 0x20, 0x20}));
}

}  // namespace
}  // namespace tarv
