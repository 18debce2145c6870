// What an eye tells apart: also one that lacks a cone, and the look of hovered and of dark things.

#include <numbers>

#include "Tests/Tools/GfxBuilder/PaletteTestHelp.h"

namespace tarv {
namespace {

struct CSight {
    const char* name;
    double matrix[3][3];  ///< of linear red, green and blue
};

// G. Machado, M. Oliveira, L. Fernandes, A Physiologically-based Model for Simulation of Color Vision Deficiency, 2009,
// table 1: whole loss of a cone.
constexpr CSight kSights[] = {
    {"all cones", {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
    {"protan", {{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}},
    {"deutan", {{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}},
    {"tritan", {{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}},
};

CLinear seen(CRgb color, const CSight& sight) {
    const CLinear light = linear(color);
    CLinear result{};
    for (size_t i = 0; i < 3; ++i) {
        for (size_t k = 0; k < 3; ++k) {
            result[i] += sight.matrix[i][k] * light[k];
        }
        result[i] = std::clamp(result[i], 0.0, 1.0);
    }
    return result;
}

TEST(PaletteSight, TheBarsOfTheFirstTwoGroupsDifferForEveryEye) {
    for (const char* name : kPalettes) {
        for (const CSight& sight : kSights) {
            const CRgb one = full(computed(name), "Custom1"), two = full(computed(name), "Custom2");
            EXPECT_GE(difference(seen(one, sight), seen(two, sight)), 45) << name << ' ' << sight.name;
        }
    }
}

TEST(PaletteSight, EachOfNineGroupsHasAColourOfItsOwn) {
    for (const char* name : kPalettes) {
        for (char a = '1'; a <= '9'; ++a) {
            for (char b = '1'; b < a; ++b) {
                const CRgb one = full(computed(name), std::string("Custom") + a);
                const CRgb two = full(computed(name), std::string("Custom") + b);
                EXPECT_GE(difference(linear(one), linear(two)), 25) << name << ' ' << a << ' ' << b;
            }
        }
    }
}

// A washed out colour under the pointer would look like another state.
TEST(PaletteSight, HoverKeepsChroma) {
    for (const char* name : kPalettes) {
        for (const auto& [color, entry] : computed(name).colors) {
            const std::string hover = color + (color.find('_') == color.npos ? "_Hover" : "Hover");
            const auto found = computed(name).colors.find(hover);
            if (found == computed(name).colors.end()) {
                continue;
            }
            for (const size_t step : {size_t{kFaceStep}, size_t{255}}) {
                // 85 % of the builder's chroma, whose measure is another one; bytes leave greys an error of 3.
                EXPECT_GE(chroma(found->second.ramp[step]), 0.8 * chroma(entry.ramp[step]) - 3)
                    << name << ' ' << hover << step;
            }
        }
    }
}

TEST(PaletteSight, HoverCanBeSeenOnEachBar) {
    for (const char* name : kPalettes) {
        for (char digit = '1'; digit <= '9'; ++digit) {
            const std::string bar = std::string("Custom") + digit;
            EXPECT_GE(lightness(full(computed(name), bar + "_Hover")) - lightness(full(computed(name), bar)), 2.5)
                << name << digit;
        }
    }
}

TEST(PaletteSight, DarkFacesHaveTheHueOfTheCoat) {
    for (const char* name : kPalettes) {
        const CRgb coat = face(computed(name), "Background");
        for (const char* surface : {"Panel", "Button", "GroupCaption", "WindowTitle", "StatusBar", "Field", "Popup"}) {
            for (const size_t step : {size_t{kFaceStep}, size_t{140}, size_t{100}}) {
                const CRgb dark = computed(name).colors.at(surface).ramp[step];
                const double away = std::remainder(hue(dark) - hue(coat), 2 * std::numbers::pi);
                // Bytes of dark colours leave some 20 degrees.
                EXPECT_LT(std::abs(away), 30 * std::numbers::pi / 180) << name << ' ' << surface << step;
            }
        }
    }
}

// A rectangle that is filled without a frame shows the last step.
TEST(PaletteSight, PlainFillsShowTheirColourAndNoLight) {
    for (const char* name : kPalettes) {
        const CBaseColors base = [&] {
            CBaseColors colors;
            const auto failure =
                readBaseColors(kSourceFolder + std::string("/Gfx/Palettes/") + name + ".palette", colors);
            EXPECT_FALSE(failure);
            return colors;
        }();
        EXPECT_EQ(full(computed(name), "Background"), base.at("coat")) << name;
        EXPECT_EQ(face(computed(name), "Background"), base.at("coat")) << name;
        EXPECT_EQ(full(computed(name), "Selection"), base.at("accent")) << name;
        EXPECT_GE(contrast(full(computed(name), "SelectionText"), full(computed(name), "Selection")), 4.5) << name;
        EXPECT_LT(lightness(full(computed(name), "HoveredParagraph")), lightness(base.at("accent"))) << name;
        EXPECT_LT(luminance(full(computed(name), "Background")), luminance(face(computed(name), "Panel"))) << name;
    }
}

// The ring of key focus has a dark line at either side of its light one: one of them stands out on any ground.
TEST(PaletteSight, TheRingOfKeyFocusStandsOutOnEveryGround) {
    for (const char* name : kPalettes) {
        const CRgb light = full(computed(name), "FocusRing");
        const CRgb dark = computed(name).colors.at("FocusRing").ramp[0];
        EXPECT_GE(contrast(light, dark), 7) << name;
        for (const char* ground : {"Background", "Panel", "WindowTitle", "GroupCaption", "Button", "Button_Active",
                                   "Button_Hover", "ButtonAB", "Bypass_Active", "InstanceName", "Field", "Custom1",
                                   "Custom2", "Custom3", "Custom4", "Custom5", "Custom6", "Custom7", "Custom8"}) {
            const CRgb under = face(computed(name), ground);
            EXPECT_GE(std::max(contrast(light, under), contrast(dark, under)), 3) << name << ' ' << ground;
        }
    }
}

TEST(PaletteSight, AChosenGroupIsFilledWithItsColour) {
    for (const char* name : kPalettes) {
        for (char digit = '1'; digit <= '9'; ++digit) {
            const std::string bar = std::string("Custom") + digit;
            EXPECT_EQ(full(computed(name), bar + "_Active"), full(computed(name), bar));
            EXPECT_GE(contrast(full(computed(name), bar), face(computed(name), "Button")), 3) << name << bar;
            EXPECT_GE(contrast(full(computed(name), bar + "_ActiveHover"), full(computed(name), bar + "Text_Active")),
                      4.5)
                << name << bar;
        }
    }
}

}  // namespace
}  // namespace tarv
