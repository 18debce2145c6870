#include "UI/Controls/Buttons/CGroupLabel.h"

#include "Tests/UI/Controls/ControlEditor.h"
#include "UI/Controls/Lists/CValueList.h"

namespace tarv {
namespace {

class CGroupLabelTest : public CControlEditor {
protected:
    CGroupLabelTest() {
        openWindow();
        for (const char* name : {"in-channel-names", "group-names", "in-routing", "grouping", "ms-pairs"}) {
            addBridge(std::string(name) + "-bridge", std::string("io-params.") + name);
        }
        load("", {{"ui:param-group-selector", "sel"}});
    }
    CGroupLabel& add(CTexts attributes) {
        attributes.insert(attributes.end(), {{"width", "60"}, {"height", "20"}});
        load("w", {{"ui:group-label", "g", std::move(attributes)}});
        turn();
        return at<CGroupLabel>("g");
    }
    static std::string shown(const CGroupLabel& label) {
        return label.source().plainText(0, label.source().count()).toUtf8();
    }
};

TEST_F(CGroupLabelTest, ShowsWhatTheGroupOfItsSelectorReceives) {
    CGroupLabel& label = add({{"group-selector", "ui.sel"}});
    EXPECT_EQ(shown(label), "L R");
    set(object("sel"), "group-index", "1");
    EXPECT_EQ(shown(label), "no channels");
    const double inputs[] = {1.0, 2.0, 4.0};
    EXPECT_EQ(consumed(bridge("in-routing-bridge").setValues(0, 0, inputs, 3)), "");
    turn();
    EXPECT_EQ(shown(label), "IN4");
}

TEST_F(CGroupLabelTest, PathsBeginAtTheLabel) {
    CGroupLabel& label = add({{"group-selector", "^^.sel"}});
    EXPECT_EQ(shown(label), "L R");
    set(object("sel"), "group-index", "1");
    EXPECT_EQ(shown(label), "no channels");
}

TEST_F(CGroupLabelTest, ADeclaredListCounts) {
    load("w", {{"ui:group-label",
                "g",
                {{"width", "60"}, {"height", "20"}},
                {{"ui:value-list-manual", "value-list", {}, {{"content", "content", {{"title", "mine"}}}}}}}});
    EXPECT_EQ(shown(at<CGroupLabel>("g")), "mine");
    EXPECT_EQ(consumed(dynamic_cast<CValueList&>(object("w.g.value-list")).setItems({})), "");
    EXPECT_EQ(shown(at<CGroupLabel>("g")), "");
}

TEST_F(CGroupLabelTest, SlidesWhereItDoesNotFit) {
    CGroupLabel& label = add({{"group-selector", "ui.sel"}});
    const double inputs[] = {3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0, 10.0};
    const double groups[] = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
    EXPECT_EQ(consumed(bridge("in-routing-bridge").setValues(0, 0, inputs, 8)), "");
    EXPECT_EQ(consumed(bridge("grouping-bridge").setValues(0, 0, groups, 8)), "");
    turn();
    EXPECT_GT(label.layout().width(), 60);
    turn(2.0);
    EXPECT_GT(label.area().value(CViewCell::OffsetX), 0.0F);
}

TEST_F(CGroupLabelTest, UnknownSelectorsFail) {
    EXPECT_EQ(tryLoad("w", {{"ui:group-label", "x", {{"group-selector", "ui.no"}}}}),
              "Unable to locate group selector: ui.no");
}

}  // namespace
}  // namespace tarv
