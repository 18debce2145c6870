#include "Audio/Parameters/CAudioExtParam.h"

#include <cmath>

#include "Tests/Audio/Parameters/ParamTree.h"

namespace tarv {
namespace {

CTestNode extNode(const std::string& name, const std::string& param, const std::string& group,
                  const std::string& element) {
    return {"audio:ext-param",
            "ext",
            {{"param-collector", "plugin.param-collector"},
             {"ext-name", name},
             {"param-name", param},
             {"group", group},
             {"element-index", element}}};
}

class ExtParam : public testing::Test, protected CAudioExtParamHostBridge {
protected:
    ExtParam()
        : tree_({paramNode("gains", "gain", "-12.0", "12.0", "0,0,0,0,0,0,0"),
                 paramNode("bypass", "enum-enable", "0", "1", "0", {{"is-single-group", "1"}})},
                {{"audio:ext-param-list",
                  "list",
                  {},
                  {extNode("Bypass", "p.bypass", "", ""),
                   extNode("EQA6", "p.gains", "", "6"),
                   extNode("EQB0", "p.gains", "1", "0"),
                   {"core:object", "none"},
                   extNode("Later", "p.later", "0", "0")}}}),
          list_(*tree_.root().findObjectOf<CAudioExtParamList>("plugin.list")),
          gains_(tree_.define("gains")),
          bypass_(tree_.define("bypass")) {}
    void onExtParamChanged(const CAudioExtParam& param) override {
        received_.emplace_back(param.extName().toUtf8(), param.getValue());
    }
    std::string display(int32_t index) const {
        CString text;
        list_.param(index)->getDisplay(text);
        return text.toUtf8();
    }

    CParamTree tree_;
    CAudioExtParamList& list_;
    CAudioParam& gains_;
    CAudioParam& bypass_;
    std::vector<std::pair<std::string, double>> received_;
};

TEST_F(ExtParam, TheListHoldsItsParametersInOrder) {
    ASSERT_EQ(list_.count(), 4);
    EXPECT_EQ(list_.param(0)->extName(), "Bypass");
    EXPECT_EQ(list_.param(2)->extName(), "EQB0");
    EXPECT_EQ(list_.param(2)->group(), 1);
    EXPECT_EQ(list_.param(1)->elementIndex(), 6);
    EXPECT_EQ(list_.param(1)->param(), &gains_);
}

TEST_F(ExtParam, AValueSetsOneElementOfOneGroup) {
    list_.setParameter(2, 1.0);
    EXPECT_NEAR(gains_.value(1, 0), 3.9810717055349725, 1e-12 * 3.98);
    EXPECT_EQ(gains_.value(0, 0), 1.0);
    EXPECT_EQ(gains_.value(1, 1), 1.0);
    EXPECT_NEAR(list_.getParameter(2), 1.0, 1e-12);
    EXPECT_NEAR(list_.getParameter(1), 0.5, 1e-12);
}

TEST_F(ExtParam, IndexesOutsideTheListDoNothing) {
    list_.setParameter(-1, 1.0);
    list_.setParameter(4, 1.0);
    EXPECT_EQ(list_.getParameter(-1), 0.0);
    EXPECT_EQ(list_.getParameter(4), 0.0);
    EXPECT_EQ(list_.param(INT32_MAX), nullptr);
    EXPECT_EQ(tree_.collector().pendingCount(), 0);
}

TEST_F(ExtParam, NormalisedValuesAreClampedAndNotANumberIsIgnored) {
    list_.setParameter(1, 7.0);
    EXPECT_NEAR(list_.getParameter(1), 1.0, 1e-12);
    list_.setParameter(1, std::nan(""));
    EXPECT_NEAR(list_.getParameter(1), 1.0, 1e-12);
    list_.setParameter(1, -std::numeric_limits<double>::infinity());
    EXPECT_NEAR(list_.getParameter(1), 0.0, 1e-12);
}

TEST_F(ExtParam, WithoutADefinitionTheValueIsZeroAndCannotBeSet) {
    list_.setParameter(3, 0.7);
    EXPECT_EQ(list_.getParameter(3), 0.0);
    EXPECT_EQ(display(3), "");
    CString text("x");
    list_.param(3)->getDisplayFor(text, 0.5);
    EXPECT_EQ(text, "");
    list_.param(3)->getLabel(text);
    EXPECT_EQ(text, "");
}

TEST_F(ExtParam, TextsComeFromTheConverter) {
    list_.setParameter(1, 0.75);
    EXPECT_EQ(display(1), "6.0");
    EXPECT_EQ(display(0), "Off");
    CString text;
    list_.param(1)->getLabel(text);
    EXPECT_EQ(text, "dB");
    list_.param(1)->getDisplayFor(text, 0.0);
    EXPECT_EQ(text, "-12.0");
    EXPECT_EQ(display(1), "6.0");
    list_.param(0)->getDisplayFor(text, 0.5);
    EXPECT_EQ(text, "On");
}

TEST_F(ExtParam, TheHostIsNotifiedOfChangesThatItDidNotMake) {
    for (int32_t i = 0; i < list_.count(); ++i)
        list_.param(i)->setHostBridge(this);
    list_.setParameter(1, 0.25);
    EXPECT_TRUE(received_.empty());
    gains_.setValue(0, 6, 1.0);
    gains_.setValue(0, 5, 1.0);
    gains_.setValue(1, 6, 1.0);
    ASSERT_EQ(received_.size(), 1u);
    EXPECT_EQ(received_[0].first, "EQA6");
    EXPECT_NEAR(received_[0].second, 0.5, 1e-12);
    bypass_.setValue(0, 0, 1.0);
    EXPECT_EQ(received_.back(), std::make_pair(std::string("Bypass"), 1.0));
    list_.param(1)->setHostBridge(nullptr);
    gains_.setValue(0, 6, 2.0);
    EXPECT_EQ(received_.size(), 2u);
}

TEST_F(ExtParam, TakesATextAsAPersonTypesIt) {
    CAudioExtParam& gain = *list_.param(1);
    EXPECT_TRUE(gain.setText("+6 dB"));
    EXPECT_NEAR(gain.getValue(), 0.75, 1e-12);
    EXPECT_FALSE(gain.setText("loud"));
    EXPECT_FALSE(gain.setText(""));
    EXPECT_NEAR(gain.getValue(), 0.75, 1e-12);
}

TEST_F(ExtParam, RemovingOneShiftsTheLaterOnesDown) {
    CAudioExtParam* removed = list_.param(0);
    list_.removeChild(removed);
    ASSERT_EQ(list_.count(), 3);
    EXPECT_EQ(list_.param(0)->extName(), "EQA6");
    EXPECT_EQ(list_.param(1)->extName(), "EQB0");
    delete removed;
    bypass_.setValue(0, 0, 1.0);  // no listener is left
}

TEST(ExtParamDefinition, BadOnesFailWithTheirMessage) {
    const struct {
        CTestNode node;
        const char* message;
    } kBad[] = {
        {{"audio:ext-param", "x", {{"param-collector", "plugin.nothing"}}},
         "No parameter collector 'plugin.nothing' found."},
        {extNode("TooLongX", "p.x", "0", "0"), "Externalized parameter name 'TooLongX' is too long"},
    };
    for (const auto& bad : kBad) {
        CParamTree tree;
        CObject* plugin = tree.root().findObject("plugin");
        const std::string failure = consumed(loadTree(*plugin, {bad.node}));
        EXPECT_EQ(failure.substr(0, failure.find('\r')), bad.message);
    }
}

}  // namespace
}  // namespace tarv
