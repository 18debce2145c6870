// What the editor's controls look for in the graphics that the library carries.

#include "Product/ResourceTable.h"
#include "ProductTree.h"
#include "UI/Resources/CDataSetObject.h"
#include "UI/Resources/CFontObject.h"

namespace tarv {

namespace {

constexpr uint32_t kPieces = 9;
constexpr double kScales[] = {0.8, 1.0, 1.25};

/// A range, and how many pictures it has: nine are the pieces of a frame.
struct CRangeRow {
    const char* set;
    const char* range;
    uint32_t count;
};

const CRangeRow kRanges[] = {
    {"autoscroll", "Left", 1},
    {"autoscroll", "Right", 1},
    {"button", "", kPieces},
    {"button", "Active", kPieces},
    {"button", "Pushed", kPieces},
    {"button", "Outline", kPieces},
    {"button", "OutlineActive", kPieces},
    {"button", "OutlinePushed", kPieces},
    {"buttonab", "", kPieces},
    {"buttonab", "Active", kPieces},
    {"buttonab", "Pushed", kPieces},
    {"buttonab", "Indicator", kPieces},
    {"close", "", 1},
    {"close", "Pushed", 1},
    {"csurface", "Pit", kPieces},
    {"csurface", "Bar", kPieces},
    {"csurface", "BarDown", kPieces},
    {"csurface", "BarRight", kPieces},
    {"csurface", "Underlay", kPieces},
    {"csurface", "UnderlayDown", kPieces},
    {"csurface", "Select", kPieces},
    {"csurface", "SelectBG", kPieces},
    {"csurface", "Point", 1},
    {"csurface", "Anchor", 1},
    {"editbox", "", kPieces},
    {"editbox", "Active", kPieces},
    {"editbox", "Cursor", 1},
    {"frame", "", kPieces},
    {"frame", "Inset", kPieces},
    {"frame", "Caption", kPieces},
    {"frame", "Flat", kPieces},
    {"groupcaption", "", kPieces},
    {"history", "Left", kPieces},
    {"history", "MiddleActive", kPieces},
    {"history", "RightPushed", kPieces},
    {"instancename", "", kPieces},
    {"instancename", "Active", kPieces},
    {"listoutline", "", kPieces},
    {"palicon", "", 1},
    {"palicon", "Active", 1},
    {"palicon", "Inner", 1},
    {"popup", "", kPieces},
    {"popup", "Title", kPieces},
    {"popup2", "", kPieces},
    {"ruler", "", 4},
    {"ruler", "Minor", 4},
    {"ruler", "Zero", 4},
    {"scroller", "TrackV", kPieces},
    {"scroller", "ButtonVActive", kPieces},
    {"scroller", "ButtonHPushed", kPieces},
    {"statusbar", "", kPieces},
    {"tarvelo", "", 1},
    {"texture", "", 1},
};

const char* const kIcons[] = {"Arrow",  "ArrowSm", "ArrowRight", "ArrowUpDn", "Close", "Undo",     "Redo", "List",
                              "Plus",   "Minus",   "Replace",    "Load",      "Save",  "Check",    "Copy", "Reset",
                              "Invert", "Palette", "Gear",       "Keyboard",  "Caps",  "Backspace"};

class Graphics : public CProductTree {
protected:
    static void SetUpTestSuite() {
        CProductTree::SetUpTestSuite();
        CError* error = CApplication::openEditor();
        ASSERT_FALSE(error) << error->joined().toUtf8();
    }
    static const CImageSet& images(const std::string& name) {
        return dynamic_cast<const CImageSetObject&>(*shared("is." + name)).dataSet();
    }
    static uint32_t countOf(const CImageSet& set, const char* range) {
        uint32_t first = 0;
        uint32_t last = 0;
        return set.findRange(range, first, last) ? last - first + 1 : 0;
    }
};

TEST_F(Graphics, HaveTheRangesThatControlsNeed) {
    for (const CRangeRow& row : kRanges) {
        EXPECT_EQ(countOf(images(row.set), row.range), row.count) << row.set << " '" << row.range << "'";
    }
    for (const char* icon : kIcons) {
        EXPECT_EQ(countOf(images("button"), icon), 1u) << icon;
    }
    EXPECT_EQ(images("ruler").imageCount(), 23);
}

TEST_F(Graphics, HoldEachPictureOfTheirRangesAtThreeScales) {
    for (const CObject* object : shared("is")->children()) {
        const CImageSet& set = dynamic_cast<const CImageSetObject&>(*object).dataSet();
        EXPECT_GT(set.rangeCount(), 0) << object->name().toUtf8();
        for (int32_t i = 0; i < set.rangeCount(); ++i) {
            uint32_t first = 0;
            uint32_t last = 0;
            ASSERT_TRUE(set.findRange(set.rangeName(i), first, last));
            for (uint32_t index = first; index <= last; ++index) {
                const CImage* image = set.getImage(index);
                ASSERT_TRUE(image) << object->name().toUtf8() << ' ' << index;
                EXPECT_EQ(image->layerCount(), 1);
                EXPECT_EQ(image->layer(0).versionCount(), 3);
                for (const double scale : kScales) {
                    int32_t width = 0;
                    int32_t height = 0;
                    EXPECT_TRUE(set.getSize(index, scale, width, height));
                    EXPECT_GT(width, 0);
                    EXPECT_GT(height, 0);
                }
            }
        }
    }
}

TEST_F(Graphics, HoldFiveFontsOfThreeStylesOf188Glyphs) {
    int32_t fonts = 0;
    for (const CObject* object : shared("font")->children()) {
        for (const char* style : {"regular", "bold", "superscript"}) {
            const CFont* font = dynamic_cast<const CFontObject&>(*object).findStyle(style);
            ASSERT_TRUE(font) << object->name().toUtf8() << ' ' << style;
            EXPECT_EQ(font->imageCount(), 188);
            EXPECT_EQ(font->imageIndex(0), 32u);
            ++fonts;
        }
    }
    EXPECT_EQ(fonts, 15);
    const CFont* base = dynamic_cast<const CFontObject&>(*shared("font.base")).findStyle("regular");
    EXPECT_EQ(base->nominalHeight(), 14);
    EXPECT_EQ(base->metric2(), 3);
    EXPECT_EQ(base->metric3(), 3);
}

TEST_F(Graphics, HoldThreeBrushesOfTheirWidths) {
    const CBrushSet& brushes = dynamic_cast<const CBrushSetObject&>(*shared("bs.brushes")).dataSet();
    const double kWidths[] = {0.0, 1.48, 2.96};
    for (uint32_t i = 0; i < std::size(kWidths); ++i) {
        ASSERT_TRUE(brushes.getBrush(i));
        EXPECT_EQ(brushes.getBrush(i)->width(), kWidths[i]);
        EXPECT_EQ(brushes.getBrush(i)->versionCount(), 3);
    }
    EXPECT_FALSE(brushes.getBrush(3));
    EXPECT_NEAR(brushes.getBrush(1)->dotWidth(), 1.24, 1e-12);
}

TEST_F(Graphics, HoldFivePalettesOfTheSameNamesInTheSameOrder) {
    const auto palette = [](const char* name) -> const CPalette& {
        return dynamic_cast<const CPaletteObject&>(*shared(std::string("pal.") + name)).dataSet();
    };
    const CPalette& usual = palette("Default");
    EXPECT_GT(usual.colorCount(), 0);
    for (const char* name : {"Military", "Red", "Blue", "Green"}) {
        ASSERT_EQ(palette(name).colorCount(), usual.colorCount()) << name;
        for (int32_t i = 0; i < usual.colorCount(); ++i) {
            ASSERT_EQ(palette(name).color(i).name.toUtf8(), usual.color(i).name.toUtf8()) << name;
        }
    }
    for (const char* moving :
         {"Alarm", "Alarm_Active", "Alarm_ActiveHover", "Alarm_Hover", "Bypass_Active", "Bypass_ActiveHover"}) {
        EXPECT_EQ(usual.getFrameCount(moving), 32u) << moving;
        EXPECT_TRUE(usual.findColor(CString(moving) + "|31")) << moving;
    }
}

}  // namespace

}  // namespace tarv
