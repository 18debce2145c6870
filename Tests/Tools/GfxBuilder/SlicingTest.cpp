#include "Tests/Tools/GfxBuilder/GfxTestHelp.h"

namespace tarv {
namespace {

/// A frame of 21 by 13 with a different grey in each of many columns, and a glow two pixels around it.
const std::string kShapes =
    "<defs><linearGradient id='g' x2='1' y2='.7'><stop stop-color='#000'/><stop offset='1' stop-color='#fff'/>"
    "</linearGradient></defs><rect x='8' y='3' width='25' height='17' fill='#fff' opacity='.2'/>"
    "<rect class='snap' x='10' y='5' width='21' height='13' fill='url(#g)'/>";
const char kBox[] = "x='10' y='5' width='21' height='13'";

std::vector<CRaster> piecesAt(double scale) {
    CSvgSource source;
    std::vector<CRaster> pieces(kSlicedPieces);
    EXPECT_FALSE(source.parse("a.svg", svgText(svgImage("id='Frame' data-slice='4 3 6 5'", kBox, kShapes))));
    for (size_t i = 0; i < pieces.size(); ++i) {
        EXPECT_FALSE(paintImage(source, source.images()[i], scale, pieces[i]));
    }
    return pieces;
}

TEST(Slicing, MakesARangeOfNine) {
    CSvgSource source;
    ASSERT_FALSE(source.parse(
        "a.svg", svgText(svgImage("id='a'", kBox, "") + svgImage("id='default' data-slice='4 3 6 5'", kBox, kShapes) +
                         svgImage("id='b'", kBox, ""))));
    ASSERT_EQ(source.images().size(), 11u);
    const CSvgRange kRanges[] = {{"a", 0, 0}, {"", 1, 9}, {"b", 10, 10}};
    ASSERT_EQ(source.ranges().size(), std::size(kRanges));
    for (size_t i = 0; i < std::size(kRanges); ++i) {
        EXPECT_EQ(source.ranges()[i].name, kRanges[i].name);
        EXPECT_EQ(source.ranges()[i].first, kRanges[i].first);
        EXPECT_EQ(source.ranges()[i].last, kRanges[i].last);
    }
}

TEST(Slicing, CutsTheBordersOffAtWholePixels) {
    for (double scale : kGfxScales) {
        const std::vector<CRaster> pieces = piecesAt(scale);
        const int kWidths[] = {devicePixels(4 * scale), 0, devicePixels(6 * scale)};
        const int kHeights[] = {devicePixels(3 * scale), 0, devicePixels(5 * scale)};
        const int middle = devicePixels(21 * scale) - kWidths[0] - kWidths[2];
        const int centre = devicePixels(13 * scale) - kHeights[0] - kHeights[2];
        for (size_t i = 0; i < pieces.size(); ++i) {
            EXPECT_EQ(pieces[i].width, i % 3 == 1 ? middle : kWidths[i % 3]) << scale << ' ' << i;
            EXPECT_EQ(pieces[i].height, i / 3 == 1 ? centre : kHeights[i / 3]) << scale << ' ' << i;
        }
    }
}

TEST(Slicing, PiecesPutTogetherAreTheWholeToTheByte) {
    for (double scale : kGfxScales) {
        const std::vector<CRaster> pieces = piecesAt(scale);
        const CRaster whole = paintedFirst(svgImage("id='Frame'", kBox, kShapes), scale);
        int seen = 0;
        for (size_t i = 0, top = 0; i < pieces.size(); i += 3) {
            for (size_t k = 0, left = 0; k < 3; ++k) {
                const CRaster& piece = pieces[i + k];
                for (int y = piece.y; y < piece.y + piece.drawnHeight; ++y) {
                    for (int x = piece.x; x < piece.x + piece.drawnWidth; ++x, ++seen) {
                        for (int part = 0; part < 2; ++part) {
                            ASSERT_EQ(pixelByte(piece, x, y, part),
                                      pixelByte(whole, x + static_cast<int>(left), y + static_cast<int>(top), part));
                        }
                    }
                }
                left += static_cast<size_t>(piece.width);
            }
            top += static_cast<size_t>(pieces[i].height);
        }
        // Each pixel of the whole, the overhang included, is in one piece.
        EXPECT_EQ(seen, whole.drawnWidth * whole.drawnHeight) << scale;
    }
}

TEST(Slicing, LeavesTheOverhangToThePiecesAtThatSide) {
    const std::vector<CRaster> pieces = piecesAt(1.0);
    EXPECT_EQ(coverAt(pieces[0], -2, -2), 51);
    EXPECT_EQ(coverAt(pieces[1], 0, -2), 51);
    EXPECT_EQ(coverAt(pieces[3], -2, 0), 51);
    EXPECT_EQ(coverAt(pieces[8], 7, 6), 51);
    const CRaster& middle = pieces[4];
    EXPECT_EQ(middle.drawnWidth, middle.width);
    EXPECT_EQ(middle.drawnHeight, middle.height);
    EXPECT_EQ(pieces[1].drawnWidth, pieces[1].width);
}

TEST(Slicing, WithBordersThatCannotBeIsAFault) {
    for (const char* borders : {"", "4 3 6", "4 3 6 5 1", "4 3 6 -5", "4 3 6 0", "4.5 3 6 5", "14 3 6 5", "4 7 6 5",
                                "99999999999 1 1 1", "a b c d"}) {
        EXPECT_EQ(svgFault(svgImage(std::string("id='a' data-slice='") + borders + "'", kBox, kShapes)),
                  "a.svg:2:1: error: image 'a': data-slice has four borders (left, top, right, bottom) in whole pixels "
                  "that leave a middle of two or more, on an image that is no tile")
            << borders;
    }
    EXPECT_TRUE(svgFault(svgImage("id='a' data-slice='4 3 6 5' data-tile='x'", kBox, kShapes)).ends_with("no tile"));
    EXPECT_EQ(svgFault(svgImage("id='a-0' data-slice='4 3 6 5'", kBox, kShapes)),
              "a.svg:2:1: error: image 'a-0': the nine pieces of a sliced image are its range");
}

}  // namespace
}  // namespace tarv
