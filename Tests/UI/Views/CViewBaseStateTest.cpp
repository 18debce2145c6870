#include "UI/Views/CViewBaseState.h"

#include <gtest/gtest.h>

#include "Tests/UI/Views/ViewTree.h"

namespace tarv {
namespace {

/// Notes the events that it listens to, in the order of their arrival.
class CEventNote : public CObject {
public:
    static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CEventNote::note>("note");
        return nullptr;
    }
    std::vector<std::string> events;

private:
    CError* note(CAttributeMap& params) {
        events.push_back(params["event-name"].asString().toUtf8() + ":" + params["state"].asString().toUtf8());
        return nullptr;
    }
};

CTestNode state(const std::string& name, CTexts attributes) {
    attributes.insert(attributes.begin(), {"state-name", name});
    return {"ui:view-state", "view-state-" + name, attributes};
}

class ViewState : public CViewTest {
protected:
    ViewState() : CViewTest({{"test:note", &createObject<CEventNote>, &CEventNote::initClass}}) {}

    /// A view `a` with the template's five states, of which the data changes nothing at once but the look.
    CView& openButton(const CTexts& attributes = {}, std::vector<CTestNode> more = {}) {
        std::vector<CTestNode> children = {
            state(
                "active",
                {{"color-state", "Active"}, {"image-set-range", "{image-set-range}Active"}, {"morph-duration", "0.0"}}),
            state("error", {{"color-state", "Error"}, {"morph-duration", "0.0"}}),
            state("hover", {{"color-state", "Hover"}, {"morph-duration", "0.0"}}),
            state("pushed", {{"inner-border", "{} *LT1 *RB-1"},
                             {"image-set-range", "{image-set-range}Pushed"},
                             {"morph-duration", "0.0"}}),
            state("temp-pushed", {{"inner-border", "{} *LT1 *RB-1"}, {"morph-duration", "0.0"}})};
        children.insert(children.end(), more.begin(), more.end());
        open({}, {view("a", attributes, children)}, 300, 200, {{"test:note", "note"}});
        note_ = tree_->findObjectOf<CEventNote>("ui.note");
        note_->listenObject("ui.w.a", "state-ready", "note");
        return at("a");
    }
    static void change(CView& view, const char* how, const char* names) {
        const std::string step(how);
        EXPECT_EQ(consumed(step == "set"     ? view.setState(names)
                           : step == "unset" ? view.unsetState(names)
                                             : view.toggleState(names)),
                  "");
    }
    static std::string composed(const CView& view) {
        std::string all;
        for (const CString& name : view.colorStates())
            all += name.toUtf8();
        return all;
    }

    CEventNote* note_ = nullptr;
};

TEST_F(ViewState, NamesAreSetUnsetAndToggledOneByOne) {
    CView& a = openButton();
    change(a, "set", "pushed active");
    EXPECT_EQ(text(a, "state"), "active pushed");
    change(a, "set", "active");
    change(a, "toggle", "hover pushed odd");
    EXPECT_EQ(text(a, "state"), "active hover odd");
    change(a, "unset", "nobody active");
    EXPECT_EQ(text(a, "state"), "hover odd");
    EXPECT_TRUE(a.isStateSet("odd"));
    EXPECT_FALSE(a.isStateSet("active"));
}

TEST_F(ViewState, TheAttributeSetsTheStatesAlsoAtLoad) {
    CView& a = openButton({{"state", "hover active"}});
    EXPECT_TRUE(a.isStateSet("hover"));
    EXPECT_EQ(composed(a), "ActiveHover");
    set(a, "state", "error");
    EXPECT_EQ(composed(a), "Error");
    EXPECT_FALSE(a.isStateSet("hover"));
    set(a, "state", "");
    EXPECT_EQ(composed(a), "");
}

TEST_F(ViewState, ColourStatesStandInTheOrderOfTheStateObjects) {
    CView& a = openButton();
    change(a, "set", "hover");
    change(a, "set", "active");
    EXPECT_EQ(composed(a), "ActiveHover");
    change(a, "unset", "active");
    change(a, "set", "error");
    EXPECT_EQ(composed(a), "ErrorHover");
}

TEST_F(ViewState, AColourStateWithASlashReplacesTheOthers) {
    CView& a = openButton({}, {state("whole", {{"color-state", "/Hilite"}}), state("last", {{"color-state", "0"}})});
    change(a, "set", "hover whole active last");
    EXPECT_EQ(composed(a), "Hilite0");
}

TEST_F(ViewState, TheLastStateWithARangeGivesIt) {
    CView& a = openButton({{"image-set-range", "Box"}});
    EXPECT_EQ(a.imageRange(), CString("Box"));
    change(a, "set", "pushed active hover");
    // Both start from the view's own range.
    EXPECT_EQ(a.imageRange(), CString("BoxPushed"));
    change(a, "unset", "pushed");
    EXPECT_EQ(a.imageRange(), CString("BoxActive"));
    EXPECT_EQ(text(a, "image-set-range"), "Box");
    change(a, "unset", "active");
    EXPECT_EQ(a.imageRange(), CString("Box"));
}

TEST_F(ViewState, AnOverrideStartsFromTheOwnText) {
    CView& a = openButton({{"inner-border", "5"}});
    change(a, "set", "pushed");
    EXPECT_EQ(text(a, "inner-border"), "5 *LT1 *RB-1");
    EXPECT_EQ(a.area().value(CViewCell::InnerLeft), 6.0f);
    EXPECT_EQ(a.area().value(CViewCell::InnerRight), 4.0f);
    // The other state's text is none of it.
    change(a, "set", "temp-pushed");
    EXPECT_EQ(a.area().value(CViewCell::InnerLeft), 6.0f);
    change(a, "unset", "pushed temp-pushed");
    EXPECT_EQ(text(a, "inner-border"), "5");
    EXPECT_EQ(a.area().value(CViewCell::InnerLeft), 5.0f);
}

TEST_F(ViewState, AnOwnTextThatIsSetUnderAStateCountsForBoth) {
    CView& a = openButton({{"inner-border", "5"}});
    change(a, "set", "pushed");
    set(a, "inner-border", "8");
    EXPECT_EQ(text(a, "inner-border"), "8 *LT1 *RB-1");
    EXPECT_EQ(a.area().value(CViewCell::InnerLeft), 9.0f);
    change(a, "unset", "pushed");
    EXPECT_EQ(text(a, "inner-border"), "8");
}

TEST_F(ViewState, AnAttributeThatTheViewLacksIsEmptyAgain) {
    CView& a = openButton({}, {state("off", {{"is-visible", "false"}, {"min-width", "20"}, {"title", "{hint}!"}})});
    set(a, "hint", "Off");
    change(a, "set", "off");
    EXPECT_FALSE(a.isShown());
    EXPECT_EQ(text(a, "title"), "Off!");
    change(a, "unset", "off");
    EXPECT_TRUE(a.isShown());
    EXPECT_EQ(text(a, "title"), "");
    EXPECT_EQ(a.area().value(CViewCell::MinWidth), 0.0f);
}

TEST_F(ViewState, OverridesReferToOneAnothersOwnTexts) {
    CView& a = openButton({{"min-width", "10"}, {"min-height", "20"}},
                          {state("swap", {{"min-width", "{min-height}"}, {"min-height", "{min-width}"}})});
    change(a, "set", "swap");
    EXPECT_EQ(text(a, "min-width"), "20");
    EXPECT_EQ(text(a, "min-height"), "10");
}

TEST_F(ViewState, TheLaterStateObjectWinsAnAttribute) {
    CView& a =
        openButton({{"min-width", "1"}}, {state("x", {{"min-width", "{}1"}}), state("y", {{"min-width", "{}2"}})});
    change(a, "set", "y");
    change(a, "set", "x");
    EXPECT_EQ(text(a, "min-width"), "12");
    change(a, "unset", "y");
    EXPECT_EQ(text(a, "min-width"), "11");
}

TEST_F(ViewState, ATimedStateEndsAtATickAndSaysSoOnce) {
    CView& a = openButton();
    ASSERT_EQ(consumed(a.setStateTimed("error", 0.3)), "");
    tick(0.2);
    EXPECT_TRUE(a.isStateSet("error"));
    tick(0.15);
    EXPECT_FALSE(a.isStateSet("error"));
    tick(1.0);
    EXPECT_EQ(note_->events, std::vector<std::string>{"state-ready:error"});
}

TEST_F(ViewState, ATimedStateOfNoLengthEndsAtTheNextTick) {
    CView& a = openButton();
    ASSERT_EQ(consumed(a.setStateTimed("error", 0.0)), "");
    EXPECT_TRUE(a.isStateSet("error"));
    tick();
    EXPECT_FALSE(a.isStateSet("error"));
    tick();
    EXPECT_EQ(note_->events.size(), 1u);
}

TEST_F(ViewState, ADurationOfAStateEndsItAndThatOfTheViewIsOnlyADefault) {
    CView& a = openButton({{"duration", "0.4"}},
                          {state("short", {{"duration", "0.1"}}), state("long", {{"duration", "0.0"}})});
    change(a, "set", "short long");
    tick(0.2);
    EXPECT_EQ(text(a, "state"), "long");
    ASSERT_EQ(consumed(a.setStateTimed("plain")), "");
    tick(0.3);
    EXPECT_TRUE(a.isStateSet("plain"));
    tick(0.2);
    EXPECT_EQ(text(a, "state"), "long");
    set(a, "duration", "");
    ASSERT_EQ(consumed(a.setStateTimed("plain")), "");
    tick(0.45);
    EXPECT_TRUE(a.isStateSet("plain"));
    tick(0.1);
    EXPECT_FALSE(a.isStateSet("plain"));
}

TEST_F(ViewState, AStateOfTheLoadCountsItsTimeFromTheFirstTick) {
    CView& a = openButton({{"state", "short"}}, {state("short", {{"duration", "0.1"}})});
    tick();
    tick(0.05);
    EXPECT_TRUE(a.isStateSet("short"));
    tick(0.06);
    EXPECT_FALSE(a.isStateSet("short"));
}

TEST_F(ViewState, AStateThatIsSetAgainByTimeGetsTheNewEnd) {
    CView& a = openButton();
    ASSERT_EQ(consumed(a.setStateTimed("error", 0.2)), "");
    tick(0.1);
    ASSERT_EQ(consumed(a.setStateTimed("error", 0.2)), "");
    tick(0.15);
    EXPECT_TRUE(a.isStateSet("error"));
    tick(0.1);
    EXPECT_FALSE(a.isStateSet("error"));
    EXPECT_EQ(note_->events.size(), 1u);
}

// start + (target - start) * (sin(p * pi - pi / 2) + 1) / 2: a quarter of the time is 0.146447 of the way.
TEST_F(ViewState, NumbersMoveSlowlyAtBothEndsAndAreWrittenWithFourDecimals) {
    CView& a = openButton(
        {{"width", "20"}, {"height", "10"}, {"placement", "overlay"}},
        {state("big", {{"width", "60"}, {"opacity", "0.5"}, {"height", "compact"}, {"morph-duration", "0.4"}})});
    change(a, "set", "big");
    EXPECT_EQ(text(a, "height"), "compact");
    EXPECT_EQ(text(a, "width"), "20");
    tick(0.1);
    EXPECT_EQ(text(a, "width"), "25.8579");
    EXPECT_EQ(text(a, "opacity"), "0.9268");
    EXPECT_NEAR(a.area().value(CViewCell::Width), 25.8579f, 1e-4f);
    tick(0.1);
    EXPECT_EQ(text(a, "width"), "40.0000");
    tick(0.1);
    EXPECT_EQ(text(a, "width"), "54.1421");
    tick(0.2);
    EXPECT_EQ(text(a, "width"), "60");
    EXPECT_EQ(text(a, "opacity"), "0.5");
    change(a, "unset", "big");
    EXPECT_EQ(text(a, "height"), "10");
    tick(0.2);
    EXPECT_EQ(text(a, "width"), "40.0000");
    EXPECT_EQ(a.opacity(), 0.75);
    tick(0.3);
    EXPECT_EQ(text(a, "width"), "20");
    EXPECT_EQ(text(a, "opacity"), "");
    EXPECT_EQ(a.opacity(), 1.0);
    EXPECT_EQ(tick(0.1), 0);
}

TEST_F(ViewState, AMorphThatIsTurnedStartsFromWhereItIs) {
    CView& a = openButton({{"width", "20"}}, {state("big", {{"width", "60"}, {"morph-duration", "0.4"}})});
    change(a, "set", "big");
    tick(0.2);
    EXPECT_EQ(text(a, "width"), "40.0000");
    change(a, "unset", "big");
    tick(0.2);
    EXPECT_EQ(text(a, "width"), "30.0000");
    // The own text is what it goes to, also when the state comes back on the way.
    change(a, "set", "big");
    tick(1.0);
    EXPECT_EQ(text(a, "width"), "60");
    change(a, "unset", "big");
    tick(1.0);
    EXPECT_EQ(text(a, "width"), "20");
}

TEST_F(ViewState, AMorphRunsOnWhenAnotherStateChanges) {
    CView& a = openButton({{"width", "20"}}, {state("big", {{"width", "60"}, {"morph-duration", "0.4"}})});
    change(a, "set", "big");
    tick(0.2);
    change(a, "set", "hover");
    EXPECT_EQ(text(a, "width"), "40.0000");
    tick(0.2);
    EXPECT_EQ(text(a, "width"), "60");
}

TEST_F(ViewState, WithoutAMorphEverythingIsThereAtOnce) {
    CView& a = openButton({{"width", "20"}, {"morph-duration", "0.4"}}, {state("big", {{"width", "60"}})});
    EXPECT_EQ(consumed(a.setState("big", CStateChange::AtOnce)), "");
    EXPECT_EQ(text(a, "width"), "60");
    EXPECT_EQ(consumed(a.unsetState("big", CStateChange::AtOnce)), "");
    EXPECT_EQ(text(a, "width"), "20");
    // The view's own time, where the state has none.
    change(a, "set", "big");
    EXPECT_EQ(text(a, "width"), "20");
    set(a, "width", "30");
    EXPECT_EQ(text(a, "width"), "60");
}

TEST_F(ViewState, AViewDestroyedInItsTimerLeavesTheOthersAlone) {
    CView& a = openButton();
    CView* b = nullptr;
    ASSERT_EQ(consumed(rootView_->createChildOf<CView>(b, "ui:view", "b", false)), "");
    ASSERT_EQ(consumed(a.setStateTimed("error", 0.1)), "");
    ASSERT_EQ(consumed(b->setStateTimed("error", 0.1)), "");
    delete &a;
    tick(0.2);
    EXPECT_FALSE(b->isStateSet("error"));
}

TEST_F(ViewState, InputSetsHoverAndAPressWhereItHasALook) {
    open({}, {view("a"), view("b", {}, {state("pushed", {{"color-state", "Active"}})})});
    for (const char* name : {"a", "b"}) {
        EXPECT_EQ(consumed(at(name).setInputState(CInputState::Hover, true)), "");
        EXPECT_EQ(consumed(at(name).setInputState(CInputState::Pushed, true)), "");
    }
    EXPECT_EQ(text(at("a"), "state"), "hover");
    EXPECT_EQ(text(at("b"), "state"), "hover pushed");
    EXPECT_EQ(consumed(at("b").setInputState(CInputState::Pushed, false)), "");
    EXPECT_EQ(text(at("b"), "state"), "hover");
}

}  // namespace
}  // namespace tarv
