#include "UI/Views/CViewCommand.h"

#include <gtest/gtest.h>

#include "Tests/UI/Views/ViewTree.h"

namespace tarv {
namespace {

/// Has a handler `work`, which notes its parameters, and one that fails.
class CWorker : public CObject {
public:
    static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CWorker::work>("work");
        descriptor.addHandler<&CWorker::fail>("fail");
        descriptor.addHandler<&CWorker::destroy>("destroy");
        return nullptr;
    }
    std::string received;
    CObject* victim = nullptr;

private:
    CError* work(CAttributeMap& params) {
        received = "";
        for (const auto& [name, value] : params)
            received += name.toUtf8() + "=" + value.asString().toUtf8() + " ";
        return nullptr;
    }
    CError* fail(CAttributeMap&) { TARV_FAIL("@tarvstr_CWorker_fail_Failed Worker failed."); }
    CError* destroy(CAttributeMap&) {
        delete victim;
        return nullptr;
    }
};

CTestNode command(const std::string& name, CTexts attributes, std::vector<CTestNode> children = {}) {
    return {"ui:view-command", name, std::move(attributes), std::move(children)};
}

class ViewCommand : public CViewTest {
protected:
    ViewCommand() : CViewTest({{"test:worker", &createObject<CWorker>, &CWorker::initClass}}) {}

    /// A view `a` with these commands, a view `b` beside it, and a worker at `ui.worker`.
    CView& openWith(std::vector<CTestNode> commands, std::vector<CTestNode> more = {}) {
        more.push_back({"test:worker", "worker"});
        open({}, {view("a", {}, std::move(commands)), view("b")}, 300, 200, std::move(more));
        return at("a");
    }
    CWorker& worker() { return *tree_->findObjectOf<CWorker>("ui.worker"); }
    static std::string send(CView& view, const char* event, const CTexts& params = {}) {
        CAttributeMap map;
        for (const auto& [name, value] : params)
            map[name.c_str()] = CAttributeValue::fromString(value.c_str());
        return consumed(view.receiveEvent(event, map));
    }
};

TEST_F(ViewCommand, RunsAtItsEventInTheOrderOfTheChildren) {
    CView& a = openWith({command("c1", {{"on-event", "go"}, {"set-state", "one two"}}),
                         command("c2", {{"on-event", "go"},
                                        {"condition-state-set", "one two"},
                                        {"unset-state", "one"},
                                        {"toggle-state", "two three"}}),
                         command("c3", {{"on-event", "other"}, {"set-state", "never"}})});
    EXPECT_EQ(send(a, "go"), "");
    EXPECT_EQ(text(a, "state"), "three");
}

TEST_F(ViewCommand, RunsAtTheEventsOfInput) {
    CView& a = openWith({command("c", {{"on-event", "mouse-release"}, {"toggle-state", "on"}})});
    CAttributeMap params;
    EXPECT_EQ(consumed(a.mousePress(params)), "");
    EXPECT_EQ(text(a, "state"), "");
    EXPECT_EQ(consumed(a.mouseRelease(params)), "");
    EXPECT_EQ(text(a, "state"), "on");
    EXPECT_TRUE(a.isInputView());
    EXPECT_FALSE(at("b").isInputView());
}

TEST_F(ViewCommand, RunsWhenATimedStateIsOver) {
    CView& a = openWith({command("c", {{"on-event", "state-ready"}, {"set-state", "rest"}})});
    EXPECT_EQ(consumed(a.setStateTimed("work", 0.1)), "");
    tick(0.2);
    EXPECT_EQ(text(a, "state"), "rest");
}

TEST_F(ViewCommand, ConditionsAskForAllAndForNone) {
    const struct {
        const char* set;
        const char* unset;
        const char* states;
        bool runs;
    } rows[] = {{"", "", "", true},  {"x", "", "", false},    {"x y", "", "x", false}, {"x y", "", "y z x", true},
                {"", "x", "", true}, {"", "x y", "y", false}, {"x", "y", "x", true},   {"x", "y", "x y", false}};
    for (const auto& row : rows) {
        CView& a = openWith({command("c", {{"on-event", "go"},
                                           {"condition-state-set", row.set},
                                           {"condition-state-unset", row.unset},
                                           {"set-state", "ran"}})});
        EXPECT_EQ(consumed(a.setState(row.states)), "");
        EXPECT_EQ(send(a, "go"), "");
        EXPECT_EQ(a.isStateSet("ran"), row.runs) << row.set << '/' << row.unset << '/' << row.states;
    }
}

TEST_F(ViewCommand, ConditionsAndStatesAreThoseOfTheTarget) {
    CView& a = openWith({command(
        "c", {{"on-event", "go"}, {"state-target", "^.b"}, {"condition-state-set", "ready"}, {"set-state", "done"}})});
    EXPECT_EQ(consumed(a.setState("ready")), "");
    EXPECT_EQ(send(a, "go"), "");
    EXPECT_FALSE(at("b").isStateSet("done"));
    EXPECT_EQ(consumed(at("b").setState("ready")), "");
    EXPECT_EQ(send(a, "go"), "");
    EXPECT_TRUE(at("b").isStateSet("done"));
    EXPECT_FALSE(a.isStateSet("done"));
}

TEST_F(ViewCommand, AMissingTargetIsLoggedAndTheRestRuns) {
    CView& a = openWith({command("c", {{"on-event", "go"},
                                       {"state-target", "^.nobody"},
                                       {"set-state", "x"},
                                       {"run-event", "work"},
                                       {"run-event-target", "ui.nothing"},
                                       {"reset-shared-attr", "ui-nothing"},
                                       {"toggle-attr", "is-flag"}})});
    const CLogCapture log;
    EXPECT_EQ(send(a, "go"), "");
    EXPECT_TRUE(log.has("Target not found: ^.nobody // ui.w.a.c"));
    EXPECT_TRUE(log.has("Target not found: ui.nothing // ui.w.a.c"));
    EXPECT_TRUE(log.has("Target not found: ui-nothing // ui.w.a.c"));
    EXPECT_TRUE(a.getAttrBool("is-flag"));
    EXPECT_EQ(text(a, "state"), "");
}

TEST_F(ViewCommand, AnEventCarriesForwardedParametersAndItsOwnWhichWin) {
    CView& a = openWith({command("c",
                                 {{"on-event", "go"},
                                  {"run-event", "work"},
                                  {"run-event-target", "ui.worker"},
                                  {"run-event-forward-params", "true"}},
                                 {{"core:object", "run-event-params", {{"x", "own"}, {"z", "3"}}}})});
    EXPECT_EQ(send(a, "go", {{"x", "given"}, {"y", "2"}}), "");
    EXPECT_EQ(worker().received, "x=own y=2 z=3 ");
}

TEST_F(ViewCommand, AnEventWithoutForwardingHasOnlyTheNamedParameters) {
    CView& a = openWith({command("c", {{"on-event", "go"},
                                       {"run-event", "work"},
                                       {"run-event-target", "ui.worker"},
                                       {"run-event-params", "ui.box"}})},
                        {{"core:object", "box", {{"k", "v"}}}});
    EXPECT_EQ(send(a, "go", {{"x", "given"}}), "");
    EXPECT_EQ(worker().received, "k=v ");
}

TEST_F(ViewCommand, AnEventWithoutTargetIsThatOfTheView) {
    CView& a = openWith({command("c", {{"on-event", "go"}, {"run-event", "next"}}),
                         command("d", {{"on-event", "next"}, {"set-state", "arrived"}})});
    worker().listenObject("ui.w.a", "next", "work");
    EXPECT_EQ(send(a, "go"), "");
    EXPECT_TRUE(a.isStateSet("arrived"));
    EXPECT_NE(worker().received.find("event-name=next"), std::string::npos);
    EXPECT_NE(worker().received.find("sender=ui.w.a"), std::string::npos);
}

TEST_F(ViewCommand, ACommandThatCallsItselfRunsOnce) {
    CView& a = openWith({command("c", {{"on-event", "go"}, {"run-event", "go"}, {"toggle-state", "x"}})});
    EXPECT_EQ(send(a, "go"), "");
    EXPECT_TRUE(a.isStateSet("x"));
}

TEST_F(ViewCommand, AFailureStopsTheCommandAndTravelsToTheSender) {
    CView& a = openWith({command(
        "c", {{"on-event", "go"}, {"run-event", "fail"}, {"run-event-target", "ui.worker"}, {"set-state", "x"}})});
    EXPECT_EQ(send(a, "go").substr(0, 14), "Worker failed.");
    EXPECT_FALSE(a.isStateSet("x"));
    EXPECT_EQ(send(a, "go").substr(0, 14), "Worker failed.");
}

TEST_F(ViewCommand, FlagsAreToggledFromWhatTheyMean) {
    CView& a = openWith({command("c", {{"on-event", "go"}, {"toggle-attr", "is-flag"}}),
                         command("d", {{"on-event", "hide"}, {"toggle-attr", "is-visible"}})});
    EXPECT_EQ(send(a, "go"), "");
    EXPECT_EQ(text(a, "is-flag"), "true");
    EXPECT_EQ(send(a, "go"), "");
    EXPECT_EQ(text(a, "is-flag"), "false");
    EXPECT_EQ(send(a, "hide"), "");
    EXPECT_FALSE(a.isShown());
    EXPECT_EQ(send(a, "hide"), "");
    EXPECT_TRUE(a.isShown());
}

TEST_F(ViewCommand, SharedAttributesGoBackToTheirDefaultOrTheCommands) {
    const CTexts shared = {{"attribute", "precision"}, {"def-value", "0.7"}};
    const CTexts other = {{"attribute", "scale"}, {"def-value", "1.0"}};
    CView& a = openWith(
        {command("c", {{"on-event", "name"}, {"reset-shared-attr", "drag"}}),
         command("d", {{"on-event", "path"}, {"reset-shared-attr", "ui.local-data.scale"}, {"def-value", "1.25"}})},
        {{"core:object", "global-data", {}, {{"core:shared-attribute", "drag", shared}}},
         {"core:object", "local-data", {}, {{"core:shared-attribute", "scale", other}}}});
    CObject* drag = tree_->findObject("ui.global-data.drag");
    CObject* scale = tree_->findObject("ui.local-data.scale");
    ASSERT_TRUE(drag && scale);
    set(*drag, "precision", "0.1");
    EXPECT_EQ(send(a, "name"), "");
    EXPECT_EQ(text(*drag, "precision"), "0.7");
    EXPECT_EQ(send(a, "path"), "");
    EXPECT_EQ(text(*scale, "scale"), "1.25");
}

TEST_F(ViewCommand, SeveralSettingsGoBackAndOneThatIsMissingIsPassedOver) {
    const CTexts shared = {{"attribute", "precision"}, {"def-value", "0.7"}};
    const CTexts other = {{"attribute", "level"}, {"def-value", "1"}};
    CView& a = openWith({command("c", {{"on-event", "go"}, {"reset-shared-attr", "drag nothing  level"}})},
                        {{"core:object",
                          "global-data",
                          {},
                          {{"core:shared-attribute", "drag", shared}, {"core:shared-attribute", "level", other}}}});
    CObject* drag = tree_->findObject("ui.global-data.drag");
    CObject* level = tree_->findObject("ui.global-data.level");
    ASSERT_TRUE(drag && level);
    set(*drag, "precision", "0.1");
    set(*level, "level", "3");
    EXPECT_EQ(send(a, "go"), "");
    EXPECT_EQ(text(*drag, "precision"), "0.7");
    EXPECT_EQ(text(*level, "level"), "1");
}

TEST_F(ViewCommand, ACommandMayDestroyItsView) {
    CView& a = openWith({command("c", {{"on-event", "go"},
                                       {"run-event", "destroy"},
                                       {"run-event-target", "ui.worker"},
                                       {"set-state", "x"},
                                       {"toggle-attr", "is-flag"}}),
                         command("d", {{"on-event", "go"}, {"set-state", "y"}})});
    worker().victim = &a;
    EXPECT_EQ(send(a, "go"), "");
    EXPECT_EQ(tree_->findObject("ui.w.a"), nullptr);
    tick();
    EXPECT_EQ(tick(), 0);
}

}  // namespace
}  // namespace tarv
