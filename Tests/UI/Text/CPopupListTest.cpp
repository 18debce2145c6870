#include "UI/Text/CPopupList.h"

#include "Tests/UI/Text/EditTree.h"

namespace tarv {
namespace {

/// A list of presets: two banks of three.
class CTestDynamicList : public CObject, public CDynamicList {
public:
    [[nodiscard]] CError* generateSubList(const CString& parentId, CDynamicListRows& rows) override {
        if (parentId.isEmpty()) {
            rows.add("Session", "s", true);
            rows.add("Plain", "p");
            return nullptr;
        }
        if (parentId == CString("deep")) {
            rows.add("Deeper", "deep", true);
            rows.addPlain("[B]here[/B]", "here");
            rows.check();
            return nullptr;
        }
        if (!(parentId == CString("s"))) {
            TARV_FAIL("@tarvstr_CTestDynamicList_generateSubList_InvalidListId Invalid list identifier %1.", parentId);
        }
        rows.add("One", "s1");
        rows.add("Two", "s2");
        return nullptr;
    }
};

struct CPopupListTest : CEditTree {
    CPopupListTest() {
        classes.push_back({"test:dynamic", &createObject<CTestDynamicList>, nullptr});
        classes.push_back({"ui:popup-list", &createObject<CPopupList>, &CPopupList::initClass});
        templates.push_back(testTemplate("ui:window-app-popup-list", "test:view",
                                         {{"is-root-view", "true"},
                                          {"is-popup-window", "true"},
                                          {"window-alignment", "{window-alignment}"},
                                          {"font-name", "shared::font.base"},
                                          {"palette", "A"}},
                                         {{"ui:window-renderer", "window-renderer"},
                                          {"ui:popup-list",
                                           "list",
                                           {{"placement", "full"},
                                            {"is-scrollable", "true"},
                                            {"is-text-wrapped", "false"},
                                            {"paragraph-spacing", "2"}}}}));
    }
    static CTestNode row(const std::string& text) {
        return {"core:object", "paragraph", {{"is-paragraph", "true"}, {"title", text}}};
    }
    /// An opener with a value list of three rows, and a receiver beside it.
    void openOpener(std::vector<CTestNode> rows = {}) {
        if (rows.empty()) {
            rows = {row("Zero"),
                    {"core:object",
                     "paragraph",
                     {{"is-paragraph", "true"}},
                     {{"core:object", "content", {{"value", "O"}}},
                      {"core:object", "content", {{"value", "ne"}, {"is-line-break", "true"}}},
                      {"core:object", "content", {{"value", "more"}}}}},
                    row("[B]Two[/B]")};
        }
        open({view("opener", {{"placement", "top"}, {"width", "120"}, {"height", "20"}},
                   {{"core:object", "value-list", {}, std::move(rows)},
                    {"test:dynamic", "presets"},
                    {"core:object", "lines", {{"title", "a\nb\nc\nd"}}}}),
              view("other", {{"placement", "top"}, {"width", "120"}, {"height", "20"}})});
        heard();
    }
    CPopupList* list(const char* name = "window-app-popup-list") const {
        return tree->findObjectOf<CPopupList>(("ui." + std::string(name) + ".list").c_str());
    }
    CWindow& windowOf(const CPopupList& of) const {
        return *dynamic_cast<CWindow*>(of.parent()->findChild("window-renderer"));
    }
    void openList(const CTexts& params = {}) { openPopup("opener", "ui:window-app-popup-list", params); }
    void moveOnto(const CPopupList& of, int32_t index) {
        const CViewRect rect = of.rowRect(index);
        system.input().moveIn(windowOf(of).handle(), static_cast<int32_t>(rect.x) + 2,
                              static_cast<int32_t>(rect.y) + 4);
    }
    void choose(const CPopupList& of, int32_t index) {
        moveOnto(of, index);
        system.input().click();
    }
    static std::string rows(const CPopupList& of) {
        std::string all;
        for (int32_t i = 0; i < of.paragraphCount(); ++i) {
            all += (i > 0 ? "|" : "") + of.paragraphText(i).toUtf8();
        }
        return all;
    }
};

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

TEST_F(CPopupListTest, ADynamicListOpensTheListBelowARowBesideIt) {
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

TEST_F(CPopupListTest, RowsWithListsBelowThemAndCheckedOnesHaveAPictureBehindTheirText) {
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

TEST_F(CPopupListTest, APointerThatRestsOnARowOpensTheListBelowIt) {
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

TEST_F(CPopupListTest, APressBeforeThatOpensTheListOnce) {
    openOpener();
    openList({{"popup-text-source", ".presets"}});
    system.advance(0.2);
    choose(*list(), 0);
    system.advance(1.0);
    ASSERT_TRUE(list("window-app-popup-list#1"));
    EXPECT_EQ(system.desktop().windowCount(), 3);
}

TEST_F(CPopupListTest, ListsThatNestTooDeepAreLoggedAndOpenNoMore) {
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
