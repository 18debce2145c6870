#include "UI/Controls/Plugin/CHistory.h"

#include "PluginTree.h"
#include "UI/Controls/Lists/CValueList.h"
#include "UI/Text/CPopupList.h"

namespace tarv {
namespace {

struct History : CPluginTest {
    static CTestNode button(const char* name) {
        return {"ui:button-base", name, {{"width", "30"}, {"height", "20"}, {"is-focusable", "true"}}};
    }
    static CTestNode strip(std::vector<CTestNode> children) {
        return {
            "ui:history", "h", {{"interface-client", "ui.interface-client"}, {"height", "20"}}, std::move(children)};
    }
    static CTestNode whole() {
        return strip({{"ui:value-list-manual", "history-list"},
                      button("button-undo"),
                      button("button-select"),
                      button("button-redo")});
    }
    void open() {
        openWindow({whole()});
        system_.pump();
    }
    CValueList& list() { return dynamic_cast<CValueList&>(object("w.h.history-list")); }
    std::string rows() {
        std::string all;
        for (int32_t i = 0; i < list().count(); ++i) {
            const std::string title = list()[i].title.toUtf8();
            all += (i > 0 ? "|" : "") + (list()[i].isDimmed ? "(" + title + ")" : title);
        }
        return all;
    }
    /// The buttons that have something to do.
    std::string enabled() {
        std::string all;
        for (const char* name : {"undo", "select", "redo"}) {
            const auto& view = at<CViewBaseCtlEvents>(std::string("h.button-") + name);
            all += view.isDisabled() ? "" : std::string(all.empty() ? "" : " ") + name;
        }
        return all;
    }
    void press(const char* name) { click(at(std::string("h.button-") + name)); }
    CPopupList* popup() { return editor_->findObjectOf<CPopupList>("ui.window-app-popup-list.list"); }
    /// A row of the open list is chosen.
    void choose(int32_t row) {
        ASSERT_TRUE(popup());
        const CViewRect box = popup()->rowRect(row);
        auto* window = dynamic_cast<CWindow*>(popup()->parent()->findChild("window-renderer"));
        ASSERT_TRUE(window);
        system_.input().moveIn(window->handle(), static_cast<int32_t>(box.x + 3.0), static_cast<int32_t>(box.y + 3.0));
        system_.input().click();
        turn();
    }
};

TEST_F(History, NeedsItsClientAndItsChildren) {
    openWindow();
    EXPECT_EQ(tryLoad("w", {{"ui:history", "h", {{"interface-client", "ui.nothing"}}}}),
              "No interfacing object 'ui.nothing' found.");
    const CTestNode list{"ui:value-list-manual", "history-list"};
    EXPECT_EQ(tryLoad("w", {strip({})}), "Unable to locate 'history list' container.");
    EXPECT_EQ(tryLoad("w", {strip({list})}), "Unable to locate 'undo' button.");
    EXPECT_EQ(tryLoad("w", {strip({list, button("button-undo")})}), "Unable to locate 'select' button.");
    EXPECT_EQ(tryLoad("w", {strip({list, button("button-undo"), button("button-select")})}),
              "Unable to locate 'redo' button.");
}

TEST_F(History, WithTheListAtItsStartOnlyStepsEnableButtons) {
    open();
    EXPECT_EQ(rows(), "Undo history start");
    EXPECT_EQ(enabled(), "");
    setGain(3.0);
    EXPECT_EQ(enabled(), "undo select");
    press("undo");
    EXPECT_EQ(enabled(), "select redo");
    EXPECT_EQ(shownGain(), 0.0);
    press("redo");
    EXPECT_EQ(enabled(), "undo select");
    EXPECT_EQ(shownGain(), 3.0);
}

TEST_F(History, TheNewestStepIsOnTopAndRedoIsDimmed) {
    open();
    setGain(3.0);
    setCurve(0, {1.0});
    const std::string gain = object("w.h").getAttrString("undo-label").toUtf8();
    EXPECT_EQ(gain, "EQ (1) change");
    EXPECT_EQ(rows(), "EQ (1) change|Output gain (1) change|Undo history start");
    EXPECT_EQ(list().getAttrInt("selected-item"), 0);
    undo();
    EXPECT_EQ(rows(), "(EQ (1) change)|Output gain (1) change|Undo history start");
    EXPECT_EQ(list().getAttrInt("selected-item"), 1);
    EXPECT_EQ(object("w.h").getAttrString("undo-label").toUtf8(), "Output gain (1) change");
    EXPECT_EQ(object("w.h").getAttrString("redo-label").toUtf8(), "EQ (1) change");
}

TEST_F(History, AChosenStepIsJumpedTo) {
    open();
    setGain(1.0);
    setGain(2.0);
    setGain(3.0);
    press("select");
    ASSERT_TRUE(popup());
    EXPECT_EQ(popup()->paragraphCount(), 4);
    EXPECT_EQ(popup()->selectedParagraph(), 0);
    choose(2);
    EXPECT_FALSE(popup());
    EXPECT_EQ(shownGain(), 1.0);
    EXPECT_EQ(enabled(), "undo select redo");
    press("select");
    EXPECT_EQ(popup()->selectedParagraph(), 2) << "the position is marked";
    choose(3);
    EXPECT_EQ(shownGain(), 0.0);
    press("select");
    choose(0);
    EXPECT_EQ(shownGain(), 3.0);
}

TEST_F(History, TheListDimsWhatRedoBrings) {
    open();
    setGain(1.0);
    setGain(2.0);
    undo();
    press("select");
    ASSERT_TRUE(popup());
    const CTextSource& rows = popup()->source();
    EXPECT_EQ(rows.spans()[rows.spanOf(0)].color, 1);
    EXPECT_EQ(rows.spans()[rows.spanOf(rows.count() - 1)].color, 0);
    EXPECT_EQ(popup()->getAttrString("text-color1"), CString("TextDim"));
}

TEST_F(History, TheOpenerClosesItsList) {
    open();
    setGain(1.0);
    press("select");
    EXPECT_TRUE(popup());
    press("select");
    EXPECT_FALSE(popup());
    EXPECT_EQ(shownGain(), 1.0);
}

TEST_F(History, AChoiceInAListThatIsOldByNowIsIgnored) {
    open();
    setGain(1.0);
    setGain(2.0);
    press("select");
    setCurve(0, {1.0});
    choose(1);
    EXPECT_EQ(shownGain(), 2.0);
    EXPECT_EQ(enabled(), "undo select");
}

TEST_F(History, NotifiesOfEachChange) {
    open();
    listen(object("w.h"), {"history-change"});
    setGain(1.0);
    EXPECT_EQ(heard(), "h history-change");
}

TEST_F(History, NamesInLabelsAreNoMarks) {
    open();
    CTextList names;
    names.append("[B]{x}");
    EXPECT_EQ(consumed(client().setTexts("plugin.modMain.io-params.group-names", 0, 0, names)), "");
    system_.pump();
    setGain(1.0);
    press("select");
    ASSERT_TRUE(popup());
    EXPECT_EQ(popup()->paragraphText(0).toUtf8(), "Output gain ([B]{x}) change");
}

TEST_F(History, HasNothingToDoWhenTheEngineHasGone) {
    open();
    setGain(1.0);
    CAttributeMap none;
    EXPECT_EQ(consumed(client().sendEvent("engine-gone", none, false)), "");
    EXPECT_EQ(enabled(), "");
    EXPECT_EQ(rows(), "");
}

TEST_F(History, TheWindowMayCloseInAStep) {
    open();
    setGain(1.0);
    listen(object("w.h"), {"history-change"});
    CHeardEvents::onEvent = [this](const std::string&) {
        CHeardEvents::onEvent = {};
        delete &object("w");
    };
    undo();
    EXPECT_FALSE(object("").findChild("w"));
}

}  // namespace
}  // namespace tarv
