// One small tree for each rule of placement, with its rectangles counted by hand.

#include <gtest/gtest.h>

#include "Tests/Core/LogCapture.h"
#include "Tests/UI/Placement/PlacedView.h"

namespace tarv {
namespace {

CViewLength pixels(double value) {
    return {CViewLengthMode::Fixed, value};
}
CViewLength percent(double value) {
    return {CViewLengthMode::Percentage, value / 100.0};
}
const CViewLength kBalanced{CViewLengthMode::Balanced, 0.0};

/// A child of that placement and size.
CPlacing placed(CViewPlacement placement, const CViewLength& width, const CViewLength& height) {
    CPlacing p;
    p.placement = placement;
    p.width = width;
    p.height = height;
    return p;
}

CPlacing window(double width, double height) {
    return placed(CViewPlacement::Full, pixels(width), pixels(height));
}

struct CPlacementCase {
    const char* name;
    CPlacing root;
    std::vector<CPlacing> children;
    std::vector<CViewRect> boxes;
};

void expectBoxes(const CPlacementCase& c) {
    CPlacingNode node{c.root, {}};
    for (const CPlacing& child : c.children) {
        node.children.push_back({child, {}});
    }
    const auto root = makeViews(node);
    ASSERT_EQ(root->children.size(), c.boxes.size()) << c.name;
    for (size_t i = 0; i < c.boxes.size(); ++i) {
        const CViewRect box = root->children[i]->area->box();
        EXPECT_EQ(box, c.boxes[i]) << c.name << ", child " << i << ": " << box.x << " " << box.y << " " << box.width
                                   << " " << box.height;
    }
}

using enum CViewPlacement;

TEST(Placement, DockedChildrenTakeTheirSidesInTurn) {
    expectBoxes({"four sides and the rest",
                 window(200, 100),
                 {placed(Top, percent(100), pixels(10)), placed(Left, pixels(30), percent(100)),
                  placed(Right, pixels(20), percent(100)), placed(Bottom, percent(100), pixels(15)),
                  placed(Full, percent(100), percent(100))},
                 {{0, 0, 200, 10}, {0, 10, 30, 90}, {180, 10, 20, 90}, {30, 85, 150, 15}, {30, 10, 150, 75}}});
}

TEST(Placement, ARunOfOneSideAndModeSharesItsBase) {
    expectBoxes({"two halves of the same base",
                 window(100, 80),
                 {placed(Top, pixels(40), percent(50)), placed(Top, pixels(40), percent(50))},
                 {{30, 0, 40, 40}, {30, 40, 40, 40}}});
    expectBoxes({"another side begins a new base",
                 window(100, 80),
                 {placed(Top, percent(100), percent(50)), placed(Left, percent(50), percent(100)),
                  placed(Right, percent(50), percent(100))},
                 {{0, 0, 100, 40}, {0, 40, 50, 40}, {75, 40, 25, 40}}});
    expectBoxes({"another mode begins a new base",
                 window(100, 80),
                 {placed(Top, percent(100), percent(50)), placed(Top, pixels(40), percent(50))},
                 {{0, 0, 100, 40}, {30, 40, 40, 20}}});
    expectBoxes({"a full child does, too",
                 window(100, 80),
                 {placed(Top, percent(50), percent(50)), placed(Full, percent(50), percent(50))},
                 {{25, 0, 50, 40}, {25, 50, 50, 20}}});
}

TEST(Placement, AlignmentDividesTheFreeSpaceAcross) {
    for (const int32_t alignment : {-1, 0, 1}) {
        CPlacing top = placed(Top, pixels(41), pixels(10));
        top.alignmentH = alignment;
        CPlacing full = placed(Full, pixels(50), pixels(20));
        full.alignmentH = alignment;
        full.alignmentV = -alignment;
        const double half = 30;  // 29.5, rounded
        expectBoxes({"across",
                     window(100, 60),
                     {top, full},
                     {{alignment == -1  ? 0
                       : alignment == 0 ? half
                                        : 59,
                       0, 41, 10},
                      {alignment == -1  ? 0
                       : alignment == 0 ? 25.0
                                        : 50.0,
                       alignment == 1   ? 10
                       : alignment == 0 ? 25.0
                                        : 40.0,
                       50, 20}}});
    }
}

TEST(Placement, RightAndBottomTakeTheWholeSpaceWhateverTheAlignment) {
    for (const int32_t alignment : {-1, 0, 1}) {
        CPlacing right = placed(Right, pixels(20), percent(100));
        right.alignmentH = alignment;
        CPlacing bottom = placed(Bottom, percent(100), pixels(10));
        bottom.alignmentV = alignment;
        expectBoxes({"ends", window(100, 60), {right, bottom}, {{80, 0, 20, 60}, {0, 50, 80, 10}}});
    }
}

TEST(Placement, BordersKeepChildrenApart) {
    CPlacing root = window(100, 60);
    root.inner = {1, 2, 3, 4};  // bottom, left, right, top
    CPlacing left = placed(Left, pixels(10), percent(100));
    left.outer = {5, 6, 7, 8};
    CPlacing rest = placed(Full, percent(100), percent(100));
    rest.outer = {1, 1, 1, 1};
    expectBoxes({"inner and outer", root, {left, rest}, {{8, 12, 10, 42}, {26, 5, 70, 53}}});
}

TEST(Placement, InlineChildrenStandInRows) {
    CPlacing root = window(100, 60);
    root.inlineAlignmentH = -1;
    root.inlineAlignmentV = -1;
    CPlacing a = placed(Inline, pixels(20), pixels(10));
    CPlacing b = placed(Inline, pixels(30), pixels(20));
    CPlacing c = placed(Inline, pixels(10), pixels(6));
    c.isNewRow = true;
    expectBoxes({"rows from the top left", root, {a, b, c}, {{0, 5, 20, 10}, {20, 0, 30, 20}, {0, 20, 10, 6}}});
    root.inlineAlignmentH = 0;
    root.inlineAlignmentV = 0;
    expectBoxes({"rows in the middle", root, {a, b, c}, {{25, 22, 20, 10}, {45, 17, 30, 20}, {45, 37, 10, 6}}});
    root.inlineAlignmentH = 1;
    root.inlineAlignmentV = 1;
    expectBoxes({"rows at the end", root, {a, b, c}, {{50, 39, 20, 10}, {70, 34, 30, 20}, {90, 54, 10, 6}}});
    root.isVertical = true;
    expectBoxes({"columns at the end", root, {a, b, c}, {{65, 30, 20, 10}, {60, 40, 30, 20}, {90, 54, 10, 6}}});
}

TEST(Placement, AHiddenChildWithANewRowStillBreaksTheRow) {
    CPlacing root = window(100, 60);
    root.inlineAlignmentH = -1;
    root.inlineAlignmentV = -1;
    const CPlacing a = placed(Inline, pixels(20), pixels(10));
    CPlacing hidden = a;
    hidden.isNewRow = true;
    hidden.isVisible = false;
    expectBoxes({"a break", root, {a, hidden, a}, {{0, 0, 20, 10}, {0, 0, 20, 10}, {0, 10, 20, 10}}});
    hidden.isNewRow = false;
    expectBoxes({"no break", root, {a, hidden, a}, {{0, 0, 20, 10}, {0, 0, 20, 10}, {20, 0, 20, 10}}});
}

TEST(Placement, BalancedChildrenShareTheBaseEqually) {
    CPlacing child = placed(Left, kBalanced, percent(100));
    child.outer = {0, 1, 1, 0};
    expectBoxes({"three", window(90, 30), {child, child, child}, {{1, 0, 28, 30}, {31, 0, 28, 30}, {61, 0, 28, 30}}});
    CPlacing overlay = placed(Overlay, kBalanced, percent(100));
    expectBoxes({"none that counts", window(90, 30), {overlay}, {{0, 0, 90, 30}}});
}

TEST(Placement, PercentagesAreHeldAndMinimaCount) {
    expectBoxes({"150 %", window(90, 30), {placed(Left, percent(150), percent(100))}, {{0, 0, 135, 30}}});
    CPlacing child = placed(Left, percent(10), pixels(5));
    child.minWidth = pixels(20);
    child.minHeight = percent(50);
    child.alignmentV = -1;
    expectBoxes({"minima", window(90, 30), {child}, {{0, 0, 20, 15}}});
}

TEST(Placement, ACompactSizeIsThatOfTheContent) {
    CPlacing root;
    root.inner = {1, 1, 1, 1};
    CPlacingNode node{root, {}};
    node.children.push_back({placed(Top, pixels(30), pixels(10)), {}});
    node.children.push_back({placed(Left, pixels(12), pixels(25)), {}});
    node.children.push_back({placed(Full, pixels(20), pixels(8)), {}});
    auto views = makeViews(node);
    // Across: 12 + 20 beside each other, against 30; down: 10 and 8 below each other, against 25.
    EXPECT_EQ(views->area->box(), (CViewRect{0, 0, 34, 27}));
    node.children.push_back({placed(Inline, pixels(7), pixels(3)), {}});
    views = makeViews(node);
    EXPECT_EQ(views->area->box(), (CViewRect{0, 0, 41, 27}));
    views->area->setCompactWidth(50);
    views->area->setCompactHeight(60);
    views->flush();
    EXPECT_EQ(views->area->box(), (CViewRect{0, 0, 52, 62}));
    EXPECT_EQ(views->children[0]->area->value(CViewCell::ContentWidth), 0.0f);
    EXPECT_EQ(views->children[0]->area->value(CViewCell::LayoutChildCount), 0.0f);
    EXPECT_EQ(views->area->value(CViewCell::LayoutChildCount), 4.0f);
}

TEST(Placement, ManyChildrenGoThroughCellsInBetween) {
    CPlacingNode node;
    for (int32_t i = 0; i < 400; ++i) {
        node.children.push_back({placed(Inline, pixels(1.0 + i % 3), pixels(5)), {}});
    }
    const auto views = makeViews(node);
    EXPECT_EQ(views->area->box().width, 133 * 6 + 1);
    EXPECT_EQ(views->children[399]->area->box().right(), 133 * 6 + 1);
    views->children[0]->area->setWidth(pixels(11));
    views->flush();
    EXPECT_EQ(views->area->box().width, 133 * 6 + 11);
    EXPECT_EQ(views->children[399]->area->box().right(), 133 * 6 + 11);
}

TEST(Placement, FloatingChildrenTakeNoSpace) {
    CPlacing root = window(100, 60);
    root.inner = {5, 5, 5, 5};
    CPlacing overlay = placed(Overlay, percent(50), pixels(10));
    overlay.outer = {0, 3, 0, 2};
    expectBoxes({"an overlay fills the box",
                 root,
                 {overlay, placed(Full, percent(100), percent(100))},
                 {{3, 2, 47, 10}, {5, 5, 90, 50}}});
}

TEST(Placement, AnOverlayIsNotClippedByTheInnerBorder) {
    CPlacingNode node{window(100, 60), {}};
    node.placing.inner = {5, 5, 5, 5};
    CPlacing panel = placed(Left, pixels(40), pixels(30));
    panel.inner = {4, 4, 4, 4};
    CPlacingNode inner{panel, {}};
    inner.children.push_back({placed(Overlay, percent(100), percent(100)), {}});
    inner.children.push_back({placed(Full, pixels(40), pixels(30)), {}});
    inner.children.push_back({placed(WindowOverlay, percent(100), percent(100)), {}});
    node.children.push_back(inner);
    const auto views = makeViews(node);
    const auto& children = views->children[0]->children;
    EXPECT_EQ(children[0]->visible, (CViewRect{5, 15, 40, 30}));
    EXPECT_EQ(children[1]->visible, (CViewRect{9, 19, 32, 22}));
    EXPECT_EQ(children[2]->visible, (CViewRect{0, 0, 100, 60})) << "only the root clips it";
}

TEST(Placement, UnclipLevelCountsTheAncestorsThatDoNotClip) {
    for (const int32_t level : {-1, 0, 1, 2}) {
        CPlacingNode node{window(100, 100), {}};
        CPlacing outer = placed(Left, pixels(50), pixels(50));
        outer.alignmentV = -1;
        CPlacing inner = placed(Left, pixels(20), pixels(20));
        inner.alignmentV = -1;
        CPlacing leaf = placed(Left, pixels(200), pixels(10));
        leaf.alignmentV = -1;
        leaf.unclipLevel = level;
        node.children.push_back({outer, {{inner, {{leaf, {}}}}}});
        const auto views = makeViews(node);
        const double expected[] = {100, 20, 50, 100};
        EXPECT_EQ(views->children[0]->children[0]->children[0]->visible.width, expected[level + 1]) << level;
    }
}

TEST(Placement, AViewOfUnclipLevelMinusOneInAHiddenParentIsHidden) {
    CPlacingNode node{window(100, 100), {}};
    CPlacing parent = placed(Left, pixels(50), pixels(50));
    parent.isVisible = false;
    CPlacing leaf = placed(Left, pixels(20), pixels(10));
    leaf.unclipLevel = -1;
    node.children.push_back({parent, {{leaf, {}}}});
    const auto views = makeViews(node);
    EXPECT_TRUE(views->children[0]->children[0]->visible.isEmpty());
    views->children[0]->area->setVisible(true);
    views->flush();
    EXPECT_EQ(views->children[0]->children[0]->visible.width, 20);
}

TEST(Placement, AMatchFollowsItsTargetAndKeepsTheLastBoxWhenItDies) {
    CPlacingNode node{window(100, 100), {}};
    node.children.push_back({placed(Left, pixels(50), pixels(30)), {}});
    CPlacing match = placed(Match, pixels(5), pixels(5));
    match.match = 1;
    node.children.push_back({match, {}});
    const auto views = makeViews(node);
    CViewArea& follower = *views->children[1]->area;
    EXPECT_EQ(follower.box(), (CViewRect{0, 35, 50, 30}));
    views->children[0]->area->setWidth(pixels(60));
    views->flush();
    EXPECT_EQ(follower.box(), (CViewRect{0, 35, 60, 30}));
    views->children.erase(views->children.begin());
    views->flush();
    EXPECT_EQ(follower.matchTarget(), nullptr);
    EXPECT_EQ(follower.box(), (CViewRect{0, 35, 60, 30}));
    follower.setPlacement(Full);
    views->flush();
    EXPECT_EQ(follower.box(), (CViewRect{48, 48, 5, 5})) << "its own size is back";
}

TEST(Placement, AMatchInAnotherWindowIsNone) {
    CPlacedView other(window(10, 10));
    CPlacedView root(window(100, 100));
    CPlacedView& child = root.add(placed(Match, pixels(5), pixels(5)));
    child.area->setMatchTarget(other.area.get());
    EXPECT_EQ(child.area->matchTarget(), nullptr);
}

CPlacing scrolling() {
    CPlacing p = placed(Full, pixels(110), pixels(60));
    p.isScrollable = true;
    p.scrollerWidth = 10;
    p.scrollerHeight = 8;
    p.ratioX = 0.5;
    p.ratioY = 0.25;
    p.offsetX = 0.25;
    p.offsetY = 0.75;
    return p;
}

TEST(Placement, AScrollingViewOffersItsContent) {
    CPlacingNode node{scrolling(), {}};
    node.children.push_back({placed(Full, percent(100), percent(100)), {}});
    node.children.push_back({placed(ScrollerH, percent(100), pixels(8)), {}});
    node.children.push_back({placed(ScrollerV, pixels(10), percent(100)), {}});
    node.children.push_back({placed(ScrollerP, pixels(10), pixels(8)), {}});
    const auto views = makeViews(node);
    // The content: 100 / 0.5 by 52 / 0.25, moved by a quarter and three quarters of it.
    EXPECT_EQ(views->whole, (CViewRect{-50, -156, 200, 208}));
    EXPECT_EQ(views->children[0]->area->box(), (CViewRect{-50, -156, 200, 208}));
    EXPECT_EQ(views->children[1]->area->box(), (CViewRect{0, 52, 100, 8}));
    EXPECT_EQ(views->children[2]->area->box(), (CViewRect{100, 0, 10, 52}));
    EXPECT_EQ(views->children[3]->area->box(), (CViewRect{100, 52, 10, 8}));
    EXPECT_EQ(views->children[1]->visible, (CViewRect{0, 52, 100, 8}));
}

TEST(Placement, OffsetsAndRatiosAreHeld) {
    CPlacedView root(scrolling());
    root.area->setOffsetX(0.9);
    EXPECT_EQ(root.area->value(CViewCell::OffsetX), 0.5f);
    root.area->setOffsetX(-1);
    EXPECT_EQ(root.area->value(CViewCell::OffsetX), 0.0f);
    root.area->setOffsetX(0.5);
    root.area->setRatioX(0.75);
    EXPECT_EQ(root.area->value(CViewCell::OffsetX), 0.25f) << "the end stays the end";
    root.area->setRatioX(7);
    EXPECT_EQ(root.area->value(CViewCell::RatioX), 1.0f);
    root.area->setMinRatioX(0.125);
    root.area->setRatioX(0);
    EXPECT_EQ(root.area->value(CViewCell::RatioX), 0.125f);
    CPlacedView plain(window(10, 10));
    plain.area->setOffsetX(0.5);
    plain.area->setRatioX(0.5);
    plain.area->setScrollerWidth(3);
    EXPECT_EQ(plain.area->net().cellCount(), kViewCells);
}

TEST(Placement, AScrollerNeedsAParentThatScrolls) {
    CLogCapture log;
    CPlacedView root(window(100, 100));
    CPlacedView& child = root.add(placed(ScrollerV, pixels(5), pixels(5)));
    EXPECT_EQ(child.area->placement(), Inline);
    EXPECT_TRUE(log.has("Invalid placement 11, parent view does not support scrolling"));
}

TEST(Placement, SpreadGrowsTheRectanglesAndNotTheBox) {
    CPlacingNode node{window(100, 100), {}};
    CPlacing child = placed(Left, pixels(50), pixels(30));
    child.spread = {1, 2, 3, 4};
    node.children.push_back({child, {}});
    const auto views = makeViews(node);
    EXPECT_EQ(views->children[0]->area->box(), (CViewRect{0, 35, 50, 30}));
    EXPECT_EQ(views->children[0]->whole, (CViewRect{-2, 31, 55, 35}));
    EXPECT_EQ(views->children[0]->visible, (CViewRect{0, 31, 53, 35}));
}

}  // namespace
}  // namespace tarv
