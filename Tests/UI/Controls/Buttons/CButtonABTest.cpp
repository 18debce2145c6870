#include "UI/Controls/Buttons/CButtonAB.h"

#include "Tests/UI/Controls/ControlEditor.h"

namespace tarv {
namespace {

class CButtonABTest : public CControlEditor {
protected:
    CButtonABTest() { openWindow(); }

    static CTestNode label(const char* name) {
        return {"ui:textview",
                name,
                {{"placement", "left"}, {"width", "50%"}, {"height", "100%"}, {"title", name}},
                {{"ui:view-state", "live", {{"state-name", "live"}, {"text-color", "Action"}}}}};
    }
    std::string tryAdd(const std::vector<CTestNode>& labels, bool hasLabels = true) {
        std::vector<CTestNode> children;
        if (hasLabels) {
            children.push_back({"ui:view", "labels", {{"placement", "full"}, {"width", "100%"}}, labels});
        }
        return tryLoad("w", {{"ui:button-ab",
                              "ab",
                              {{"width", "48"}, {"height", "24"}, {"plugin-control", "ui.test-control"}},
                              children}});
    }
    CButtonAB& add() {
        EXPECT_EQ(tryAdd({label("a"), label("b")}), "");
        turn();
        return at<CButtonAB>("ab");
    }
    /// The label that is live.
    std::string live() {
        std::string all;
        for (const char* name : {"a", "b"}) {
            all += at<CView>(std::string("ab.labels.") + name).isStateSet("live") ? name : "";
        }
        return all;
    }
};

TEST_F(CButtonABTest, ShowsTheLiveStateAndFollowsIt) {
    load("", {{"core:object", "test-control", {{"is-alternate", "true"}}}});
    CButtonAB& button = add();
    EXPECT_EQ(live(), "b") << "also when the editor opens";
    EXPECT_TRUE(button.isStateSet("b-state"));
    EXPECT_EQ(button.readableValue().toUtf8(), "B");
    set(object("test-control"), "is-alternate", "false");
    EXPECT_EQ(live(), "a");
    EXPECT_FALSE(button.isStateSet("b-state"));
    EXPECT_EQ(button.readableValue().toUtf8(), "A");
    EXPECT_EQ(at<CView>("ab.labels.a").getAttrString("text-color").toUtf8(), "Action");
    set(object("test-control"), "is-alternate", "true");
    EXPECT_EQ(live(), "b");
}

TEST_F(CButtonABTest, AReleaseAloneChangesNothing) {
    load("", {{"core:object", "test-control"}});
    CButtonAB& button = add();
    listen(button, {"button-released"});
    click(button);
    EXPECT_EQ(heard(), "ab button-released");
    EXPECT_EQ(live(), "a") << "what the engine says is live";
}

TEST_F(CButtonABTest, WithoutItsControlAIsLive) {
    add();
    EXPECT_EQ(live(), "a");
}

TEST_F(CButtonABTest, MissingLabelsFail) {
    EXPECT_EQ(tryAdd({}, false), "Unable to find labels.");
    EXPECT_EQ(tryAdd({label("b")}), "Unable to find label A.");
    EXPECT_EQ(tryAdd({label("a")}), "Unable to find label B.");
}

}  // namespace
}  // namespace tarv
