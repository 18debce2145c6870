// The selectors of groups and what acts on a whole group, by hand.

#include <cmath>

#include "ProductEditor.h"
#include "UI/Binding/CParamGroupSelector.h"

namespace tarv {

namespace {

constexpr const char* kGains = "modBrindleXEQ.xeq-gains";
constexpr int32_t kGroups = 8;

struct CSelectorRow {
    const char* path;
    const char* selector;
    const char* opposite;
};
constexpr CSelectorRow kSelectors[] = {
    {"c.xeq1.xeq-base.edit-group.selector", "ui.groupsel-eq-a", "ui.groupsel-eq-b"},
    {"c.xeq2.xeq-base.edit-group.selector", "ui.groupsel-eq-b", "ui.groupsel-eq-a"},
    {"c.xeq1.xeq-base.underlay-group.selector", "ui.groupsel-eq-au", "ui.groupsel-eq-bu"},
    {"c.xeq2.xeq-base.underlay-group.selector", "ui.groupsel-eq-bu", "ui.groupsel-eq-au"}};

class Groups : public CProductEditor {
protected:
    int32_t shown(const char* selector) { return at<CParamGroupSelector>(selector).groupIndex(); }
    static std::string button(const CSelectorRow& row, int32_t group) {
        return std::string(row.path) + ".button" + (group > 0 ? "#" + std::to_string(group) : "");
    }
};

TEST_F(Groups, EachButtonShowsItsGroup) {
    for (const CSelectorRow& row : kSelectors) {
        for (int32_t group = kGroups - 1; group >= 0; --group) {
            const int32_t opposite = shown(row.opposite);
            click(button(row, group));
            EXPECT_EQ(shown(row.selector), group) << row.path;
            EXPECT_EQ(shown(row.opposite), opposite) << row.path;
            EXPECT_TRUE(hasState(button(row, group), "active")) << row.path << group;
        }
    }
}

TEST_F(Groups, ARightPressChoosesInBothViews) {
    for (const CSelectorRow& row : kSelectors) {
        click(button(row, 4), CPointerButton::Right);
        EXPECT_EQ(shown(row.selector), 4) << row.path;
        EXPECT_EQ(shown(row.opposite), 4) << row.path;
    }
}

TEST_F(Groups, TheBarsAreThoseOfTheChosenGroup) {
    click(button(kSelectors[0], 2));
    wheel(column("xeq1", 5), 2.0);
    EXPECT_NEAR(decibels(kGains, 2, 5), 1.0, 1e-9);
    EXPECT_NEAR(decibels(kGains, 0, 5), 0.0, 1e-9);
}

TEST_F(Groups, TheNextEditorShowsThemAgain) {
    click(button(kSelectors[0], 5));
    click(button(kSelectors[3], 2));
    closeEditor();
    openEditor();
    EXPECT_EQ(shown("ui.groupsel-eq-a"), 5);
    EXPECT_EQ(shown("ui.groupsel-eq-b"), 1);
    EXPECT_EQ(shown("ui.groupsel-eq-bu"), 2);
}

TEST_F(Groups, AGroupIsCopiedToAnother) {
    setEngine(kGains, 0, 3, std::pow(10.0, 5.0 / 20.0));
    setEngine("modOutGain.gain", 0, 0, std::pow(10.0, 1.0 / 20.0));
    setEngine("modBrindleXEQ.xeq-freqs", 0, 1, 200.0);
    click("c.xeq1.xeq-base.edit-group.param-copy-button");
    choose(4);
    EXPECT_NEAR(decibels(kGains, 4, 3), 5.0, 1e-9);
    EXPECT_NEAR(decibels("modOutGain.gain", 4), 1.0, 1e-9);
    EXPECT_NEAR(engine("modBrindleXEQ.xeq-freqs", 4, 1), 200.0, 1e-9);
    click("c.buttons.history.button-undo");
    EXPECT_NEAR(decibels(kGains, 4, 3), 0.0, 1e-9);
    EXPECT_NEAR(decibels("modOutGain.gain", 4), 0.0, 1e-9);
    click("c.xeq2.xeq-base.edit-group.param-copy-button");
    choose(0);
    EXPECT_NEAR(decibels(kGains, 0, 3), 0.0, 1e-9);
}

TEST_F(Groups, TheLabelListsTheChannelsOfTheGroup) {
    auto& label = at<CTextView>("c.xeq1.title-frame-head.group-label");
    EXPECT_EQ(label.paragraphText(0).toUtf8(), "L R");
    setEngine("io-params.grouping", 0, 1, 1.0);
    EXPECT_EQ(label.paragraphText(0).toUtf8(), "L");
    EXPECT_EQ(at<CTextView>("c.xeq2.title-frame-head.group-label").paragraphText(0).toUtf8(), "R");
}

TEST_F(Groups, AChosenOneWithoutChannelsIsAtFullStrength) {
    const std::string buttons = "c.xeq1.xeq-base.edit-group.selector.button";
    EXPECT_TRUE(hasState(buttons + "#4", "dimmed"));
    EXPECT_EQ(at(buttons + "#4").opacity(), 0.5);
    click(buttons + "#4");
    EXPECT_TRUE(hasState(buttons + "#4", "dimmed"));
    EXPECT_EQ(at(buttons + "#4").opacity(), 1.0);
}

}  // namespace

}  // namespace tarv
