#include "Tests/UI/Text/PopupListTree.h"

namespace tarv {
namespace {

using CPopupListTest = CPopupListTree;

TEST_F(CPopupListTest, ShowsTheOpenersValueListAndTakesTheKeys) {
    openOpener();
    openList();
    ASSERT_TRUE(list());
    EXPECT_EQ(rows(*list()), "Zero|One more|Two");
    EXPECT_EQ(windowOf(*list()).keyFocusView(), list());
    EXPECT_EQ(system.desktop().keyGrabber(), windowOf(*list()).handle());
    EXPECT_EQ(list()->selectedParagraph(), -1);
    EXPECT_TRUE(window().isBlocked());
}

TEST_F(CPopupListTest, ARowThatIsReleasedOnIsTheResultAndClosesTheWindow) {
    openOpener();
    openList({{"list-id", "7"}});
    CFilledView::actions["opener.popup-result"] = [this](CFilledView&, CAttributeMap&) {
        EXPECT_FALSE(window().isBlocked()) << "the receiver may act in the window that waited";
        EXPECT_FALSE(windowOf(*list()).isOpen());
    };
    moveOnto(*list(), 1);
    EXPECT_EQ(list()->selectedParagraph(), 1) << "the selection follows the pointer";
    heard();
    choose(*list(), 2);
    EXPECT_EQ(heard(), "window-app-popup-list.close-window window-app-popup-list.popup-result opener.popup-result");
    const CAttributeMap& params = at("opener").params;
    EXPECT_EQ(params.at("index").asInt(), 2);
    EXPECT_EQ(params.at("text").asString(), "Two");
    EXPECT_EQ(params.at("list-id").asString(), "7");
    EXPECT_EQ(params.at("original-opener").asString(), "ui.main-window.opener");
    EXPECT_EQ(params.at("source").asString(), "ui.window-app-popup-list");
    system.advance(0.1);
    EXPECT_FALSE(list());
    EXPECT_EQ(system.desktop().windowCount(), 1);
}

TEST_F(CPopupListTest, TheRowsOfASource) {
    openOpener();
    openList({{"popup-text-source", ".lines"}, {"selected-item", "2"}, {"popup-inner-border", "3"}});
    EXPECT_EQ(rows(*list()), "a|b|c|d");
    EXPECT_EQ(list()->selectedParagraph(), 2);
    EXPECT_EQ(list()->getAttrString("inner-border"), "3");
    openList();
    CAttributeMap params;
    params["popup-text-source"] = CAttributeValue::fromString(".missing");
    EXPECT_NE(consumed(at("other").openPopup("ui:window-app-popup-list", params)).find("'.missing'"),
              std::string::npos);
    EXPECT_EQ(window().popups().count(), 1);
    system.advance(0.1);
    params.clear();
    EXPECT_EQ(consumed(at("other").openPopup("ui:window-app-popup-list", params)), "");
    EXPECT_EQ(rows(*list()), "") << "a view without a value list";
    EXPECT_EQ(list()->paragraphCount(), 0);
}

TEST_F(CPopupListTest, RowsOfAManualValueList) {
    openOpener({{"core:object", "content", {{"value", "1x"}}},
                {"core:object", "content", {{"value", "2x"}}},
                {"core:object", "remark", {{"value", "no row"}}}});
    openList({{"selected-item", "9"}});
    EXPECT_EQ(rows(*list()), "1x|2x");
    EXPECT_EQ(list()->selectedParagraph(), -1) << "an index outside is ignored";
}

TEST_F(CPopupListTest, AReceiverAndItsAttribute) {
    openOpener();
    openList({{"result-target", "^other"}, {"result-target-index-attr", "selected-item"}});
    choose(*list(), 1);
    EXPECT_EQ(at("other").getAttrString("selected-item"), "1");
    EXPECT_EQ(at("other").params.at("index").asInt(), 1);
    EXPECT_EQ(at("other").params.at("text").asString(), "One more");
    EXPECT_EQ(heard().find("opener.popup-result"), std::string::npos);
    system.advance(0.1);
    EXPECT_EQ(consumed(at("other").setAttribute("redirect", CString("^opener"))), "");
    openList(
        {{"result-target", "^other"}, {"result-target-redirect-attr", "redirect"}, {"result-target-index-attr", "i"}});
    choose(*list(), 0);
    EXPECT_EQ(at("opener").getAttrString("i"), "0");
    EXPECT_FALSE(at("other").hasAttr("i"));
    system.advance(0.1);
    const CLogCapture log;
    EXPECT_EQ(consumed(at("opener").setAttribute("redirect", CString("^other"))), "");
    openList({{"result-target", "^other"}, {"result-target-redirect-attr", "redirect"}});
    choose(*list(), 0);  // a circle
    system.advance(0.1);
    EXPECT_FALSE(list());
}

TEST_F(CPopupListTest, TheKeysOfAList) {
    openOpener();
    openList();
    EXPECT_TRUE(tap(kKeyDown));
    EXPECT_EQ(list()->selectedParagraph(), 0);
    EXPECT_TRUE(tap(kKeyEnd));
    EXPECT_EQ(list()->selectedParagraph(), 2);
    EXPECT_TRUE(tap('O', "", u"o"));
    EXPECT_EQ(list()->selectedParagraph(), 1);
    EXPECT_TRUE(tap('Q', "", u"q"));
    EXPECT_EQ(list()->selectedParagraph(), 1);
    EXPECT_FALSE(tap(112));
    EXPECT_TRUE(tap(kKeyEnter, "", u"\r"));
    EXPECT_EQ(at("opener").params.at("index").asInt(), 1);
    system.advance(0.1);
    openList({{"selected-item", "2"}});
    EXPECT_TRUE(tap(kKeySpace, "", u" "));
    EXPECT_EQ(at("opener").params.at("index").asInt(), 2);
    system.advance(0.1);
    openList();
    heard();
    EXPECT_TRUE(tap(kKeyEscape, "", u"\x1b"));
    system.advance(0.1);
    EXPECT_FALSE(list());
    EXPECT_EQ(heard().find("popup-result"), std::string::npos);
    EXPECT_EQ(system.desktop().keyGrabber(), 0u);
    EXPECT_FALSE(tap(kKeySpace, "", u" "));
}

TEST_F(CPopupListTest, CharactersTypedInARowGoToTheRowThatBeginsWithThem) {
    openOpener({row("Flat"), row("Bright"), row("Bass"), row("Bass cut"), row("Boom")});
    openList();
    const auto typeOne = [this](char16_t unit) { EXPECT_TRUE(tap(unit, "", std::u16string(1, unit))); };
    for (const char16_t unit : {u'B', u'a'}) {
        typeOne(unit);
    }
    EXPECT_EQ(list()->selectedParagraph(), 2);
    for (const char16_t unit : std::u16string(u"ss")) {
        typeOne(unit);
    }
    EXPECT_EQ(list()->selectedParagraph(), 2);
    system.advance(CPopupList::kTypingSeconds);
    typeOne(u'b');
    EXPECT_EQ(list()->selectedParagraph(), 3) << "one character alone goes on";
    typeOne(u'b');
    EXPECT_EQ(list()->selectedParagraph(), 4);
    typeOne(u'b');
    EXPECT_EQ(list()->selectedParagraph(), 1) << "around the end";
    typeOne(u'f');
    EXPECT_EQ(list()->selectedParagraph(), 0) << "no row begins with both";
}

TEST_F(CPopupListTest, TheWidthIsThatOfTheOpenerOrOfTheRows) {
    openOpener();
    openList();
    const CTestFace face;
    EXPECT_EQ(windowOf(*list()).screenBounds().width(), face.advance("more"));
    openList();
    system.advance(0.1);
    openList({{"is-same-width", "true"}});
    EXPECT_EQ(windowOf(*list()).screenBounds().width(), 120);
    EXPECT_EQ(list()->rowRect(0).width, 120.0);
}

TEST_F(CPopupListTest, ALeastWidthMakesANarrowListAsWideAsItsOpener) {
    openOpener();
    openList({{"is-least-width", "true"}});
    EXPECT_EQ(windowOf(*list()).screenBounds().width(), 120);
    EXPECT_EQ(list()->rowRect(0).width, 120.0);
}

TEST_F(CPopupListTest, ALeastWidthLeavesAWideListAsItIs) {
    const char* wide = "a row that is wider than the view that opens the list";
    openOpener({row(wide)});
    openList({{"is-least-width", "true"}});
    const CTestFace face;
    ASSERT_GT(face.advance(wide), 120);
    EXPECT_EQ(windowOf(*list()).screenBounds().width(), face.advance(wide));
}

TEST_F(CPopupListTest, AnOpenerPressedAgainClosesItsListAndDoesNotReopenIt) {
    openOpener();
    CFilledView::actions["opener.mouse-press"] = [this](CFilledView&, CAttributeMap&) { openList(); };
    click(150, 10);
    ASSERT_TRUE(list());
    system.input().click();
    system.advance(0.1);
    EXPECT_FALSE(list());
    click(150, 10);
    EXPECT_TRUE(list());
}

TEST_F(CPopupListTest, AListClosesWhenItLosesTheActivation) {
    openOpener();
    openList();
    system.advance(0.5);
    ASSERT_TRUE(list());
    system.desktop().activate(host);
    system.advance(0.3);
    EXPECT_FALSE(list());
    EXPECT_FALSE(window().isBlocked());
}

TEST_F(CPopupListTest, AListThatIsTallerThanTheMonitorScrolls) {
    std::vector<CTestNode> many;
    for (int32_t i = 0; i < 200; ++i) {
        many.push_back(row("r" + std::to_string(i)));
    }
    openOpener(many);
    openList({{"selected-item", "150"}});
    EXPECT_EQ(windowOf(*list()).screenBounds().height(), 1080);
    EXPECT_EQ(windowOf(*list()).screenBounds().top, 0);
    system.advance(0.1);
    EXPECT_LT(list()->area().value(CViewCell::RatioY), 0.5F);
    const auto isSeen = [&](int32_t index) {
        const CViewRect rect = list()->rowRect(index);
        return rect.y >= 0.0 && rect.bottom() <= 1080.0;
    };
    EXPECT_TRUE(isSeen(150));
    EXPECT_FALSE(isSeen(0));
    tap(kKeyHome);
    system.advance(0.1);
    EXPECT_TRUE(isSeen(0));
    system.input().moveIn(windowOf(*list()).handle(), 5, 500);
    EXPECT_TRUE(system.input().wheel(-100.0));
    system.advance(0.1);
    EXPECT_TRUE(isSeen(199));
    choose(*list(), 199);
    EXPECT_EQ(at("opener").params.at("index").asInt(), 199);
}

TEST_F(CPopupListTest, TheReceiverMayDestroyEverything) {
    openOpener();
    openList();
    CFilledView::actions["opener.popup-result"] = [](CFilledView& view, CAttributeMap&) { delete &view; };
    choose(*list(), 0);
    system.advance(0.1);
    EXPECT_FALSE(list());
    CFilledView::actions["other.popup-result"] = [this](CFilledView&, CAttributeMap&) { tree.reset(); };
    openPopup("other", "ui:window-app-popup-list", {{"popup-text-source", "/ui.log"}});
    EXPECT_EQ(list()->paragraphCount(), 0);
    openPopup("other", "ui:window-app-popup-list");
    EXPECT_EQ(consumed(at("other").setAttribute("title", CString("x\ny"))), "");
    system.advance(0.1);
    openPopup("other", "ui:window-app-popup-list", {{"popup-text-source", "."}});
    ASSERT_EQ(rows(*list()), "x|y");
    choose(*list(), 1);
    EXPECT_FALSE(tree);
    EXPECT_TRUE(system.isClean());
}

TEST_F(CPopupListTest, AHandlerOfTheChoiceMayDestroyTheRows) {
    openOpener();
    CTestActor::action = [this] {
        while (CObject* found = list()->findChild("paragraph")) {
            delete found;
        }
    };
    for (const int32_t index : {1, 0}) {
        openList({{"popup-text-source", ".presets"}});
        CObject& eater = actor();
        eater.listenObject("ui.window-app-popup-list.list", "paragraph-chosen", "act");
        choose(*list(), index);
        delete &eater;
        if (index == 1) {
            EXPECT_EQ(at("opener").params.at("id").asString(), "p");
            EXPECT_EQ(at("opener").params.at("text").asString(), "Plain");
            system.advance(0.1);
        }
    }
    ASSERT_TRUE(list("window-app-popup-list#1"));
    EXPECT_EQ(rows(*list("window-app-popup-list#1")), "One|Two");
}

}  // namespace
}  // namespace tarv
