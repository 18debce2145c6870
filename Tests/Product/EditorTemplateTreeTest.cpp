// The templates of the editor's tree, and the views that others make from them, as the library embeds them.

#include "EditorViews.h"

namespace tarv {

namespace {

/// In the order of the definitions.
const std::vector<std::string> kTemplates = {
    "ui:button",
    "ui:engine-activity",
    "ui:editbox-popup",
    "ui:win-name-item",
    "ui:win-channel-label-item",
    "ui:win-group-name-item",
    "ui:label-copy-paste",
    "ui:naming-window",
    "ui:naming-content",
    "ui:naming-buttons",
    "ui:win-channel-label-setup",
    "ui:win-group-name-setup",
    "ui:window-app-popup-list",
    "ui:button-groupsel",
    "ui:selector-palette-button",
    "ui:preset-button",
    "ui:preset-failure",
    "ui:preset-buttons",
    "ui:preset-list",
    "ui:preset-column",
    "ui:preset-scroller",
    "ui:preset-outline",
    "ui:preset-window",
    "ui:win-preset-manager",
    "ui:win-preset-manager-routing",
    "ui:virtual-key",
    "ui:virtual-keyboard-note",
    "ui:virtual-keyboard-window",
    "ui:virtual-keyboard-digit",
    "ui:virtual-keyboard-alphadigit",
    "ui:control-surface-hairlines",
    "ui:control-surface-point-num",
    "ui:control-surface-curpos",
    "ui:ruler-label",
    "ui:ruler-readout",
    "ui:xeq-view",
    "ui:xeq-head",
    "ui:group-row-selector",
    "ui:xeq-base",
    "ui:xeq-gain-scale",
    "ui:xeq-value-row",
    "ui:xeq-surface",
    "ui:xeq-output",
    "ui:xeq-bands",
    "ui:window-title-bar",
    "ui:window-base",
    "ui:window-hints",
    "ui:window-long-hints",
    "ui:window-panel",
    "ui:setting-row",
    "ui:setting-choice",
    "ui:setting-switch",
    "ui:array-field",
    "ui:quality-field",
    "ui:array-title",
    "ui:ab-letter",
    "ui:quick-preset-list",
    "ui:focus-ring",
    "ui:window-blocker",
    "ui:window-message-base",
    "ui:message-content",
    "ui:message-buttons",
    "ui:message-button",
    "ui:message-ok",
    "ui:message-cancel",
    "ui:win-message",
    "ui:win-confirmation",
    "ui:win-settings",
    "ui:setting-slider",
    "ui:win-global-settings",
    "ui:routing-panel",
    "ui:routing-side",
    "ui:routing-names",
    "ui:routing-array",
    "ui:win-channel-routing",
};

/// A view that others make for themselves, below the main window.
struct CMadeRow {
    const char* name;  ///< of the template
    CViewTreeTable views;
};
const CMadeRow kMade[] = {
    {"ui:button",
     {{"",
       "ui:button-base",
       "- - -",
       "",
       {{"image-set", "shared::is.button"}, {"color", "Button"}, {"duration", "0.5"}, {"morph-duration", "0.2"}}},
      {"label", "ui:textview", "full - -", "", {}}}},
    {"ui:win-channel-label-item",
     {{"", "ui:view", "top 100% 24", "Name of the channel; if empty, its number.", {}},
      {"number", "ui:textview", "left 24 100%", "", {}},
      {"name", "ui:textview", "full full 20", "", {{"is-read-only", "false"}}}}},
    {"ui:win-group-name-item",
     {{"", "ui:view", "top 100% 24", "Name of the group; if empty, its number.", {}},
      {"number", "ui:textview", "left 24 100%", "", {}},
      {"name", "ui:textview", "full full 20", "", {{"is-read-only", "false"}}}}},
    {"ui:editbox-popup", {{"", "ui:editbox", "- - -", "", {{"color", "Field"}}}}},
    {"ui:window-blocker", {{"", "ui:picture", "overlay 100% 100%", "", {{"color", "WindowBlocker"}}}}},
    {"ui:control-surface-hairlines",
     {{"", "ui:surface-hairlines", "overlay 100% 100%", "", {{"color", "GraphLines"}}}}},
    {"ui:control-surface-point-num", {{"", "ui:textview", "overlay - -", "", {{"font-name", "shared::font.micro"}}}}},
    {"ui:ruler-label", {{"", "ui:textview", "overlay - -", "", {{"text-color", "RulerText"}}}}},
    {"ui:ruler-readout",
     {{"", "ui:readout", "overlay - -", "", {{"text-color", "ReadOutText"}, {"is-read-only", "false"}}}}},
};

class EditorTemplateTree : public CEditorViews {};

TEST_F(EditorTemplateTree, HasItsTemplatesAndNoOther) {
    const auto editor = makeEditor();
    std::vector<std::string> found;
    for (const CObject* child : editor->children()) {
        if (child->isTemplate()) {
            found.push_back(child->name().toUtf8());
        }
    }
    EXPECT_EQ(found, kTemplates);
}

TEST_F(EditorTemplateTree, TemplatesMakeTheViewsThatOthersAskFor) {
    const auto editor = makeEditor();
    CObject* window = editor->findObject("ui.main-window");
    for (const CMadeRow& row : kMade) {
        CObject* made = nullptr;
        EXPECT_FALSE(window->createChild(made, row.name, "made", true)) << row.name;
        const auto* view = dynamic_cast<const CView*>(made);
        ASSERT_TRUE(view) << row.name;
        expectViews(*view, row.views);
        delete made;
    }
}

TEST_F(EditorTemplateTree, AButtonHasItsStatesAndItsLabel) {
    const auto editor = makeEditor();
    const CObject* button = editor->findObject("ui.main-window.c.buttons.reset");
    ASSERT_TRUE(button);
    const std::vector<std::pair<std::string, std::string>> kChildren = {{"view-state-active", "active"},
                                                                        {"view-state-error", "error"},
                                                                        {"view-state-hover", "hover"},
                                                                        {"view-state-pushed", "pushed"},
                                                                        {"view-state-temp-pushed", "temp-pushed"},
                                                                        {"label", ""}};
    ASSERT_GE(button->children().count(), static_cast<int32_t>(kChildren.size()));
    for (size_t i = 0; i < kChildren.size(); ++i) {
        const CObject& child = *button->children()[static_cast<int32_t>(i)];
        EXPECT_EQ(child.name().toUtf8(), kChildren[i].first);
        EXPECT_EQ(child.getAttrString("state-name").toUtf8(), kChildren[i].second);
        expectClass(child, kChildren[i].second.empty() ? "ui:textview" : "ui:view-state");
    }
}

TEST_F(EditorTemplateTree, ListsAndKeyboardsAreWindowsThatCloseByThemselves) {
    const auto editor = makeEditor();
    CObject* ui = editor->findChild("ui");
    for (const char* name :
         {"ui:window-app-popup-list", "ui:virtual-keyboard-digit", "ui:virtual-keyboard-alphadigit"}) {
        CObject* made = nullptr;
        EXPECT_FALSE(ui->createChild(made, name, "made", true)) << name;
        ASSERT_TRUE(made) << name;
        const bool isList = std::string(name) == "ui:window-app-popup-list";
        expectClass(*made, isList ? "ui:view" : "ui:virtual-keyboard");
        EXPECT_TRUE(made->getAttrBool("is-root-view") && made->getAttrBool("is-popup-window")) << name;
        EXPECT_EQ(made->getAttrBool("is-helper-window"), !isList) << name;
        EXPECT_TRUE(made->findChild(isList ? "list" : "note")) << name;
        delete made;
    }
}

}  // namespace

}  // namespace tarv
