#include "Tests/Tools/GfxBuilder/GfxTestHelp.h"

namespace tarv {
namespace {

const std::string kBox = "<rect class='box' width='8' height='8'/>";

struct CBadDrawing {
    std::string content;
    const char* message;
};

/// A group `a` with a box and one more shape, on line 2.
std::string withShape(const std::string& shape) {
    return "<g id='a'>" + kBox + shape + "</g>";
}

const CBadDrawing kBadDrawings[] = {
    {"", "a.svg: error: the drawing holds no image"},
    {"<rect width='1' height='1'/>", "a.svg:2:1: error: <rect>: what is drawn belongs into a group with an id"},
    {"<g>" + kBox + "</g>", "a.svg:2:1: error: <g>: what is drawn belongs into a group with an id"},
    {"<g id='a'><rect width='8' height='8'/></g>",
     "a.svg:2:1: error: image 'a': there is no <rect class='box'> for its nominal size"},
    {"<g id='a'>" + kBox + kBox + "</g>", "a.svg:2:51: error: image 'a': <rect>: a second box"},
    {"<g id='a' transform='scale(2)'>" + kBox + "</g>",
     "a.svg:2:1: error: image 'a': the group of an image takes no transform"},
    {"<g id='a'>" + kBox + "</g>\n<g id='a'>" + kBox + "</g>",
     "a.svg:3:1: error: image 'a': there are two images of this id"},
    {"<g id='a-1'>" + kBox + "</g>",
     "a.svg:2:1: error: image 'a-1': the images of a range stand together, numbered from 0 without a gap"},
    {"<g id='a-0'>" + kBox + "</g><g id='a-2'>" + kBox + "</g>",
     "a.svg:2:57: error: image 'a-2': the images of a range stand together, numbered from 0 without a gap"},
    {"<g id='a-0'>" + kBox + "</g><g id='b'>" + kBox + "</g><g id='a-1'>" + kBox + "</g>",
     "a.svg:2:111: error: image 'a-1': the images of a range stand together, numbered from 0 without a gap"},
    {"<g id='a' data-alpha='2'>" + kBox + "</g>", "a.svg:2:1: error: image 'a': data-alpha='2' has no meaning here"},
    {"<g id='a' data-tile='z'>" + kBox + "</g>", "a.svg:2:1: error: image 'a': data-tile='z' has no meaning here"},
    {"<g id='a' data-alpha='1' data-colour='1'>" + kBox + "</g>",
     "a.svg:2:1: error: image 'a': data-alpha and data-colour exclude each other"},
    {"<g id='a'><rect class='box' width='8mm' height='8'/></g>",
     "a.svg:2:11: error: image 'a': <rect>: a box has x, y, width and height in pixels, of 1 to 4096, and no "
     "transform"},
    {"<g id='a'><rect class='box' width='8'/></g>",
     "a.svg:2:11: error: image 'a': <rect>: a box has x, y, width and height in pixels, of 1 to 4096, and no "
     "transform"},
    {withShape("<rect class='snip' id='r'/>"),
     "a.svg:2:51: error: image 'a': <rect> 'r': class 'snip' is none of box (once), snap, hair, hairfill"},
    {withShape("<rect class='snap hair'/>"),
     "a.svg:2:51: error: image 'a': <rect>: class 'snap hair' is none of box (once), snap, hair, hairfill"},
    {withShape("<path class='snap' d='M0 0h1'/>"),
     "a.svg:2:51: error: image 'a': <path>: class 'snap' has no meaning on this shape"},
    {withShape("<line class='hairfill'/>"),
     "a.svg:2:51: error: image 'a': <line>: class 'hairfill' has no meaning on this shape"},
    {withShape("<g transform='scale(2)'><rect class='snap' width='1' height='1'/></g>"),
     "a.svg:2:75: error: image 'a': <rect>: class 'snap' can't hold under a transform"},
    {withShape("<rect class='snap' width='50%' height='1'/>"),
     "a.svg:2:51: error: image 'a': <rect>: width='50%' is no length in pixels"},
    {withShape("<polyline class='snap' points='1 2 3'/>"),
     "a.svg:2:51: error: image 'a': <polyline>: its points aren't pairs of numbers, two or more"},
    {withShape("<polygon class='snap' points='1 2 3 x'/>"),
     "a.svg:2:51: error: image 'a': <polygon>: its points aren't pairs of numbers, two or more"},
    {withShape("<line class='hair' stroke='#fff' x2='3' y2='3'/>"),
     "a.svg:2:51: error: image 'a': <line>: a hairline is level or upright"},
    {withShape("<line class='hair' x2='3'/>"), "a.svg:2:51: error: image 'a': <line>: a hairline needs a stroke"},
    {withShape("<rect class='hairfill' width='2' height='3'/>"),
     "a.svg:2:51: error: image 'a': <rect>: one side of a 'hairfill' is 1"},
    {withShape("<rect fill='url(#none)'/>"),
     "a.svg:2:51: error: image 'a': <rect>: '#none' is neither in 'defs' nor in this image"},
    {withShape("<use xlink:href='#none'/>"),
     "a.svg:2:51: error: image 'a': <use>: '#none' is neither in 'defs' nor in this image"},
    {withShape("<image xlink:href='x.png'/>"),
     "a.svg:2:51: error: image 'a': <image>: a bitmap can't be drawn anew for each scale"},
    {"<defs><rect class='snap'/></defs>",
     "a.svg:2:7: error: image 'defs': <rect>: class 'snap' has no meaning here: what is shared has no place of its "
     "own"},
};

TEST(SvgSource, WithAFaultFailsWithFileShapeAndReason) {
    for (const CBadDrawing& bad : kBadDrawings) {
        EXPECT_EQ(svgFault(bad.content), bad.message) << bad.content;
    }
}

TEST(SvgSource, ThatIsNoDrawingIsRefused) {
    CSvgSource html, cut, missing;
    EXPECT_EQ(html.parse("a.svg", "<html/>")->message(), "a.svg: error: the file holds no drawing (an 'svg' element)");
    EXPECT_TRUE(cut.parse("a.svg", "<svg><g id='a'>")->message().starts_with("a.svg: error: malformed XML"));
    EXPECT_EQ(missing.load("/nowhere/a.svg")->message(), "/nowhere/a.svg: error: the file can't be opened");
}

TEST(SvgSource, GivesImagesTheIndexesOfTheirOrderAndRangesTheirNames) {
    CSvgSource source;
    ASSERT_FALSE(
        source.parse("a.svg", svgText("<title>Some</title><g id='Zed-0'>" + kBox + "</g><g id='Zed-1'>" + kBox +
                                      "</g><g id='default'>" + kBox + "</g><g id='Ab-c'>" + kBox + "</g>")));
    ASSERT_EQ(source.images().size(), 4u);
    ASSERT_EQ(source.ranges().size(), 3u);
    const CSvgRange kRanges[] = {{"Zed", 0, 1}, {"", 2, 2}, {"Ab-c", 3, 3}};
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(source.ranges()[i].name, kRanges[i].name);
        EXPECT_EQ(source.ranges()[i].first, kRanges[i].first);
        EXPECT_EQ(source.ranges()[i].last, kRanges[i].last);
    }
}

TEST(SvgSource, MayHoldWhatAnEditorLeavesInIt) {
    EXPECT_EQ(svgFault("<sodipodi:namedview xmlns:sodipodi='x' id='v'/><metadata/><style>.x{}</style><defs id='d'/>"
                       "<g id='a' xmlns:inkscape='y' inkscape:label='A'>" +
                       kBox + "</g>"),
              "");
}

}  // namespace
}  // namespace tarv
