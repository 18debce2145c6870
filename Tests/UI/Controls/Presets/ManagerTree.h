#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "Audio/Stores/CAudioDefaultPreset.h"
#include "Platform/Keyboard.h"
#include "Tests/UI/Controls/Presets/PresetTree.h"
#include "UI/Controls/Presets/CPresetManager.h"
#include "UI/Text/CEditBox.h"

namespace tarv {

/// Editors with a preset manager in a popup window: lists, and views as buttons.
class CManagerTest : public CPresetTest {
protected:
    CManagerTest() {
        templates_.push_back(
            managerTemplate("ui:win-preset-manager", true, {{"param-registry", kRegistry}, {"store-name", kBanks}}));
        templates_.push_back(managerTemplate(
            "ui:win-preset-manager-routing", false,
            {{"param-registry", kRoutingRegistry}, {"store-name", kRouting}, {"is-global-data", "true"}}));
        templates_.push_back(
            testTemplate("ui:win-confirmation", "ui:view",
                         {{"is-root-view", "true"}, {"is-modal", "true"}, {"width", "200"}, {"height", "60"}},
                         {{"ui:window-renderer", "window-renderer"}, answer("ok", "{event}"), answer("cancel", "")}));
        templates_.push_back(
            testTemplate("ui:win-message", "ui:view",
                         {{"is-root-view", "true"}, {"is-modal", "true"}, {"width", "200"}, {"height", "60"}},
                         {{"ui:window-renderer", "window-renderer"}}));
        templates_.push_back(testTemplate("ui:editbox-popup", "ui:editbox", {{"z-index", "150000000"}}));
        folder_ = std::filesystem::temp_directory_path() / ("tarv-preset-files-" + std::to_string(getpid()));
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
        editor_ = openManager();
    }
    ~CManagerTest() override {
        editor_.reset();
        std::filesystem::remove_all(folder_);
        EXPECT_EQ(firstLine(CAudioDefaultPreset::clear()), "");
    }

    /// An editor with its manager open.
    std::unique_ptr<CPresetEditor> openManager(CHostlessInstance* instance = nullptr,
                                               const char* kind = "preset-manager") {
        auto editor =
            openEditor({{"ui:view", "opener", {{"placement", "top"}, {"width", "120"}, {"height", "20"}}}}, instance);
        editor->openPopup("opener", ("ui:win-" + std::string(kind)).c_str());
        return editor;
    }
    void openRoutingManager() {
        editor_.reset();
        editor_ = openManager(nullptr, "preset-manager-routing");
    }
    static CPresetManager& managerOf(const CPresetEditor& editor) {
        auto* found = editor.find<CPresetManager>("win-preset-manager");
        return found ? *found : editor.at<CPresetManager>("win-preset-manager-routing");
    }
    CPresetManager& manager() const { return managerOf(*editor_); }
    static CTextView& list(const CPresetManager& manager, const char* name) {
        return *manager.findObjectOf<CTextView>((std::string(".") + name).c_str());
    }
    CTextView& banks() const { return list(manager(), "banks"); }
    CTextView& presets() const { return list(manager(), "presets"); }

    /// "[selected]" in brackets, "*" behind a marked row.
    static std::string shown(const CTextView& list) {
        std::string text;
        for (int32_t i = 0; i < list.paragraphCount(); ++i) {
            const std::string name = list.paragraphText(i).toUtf8();
            text += (i > 0 ? "|" : "") + (i == list.selectedParagraph() ? "[" + name + "]" : name);
        }
        return text;
    }
    /// The user selects a row.
    void select(CTextView& list, int32_t row) {
        clickRow(list, row);
        system_.advance(1.0);
    }
    void clickRow(CTextView& list, int32_t row) {
        // Not where a double click of the last press would be.
        CViewRect rect = list.rowRect(row);
        rect.width = 60.0;
        editor_->clickIn(*list.rootView(), rect);
    }
    /// An event that a button of the data sends.
    void send(const char* name, const CTexts& texts = {}) { sendTo(manager(), name, texts); }
    void sendTo(CPresetManager& manager, const char* name, const CTexts& texts = {}) {
        CAttributeMap params;
        for (const auto& [key, text] : texts) {
            params[key.c_str()] = CAttributeValue::fromPlainString(CString::fromUtf8(text.data(), text.size()));
        }
        EXPECT_EQ(firstLine(deliverEvent(manager, name, params)), "") << name;
        tick();
    }
    CView* confirmation() const { return editor_->find<CView>("win-confirmation"); }
    std::string question() const { return confirmation() ? confirmation()->getAttrString("text").toUtf8() : "-"; }
    void answerBy(const char* button) {
        ASSERT_TRUE(confirmation());
        const auto& view = *confirmation()->findObjectOf<CView>((std::string(".") + button).c_str());
        editor_->clickIn(*confirmation(), view.wholeRect());
        system_.advance(0.2);
    }
    /// The buttons that can do something, such as "bank:add preset:save".
    std::string enabled() const {
        std::string text;
        for (const char* group : {"bank", "preset"}) {
            const CObject* buttons = manager().findObject((std::string(".") + group + "-buttons").c_str());
            for (const CObject* button : buttons ? buttons->children() : CArray<CObject*, 4>()) {
                if (!button->getAttrBool("is-disabled")) {
                    text += (text.empty() ? "" : " ") + std::string(group) + ":" + button->name().toUtf8();
                }
            }
        }
        return text;
    }
    std::string stored() const { return listed(editor_->store().banks()); }
    CView* message() const { return editor_->find<CView>("win-message"); }
    /// The error that a window shows, which is closed: "event filename: reason"; empty for none.
    std::string raised() {
        CView* shown = message();
        if (!shown) {
            return "";
        }
        const auto text = [shown](const char* name) { return shown->getAttrString(name).toUtf8(); };
        const std::string error = text("title") + ' ' + text("filename") + ": " + text("reason");
        raisedPath_ = text("path");
        CAttributeMap none;
        EXPECT_EQ(firstLine(shown->passEvent("close-window", none)), "");
        system_.advance(0.2);
        EXPECT_FALSE(message());
        return error;
    }
    std::string path(const char* name) const { return folder_ / name; }

    std::filesystem::path folder_;
    std::unique_ptr<CPresetEditor> editor_;
    std::string raisedPath_;

private:
    static CTestNode answer(const std::string& name, const std::string& event) {
        std::vector<CTestNode> commands = {
            {"ui:view-command",
             "close",
             {{"on-event", "mouse-release"}, {"run-event", "close-window"}, {"run-event-target", "^"}}}};
        if (!event.empty()) {
            commands.push_back(
                {"ui:view-command",
                 "run",
                 {{"on-event", "mouse-release"}, {"run-event", event}, {"run-event-target", "{popup-result-target}"}}});
        }
        return {"ui:view", name, {{"placement", "left"}, {"width", "60"}, {"height", "20"}}, std::move(commands)};
    }
    /// Each error opens a window with its parameters.
    static CTestNode errorCommand(const char* event) {
        return {
            "ui:view-command",
            event,
            {{"on-event", event}, {"run-event", "popup-toggle"}, {"run-event-forward-params", "true"}},
            {{"core:object",
              "run-event-params",
              {{"popup-template", "ui:win-message"}, {"title", event}, {"is-popup-toggle-always-create", "true"}}}}};
    }
    static CTestNode buttons(const std::string& name, const std::vector<const char*>& names) {
        CTestNode group{"ui:view", name, {{"placement", "bottom"}}};
        for (const char* button : names) {
            group.children.push_back({"ui:view", button, {{"width", "20"}, {"height", "20"}}});
        }
        return group;
    }
    static CTestNode listNode(const std::string& name) {
        return {"ui:textview",
                name,
                {{"placement", "left"},
                 {"width", "150"},
                 {"height", "200"},
                 {"is-list", "true"},
                 {"is-read-only", "false"},
                 {"is-text-wrapped", "false"},
                 {"is-focusable", "true"},
                 {"is-scrollable", "true"},
                 {"paragraph-spacing", "2"}}};
    }
    static CTestNode managerTemplate(const std::string& name, bool hasBanks, const CTexts& more) {
        CTexts attributes = {{"is-root-view", "true"},
                             {"width", "340"},
                             {"height", "260"},
                             {"font-name", "shared::font.base"},
                             {"palette", "Default"},
                             {"interface-client", "ui.client"},
                             {"filename-prefix", "BrindleXEQ_"},
                             {"defbankname", "Bank"},
                             {"defpresetname", "Preset"},
                             {"preset-list-path", ".presets"},
                             {"preset-buttons-path", ".preset-buttons"}};
        attributes.insert(attributes.end(), more.begin(), more.end());
        std::vector<CTestNode> children = {
            {"ui:window-renderer", "window-renderer"},
            buttons("preset-buttons", {"add", "delete", "replace", "load", "save", "activate", "set-default"})};
        if (hasBanks) {
            attributes.insert(attributes.end(), {{"bank-list-path", ".banks"}, {"bank-buttons-path", ".bank-buttons"}});
            children.push_back(buttons("bank-buttons", {"add", "delete", "load", "save"}));
            children.push_back(listNode("banks"));
        }
        children.push_back(listNode("presets"));
        for (const char* event :
             {"error-bank-load", "error-bank-save", "error-preset-load", "error-preset-save", "error-preset-type"}) {
            children.push_back(errorCommand(event));
        }
        return testTemplate(name, "ui:preset-manager", attributes, children);
    }
};

}  // namespace tarv
