// What the pictures of the library look like in the colours of its palettes: measured in drawn pixels.

#include <algorithm>
#include <cmath>

#include "ProductTree.h"
#include "UI/Drawing/CFramePieces.h"
#include "UI/Drawing/CLinearBitmap.h"
#include "UI/Resources/CDataSetObject.h"

namespace tarv {

namespace {

constexpr const char* kPalettes[] = {"Default", "Military", "Red", "Blue", "Green"};
constexpr int32_t kSize = 96;

/// Relative luminance and contrast as WCAG 2 defines them.
double luminance(CPixel pixel) {
    const auto linear = [](uint32_t byte) {
        const double v = byte / 255.0;
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(pixel >> 16 & 255) + 0.7152 * linear(pixel >> 8 & 255) + 0.0722 * linear(pixel & 255);
}

double contrast(CPixel a, CPixel b) {
    const double x = luminance(a) + 0.05;
    const double y = luminance(b) + 0.05;
    return std::max(x, y) / std::min(x, y);
}

class GraphicsLook : public CProductTree {
protected:
    static void SetUpTestSuite() {
        CProductTree::SetUpTestSuite();
        CError* error = CApplication::openEditor();
        ASSERT_FALSE(error) << error->joined().toUtf8();
    }
    GraphicsLook() {
        CError* error = bitmap_.resize(kSize, kSize);
        EXPECT_FALSE(error);
    }
    static const CColor& color(const char* palette, const std::string& name) {
        const auto& colors = dynamic_cast<const CPaletteObject&>(*shared(std::string("pal.") + palette)).dataSet();
        const CColor* found = colors.findColor(name.c_str());
        EXPECT_TRUE(found) << name;
        return *found;
    }
    /// Draws a range over a rectangle of the bitmap.
    void draw(const char* set, const char* range, const CColor& in, const CIntRect& box, double opacity = 1.0) {
        const CImageSet& images = dynamic_cast<const CImageSetObject&>(*shared(std::string("is.") + set)).dataSet();
        uint32_t first = 0;
        uint32_t last = 0;
        ASSERT_TRUE(images.findRange(range, first, last)) << set << ' ' << range;
        CFramePieces(images, first, last).draw(bitmap_, box, in, opacity, bitmap_.bounds());
    }
    CPixel middle() const { return bitmap_.row(kSize / 2)[kSize / 2]; }

    CLinearBitmap bitmap_;
};

// The scale of the editor is 1.0 here: borders of frames are far from the middle.
TEST_F(GraphicsLook, APitStandsOutFromTheGapAndABarFromItsPit) {
    for (const char* palette : kPalettes) {
        draw("frame", "Inset", color(palette, "Panel"), bitmap_.bounds());
        const CPixel gap = middle();
        draw("csurface", "Pit", color(palette, "CSSliderBarPit"), bitmap_.bounds());
        const CPixel pit = middle();
        EXPECT_GE(contrast(gap, pit), 1.15) << palette;
        EXPECT_GT(luminance(gap), luminance(pit)) << palette;
        for (char digit = '1'; digit <= '9'; ++digit) {
            draw("csurface", "Bar", color(palette, std::string("Custom") + digit), bitmap_.bounds());
            EXPECT_GE(contrast(middle(), pit), 3) << palette << digit;
            EXPECT_GE(contrast(bitmap_.row(1)[kSize / 2], pit), 4.5) << palette << digit;
        }
    }
}

TEST_F(GraphicsLook, TheCapOfABarIsTwoPixelsAndRound) {
    const CColor& bar = color("Default", "Custom1");
    bitmap_.clear();
    draw("csurface", "Bar", bar, {20, 20, 40, 80});
    EXPECT_EQ(bitmap_.row(20)[30], bar.full());
    EXPECT_EQ(bitmap_.row(21)[30], bar.full());
    EXPECT_LT(luminance(bitmap_.row(22)[30]), luminance(bar.full()));
    EXPECT_LT(luminance(bitmap_.row(20)[20]), luminance(bar.full()) / 2);
    EXPECT_EQ(bitmap_.row(21)[22], bar.full());
}

// The number of an underlay's group has a line in the group's colour on a dark face, below a light text.
TEST_F(GraphicsLook, AnOutlinedButtonHasALineOfItsColourAroundADarkFace) {
    constexpr int32_t kButton = 20;
    for (const char* palette : kPalettes) {
        for (char digit = '1'; digit <= '9'; ++digit) {
            const std::string group = std::string("Custom") + digit + "_Active";
            const CIntRect box{20, 20, 20 + kButton, 20 + kButton};
            draw("button", "Outline", color(palette, "Button"), box);
            const CPixel usual = bitmap_.row(20 + kButton / 2)[20 + kButton / 2];
            draw("button", "OutlineActive", color(palette, group), box);
            const CPixel line = bitmap_.row(20 + kButton / 2)[20];
            const CPixel inner = bitmap_.row(20 + kButton / 2)[20 + kButton / 2];
            EXPECT_GE(contrast(line, usual), 3) << palette << digit;
            EXPECT_GE(contrast(color(palette, "Text").full(), inner), 7) << palette << digit;
            EXPECT_GE(contrast(color(palette, "Text_Active").full(), inner), 4.5) << palette << digit;
        }
    }
}

// What can't be pressed now can still be read.
TEST_F(GraphicsLook, DisabledTextIsDimButNotGone) {
    for (const char* palette : kPalettes) {
        draw("frame", "", color(palette, "Panel"), bitmap_.bounds());
        const CPixel panel = middle();
        EXPECT_GE(contrast(color(palette, "DisabledText").full(), panel), 2) << palette;
        EXPECT_LT(contrast(color(palette, "DisabledText").full(), panel),
                  0.6 * contrast(color(palette, "TextDim").full(), panel))
            << palette;
    }
}

// What would read as the setting if it were brighter.
TEST_F(GraphicsLook, AnUnderlayIsFaintAndFlat) {
    bitmap_.clear();
    const CColor& underlay = color("Default", "CSSliderBarUnderlay");
    CColor white = underlay;
    std::fill(std::begin(white.ramp), std::end(white.ramp), CPixel{0xFFFFFF});
    draw("csurface", "Underlay", white, {20, 20, 40, 80});
    for (const int32_t y : {20, 21, 40, 79}) {
        EXPECT_NEAR(bitmap_.row(y)[30] & 255, 0.12 * 255, 2) << y;
    }
}

TEST_F(GraphicsLook, StreaksAreSeenAndNoMore) {
    for (const char* palette : kPalettes) {
        draw("frame", "", color(palette, "Panel"), bitmap_.bounds());
        draw("texture", "", color(palette, "PanelTexture"), bitmap_.bounds());
        CPixel dark = middle();
        CPixel light = middle();
        for (int32_t y = 20; y < kSize - 20; ++y) {
            for (int32_t x = 20; x < kSize - 20; ++x) {
                const CPixel pixel = bitmap_.row(y)[x];
                dark = luminance(pixel) < luminance(dark) ? pixel : dark;
                light = luminance(pixel) > luminance(light) ? pixel : light;
            }
        }
        EXPECT_GE(contrast(dark, light), 1.02) << palette;
        EXPECT_LE(contrast(dark, light), 1.06) << palette;
    }
}

}  // namespace

}  // namespace tarv
