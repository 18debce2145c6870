#include "UI/Binding/CUIParamConverter.h"

#include <cmath>

#include "Tests/Core/LogCapture.h"
#include "Tests/UI/Binding/BindingTree.h"

namespace tarv {
namespace {

class UIParamConverter : public CBindingTest {
protected:
    UIParamConverter()
        : CBindingTest({{"ui:ui-param-converter", &createObject<CUIParamConverter>, &CUIParamConverter::initClass}}) {}

    /// An object `list` with a converter of these attributes, which follows the parameter `p.mode`.
    void openList(CTexts attributes) {
        open({{"core:object",
               "list",
               {},
               {{"ui:ui-param-converter",
                 "converter",
                 std::move(attributes),
                 {uiParam("ui-param", {{"bridge", "ui.gains-bridge"}})}}}}});
    }
    CObject& list() { return at<CObject>("list"); }
    void sendDecibels(double decibels) { sendWhole("gains", {{std::pow(10.0, decibels / 20.0)}}); }
};

TEST_F(UIParamConverter, SetsAnAttributeOfItsParent) {
    openList({{"target", "^"}, {"attr", "value-count"}});
    EXPECT_FALSE(list().hasAttr("value-count")) << "no value has come";
    sendDecibels(6.6);
    EXPECT_NEAR(list().getAttrReal("value-count"), 6.6, 1e-12);
}

TEST_F(UIParamConverter, RoundsToAWholeNumberHalfAwayFromZero) {
    openList({{"target", "^"}, {"attr", "value-count"}, {"is-integer", "true"}});
    for (const auto& [decibels, text] : {std::pair{6.6, "7"}, {-6.6, "-7"}, {6.4, "6"}, {0.0, "0"}}) {
        sendDecibels(decibels);
        EXPECT_EQ(list().getAttrString("value-count").toUtf8(), text) << decibels;
    }
    open({{"core:object",
           "list",
           {},
           {{"ui:ui-param-converter",
             "converter",
             {{"target", "^"}, {"attr", "value-count"}, {"is-integer", "true"}},
             {uiParam("ui-param", {{"shared-attribute", "ui.setting"}})}}}}});
    for (const auto& [value, text] : {std::pair{"2.5", "3"}, {"-2.5", "-3"}, {"3000000000", "2147483647"}}) {
        set(at<CObject>("setting"), "amount", value);
        EXPECT_EQ(list().getAttrString("value-count").toUtf8(), text) << value;
    }
}

TEST_F(UIParamConverter, FollowsItsAttributes) {
    openList({{"target", "^"}, {"attr", "value-count"}, {"is-integer", "true"}});
    sendDecibels(3.0);
    set(at<CObject>("list.converter"), "attr", "max-value");
    EXPECT_EQ(list().getAttrInt("max-value"), 3);
    set(at<CObject>("list.converter"), "target", "ui.sel");
    EXPECT_EQ(at<CObject>("sel").getAttrInt("max-value"), 3);
}

TEST_F(UIParamConverter, KeepsTheLastValueWhenTheEngineHasGone) {
    openList({{"target", "^"}, {"attr", "value-count"}, {"is-integer", "true"}});
    sendDecibels(3.0);
    client_->engineGone();
    EXPECT_EQ(list().getAttrInt("value-count"), 3);
    delete &param("list.converter.ui-param");
    set(at<CObject>("list.converter"), "attr", "other");
    EXPECT_FALSE(list().hasAttr("other"));
}

TEST_F(UIParamConverter, ATargetThatIsNotThereIsLogged) {
    openList({{"target", "ui.nobody"}, {"attr", "value-count"}});
    const CLogCapture log;
    sendDecibels(3.0);
    const bool isThere = std::any_of(log.lines.begin(), log.lines.end(), [](const std::string& line) {
        return line.find("Invalid target object 'ui.nobody'.") != std::string::npos;
    });
    EXPECT_TRUE(isThere);
}

}  // namespace
}  // namespace tarv
