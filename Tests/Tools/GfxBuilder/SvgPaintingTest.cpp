#include "Tests/Tools/GfxBuilder/GfxTestHelp.h"

namespace tarv {
namespace {

constexpr char kBox8[] = "width='8' height='8'";

TEST(Painting, TakesTheStepFromLumaAndAlphaFromCover) {
    const struct {
        const char* paint;
        int step, alpha;
    } kPaints[] = {
        {"fill='#ffffff'", 255, 255}, {"fill='#c0c0c0'", 192, 255},
        {"fill='#010101'", 1, 255},   {"fill='#000000'", 0, 255},
        {"fill='#ff0000'", 54, 255},  {"fill='#00ff00'", 182, 255},
        {"fill='#0000ff'", 18, 255},  {"fill='#c0c0c0' opacity='.5'", 192, 128},
    };
    for (const auto& row : kPaints) {
        const CRaster raster = paintedFirst(
            svgImage("id='a'", kBox8, std::string("<rect class='snap' width='8' height='8' ") + row.paint + "/>"), 1.0);
        // A colour that half covers is stored in half as many steps.
        EXPECT_NEAR(pixelByte(raster, 3, 3, 0), row.step, row.alpha == 255 ? 0 : 1) << row.paint;
        EXPECT_EQ(pixelByte(raster, 3, 3, 1), row.alpha) << row.paint;
        EXPECT_EQ(pixelByte(raster, 9, 3, 1), 0);
    }
}

TEST(Painting, KeepsAlphaAloneOrTheColoursOnDemand) {
    const std::string shape = "<rect class='snap' width='8' height='8' fill='#102030'/>";
    const CRaster alpha = paintedFirst(svgImage("id='a' data-alpha='1'", kBox8, shape), 1.0);
    EXPECT_EQ(alpha.bytesPerPixel, 1);
    EXPECT_EQ(pixelByte(alpha, 0, 0, 0), 255);
    const CRaster colour = paintedFirst(svgImage("id='a' data-colour='1'", kBox8, shape), 1.0);
    EXPECT_EQ(colour.bytesPerPixel, 4);
    const int kBgra[] = {0x30, 0x20, 0x10, 255};
    for (int part = 0; part < 4; ++part) {
        EXPECT_EQ(pixelByte(colour, 7, 7, part), kBgra[part]);
    }
}

TEST(Painting, KeepsWhatOverhangsBesideTheNominalSize) {
    for (double scale : kGfxScales) {
        const CRaster raster =
            paintedFirst(svgImage("id='a'", "x='10' y='20' width='10' height='5'",
                                  "<rect class='snap' x='5' y='17' width='20' height='12' fill='#fff'/>"),
                         scale);
        EXPECT_EQ(raster.width, devicePixels(10 * scale));
        EXPECT_EQ(raster.height, devicePixels(5 * scale));
        EXPECT_EQ(coverAt(raster, devicePixels(-5 * scale), devicePixels(-3 * scale)), 255) << scale;
        EXPECT_EQ(coverAt(raster, devicePixels(-5 * scale) - 1, 0), 0) << scale;
        EXPECT_EQ(coverAt(raster, devicePixels(15 * scale) - 1, devicePixels(9 * scale) - 1), 255) << scale;
        EXPECT_EQ(coverAt(raster, devicePixels(15 * scale), 0), 0) << scale;
    }
}

TEST(Painting, RefusesWhatReachesTooFarOut) {
    CSvgSource source;
    ASSERT_FALSE(source.parse("a.svg", svgText(svgImage("id='a'", kBox8, "<rect x='70' width='9' height='9'/>"))));
    CRaster raster;
    EXPECT_EQ(paintImage(source, source.images()[0], 1.0, raster)->message(),
              "a.svg:2:1: error: image 'a': it reaches more than 63 pixels out of its box");
}

TEST(Painting, UsesWhatIsSharedInDefs) {
    const std::string defs = "<defs><linearGradient id='g'><stop stop-color='#404040'/></linearGradient></defs>";
    const CRaster raster = paintedFirst(
        defs + svgImage("id='a'", kBox8, "<rect class='snap' width='8' height='8' fill='url(#g)'/>"), 1.25);
    EXPECT_EQ(pixelByte(raster, 5, 5, 0), 0x40);
}

/// A stroke across the right and the lower edge, in a box whose size is not whole at any scale but 1.0.
std::string tileOf(const std::string& direction) {
    return svgImage("id='a' data-alpha='1' data-tile='" + direction + "'", "width='13' height='11'",
                    "<path d='M-2 3L15 9M6 -3L9 14' stroke='#fff' stroke-width='3'/>");
}

TEST(Tile, HasTheSizeOfItsBoxInTheTiledDirections) {
    for (double scale : kGfxScales) {
        const CRaster both = paintedFirst(tileOf("xy"), scale), across = paintedFirst(tileOf("x"), scale);
        EXPECT_EQ(both.drawnWidth, both.width);
        EXPECT_EQ(both.drawnHeight, both.height);
        EXPECT_EQ(across.drawnWidth, across.width);
        EXPECT_GT(across.drawnHeight, across.height);
        EXPECT_EQ(both.x, 0);
        EXPECT_EQ(across.x, 0);
        EXPECT_LT(across.y, 0);
    }
}

// Where nothing overlaps, a tile is the sum of its drawing's copies: what left on one side is all there on the other.
TEST(Tile, ShowsOnEachSideWhatLeftOnTheOther) {
    const std::string shape = "<circle cx='12' cy='5' r='3' fill='#fff'/>";
    for (double scale : kGfxScales) {
        const CRaster tile =
            paintedFirst(svgImage("id='a' data-alpha='1' data-tile='x'", "width='13' height='11'", shape), scale);
        const CRaster plain = paintedFirst(svgImage("id='a' data-alpha='1'", "width='13' height='11'", shape), scale);
        for (int y = 0; y < tile.height; ++y) {
            for (int x = 0; x < tile.width; ++x) {
                EXPECT_EQ(coverAt(tile, x, y), coverAt(plain, x, y) + coverAt(plain, x + tile.width, y));
            }
        }
        EXPECT_GT(coverAt(tile, 0, devicePixels(5 * scale)), 0);
    }
}

TEST(Tile, LaidTwiceSideBySideLooksLikeOneOfTwiceTheWidth) {
    // Streaks whose period divides the box: drawn wide in one piece they must meet the tile at its seam.
    const std::string streaks =
        "<path stroke='#fff' stroke-width='2' d='M-8 -4L24 12M-24 -4L8 12M8 -4L40 12M-40 -4L-8 12M24 -4L56 12'/>";
    const CRaster tile = paintedFirst(svgImage("id='a' data-alpha='1' data-tile='x'", "width='16' height='8'",
                                               "<path stroke='#fff' stroke-width='2' d='M-8 -4L24 12'/>"),
                                      1.25);
    const CRaster wide = paintedFirst(svgImage("id='a' data-alpha='1'", "width='32' height='8'", streaks), 1.25);
    ASSERT_EQ(tile.width * 2, wide.width);
    for (int y = 0; y < tile.height; ++y) {
        for (int x = 0; x < wide.width; ++x) {
            EXPECT_NEAR(coverAt(wide, x, y), coverAt(tile, x % tile.width, y), 2) << x << ' ' << y;
        }
    }
}

}  // namespace
}  // namespace tarv
