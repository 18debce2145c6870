// The windows of presets, questions and names, with all of their hints, as the library embeds them.

#include "EditorViews.h"

namespace tarv {

namespace {

const CViewTreeTable kPresets = {
    {"",
     "ui:preset-manager",
     "- 520 352",
     "",
     {{"param-registry", "plugin.param-registry"},
      {"store-name", "shared-banks"},
      {"title", "Presets"},
      {"unique-name", "win-preset-manager"},
      {"window-alignment", "bottom"},
      {"interface-client", "ui.interface-client"}}},
    {"c",
     "ui:frame",
     "full 100% full",
     "Preset manager contents are shared between other instances of this plug-in, and are preserved between sessions "
     "without project dependency.",
     {}},
    {"c.banks", "ui:frame", "left 40% 100%", "", {}},
    {"c.banks.caption", "ui:textview", "top 100% 18", "", {{"title", "BANKS"}}},
    {"c.banks.buttons", "ui:view", "bottom 100% 24", "", {}},
    {"c.banks.buttons.add",
     "ui:button-base",
     "- - 24",
     "Adds a bank. Right button: behind the selected one.",
     {{"min-width", "30"}, {"title", "[IMG=is.button#Plus:Action]"}, {"event", "bank-add"}}},
    {"c.banks.buttons.delete",
     "ui:button-base",
     "- - 24",
     "Deletes the selected bank.",
     {{"min-width", "30"}, {"title", "[IMG=is.button#Minus:Action]"}, {"event", "on-bank-delete"}}},
    {"c.banks.buttons.load",
     "ui:button-base",
     "- - 24",
     "Loads a bank from a file: into the session bank if that is selected, otherwise behind the selected one.",
     {{"min-width", "30"}, {"title", "[IMG=is.button#Load:Action]"}, {"event", "bank-load"}}},
    {"c.banks.buttons.save",
     "ui:button-base",
     "- - 24",
     "Saves the selected bank to a file.",
     {{"min-width", "30"}, {"title", "[IMG=is.button#Save:Action]"}, {"event", "bank-save"}}},
    {"c.banks.outline", "ui:frame", "full 100% full", "", {}},
    {"c.banks.outline.list", "ui:textview", "full 100% 100%", "Banks. A second press renames one of your own.", {}},
    {"c.banks.outline.scroller", "ui:view", "overlay 100% 100%", "", {}},
    {"c.banks.outline.scroller.bar", "ui:scroller-bar", "right 10 100%", "", {{"scrolled-view", "^^list"}}},
    {"c.presets", "ui:frame", "full full 100%", "", {}},
    {"c.presets.caption", "ui:textview", "top 100% 18", "", {{"title", "PRESETS"}}},
    {"c.presets.buttons", "ui:view", "bottom 100% 24", "", {}},
    {"c.presets.buttons.add",
     "ui:button-base",
     "- - 24",
     "Adds a preset of the current state. Right button: behind the selected one.",
     {{"min-width", "30"}, {"title", "[IMG=is.button#Plus:Action]"}, {"event", "preset-add"}}},
    {"c.presets.buttons.delete",
     "ui:button-base",
     "- - 24",
     "Deletes the selected preset.",
     {{"min-width", "30"}, {"title", "[IMG=is.button#Minus:Action]"}, {"event", "on-preset-delete"}}},
    {"c.presets.buttons.replace",
     "ui:button-base",
     "- - 24",
     "Replaces the selected preset by the current state.",
     {{"min-width", "30"}, {"title", "[IMG=is.button#Replace:Action]"}, {"event", "preset-replace"}}},
    {"c.presets.buttons.load",
     "ui:button-base",
     "- - 24",
     "Loads a preset: into the current program if the session bank is selected, otherwise behind the selected one.",
     {{"min-width", "30"}, {"title", "[IMG=is.button#Load:Action]"}, {"event", "preset-load"}}},
    {"c.presets.buttons.save",
     "ui:button-base",
     "- - 24",
     "Saves the selected preset to a file.",
     {{"min-width", "30"}, {"title", "[IMG=is.button#Save:Action]"}, {"event", "preset-save"}}},
    {"c.presets.buttons.activate",
     "ui:button-base",
     "- - 24",
     "Makes the selected preset the current state. A double click does the same.",
     {{"min-width", "30"}, {"title", "Activate"}, {"event", "preset-activate"}}},
    {"c.presets.buttons.set-default",
     "ui:button-base",
     "- - 24",
     "Makes the selected preset the one that new instances start with; that one is marked.",
     {{"min-width", "30"}, {"title", "Default"}, {"event", "preset-set-default"}}},
    {"c.presets.outline", "ui:frame", "full 100% full", "", {}},
    {"c.presets.outline.list",
     "ui:textview",
     "full 100% 100%",
     "Presets of the bank. A double click activates, a second press renames.",
     {}},
    {"c.presets.outline.scroller", "ui:view", "overlay 100% 100%", "", {}},
    {"c.presets.outline.scroller.bar", "ui:scroller-bar", "right 10 100%", "", {{"scrolled-view", "^^list"}}},
};

const CViewTreeTable kRoutingPresets = {
    {"",
     "ui:preset-manager",
     "- 420 352",
     "",
     {{"param-registry", "plugin.param-registry-io"},
      {"store-name", "routing-presets"},
      {"is-global-data", "true"},
      {"title", "Routing Presets"},
      {"unique-name", "win-preset-manager-routing"},
      {"window-alignment", "bottom"},
      {"interface-client", "ui.interface-client"}}},
    {"c",
     "ui:frame",
     "full 100% full",
     "Preset manager contents are shared between other instances of this plug-in, and are preserved between sessions "
     "without project dependency.",
     {}},
    {"c.presets", "ui:frame", "full full 100%", "", {}},
    {"c.presets.caption", "ui:textview", "top 100% 18", "", {{"title", "ROUTING PRESETS"}}},
    {"c.presets.buttons", "ui:view", "bottom 100% 24", "", {}},
    {"c.presets.buttons.add",
     "ui:button-base",
     "- - 24",
     "Adds a preset of the current routing. Right button: behind the selected one.",
     {{"min-width", "30"}, {"title", "[IMG=is.button#Plus:Action]"}, {"event", "preset-add"}}},
    {"c.presets.buttons.delete",
     "ui:button-base",
     "- - 24",
     "Deletes the selected preset.",
     {{"min-width", "30"}, {"title", "[IMG=is.button#Minus:Action]"}, {"event", "on-preset-delete"}}},
    {"c.presets.buttons.replace",
     "ui:button-base",
     "- - 24",
     "Replaces the selected preset by the current routing.",
     {{"min-width", "30"}, {"title", "[IMG=is.button#Replace:Action]"}, {"event", "preset-replace"}}},
    {"c.presets.buttons.load",
     "ui:button-base",
     "- - 24",
     "Loads a preset from a file, behind the selected one.",
     {{"min-width", "30"}, {"title", "[IMG=is.button#Load:Action]"}, {"event", "preset-load"}}},
    {"c.presets.buttons.save",
     "ui:button-base",
     "- - 24",
     "Saves the selected preset to a file.",
     {{"min-width", "30"}, {"title", "[IMG=is.button#Save:Action]"}, {"event", "preset-save"}}},
    {"c.presets.buttons.activate",
     "ui:button-base",
     "- - 24",
     "Makes the selected preset the current routing. A double click does the same.",
     {{"min-width", "30"}, {"title", "Activate"}, {"event", "preset-activate"}}},
    {"c.presets.outline", "ui:frame", "full 100% full", "", {}},
    {"c.presets.outline.list",
     "ui:textview",
     "full 100% 100%",
     "Presets of routing. A double click activates, a second press renames.",
     {}},
    {"c.presets.outline.scroller", "ui:view", "overlay 100% 100%", "", {}},
    {"c.presets.outline.scroller.bar", "ui:scroller-bar", "right 10 100%", "", {{"scrolled-view", "^^list"}}},
};

const CViewTreeTable kMessage = {
    {"",
     "ui:window-drag",
     "- 340 -",
     "",
     {{"is-modal", "true"}, {"title", "Message"}, {"window-alignment", "center-overlay"}}},
    {"c", "ui:frame", "top 100% -", "", {}},
    {"c.text", "ui:textview", "top 100% -", "", {}},
    {"c.buttons", "ui:view", "top 100% 24", "", {}},
    {"c.buttons.ok", "ui:button-base", "- - 24", "", {{"min-width", "76"}, {"title", "OK"}}},
};

const CViewTreeTable kConfirmation = {
    {"",
     "ui:window-drag",
     "- 340 -",
     "",
     {{"is-modal", "true"}, {"title", "Confirmation"}, {"window-alignment", "center-overlay"}}},
    {"c", "ui:frame", "top 100% -", "", {}},
    {"c.text", "ui:textview", "top 100% -", "", {}},
    {"c.buttons", "ui:view", "top 100% 24", "", {}},
    {"c.buttons.ok", "ui:button-base", "- - 24", "", {{"min-width", "76"}, {"title", "OK"}}},
    {"c.buttons.cancel", "ui:button-base", "- - 24", "", {{"min-width", "76"}, {"title", "Cancel"}}},
};

/// Below both dialogs of names.
const CViewTreeTable kNameButtons = {
    {"c.buttons", "ui:view", "top 100% 24", "", {}},
    {"c.buttons.cancel",
     "ui:button-base",
     "right - 24",
     "Leaves all names as they were.",
     {{"min-width", "56"}, {"title", "Cancel"}}},
    {"c.buttons.ok",
     "ui:button-base",
     "right - 24",
     "Sets all names in one step.",
     {{"min-width", "40"}, {"title", "OK"}}},
    {"c.buttons.copy-paste", "ui:view", "- - 24", "", {}},
    {"c.buttons.copy-paste.copy",
     "ui:button-base",
     "- - 24",
     "Copies all names, one a line.",
     {{"min-width", "56"}, {"title", "Copy"}}},
    {"c.buttons.copy-paste.paste",
     "ui:button-base",
     "- - 24",
     "Pastes names, one a line, into the first fields.",
     {{"min-width", "56"}, {"title", "Paste"}}},
};

const CViewTreeTable kChannelNames = {
    {"",
     "ui:window-drag",
     "- 300 -",
     "",
     {{"is-modal", "true"},
      {"title", "Channel Names"},
      {"unique-name", "win-channel-label-setup"},
      {"window-alignment", "center-overlay"}}},
    {"c", "ui:frame", "top 100% -", "", {}},
    {"c.names", "ui:view", "top 100% -", "", {}},
    {"c.from-host", "ui:view", "top 100% 24", "", {}},
    {"c.from-host.import",
     "ui:button-base",
     "full full 24",
     "Fills in what the host calls its channels.",
     {{"title", "From host"}}},
};

const CViewTreeTable kGroupNames = {
    {"",
     "ui:window-drag",
     "- 300 -",
     "",
     {{"is-modal", "true"},
      {"title", "Group Names"},
      {"unique-name", "win-group-name-setup"},
      {"window-alignment", "center-overlay"}}},
    {"c", "ui:frame", "top 100% -", "", {}},
    {"c.names", "ui:view", "top 100% -", "", {}},
};

class EditorDialogTree : public CEditorViews {
protected:
    void expectNameDialog(const char* templateName, CViewTreeTable rows, const CBoundRow& setup) {
        rows.insert(rows.end(), kNameButtons.begin(), kNameButtons.end());
        expectWindow(templateName, rows, true, {setup});
    }
};

TEST_F(EditorDialogTree, TheManagersOfPresetsHaveTheirViewsWithTheirHintsAndNoOther) {
    expectWindow("ui:win-preset-manager", kPresets, true, {});
    expectWindow("ui:win-preset-manager-routing", kRoutingPresets, true, {});
}

TEST_F(EditorDialogTree, MessagesAndQuestionsHaveTheirViewsAndNoHints) {
    expectWindow("ui:win-message", kMessage, false, {});
    expectWindow("ui:win-confirmation", kConfirmation, false, {});
}

TEST_F(EditorDialogTree, DialogsOfNamesHaveTheirViewsWithTheirHintsAndNoOther) {
    expectNameDialog(
        "ui:win-channel-label-setup", kChannelNames,
        {"name-setup",
         "ui:name-setup",
         {{"bridge", "ui.in-channel-names-bridge"}, {"item-tag", "ui:win-channel-label-item"}, {"max-length", "8"}}});
    expectNameDialog(
        "ui:win-group-name-setup", kGroupNames,
        {"name-setup",
         "ui:name-setup",
         {{"bridge", "ui.group-names-bridge"}, {"item-tag", "ui:win-group-name-item"}, {"max-length", "12"}}});
}

}  // namespace

}  // namespace tarv
