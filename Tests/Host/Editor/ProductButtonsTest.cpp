// The title, the row of buttons and what acts on whole groups, in windows of the system.

#include "Tests/Host/Editor/ProductWindow.h"

namespace tarv::host {
namespace {

constexpr int32_t kBands = 7;
constexpr int32_t kGroups = 8;
constexpr const char* kUndo = "c.buttons.history.button-undo";
constexpr const char* kRedo = "c.buttons.history.button-redo";

class ProductButtons : public ProductWindow {
protected:
    /// A step of the history: wheel notches on one control within half a second are one.
    void turn(int32_t band, int notches) {
        wheel(column("xeq1", band), notches);
        twin->wait(1.0);
    }
    static std::string indexed(const std::string& path, int32_t index) {
        return path + (index > 0 ? "#" + std::to_string(index) : "");
    }
};

TEST_F(ProductButtons, BypassSwitchesAndFollowsTheHost) {
    click("window-title.bypass");
    expectSame("bypassed");
    EXPECT_EQ(heard(), "begin 0, automate 0 1.000, end 0");
    EXPECT_EQ(effect.parameter(0), 1.0F);
    effect.setParameter(0, 0.0F);
    twin->effect().setParameter(&twin->effect(), 0, 0.0F);
    expectSame("the host switched it back");
    EXPECT_EQ(heard(), "");
}

TEST_F(ProductButtons, TheOversamplingIsChosenFromItsList) {
    click("window-title.quality-selector");
    expectSame("the list is open");
    choose(2);
    expectSame("chosen");
    EXPECT_EQ(effect.parameter(17), 0.5F);
    EXPECT_EQ(heardGestures(), "begin 17, automate 17, end 17");
    expectSameState();
}

TEST_F(ProductButtons, TheCurveIsScaledInvertedAndReset) {
    for (const char* view : {"xeq1", "xeq2"}) {
        const std::string head = std::string("c.") + view + ".title-frame-head.";
        const int32_t first = view == std::string("xeq1") ? 1 : 9;
        wheel(column(view, 1), 4);
        EXPECT_TRUE(becomes(first + 1, "2.0"));
        click(head + "eq-invert-scale.invert");
        EXPECT_TRUE(becomes(first + 1, "-2.0")) << shown(first + 1);
        drag(head + "eq-invert-scale.scale", 0, -20);
        EXPECT_TRUE(desk.until([&] { return shown(first + 1) != "-2.0"; }));
        expectSame("scaled");
        expectSameState();
        click(head + "param-reset-button");
        for (int32_t band = 0; band < kBands; ++band) {
            EXPECT_TRUE(becomes(first + band, "0.0")) << view << band;
        }
    }
    expectSame("both curves reset");
    expectSameState();
}

TEST_F(ProductButtons, EachGroupIsChosenForBothRolesInBothViews) {
    for (const char* view : {"xeq1", "xeq2"}) {
        for (const char* role : {"edit-group", "underlay-group"}) {
            const std::string selector = std::string("c.") + view + ".xeq-base." + role + ".selector.button";
            for (int32_t group = kGroups - 1; group >= 0; --group) {
                click(indexed(selector, group));
            }
            expectSame("each group chosen");
            click(indexed(selector, 4), true);
            expectSame("a group chosen in both views");
        }
    }
    EXPECT_EQ(heard(), "");
}

TEST_F(ProductButtons, AGroupIsCopiedToAnother) {
    wheel(column("xeq1", 2), 4);
    click("c.xeq1.xeq-base.edit-group.param-copy-button");
    expectSame("the list is open");
    choose(1);
    EXPECT_TRUE(becomes(11, "2.0")) << shown(11);
    expectSame("copied");
    expectSameState();
}

TEST_F(ProductButtons, StepsAreUndoneRedoneAndJumpedTo) {
    turn(0, 1);
    turn(1, 2);
    turn(2, 3);
    click(kUndo);
    EXPECT_TRUE(becomes(3, "0.0"));
    click(kUndo);
    EXPECT_TRUE(becomes(2, "0.0"));
    expectSame("two steps undone");
    click(kRedo);
    EXPECT_TRUE(becomes(2, "1.0"));
    click(kRedo);
    EXPECT_TRUE(becomes(3, "1.5"));
    click("c.buttons.history.button-select");
    expectSame("the list is open");
    choose(2);  // the newest stands on top
    EXPECT_TRUE(becomes(3, "0.0"));
    EXPECT_TRUE(becomes(2, "0.0"));
    EXPECT_EQ(shown(1), "0.5");
    expectSame("jumped");
    click(kRedo);
    EXPECT_TRUE(becomes(2, "1.0"));
    expectSame("redone");
    expectSameState();
}

TEST_F(ProductButtons, BothStatesAreSwitchedCopiedAndReset) {
    turn(0, 1);
    click("c.buttons.ab");
    expectSame("B begins as A");
    turn(0, 4);
    EXPECT_TRUE(becomes(1, "2.5")) << shown(1);
    click("c.buttons.ab");
    EXPECT_TRUE(becomes(1, "0.5"));
    expectSame("A is live");
    click("c.buttons.copy");
    click("c.buttons.ab");
    expectSame("B is a copy of A");
    EXPECT_EQ(shown(1), "0.5");
    click("c.buttons.reset");
    EXPECT_TRUE(becomes(1, "0.0"));
    click("c.buttons.ab");
    EXPECT_TRUE(becomes(1, "0.5"));
    expectSame("A is live again");
    expectSameState();
}

TEST_F(ProductButtons, TheInstancesNameAndAFrequencyAreTyped) {
    click("window-title.instance-name.readout");
    type("Drums 2");
    strike('\r');
    expectSame("the name typed");
    click("c.xeq1.cs-sliders.ruler-freqs.label#3");
    type("1200");
    strike('\r');
    expectSame("a frequency typed");
    EXPECT_EQ(desk.heard(parent), "");
    expectSameState();
}

TEST_F(ProductButtons, TheQuickListOfPresetsOpensAndCloses) {
    const std::string before = effect.chunk(true);
    click("c.buttons.preset-manager.quick-preset-list");
    expectSame("the quick list is open");
    strike('\x1b');
    expectSame("the quick list is closed");
    EXPECT_EQ(effect.chunk(true), before);
    EXPECT_EQ(desk.heard(parent), "");
}

TEST_F(ProductButtons, APresetOfTheFactoryBankIsChosenFromTheQuickList) {
    click("c.buttons.preset-manager.quick-preset-list");
    choose(1);
    expectSame("the presets of the factory bank stand beside it");
    // It opens under the pointer and anew by the press, whichever comes first.
    const std::string beside = "ui.window-app-popup-list#";
    choose(1, beside + (twin->exists(beside + "1") ? "1" : "2"));
    expectSame("a preset is active");
    const char* const kSmiley[] = {"-2.1", "-0.4", "1.3", "2.1", "1.3", "-0.4", "-2.1"};
    for (int32_t band = 0; band < kBands; ++band) {
        EXPECT_TRUE(becomes(1 + band, kSmiley[band])) << band << ' ' << shown(1 + band);
    }
    EXPECT_EQ(heardGestures(),
              "begin 1, begin 2, begin 3, begin 4, begin 5, begin 6, begin 7, automate 1, automate 2, automate 3, "
              "automate 4, automate 5, automate 6, automate 7, end 1, end 2, end 3, end 4, end 5, end 6, end 7");
    EXPECT_EQ(effect.text(vst::kEffectGetProgramName), "Inverted Smiley");
    expectSameState();
    click(kUndo);
    expectSame("undone");
    EXPECT_TRUE(becomes(1, "0.0")) << shown(1);
    expectSameState();
}

}  // namespace
}  // namespace tarv::host
