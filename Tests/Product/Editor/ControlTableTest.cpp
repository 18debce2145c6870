// Every control of the editor has a test that works it by its name: the table fails when the tree gains one without.

#include <algorithm>
#include <set>

#include "EveryWindow.h"
#include "UI/Controls/Buttons/CScrollerBar.h"

namespace tarv {

namespace {

struct CControlRow {
    const char* path;  ///< `*` stands for any text
    const char* test;
};

constexpr CControlRow kControls[] = {
    {"ui.main-window.window-title.bypass", "TitleAndButtons.BypassSwitchesAndFollows"},
    {"ui.main-window.window-title.quality-selector.object", "TitleAndButtons.TheOversamplingIsChosenFromItsList"},
    {"ui.main-window.window-title.instance-name.readout", "TitleAndButtons.TheInstancesNameIsTyped"},
    {"ui.main-window.c.buttons.preset-manager", "RoutingWindow.TheManagerOfPresetsOpensByItsButton"},
    {"ui.main-window.c.buttons.preset-manager.quick-preset-list", "TitleAndButtons.APresetIsChosenFromTheQuickList"},
    {"ui.main-window.c.buttons.history.button-undo", "TitleAndButtons.UndoAndRedoMoveAndAreDisabledWithNothingToDo"},
    {"ui.main-window.c.buttons.history.button-redo", "TitleAndButtons.UndoAndRedoMoveAndAreDisabledWithNothingToDo"},
    {"ui.main-window.c.buttons.history.button-select", "TitleAndButtons.AStepIsChosenFromTheHistory"},
    {"ui.main-window.c.buttons.ab", "TitleAndButtons.BothStatesAreSwitchedCopiedAndReset"},
    {"ui.main-window.c.buttons.copy", "TitleAndButtons.BothStatesAreSwitchedCopiedAndReset"},
    {"ui.main-window.c.buttons.reset", "TitleAndButtons.BothStatesAreSwitchedCopiedAndReset"},
    {"ui.main-window.c.buttons.channel-routing", "RoutingWindow.IsOneForAnEditorAndClosesByItsButton"},
    {"ui.main-window.c.buttons.channel-routing.quick-preset-list", "TitleAndButtons.ARoutingIsChosenFromTheQuickList"},
    {"ui.main-window.c.buttons.settings", "SettingsWindows.OpenAndCloseByTheirButtonsAndEscape"},
    {"ui.main-window.c.xeq*.title-frame-head.param-reset-button", "Bands.TheCurveIsScaledInvertedAndReset"},
    {"ui.main-window.c.xeq*.title-frame-head.eq-invert-scale.*", "Bands.TheCurveIsScaledInvertedAndReset"},
    {"ui.main-window.c.xeq*.xeq-base.edit-group.param-copy-button", "Groups.AGroupIsCopiedToAnother"},
    {"ui.main-window.c.xeq*.xeq-base.*-group.selector*", "Groups.EachButtonShowsItsGroup"},
    {"ui.main-window.c.xeq*.cs-sliders.control-surface", "Bands.EachBarFollowsTheDragOneToOne"},
    {"ui.main-window.c.xeq*.cs-sliders.ruler-values.label*", "Bands.EachValueIsTypedAndTabGoesOn"},
    {"ui.main-window.c.xeq*.cs-sliders.ruler-freqs.label*", "Bands.EachFrequencyIsTyped"},
    {"ui.main-window.c.xeq*.cs-gain.control-surface", "Bands.TheOutputGainsAreDraggedTurnedResetAndTyped"},
    {"ui.main-window.c.xeq*.cs-gain.ruler-values.label*", "Bands.TheOutputGainsAreDraggedTurnedResetAndTyped"},
    {"ui.win-*settings.window-title.close", "SettingsWindows.OpenAndCloseByTheirButtonsAndEscape"},
    {"ui.win-settings.c.settings.color-scheme.selector*", "SettingsWindows.APaletteIsWornAtOnce"},
    {"ui.win-settings.c.settings.scale.selector*", "SettingsWindows.AScaleIsStoredForTheNextStart"},
    {"ui.win-settings.c.settings.show-hints", "SettingsWindows.HintsAreSwitched"},
    {"ui.win-settings.c.settings.global-settings", "SettingsWindows.OpenAndCloseByTheirButtonsAndEscape"},
    {"ui.win-global-settings.c.settings.oversampling.selector*", "SettingsWindows.TheOversamplingOfAutoIsChosen"},
    {"ui.win-global-settings.c.settings.*-precision.slider", "SettingsWindows.SlidersMoveInStepsOfATwentieth"},
    {"ui.win-global-settings.c.settings.switches.right.denorm", "SettingsWindows.TheNoiseIsSwitchedWithoutAStep"},
    {"ui.win-global-settings.c.settings.switches.*", "SettingsWindows.EachSwitchSwitchesItsSetting"},
    {"ui.win-global-settings.c.settings.reset-defaults", "SettingsWindows.ResetAsksAndSetsAllBack"},
    {"ui.win-confirmation.c.buttons.*", "SettingsWindows.ResetAsksAndSetsAllBack"},
    {"ui.win-confirmation.window-title.close", "SettingsWindows.AQuestionIsAnsweredByKeys"},
    {"ui.win-channel-routing.window-title.close", "RoutingWindow.IsOneForAnEditorAndClosesByItsButton"},
    {"ui.win-channel-routing.c.*.names", "RoutingWindow.NamesOpenTheirDialogs"},
    {"ui.win-channel-routing.c.*.fields.object*", "RoutingWindow.EachFieldIsChosenFromItsListAsOneStep"},
    {"ui.win-channel-routing.c.buttons.routing-presets*",
     "RoutingWindow.RoutingPresetsHaveTheirQuickListAndTheirManager"},
    {"ui.win-channel-label-setup.c.from-host.import", "NamingWindows.TheHostsNamesAreTakenOver"},
    {"ui.win-*-setup.c.names.*", "NamingWindows.NamesThatAreTypedAreSetByOk"},
    {"ui.win-*-setup.temp-editbox", "NamingWindows.AreWorkedByKeysAlone"},
    {"ui.win-*-setup.window-title.close", "NamingWindows.CancelLeavesTheNames"},
    {"ui.win-*-setup.c.buttons.ok", "NamingWindows.NamesThatAreTypedAreSetByOk"},
    {"ui.win-*-setup.c.buttons.cancel", "NamingWindows.CancelLeavesTheNames"},
    {"ui.win-*-setup.c.buttons.copy-paste.*", "NamingWindows.AllNamesAreCopiedAndPasted"},
    {"ui.win-preset-manager*.window-title.close", "PresetWindows.CloseByTheirButtons"},
    {"ui.win-preset-manager.c.banks.outline.list", "PresetWindows.ABankIsChosenAndAPresetOfItActivatedByADoubleClick"},
    {"ui.win-preset-manager.c.presets.outline.list",
     "PresetWindows.ABankIsChosenAndAPresetOfItActivatedByADoubleClick"},
    {"ui.win-preset-manager*.outline.scroller.bar", "PresetWindows.ABarScrollsAListWithHiddenRows"},
    {"ui.win-preset-manager.c.banks.buttons.*", "PresetWindows.BanksAreAddedSavedDeletedAndLoaded"},
    {"ui.win-preset-manager.c.presets.buttons.*", "PresetWindows.PresetsAreAddedReplacedActivatedSavedAndLoaded"},
    {"ui.win-preset-manager-routing.c.presets.*", "PresetWindows.RoutingPresetsAreWorkedByTheSameButtons"},
    {"ui.win-message.c.buttons.ok", "PresetWindows.AFailureOpensAMessageThatIsClosedByItsButtons"},
    {"ui.win-message.window-title.close", "PresetWindows.AFailureOpensAMessageThatIsClosedByItsButtons"},
    {"ui.window-app-popup-list.list", "TitleAndButtons.APresetIsChosenFromTheQuickList"},
    {"ui.main-window.temp-editbox", "TitleAndButtons.TheInstancesNameIsTyped"},
    {"ui.virtual-keyboard-alphadigit.*", "TitleAndButtons.TheInstancesNameIsTypedOnTheScreen"},
    {"ui.virtual-keyboard-digit.*", "Bands.AValueIsTypedOnTheScreen"}};

bool isLike(const std::string& text, const std::string& pattern) {
    const size_t star = pattern.find('*');
    if (star == std::string::npos) {
        return text == pattern;
    }
    if (text.compare(0, star, pattern, 0, star) != 0) {
        return false;
    }
    const std::string rest = pattern.substr(star + 1);
    for (size_t from = star; from <= text.size(); ++from) {
        if (isLike(text.substr(from), rest)) {
            return true;
        }
    }
    return false;
}

std::set<std::string> testsOfTheProgram() {
    std::set<std::string> names;
    const testing::UnitTest& all = *testing::UnitTest::GetInstance();
    for (int suite = 0; suite < all.total_test_suite_count(); ++suite) {
        const testing::TestSuite& of = *all.GetTestSuite(suite);
        for (int i = 0; i < of.total_test_count(); ++i) {
            names.insert(std::string(of.name()) + "." + of.GetTestInfo(i)->name());
        }
    }
    return names;
}

class ControlTable : public CEveryWindow {
protected:
    /// Paths of the views that take input, in a window that is open.
    static void collect(const CView& view, std::set<std::string>& paths) {
        // A scroll bar is decorative while nothing is hidden.
        const bool isBar = dynamic_cast<const CScrollerBar*>(&view) != nullptr;
        if (view.isInputView() && (isBar || !view.isDecorative()) && !view.isRootView()) {
            paths.insert(view.fullName().toUtf8());
        }
        for (const CObject* child : view.children()) {
            const auto* below = dynamic_cast<const CView*>(child);
            if (below && below->isShown()) {
                collect(*below, paths);
            }
        }
    }
};

TEST_F(ControlTable, NamesATestForEveryControl) {
    std::set<std::string> paths;
    visitEveryWindow([&](const char* window) { collect(at(window), paths); });
    for (const std::string& path : paths) {
        const auto* row = std::find_if(std::begin(kControls), std::end(kControls),
                                       [&](const CControlRow& each) { return isLike(path, each.path); });
        EXPECT_NE(row, std::end(kControls)) << path;
    }
    for (const CControlRow& row : kControls) {
        EXPECT_TRUE(
            std::any_of(paths.begin(), paths.end(), [&](const std::string& path) { return isLike(path, row.path); }))
            << "no control is like " << row.path;
    }
}

TEST_F(ControlTable, NamesTestsThatAreThere) {
    const std::set<std::string> tests = testsOfTheProgram();
    for (const CControlRow& row : kControls) {
        EXPECT_EQ(tests.count(row.test), 1u) << row.test;
    }
}

}  // namespace

}  // namespace tarv
