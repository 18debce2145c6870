// Lists below the rows of popup lists.

#include "Tests/UI/Text/PopupListTree.h"

namespace tarv {
namespace {

class CPopupListNesting : public CPopupListTree {
protected:
    /// The last list that has been opened; null while there is only the first one.
    CPopupList* below() const {
        CPopupList* last = nullptr;
        for (CObject* child : tree->findObject("ui")->children()) {
            auto* found = dynamic_cast<CPopupList*>(child->findChild("list"));
            const auto* window = dynamic_cast<CWindow*>(child->findChild("window-renderer"));
            last = found && found != list() && window->isOpen() ? found : last;
        }
        return last;
    }
    void openPresets() {
        openOpener();
        openList({{"popup-text-source", ".presets"}, {"list-id", "L"}});
        system.advance(0.2);
    }
    /// The list below the first row, by a pointer that rests there.
    void openByHover() {
        openPresets();
        moveOnto(*list(), 0);
        system.advance(0.3);
    }
    int32_t windows() { return system.desktop().windowCount(); }
};

TEST_F(CPopupListNesting, ADynamicListOpensTheListBelowARowBesideIt) {
    openPresets();
    EXPECT_EQ(rows(*list()), "Session  |Plain");
    choose(*list(), 0);
    system.advance(0.1);
    ASSERT_TRUE(below());
    ASSERT_TRUE(list());
    EXPECT_EQ(rows(*below()), "One|Two");
    EXPECT_EQ(below()->parent()->getAttrString("popup-dynamic-list-parent-id"), "s");
    EXPECT_EQ(windowOf(*below()).screenBounds().left, windowOf(*list()).screenBounds().right);
    heard();
    choose(*below(), 1);
    EXPECT_EQ(at("opener").params.at("id").asString(), "s2");
    EXPECT_EQ(at("opener").params.at("index").asInt(), 1);
    EXPECT_EQ(at("opener").params.at("list-id").asString(), "L");
    system.advance(0.1);
    EXPECT_EQ(windows(), 1);
    EXPECT_FALSE(window().isBlocked());
    EXPECT_EQ(window().popups().count(), 0);
}

TEST_F(CPopupListNesting, TheFirstListKeepsTheActivationAndTheFocus) {
    openPresets();
    choose(*list(), 0);
    system.advance(0.1);
    ASSERT_TRUE(below());
    EXPECT_EQ(windowOf(*list()).keyFocusView(), list());
    EXPECT_EQ(windowOf(*below()).keyFocusView(), nullptr);
    EXPECT_EQ(system.desktop().active(), windowOf(*list()).handle());
    moveOnto(*below(), 0);
    system.input().press();
    EXPECT_EQ(system.desktop().active(), windowOf(*list()).handle());
}

TEST_F(CPopupListNesting, RightGoesIntoTheListBelowAndLeftOutOfIt) {
    openPresets();
    EXPECT_TRUE(tap(kKeyHome));
    EXPECT_TRUE(tap(kKeyRight));
    system.advance(0.1);
    ASSERT_TRUE(below());
    EXPECT_EQ(below()->selectedParagraph(), 0);
    EXPECT_TRUE(tap(kKeyDown));
    EXPECT_EQ(below()->selectedParagraph(), 1);
    EXPECT_EQ(list()->selectedParagraph(), 0);
    EXPECT_TRUE(tap(kKeyLeft));
    system.advance(0.1);
    EXPECT_FALSE(below());
    ASSERT_TRUE(list());
    EXPECT_TRUE(tap(kKeyDown));
    EXPECT_EQ(list()->selectedParagraph(), 1) << "the keys come back";
    EXPECT_TRUE(tap(kKeyUp));
    EXPECT_TRUE(tap(kKeyEnter));
    system.advance(0.1);
    ASSERT_TRUE(below()) << "Enter opens it, too";
    EXPECT_TRUE(tap(kKeyEnter));
    EXPECT_EQ(at("opener").params.at("id").asString(), "s1");
    EXPECT_EQ(windows(), 1);
}

TEST_F(CPopupListNesting, EscapeClosesOneLevel) {
    openPresets();
    EXPECT_TRUE(tap(kKeyHome));
    EXPECT_TRUE(tap(kKeyRight));
    system.advance(0.1);
    EXPECT_EQ(windows(), 3);
    EXPECT_TRUE(tap(kKeyEscape));
    system.advance(0.1);
    EXPECT_EQ(windows(), 2);
    EXPECT_TRUE(tap(kKeyEscape));
    system.advance(0.1);
    EXPECT_EQ(windows(), 1);
}

TEST_F(CPopupListNesting, APressOnARowWhoseListIsOpenLeavesItOpen) {
    openByHover();
    CPopupList* const opened = below();
    ASSERT_TRUE(opened);
    system.input().press();
    system.advance(0.4);
    EXPECT_EQ(below(), opened) << "while the button is held";
    system.input().release();
    system.advance(1.0);
    EXPECT_EQ(below(), opened);
    EXPECT_EQ(windows(), 3);
    EXPECT_TRUE(tap(kKeyDown));
    EXPECT_EQ(opened->selectedParagraph(), 0) << "the press gives it the keys";
    choose(*list(), 0);
    system.advance(1.0);
    EXPECT_EQ(below(), opened);
}

TEST_F(CPopupListNesting, KeysStayWithTheListWhoseRowThePointerRestsOn) {
    openByHover();
    ASSERT_TRUE(below());
    EXPECT_TRUE(tap(kKeyRight));
    EXPECT_EQ(below()->selectedParagraph(), 0) << "into the open list";
    EXPECT_TRUE(tap(kKeyLeft));
    system.advance(1.0);
    EXPECT_FALSE(below()) << "it opens once";
    moveOnto(*list(), 1);
    moveOnto(*list(), 0);
    system.advance(0.3);
    ASSERT_TRUE(below());
    EXPECT_TRUE(tap(kKeyDown));
    EXPECT_EQ(list()->selectedParagraph(), 1);
    system.advance(0.1);
    EXPECT_FALSE(below()) << "its row is not the selected one any more";
}

TEST_F(CPopupListNesting, AWayAcrossOtherRowsIntoTheListBelowLeavesItOpen) {
    openByHover();
    CPopupList* const opened = below();
    ASSERT_TRUE(opened);
    moveOnto(*list(), 1);
    system.advance(0.1);
    EXPECT_EQ(list()->selectedParagraph(), 1);
    moveOnto(*opened, 1);
    system.advance(1.0);
    EXPECT_EQ(below(), opened);
    EXPECT_EQ(list()->selectedParagraph(), 0) << "the row that it is below";
    EXPECT_TRUE(tap(kKeyUp));
    EXPECT_EQ(opened->selectedParagraph(), 0) << "the pointer has brought the keys";
}

TEST_F(CPopupListNesting, RestingOnAnotherRowClosesTheListBelow) {
    openByHover();
    ASSERT_TRUE(below());
    moveOnto(*list(), 1);
    system.advance(0.2);
    EXPECT_TRUE(below());
    system.advance(0.2);
    EXPECT_FALSE(below());
    EXPECT_EQ(windows(), 2);
    moveOnto(*list(), 0);
    system.advance(0.4);
    EXPECT_TRUE(below()) << "and the first row opens it again";
}

TEST_F(CPopupListNesting, AnotherRowIsChosenWhileAListIsOpenBelow) {
    openByHover();
    ASSERT_TRUE(below());
    choose(*list(), 1);
    EXPECT_EQ(at("opener").params.at("id").asString(), "p");
    system.advance(0.1);
    EXPECT_EQ(windows(), 1);
}

TEST_F(CPopupListNesting, AListIsReplacedByThatOfAnotherRow) {
    openOpener();
    openList({{"popup-text-source", ".presets"}, {"popup-dynamic-list-parent-id", "two"}});
    system.advance(0.2);
    moveOnto(*list(), 0);
    system.advance(0.3);
    ASSERT_TRUE(below());
    EXPECT_EQ(rows(*below()), "One|Two");
    moveOnto(*list(), 1);
    system.advance(0.4);
    ASSERT_TRUE(below());
    EXPECT_EQ(rows(*below()), "Deeper  |[B]here[/B]  ");
    EXPECT_EQ(windows(), 3);
    EXPECT_FALSE(tap(kKeyLeft)) << "the keys are above, where it means nothing";
    EXPECT_EQ(windows(), 3);
}

TEST_F(CPopupListNesting, AllOfThemCloseWithTheActivation) {
    openByHover();
    ASSERT_TRUE(below());
    system.desktop().activate(host);
    system.advance(0.5);
    EXPECT_EQ(windows(), 1);
}

TEST_F(CPopupListNesting, APressBesideThemClosesAll) {
    openByHover();
    ASSERT_TRUE(below());
    system.input().moveIn(window().handle(), 150, 90);
    system.input().click();
    system.advance(0.1);
    EXPECT_EQ(windows(), 1);
}

TEST_F(CPopupListNesting, RowsWithListsBelowThemAndCheckedOnesHaveAPictureBehindTheirText) {
    openOpener();
    openList({{"popup-text-source", ".presets"}, {"popup-dynamic-list-parent-id", "deep"}});
    ASSERT_TRUE(list());
    EXPECT_EQ(rows(*list()), "Deeper  |[B]here[/B]  ") << "the pictures stand apart from the text";
    EXPECT_EQ(list()->source().images().count(), 2);
    EXPECT_EQ(list()->source().images()[0].range, CString("ArrowRight"));
    EXPECT_EQ(list()->source().images()[1].range, CString("Check"));
    choose(*list(), 1);
    EXPECT_EQ(at("opener").params.at("text").asString(), "[B]here[/B]");
    EXPECT_EQ(at("opener").params.at("id").asString(), "here");
}

TEST_F(CPopupListNesting, APointerThatRestsOnARowOpensTheListBelowIt) {
    openPresets();
    moveOnto(*list(), 0);
    system.advance(0.2);
    EXPECT_FALSE(below());
    moveOnto(*list(), 1);
    system.advance(0.5);
    EXPECT_FALSE(below()) << "there is none below this row";
    moveOnto(*list(), 0);
    system.advance(0.2);
    EXPECT_FALSE(below());
    system.advance(0.1);
    ASSERT_TRUE(below());
    EXPECT_EQ(rows(*below()), "One|Two");
    EXPECT_EQ(below()->selectedParagraph(), -1);
}

TEST_F(CPopupListNesting, APressBeforeThatOpensTheListOnce) {
    openPresets();
    choose(*list(), 0);
    system.advance(1.0);
    ASSERT_TRUE(below());
    EXPECT_EQ(windows(), 3);
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
