// What all drawings of the product have in common, at each scale.

#include "Tests/TestPaths.h"
#include "Tests/Tools/GfxBuilder/GfxTestHelp.h"

namespace tarv {
namespace {

struct CLitFrame {
    const char* set;
    const char* range;
    int rim;  ///< dark pixels around it, which are as wide at each scale
};

constexpr CLitFrame kLitFrames[] = {
    {"button", "", 1},
    {"button", "Active", 1},
    {"button", "Outline", 1},
    {"buttonab", "", 1},
    {"buttonab", "Active", 1},
    {"buttonab", "Indicator", 0},
    {"frame", "", 1},
    {"frame", "Caption", 0},
    {"history", "Left", 1},
    {"history", "MiddleActive", 1},
    {"history", "Right", 1},
    {"popup", "Title", 0},
    {"popup2", "", 1},
    {"scroller", "ButtonV", 1},
    {"scroller", "ButtonHActive", 1},
};

/// One of the nine pieces of a frame.
CRaster pieceOf(const std::string& set, const std::string& range, int piece, double scale) {
    CSvgSource source;
    auto failure = source.load(kSourceFolder + std::string("/Gfx/Imagesets/") + set + ".svg");
    EXPECT_FALSE(failure) << failure->message();
    CRaster raster;
    for (const CSvgImage& image : source.images()) {
        if (image.range == range && image.piece == piece) {
            failure = paintImage(source, image, scale, raster);
            EXPECT_FALSE(failure) << failure->message();
        }
    }
    return raster;
}

TEST(Drawings, HaveOneLitLineAtEachScale) {
    for (const CLitFrame& frame : kLitFrames) {
        for (const double scale : kGfxScales) {
            const CRaster edge = pieceOf(frame.set, frame.range, 1, scale);
            ASSERT_GT(edge.drawnHeight, 2) << frame.set << frame.range;
            int lit = 0;
            for (int y = 0; y < edge.height; ++y) {
                lit += pixelByte(edge, edge.width / 2, y, 0) == 255 && coverAt(edge, edge.width / 2, y) == 255 ? 1 : 0;
            }
            EXPECT_EQ(lit, 1) << frame.set << ' ' << frame.range << ' ' << scale;
            EXPECT_EQ(pixelByte(edge, edge.width / 2, frame.rim, 0), 255)
                << frame.set << ' ' << frame.range << ' ' << scale;
        }
    }
}

/// How many pixels of a piece's row or column are brighter than the face of the outline.
int lineOf(const CRaster& piece, bool isRow) {
    int count = 0;
    for (int i = 0; i < (isRow ? piece.width : piece.height); ++i) {
        const int x = isRow ? i : piece.width / 2;
        const int y = isRow ? piece.height / 2 : i;
        count += pixelByte(piece, x, y, 0) > 0x80 ? 1 : 0;
    }
    return count;
}

TEST(Drawings, AnOutlineIsAsWideOnAllSides) {
    const int kWidths[] = {1, 2, 2};
    for (int i = 0; i < kGfxScaleCount; ++i) {
        for (const char* range : {"OutlineActive", "OutlinePushed"}) {
            for (const int piece : {1, 3, 5, 7}) {
                const bool isRow = piece == 3 || piece == 5;
                EXPECT_EQ(lineOf(pieceOf("button", range, piece, kGfxScales[i]), isRow), kWidths[i])
                    << range << ' ' << piece << ' ' << kGfxScales[i];
            }
        }
    }
}

// The surface counts on it where it cuts a short bar out of its picture.
TEST(Drawings, TheCapOfABarIsTwoPixelsAtEachScale) {
    for (const double scale : kGfxScales) {
        const CRaster up = pieceOf("csurface", "Bar", 1, scale);
        const CRaster down = pieceOf("csurface", "BarDown", 7, scale);
        const CRaster right = pieceOf("csurface", "BarRight", 5, scale);
        const auto isCap = [](const CRaster& raster, int x, int y) {
            return pixelByte(raster, x, y, 0) == 255 && coverAt(raster, x, y) == 255;
        };
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(isCap(up, up.width / 2, i), i < 2) << scale << ' ' << i;
            EXPECT_EQ(isCap(down, down.width / 2, down.height - 1 - i), i < 2) << scale << ' ' << i;
            EXPECT_EQ(isCap(right, right.width - 1 - i, right.height / 2), i < 2) << scale << ' ' << i;
        }
    }
}

}  // namespace
}  // namespace tarv
