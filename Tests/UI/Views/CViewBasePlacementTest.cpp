#include "UI/Views/CViewBasePlacement.h"

#include <gtest/gtest.h>

#include "Tests/UI/Views/ViewTree.h"

namespace tarv {
namespace {

class ViewPlacement : public CViewTest {
protected:
    /// First line of a failure.
    std::string failureOf(const CTexts& attributes) {
        const std::string text = tryOpen({}, {view("a", attributes)});
        return text.substr(0, text.find("\r\n"));
    }
    float cell(const std::string& path, CViewCell index) { return at(path).area().value(index); }
};

TEST_F(ViewPlacement, DefaultsAreInlineCompactAndCentred) {
    open({}, {view("a", {}, {view("inside", {{"width", "30"}, {"height", "10"}})})});
    const CViewArea& area = at("a").area();
    EXPECT_EQ(area.placement(), CViewPlacement::Inline);
    EXPECT_EQ(area.widthMode(), CViewLengthMode::Compact);
    EXPECT_EQ(area.heightMode(), CViewLengthMode::Compact);
    EXPECT_EQ(box("a"), "135,95 30x10");
    EXPECT_EQ(at("a").opacity(), 1.0);
    EXPECT_TRUE(at("a").isShown());
    EXPECT_FALSE(at("a").isDecorative());
    EXPECT_FALSE(at("a").isDynamic());
    EXPECT_FALSE(area.isScrollable());
    EXPECT_EQ(area.unclipLevel(), 0);
}

TEST_F(ViewPlacement, AViewWithoutChildrenHasNoContent) {
    open({}, {view("a")});
    EXPECT_EQ(cell("a", CViewCell::ContentWidth), 0.0f);
    EXPECT_EQ(cell("a", CViewCell::ContentHeight), 0.0f);
    EXPECT_EQ(cell("a", CViewCell::LayoutChildCount), 0.0f);
}

struct CPlacedRow {
    const char* what;
    std::vector<CTestNode> children;
    std::vector<std::pair<const char*, const char*>> boxes;
};

// In a root of 300 x 200, by hand.
const std::vector<CPlacedRow> kPlacedRows = {
    {"docked in turn",
     {view("t", {{"placement", "top"}, {"width", "full"}, {"height", "20"}}),
      view("b", {{"placement", "bottom"}, {"width", "100%"}, {"height", "30"}}),
      view("l", {{"placement", "left"}, {"width", "40"}, {"height", "full"}}),
      view("r", {{"placement", "right"}, {"width", "50"}, {"height", "full"}}),
      view("f", {{"placement", "full"}, {"width", "full"}, {"height", "full"}})},
     {{"t", "0,0 300x20"},
      {"b", "0,170 300x30"},
      {"l", "0,20 40x150"},
      {"r", "250,20 50x150"},
      {"f", "40,20 210x150"}}},
    {"two halves of one base",
     {view("a", {{"placement", "top"}, {"width", "full"}, {"height", "50%"}}),
      view("b", {{"placement", "top"}, {"width", "full"}, {"height", "50%"}})},
     {{"a", "0,0 300x100"}, {"b", "0,100 300x100"}}},
    {"more than all is all",
     {view("a", {{"placement", "top"}, {"width", "150%"}, {"height", "10"}})},
     {{"a", "0,0 300x10"}}},
    {"balanced children share",
     {view("a", {{"placement", "left"}, {"width", "balanced"}, {"height", "full"}}),
      view("b", {{"placement", "left"}, {"width", "balanced"}, {"height", "full"}}),
      view("c", {{"placement", "left"}, {"width", "balanced"}, {"height", "full"}})},
     {{"a", "0,0 100x200"}, {"b", "100,0 100x200"}, {"c", "200,0 100x200"}}},
    {"a least size",
     {view("a", {{"placement", "left"},
                 {"width", "5"},
                 {"min-width", "25"},
                 {"height", "5"},
                 {"min-height", "10%"},
                 {"alignment-v", "top"}})},
     {{"a", "0,0 25x20"}}},
    {"borders around and inside",
     {view("a",
           {{"placement", "full"},
            {"width", "full"},
            {"height", "full"},
            {"outer-border", "1 *L2"},
            {"inner-border", "10"}},
           {view("in", {{"placement", "full"}, {"width", "full"}, {"height", "full"}})})},
     {{"a", "3,1 296x198"}, {"a.in", "13,11 276x178"}}},
    {"no number is no border",
     {view("a", {{"placement", "overlay"}, {"width", "9"}, {"height", "9"}, {"outer-border", "7 abc"}})},
     {{"a", "0,0 9x9"}}},
    {"alignments in the free space",
     {view("a", {{"placement", "top"}, {"width", "20"}, {"height", "10"}, {"alignment-h", "left"}}),
      view("b", {{"placement", "top"}, {"width", "20"}, {"height", "10"}}),
      view("c", {{"placement", "top"}, {"width", "20"}, {"height", "10"}, {"alignment-h", "right"}}),
      view("d", {{"placement", "left"}, {"width", "20"}, {"height", "10"}, {"alignment-v", "bottom"}})},
     {{"a", "0,0 20x10"}, {"b", "140,10 20x10"}, {"c", "280,20 20x10"}, {"d", "0,190 20x10"}}},
    {"rows, also broken by a hidden child",
     {view("p",
           {{"placement", "full"},
            {"width", "full"},
            {"height", "full"},
            {"inline-alignment-h", "left"},
            {"inline-alignment-v", "top"}},
           {view("a", {{"width", "20"}, {"height", "10"}}), view("b", {{"width", "20"}, {"height", "10"}}),
            view("h", {{"is-visible", "false"}, {"is-new-inline-row", "true"}}),
            view("c", {{"width", "20"}, {"height", "10"}})})},
     {{"p.a", "0,0 20x10"}, {"p.b", "20,0 20x10"}, {"p.c", "0,10 20x10"}}},
    {"rows that run down",
     {view("p",
           {{"placement", "full"},
            {"width", "full"},
            {"height", "full"},
            {"is-inline-vertical", "true"},
            {"inline-alignment-h", "right"},
            {"inline-alignment-v", "bottom"}},
           {view("a", {{"width", "20"}, {"height", "10"}}), view("b", {{"width", "20"}, {"height", "10"}})})},
     {{"p.a", "280,180 20x10"}, {"p.b", "280,190 20x10"}}},
    {"content of its own size",
     {view("a", {{"placement", "left"}, {"compact-width", "33"}, {"compact-height", "22"}, {"alignment-v", "top"}})},
     {{"a", "0,0 33x22"}}},
    {"floats and a match",
     {view("p", {{"placement", "left"}, {"width", "100"}, {"height", "full"}, {"inner-border", "10"}},
           {view("o", {{"placement", "overlay"}, {"width", "full"}, {"height", "full"}}),
            view("win", {{"placement", "window-overlay"}, {"width", "full"}, {"height", "full"}}),
            view("m", {{"placement", "match"}, {"placement-match", "^.o"}})})},
     {{"p.o", "0,0 100x200"}, {"p.win", "0,0 300x200"}, {"p.m", "0,0 100x200"}}},
};

TEST_F(ViewPlacement, AttributesOfADefinitionPlaceTheViews) {
    for (const CPlacedRow& row : kPlacedRows) {
        SCOPED_TRACE(row.what);
        open({}, row.children);
        for (const auto& [path, expected] : row.boxes)
            EXPECT_EQ(box(path), expected) << path;
    }
}

TEST_F(ViewPlacement, ScrollAttributesReachTheirCells) {
    open({}, {view("s",
                   {{"is-scrollable", "true"},
                    {"width", "110"},
                    {"height", "60"},
                    {"scroller-width", "10"},
                    {"scroller-height", "12"},
                    {"min-ratio-x", "0.25"},
                    {"ratio-x", "0.1"},
                    {"ratio-y", "0.5"},
                    {"offset-x", "0.5"},
                    {"offset-y", "0.25"}},
                   {view("h", {{"placement", "scroller-h"}, {"width", "full"}, {"height", "12"}})}),
              view("plain", {{"ratio-x", "0.5"}, {"offset-x", "0.5"}, {"scroller-width", "7"}})});
    EXPECT_EQ(cell("s", CViewCell::RatioX), 0.25f);
    EXPECT_EQ(cell("s", CViewCell::RatioY), 0.5f);
    EXPECT_EQ(cell("s", CViewCell::OffsetX), 0.5f);
    EXPECT_EQ(cell("s", CViewCell::OffsetY), 0.25f);
    EXPECT_EQ(cell("s", CViewCell::ScrollerWidth), 10.0f);
    EXPECT_EQ(cell("s", CViewCell::ScrollerHeight), 12.0f);
    EXPECT_EQ(at("s.h").area().placement(), CViewPlacement::ScrollerH);
    // 100 pixels show a quarter of the content.
    EXPECT_EQ(at("s").area().getWholeRect().width, 400.0);
    set(at("s"), "offset-x", "2");
    EXPECT_EQ(cell("s", CViewCell::OffsetX), 0.75f);
    set(at("s"), "min-ratio-y", "0");
    set(at("s"), "ratio-y", "0");
    EXPECT_NEAR(cell("s", CViewCell::RatioY), 0.0001f, 1e-9f);
    EXPECT_FALSE(at("plain").area().isScrollable());
}

TEST_F(ViewPlacement, AScrollerElsewhereIsLoggedAndStandsInline) {
    const CLogCapture log;
    open({}, {view("a", {{"placement", "scroller-v"}})});
    EXPECT_TRUE(log.has("Invalid placement 11, parent view does not support scrolling"));
    EXPECT_EQ(at("a").area().placement(), CViewPlacement::Inline);
}

TEST_F(ViewPlacement, TextsThatNameNothingFailInTheirWords) {
    const std::pair<CTexts, const char*> rows[] = {
        {{{"placement", "middle"}}, "Invalid placement 'middle'."},
        {{{"placement", "match"}}, "Invalid match ''."},
        {{{"placement", "match"}, {"placement-match", "^.nobody"}}, "Invalid match '^.nobody'."},
        {{{"placement", "match"}, {"placement-match", "."}}, "Invalid match '.'."},
        {{{"alignment-h", "top"}}, "Invalid alignment-h 'top'."},
        {{{"alignment-v", "left"}}, "Invalid alignment-v 'left'."},
        {{{"inline-alignment-h", "x"}}, "Invalid inline-alignment-h 'x'."},
        {{{"inline-alignment-v", "x"}}, "Invalid inline-alignment-v 'x'."},
    };
    for (const auto& [attributes, message] : rows)
        EXPECT_EQ(failureOf(attributes), message);
    EXPECT_EQ(failureOf({{"placement", ""}, {"alignment-h", ""}, {"inline-alignment-v", ""}}), "");
}

TEST_F(ViewPlacement, AViewWithoutAViewAboveFails) {
    const auto root = application_.makeRoot();
    EXPECT_EQ(consumed(loadTree(*root, {view("a")})).substr(0, 29), "Unable to locate parent view.");
    // A view above that has not begun has no root.
    CObject* parent = nullptr;
    CObject* child = nullptr;
    ASSERT_EQ(consumed(root->addChild(parent, "ui:view", "p", false)), "");
    ASSERT_EQ(consumed(parent->addChild(child, "ui:view", "c", false)), "");
    EXPECT_EQ(consumed(child->init()).substr(0, 27), "Unable to locate root view.");
}

TEST_F(ViewPlacement, ChangesOfAttributesMoveViews) {
    open({}, {view("a", {{"placement", "left"}, {"width", "20"}, {"height", "full"}}),
              view("b", {{"placement", "left"}, {"width", "20"}, {"height", "full"}})});
    set(at("a"), "width", "50");
    flush();
    EXPECT_EQ(box("b"), "50,0 20x200");
    set(at("a"), "is-visible", "false");
    flush();
    EXPECT_EQ(box("b"), "0,0 20x200");
    EXPECT_FALSE(at("a").isShown());
    set(at("a"), "is-visible", "");
    set(at("a"), "placement", "top");
    flush();
    EXPECT_EQ(box("b"), "0,200 20x0");
}

TEST_F(ViewPlacement, WhatIsSetBeforeTheStartCountsAfterIt) {
    CView& root = open({}, {});
    CObject* child = nullptr;
    ASSERT_EQ(consumed(root.addChild(child, "ui:view", "late", false)), "");
    set(*child, "width", "33");
    set(*child, "height", "11");
    ASSERT_EQ(consumed(child->init()), "");
    ASSERT_EQ(consumed(child->initChildren()), "");
    ASSERT_EQ(consumed(child->finishInit()), "");
    flush();
    EXPECT_EQ(box("late").substr(box("late").find(' ')), " 33x11");
}

TEST_F(ViewPlacement, SpreadGrowsTheRectanglesAndNotTheBox) {
    open({}, {view("a", {{"placement", "overlay"},
                         {"width", "20"},
                         {"height", "10"},
                         {"outer-border", "50"},
                         {"spread", "2.25"}})});
    EXPECT_EQ(box("a"), "50,50 20x10");
    EXPECT_EQ(at("a").visibleRect(), (CViewRect{47.75, 47.75, 24.5, 14.5}));
    EXPECT_EQ(at("a").wholeRect(), (CViewRect{47.75, 47.75, 24.5, 14.5}));
}

TEST_F(ViewPlacement, UnclippingGoesDownAtLoad) {
    open({}, {view("a", {{"unclip-level", "1"}}, {view("b", {}, {view("c", {{"unclip-level", "0"}})})}),
              view("all", {{"unclip-level", "-1"}}, {view("b")})});
    EXPECT_EQ(at("a.b").area().unclipLevel(), 2);
    EXPECT_EQ(at("a.b.c").area().unclipLevel(), 0);
    EXPECT_EQ(at("all.b").area().unclipLevel(), -1);
}

TEST_F(ViewPlacement, AViewEscapesTheClipOfItsParentAndNotOfTheNext) {
    open(
        {},
        {view("g", {{"placement", "overlay"}, {"width", "50"}, {"height", "50"}},
              {view("p", {{"placement", "overlay"}, {"width", "20"}, {"height", "20"}},
                    {view("a",
                          {{"placement", "overlay"}, {"width", "100"}, {"height", "100"}, {"unclip-level", "1"}})})})});
    EXPECT_EQ(at("g.p.a").visibleRect(), (CViewRect{0.0, 0.0, 50.0, 50.0}));
}

TEST_F(ViewPlacement, DecorativeAndDynamicAreInherited) {
    open({}, {view("d", {{"is-decorative", "true"}}, {view("a"), view("b", {{"is-decorative", "false"}})}),
              view("y", {{"is-dynamic", "true"}},
                   {view("a"), view("b", {{"is-force-non-dynamic", "true"}}, {view("c")})})});
    EXPECT_TRUE(at("d.a").isDecorative());
    EXPECT_FALSE(at("d.b").isDecorative());
    EXPECT_TRUE(at("y.a").isDynamic());
    EXPECT_FALSE(at("y.b").isDynamic());
    EXPECT_FALSE(at("y.b.c").isDynamic());
    set(at("y"), "is-dynamic", "false");
    set(at("d"), "is-decorative", "");
    EXPECT_FALSE(at("y.a").isDynamic());
    EXPECT_FALSE(at("d.a").isDecorative());
}

TEST_F(ViewPlacement, VerticalRowsAreInheritedByTheExpressionOfTheDefinition) {
    open({{"is-inline-vertical", "true"}}, {view("a", {{"is-inline-vertical", "{/^ is-inline-vertical}"}}), view("b")});
    EXPECT_TRUE(at("a").area().isInlineVertical());
    EXPECT_FALSE(at("b").area().isInlineVertical());
}

TEST_F(ViewPlacement, OpacityIsTheProductDownTheTree) {
    open({}, {view("a", {{"opacity", "0.5"}}, {view("b", {{"opacity", "0.25"}}, {view("c")})})});
    EXPECT_EQ(at("a.b.c").effectiveOpacity(), 0.125);
    set(at("a"), "opacity", "2");
    EXPECT_EQ(at("a").opacity(), 1.0);
    EXPECT_EQ(at("a.b.c").effectiveOpacity(), 0.25);
    set(at("a.b"), "opacity", "");
    EXPECT_EQ(at("a.b.c").effectiveOpacity(), 1.0);
}

TEST_F(ViewPlacement, StackingNumbersFollowTheirFormula) {
    const CLogCapture log;
    open({{"z-index", "7"}},
         {view("a", {}, {view("in", {{"z-index", "50"}}), view("dyn", {{"is-dynamic", "true"}})}),
          view("b", {{"z-index", "200000000"}}),
          view("c", {{"z-index-static-childs", "900"}, {"z-index-dynamic-childs", "110000000"}},
               {view("s"), view("d", {{"is-dynamic", "true"}}), view("below", {{"z-index", "-1 ^^"}}),
                view("lost", {{"z-index", "3 ^.nobody"}})})});
    EXPECT_EQ(at("a").parentPlacement()->stackingNumber(), 7);
    const int64_t a = 7 + 1 + 1000 + 100000;
    EXPECT_EQ(at("a").stackingNumber(), a);
    EXPECT_EQ(at("a.in").stackingNumber(), a + 50 + 1 + 1000);
    EXPECT_EQ(at("a.dyn").stackingNumber(), a + 2 + 1500);
    EXPECT_EQ(at("b").stackingNumber(), 200000000 + 7 + 2 + 1000 + 200000);
    EXPECT_EQ(at("c.s").stackingNumber(), 900 + 1 + 1000);
    EXPECT_EQ(at("c.d").stackingNumber(), 110000000 + 2 + 1500);
    EXPECT_EQ(at("c.below").stackingNumber(), 7 - 1);
    EXPECT_EQ(at("c.lost").stackingNumber(), 3 + 900 + 4 + 1000);
    EXPECT_TRUE(log.has("Z-index target not found: ^.nobody // ui.w.c.lost"));
}

TEST_F(ViewPlacement, ChildrenMadeLaterStandAboveEarlierOnesAlsoWhenSomeHaveGone) {
    CView& root = open({}, {view("a"), view("b")});
    delete &at("a");
    CView* late = nullptr;
    ASSERT_EQ(consumed(root.createChildOf<CView>(late, "ui:view", "late", false)), "");
    EXPECT_EQ(late->stackingNumber() - at("b").stackingNumber(), 100001);
}

}  // namespace
}  // namespace tarv
