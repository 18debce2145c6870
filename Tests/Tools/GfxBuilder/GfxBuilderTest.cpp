#include "GfxBuilder.h"

#include "Core/CStreams.h"
#include "Tests/TestPaths.h"
#include "Tests/Tools/GfxBuilder/GfxTestHelp.h"
#include "UI/Resources/CBrushSet.h"
#include "UI/Resources/CFont.h"
#include "UI/Resources/CPalette.h"

namespace tarv {
namespace {

const std::string kGfx = std::string(kSourceFolder) + "/Gfx/";

std::string built(const std::string& path) {
    std::string bytes;
    const auto failure = buildGraphics(path, bytes);
    EXPECT_FALSE(failure) << failure->message();
    return bytes;
}

template <class TSet>
void readBack(const std::string& bytes, TSet& set) {
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.size()));
    CError* error = set.read(reader);
    EXPECT_EQ(error, nullptr);
    logError(error);
    EXPECT_EQ(set.CDataSet::scale(), 1.0);
}

TEST(GfxBuilder, MakesTheSameBytesOfTheSameSource) {
    int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(kGfx)) {
        const std::string extension = entry.path().extension().string();
        if (extension == ".svg" || extension == ".font" || extension == ".brush" || extension == ".palette") {
            const std::string bytes = built(entry.path().string());
            EXPECT_GT(bytes.size(), 100u) << entry.path();
            EXPECT_EQ(built(entry.path().string()), bytes) << entry.path();
            ++count;
        }
    }
    EXPECT_GE(count, 18);
}

TEST(GfxBuilder, WritesAnImageSetThatTheProductReads) {
    CImageSet set;
    readBack(built(kGfx + "Imagesets/ruler.svg"), set);
    EXPECT_EQ(set.imageCount(), 23);
    uint32_t first = 0, last = 0;
    ASSERT_TRUE(set.findRange(CString(), first, last));
    EXPECT_EQ(last - first, 3u);
    EXPECT_TRUE(set.findRange(CString("HairlineZero"), first, last));
    for (int32_t i = 0; i < set.imageCount(); ++i) {
        const CImageLayer& layer = set.getImage(set.imageIndex(i))->layer(0);
        ASSERT_EQ(layer.versionCount(), kGfxScaleCount);
        for (int version = 0; version < kGfxScaleCount; ++version) {
            EXPECT_EQ(layer.scaleAt(version), kGfxScales[version]);
        }
    }
    int32_t width = 0, height = 0;
    for (const auto& [scale, size] : {std::pair<double, int>{0.8, 6}, {1.0, 8}, {1.25, 10}}) {
        ASSERT_TRUE(set.getSize(0, scale, width, height));
        EXPECT_EQ(width, size);
        EXPECT_EQ(height, 1);
    }
}

TEST(GfxBuilder, TrimsWhatIsStoredAndKeepsTheNominalSize) {
    const CTestFolder folder;
    CImageSet set;
    readBack(built(folder.file("a.svg", svgText(svgImage("id='a'", "width='20' height='10'",
                                                         "<rect class='snap' x='-3' y='4' width='5' height='2' "
                                                         "fill='#fff'/>")))),
             set);
    const CImageVersion& version = set.getImage(0)->layer(0).versionAt(1);
    EXPECT_EQ(version.width(), 20);
    EXPECT_EQ(version.height(), 10);
    EXPECT_EQ(version.x(), -3);
    EXPECT_EQ(version.y(), 4);
    EXPECT_EQ(version.storedWidth(), 5);
    EXPECT_EQ(version.storedHeight(), 2);
}

TEST(GfxBuilder, WritesAFontThatTheProductReads) {
    CFont font;
    readBack(built(kGfx + "Fonts/base.font"), font);
    EXPECT_EQ(font.imageCount(), 188);
    EXPECT_EQ(font.nominalHeight(), 14);
    EXPECT_EQ(font.metric2(), 3);
    EXPECT_EQ(font.metric3(), 3);
    EXPECT_NE(font.getGlyph(32), nullptr);
    EXPECT_EQ(font.getGlyph(31), nullptr);
    EXPECT_EQ(font.getGlyph('A')->layer(0).bytesPerPixel(), 1);
}

TEST(GfxBuilder, WritesBrushesThatTheProductReads) {
    CBrushSet set;
    readBack(built(kGfx + "Brushes/brushes.brush"), set);
    ASSERT_EQ(set.brushCount(), 3);
    const double kWidths[] = {0, 1.48, 2.96};
    for (int32_t i = 0; i < 3; ++i) {
        EXPECT_EQ(set.getBrush(i)->width(), kWidths[i]);
        EXPECT_EQ(set.getBrush(i)->versionCount(), kGfxScaleCount);
    }
    EXPECT_NEAR(set.getBrush(1)->dotWidth(), 1.24, 1e-12);
}

TEST(GfxBuilder, WritesPalettesThatTheProductReads) {
    CPalette palette, other;
    readBack(built(kGfx + "Palettes/Default.palette"), palette);
    readBack(built(kGfx + "Palettes/Military.palette"), other);
    ASSERT_EQ(palette.colorCount(), other.colorCount());
    for (int32_t i = 0; i < palette.colorCount(); ++i) {
        EXPECT_EQ(palette.color(i).name.toUtf8(), other.color(i).name.toUtf8());
    }
    EXPECT_EQ(palette.frameTableCount(), 6);
    EXPECT_EQ(palette.getFrameCount(CString("Bypass_ActiveHover")), 32u);
    EXPECT_EQ(palette.findColor(CString("Text"))->full(), 0xEFE6DAu);
    EXPECT_EQ(palette.findColor(CString("Alarm"), CString("Active"), 8)->name.toUtf8(), "Alarm_Active|8");
}

TEST(GfxBuilder, RefusesWhatItDoesNotKnow) {
    std::string bytes;
    EXPECT_EQ(buildGraphics("a.txt", bytes)->message(),
              "a.txt: error: a source ends in .svg, .font, .brush or .palette");
    EXPECT_EQ(buildGraphics("/nowhere/a.palette", bytes)->message(),
              "/nowhere/a.palette: error: the file can't be opened");
}

}  // namespace
}  // namespace tarv
