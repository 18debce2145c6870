#include "Tests/Tools/GfxBuilder/GfxTestHelp.h"

namespace tarv {
namespace {

constexpr char kAlpha[] = "id='a' data-alpha='1' fill='#fff'";

/// First and last row (column) of a raster that shows anything; all between are expected to be covered fully.
struct CSpan {
    int first = 1000;
    int last = -1000;
    bool isFull = true;

    bool operator==(const CSpan&) const = default;
};

CSpan rowsAt(const CRaster& raster, int x) {
    CSpan span;
    for (int y = raster.y; y < raster.y + raster.drawnHeight; ++y) {
        if (const int cover = coverAt(raster, x, y)) {
            span = {std::min(span.first, y), y, span.isFull && cover == 255};
        }
    }
    return span;
}

CSpan columnsAt(const CRaster& raster, int y) {
    CSpan span;
    for (int x = raster.x; x < raster.x + raster.drawnWidth; ++x) {
        if (const int cover = coverAt(raster, x, y)) {
            span = {std::min(span.first, x), x, span.isFull && cover == 255};
        }
    }
    return span;
}

TEST(Hairline, IsOneFullPixelAtEachScale) {
    for (double scale : kGfxScales) {
        for (double place : {0.5, 3.5, 7.5, 10.5, 14.5, 19.5}) {
            const std::string y = std::to_string(place);
            const CRaster raster = paintedFirst(
                svgImage(kAlpha, "width='20' height='20'",
                         "<line class='hair' stroke='#fff' x1='0' x2='20' y1='" + y + "' y2='" + y + "'/>"),
                scale);
            const CSpan rows = rowsAt(raster, 4);
            EXPECT_EQ(rows.first, rows.last) << scale << ' ' << place;
            EXPECT_TRUE(rows.isFull) << scale << ' ' << place;
            EXPECT_EQ(columnsAt(raster, rows.first), (CSpan{0, raster.width - 1, true}));
        }
    }
}

TEST(Hairline, StaysOnTheEdgeOfTheBoxThatItLiesOn) {
    for (int side = 5; side < 40; ++side) {
        const std::string s = std::to_string(side), last = std::to_string(side - 0.5);
        const std::string shapes = "<rect class='hair' fill='none' stroke='#fff' x='.5' y='.5' width='" +
                                   std::to_string(side - 1) + "' height='" + std::to_string(side - 1) + "'/>";
        const std::string lines = "<line class='hair' stroke='#fff' x1='.5' x2='.5' y2='" + s +
                                  "'/><line class='hair' stroke='#fff' x1='" + last + "' x2='" + last + "' y2='" + s +
                                  "'/>";
        for (double scale : kGfxScales) {
            const int end = devicePixels(side * scale) - 1;
            for (const std::string& content : {shapes, lines}) {
                const CRaster raster =
                    paintedFirst(svgImage(kAlpha, "width='" + s + "' height='" + s + "'", content), scale);
                EXPECT_EQ(columnsAt(raster, end / 2), (CSpan{0, end, true})) << side << ' ' << scale;
                EXPECT_EQ(coverAt(raster, 1, end / 2), 0);
                EXPECT_EQ(coverAt(raster, end - 1, end / 2), 0);
            }
        }
    }
}

TEST(HairFill, IsOneFullPixelThickAtBothEdgesAndBetween) {
    for (double scale : kGfxScales) {
        for (const auto& [y, row] : {std::pair<const char*, int>{"0", 0},
                                     {"15", devicePixels(16 * scale) - 1},
                                     {"4", devicePixels(4 * scale)}}) {
            const CRaster raster =
                paintedFirst(svgImage(kAlpha, "width='8' height='16'",
                                      std::string("<rect class='hairfill' width='8' height='1' y='") + y + "'/>"),
                             scale);
            EXPECT_EQ(rowsAt(raster, 2), (CSpan{row, row, true})) << scale << ' ' << y;
            EXPECT_EQ(columnsAt(raster, row), (CSpan{0, raster.width - 1, true}));
        }
    }
}

struct CSnapCase {
    const char* shape;
    /// First and last column at the middle row for each scale, computed by hand from round((x - o) * s).
    int columns[3][2];
};

// The box is 20 wide; 3 to 14 at 1.0 is 2.4 -> 2 to 11.2 -> 11 at 0.8, and 3.75 -> 4 to 17.5 -> 18 at 1.25.
const CSnapCase kSnapCases[] = {
    {"<rect class='snap' x='3' y='2' width='11' height='16'/>", {{2, 10}, {3, 13}, {4, 17}}},
    {"<polygon class='snap' points='3,2 14,2 14,18 3,18'/>", {{2, 10}, {3, 13}, {4, 17}}},
    {"<rect class='snap' fill='#fff' stroke='#fff' stroke-width='2' x='4' y='3' width='9' height='14'/>",
     {{2, 10}, {3, 13}, {4, 17}}},
    {"<line class='snap' stroke='#fff' stroke-width='3' x1='3' x2='14' y1='10' y2='10'/>", {{2, 10}, {3, 13}, {4, 17}}},
    {"<line class='snap' stroke='#fff' stroke-width='2' stroke-linecap='square' x1='4' x2='13' y1='10' y2='10'/>",
     {{2, 11}, {3, 13}, {4, 17}}},
};

TEST(Snap, PutsOuterEdgesOnWholePixels) {
    for (const CSnapCase& row : kSnapCases) {
        for (int i = 0; i < 3; ++i) {
            const CRaster raster = paintedFirst(svgImage(kAlpha, "width='20' height='20'", row.shape), kGfxScales[i]);
            const CSpan columns = columnsAt(raster, devicePixels(10 * kGfxScales[i]));
            EXPECT_EQ(columns, (CSpan{row.columns[i][0], row.columns[i][1], true})) << row.shape << kGfxScales[i];
        }
    }
}

TEST(Snap, KeepsACircleRoundAndOnWholePixels) {
    for (double scale : kGfxScales) {
        const CRaster raster = paintedFirst(
            svgImage(kAlpha, "width='20' height='20'", "<circle class='snap' cx='9' cy='10' r='5.5'/>"), scale);
        const int size = devicePixels(11 * scale), left = devicePixels(3.5 * scale), top = devicePixels(4.5 * scale);
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x) {
                // Mirrored both ways and turned, within the rounding of its curve.
                EXPECT_NEAR(coverAt(raster, left + x, top + y), coverAt(raster, left + size - 1 - x, top + y), 3);
                EXPECT_NEAR(coverAt(raster, left + x, top + y), coverAt(raster, left + y, top + x), 3);
            }
        }
        EXPECT_GT(coverAt(raster, left, top + size / 2), 128);
        EXPECT_EQ(coverAt(raster, left - 1, top + size / 2), 0);
        EXPECT_EQ(coverAt(raster, left + size, top + size / 2), 0);
    }
}

TEST(Snap, GivesAStrokeAtLeastOneWholePixel) {
    for (const auto& [width, pixels] : {std::pair<const char*, int>{"0.3", 1}, {"1", 1}, {"2", 2}}) {
        const CRaster raster =
            paintedFirst(svgImage(kAlpha, "width='9' height='9'",
                                  std::string("<polyline class='snap' fill='none' stroke='#fff' stroke-width='") +
                                      width + "' points='4.5,0 4.5,9'/>"),
                         0.8);
        const CSpan columns = columnsAt(raster, 3);
        EXPECT_EQ(columns.last - columns.first + 1, pixels) << width;
        EXPECT_TRUE(columns.isFull) << width;
    }
}

TEST(Snap, MakesTheSamePictureWhereverTheBoxStands) {
    const std::string shapes =
        "<rect class='snap' x='%X3' y='2' width='7' height='9'/>"
        "<line class='hair' stroke='#fff' x1='%X4.5' x2='%X4.5' y2='12'/>"
        "<path d='M%X9 1l3 5z'/>";
    const auto at = [&](int place) {
        std::string text = shapes;
        for (size_t i; (i = text.find("%X")) != text.npos;) {
            // "%X3" is 3 right of the box.
            const size_t end = text.find_first_not_of("0123456789.", i + 2);
            text.replace(i, end - i, std::to_string(std::stod(text.substr(i + 2, end - i - 2)) + place));
        }
        return svgImage(kAlpha, "x='" + std::to_string(place) + "' width='13' height='12'", text);
    };
    for (double scale : kGfxScales) {
        const CRaster first = paintedFirst(at(0), scale);
        for (int place : {1, 2, 3, 37, 1001}) {
            EXPECT_EQ(paintedFirst(at(place), scale).pixels, first.pixels) << scale << ' ' << place;
        }
    }
}

}  // namespace
}  // namespace tarv
