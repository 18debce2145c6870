// Lists below the rows of popup lists.

#include "Tests/UI/Text/PopupListTree.h"

namespace tarv {
namespace {

using CPopupListNesting = CPopupListTree;

TEST_F(CPopupListNesting, ADynamicListOpensTheListBelowARowBesideIt) {
    openOpener();
    openList({{"popup-text-source", ".presets"}, {"list-id", "L"}});
    EXPECT_EQ(rows(*list()), "Session|Plain");
    choose(*list(), 0);
    system.advance(0.1);
    CPopupList* below = list("window-app-popup-list#1");
    ASSERT_TRUE(below);
    ASSERT_TRUE(list());
    EXPECT_EQ(rows(*below), "One|Two");
    EXPECT_EQ(below->parent()->getAttrString("popup-dynamic-list-parent-id"), "s");
    EXPECT_EQ(windowOf(*below).screenBounds().left, windowOf(*list()).screenBounds().right);
    EXPECT_EQ(windowOf(*below).keyFocusView(), below);
    tap(kKeyLeft);
    system.advance(0.1);
    EXPECT_FALSE(list("window-app-popup-list#1"));
    ASSERT_TRUE(list());
    EXPECT_EQ(windowOf(*list()).keyFocusView(), list()) << "the keys come back";
    tap(kKeyRight);
    system.advance(0.1);
    below = list("window-app-popup-list#1") ? list("window-app-popup-list#1") : list("window-app-popup-list#2");
    ASSERT_TRUE(below);
    heard();
    choose(*below, 1);
    EXPECT_EQ(at("opener").params.at("id").asString(), "s2");
    EXPECT_EQ(at("opener").params.at("index").asInt(), 1);
    EXPECT_EQ(at("opener").params.at("list-id").asString(), "L");
    system.advance(0.1);
    EXPECT_EQ(system.desktop().windowCount(), 1);
    EXPECT_FALSE(window().isBlocked());
    EXPECT_EQ(window().popups().count(), 0);
}

TEST_F(CPopupListNesting, RowsWithListsBelowThemAndCheckedOnesHaveAPictureBehindTheirText) {
    openOpener();
    openList({{"popup-text-source", ".presets"}, {"popup-dynamic-list-parent-id", "deep"}});
    ASSERT_TRUE(list());
    EXPECT_EQ(list()->source().images().count(), 2);
    EXPECT_EQ(list()->source().images()[0].range, CString("ArrowRight"));
    EXPECT_EQ(list()->source().images()[1].range, CString("Check"));
    choose(*list(), 1);
    EXPECT_EQ(at("opener").params.at("text").asString(), "[B]here[/B]");
    EXPECT_EQ(at("opener").params.at("id").asString(), "here");
}

TEST_F(CPopupListNesting, APointerThatRestsOnARowOpensTheListBelowIt) {
    openOpener();
    openList({{"popup-text-source", ".presets"}});
    system.advance(0.2);
    moveOnto(*list(), 0);
    system.advance(0.2);
    EXPECT_FALSE(list("window-app-popup-list#1"));
    moveOnto(*list(), 1);
    system.advance(0.5);
    EXPECT_FALSE(list("window-app-popup-list#1")) << "there is none below this row";
    moveOnto(*list(), 0);
    system.advance(0.2);
    EXPECT_FALSE(list("window-app-popup-list#1"));
    system.advance(0.1);
    ASSERT_TRUE(list("window-app-popup-list#1"));
    EXPECT_EQ(rows(*list("window-app-popup-list#1")), "One|Two");
    tap(kKeyLeft);
    system.advance(1.0);
    EXPECT_FALSE(list("window-app-popup-list#1")) << "it opens once";
    ASSERT_TRUE(list());
}

TEST_F(CPopupListNesting, APressBeforeThatOpensTheListOnce) {
    openOpener();
    openList({{"popup-text-source", ".presets"}});
    system.advance(0.2);
    choose(*list(), 0);
    system.advance(1.0);
    ASSERT_TRUE(list("window-app-popup-list#1"));
    EXPECT_EQ(system.desktop().windowCount(), 3);
}

TEST_F(CPopupListNesting, ListsThatNestTooDeepAreLoggedAndOpenNoMore) {
    openOpener();
    openList({{"popup-text-source", ".presets"}, {"popup-dynamic-list-parent-id", "deep"}});
    const CLogCapture log;
    const auto isLogged = [&] {
        return std::any_of(log.lines.begin(), log.lines.end(), [](const std::string& line) {
            return line.find("Too many recursions") != std::string::npos;
        });
    };
    for (int32_t depth = 1; depth < CPopupList::kMaxDepth; ++depth) {
        EXPECT_TRUE(tap(kKeyHome));
        EXPECT_TRUE(tap(kKeyRight));
        system.advance(0.1);
        EXPECT_EQ(system.desktop().windowCount(), 2 + depth);
    }
    EXPECT_FALSE(isLogged());
    EXPECT_TRUE(tap(kKeyHome));
    EXPECT_TRUE(tap(kKeyRight));
    system.advance(0.1);
    EXPECT_TRUE(isLogged());
    EXPECT_EQ(system.desktop().windowCount(), 1 + CPopupList::kMaxDepth);
}

}  // namespace
}  // namespace tarv
