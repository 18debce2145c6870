#pragma once

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Platform/ByHand/CWindowSystemByHand.h"
#include "Tests/Audio/Stores/TestBanks.h"
#include "Tests/Core/LogCapture.h"
#include "Tests/Core/TestApplication.h"
#include "Tests/Product/ParamPaths.h"
#include "Tests/Product/ProductTree.h"
#include "UI/Controls/Presets/CPresetCatalog.h"
#include "UI/Text/CPopupList.h"
#include "UI/Windows/CWindow.h"

namespace tarv {

using CTexts = std::vector<std::pair<std::string, std::string>>;

inline constexpr const char* kRegistry = "plugin.param-registry";
inline constexpr const char* kRoutingRegistry = "plugin.param-registry-io";
inline constexpr const char* kBanks = "shared-banks";
inline constexpr const char* kRouting = "routing-presets";
using engine::kInRouting;
using engine::kOutGain;

/// First line of a failure, "" for success.
inline std::string firstLine(CError* error) {
    const std::string text = consumed(error);
    return text.substr(0, text.find_first_of("\r\n"));
}

/// One editor of an instance, in a window of a host: the exchange with the engine, and what a test puts into its main
/// window. Ends with this object.
class CPresetEditor {
public:
    CPresetEditor(CWindowSystemByHand& system, CObject* plugin, const std::vector<CTestNode>& templates,
                  std::vector<CTestNode> views)
        : system_(system) {
        EXPECT_EQ(consumed(CApplication::openEditor()), "");
        CObject* root = nullptr;
        EXPECT_EQ(consumed(CApplication::initRootObject(root)), "");
        root_.reset(root);
        const CWindowHandle host = system.desktop().openHost({100, 100, 900, 700});
        EXPECT_EQ(consumed(root->setAttribute("PluginRootPtrVar", CAttributeValue::fromPointer(plugin))), "");
        EXPECT_EQ(
            consumed(root->setAttribute("ParentWindow", CAttributeValue::fromPointer(reinterpret_cast<void*>(host)))),
            "");
        views.push_back({"ui:window-renderer", "window-renderer", {{"is-plugin-vst", "true"}}});
        std::vector<CTestNode> nodes = templates;
        nodes.push_back({"ui:ui-event-bridge",
                         "ui",
                         {},
                         {{"audio:interface-client-connector-vst",
                           "connector",
                           {{"base-connector", "plugin.interface-base-connector"}}},
                          {"audio:interface-client", "client", {{"client-connector", "ui.connector"}}},
                          {"core:global-settings", "global-settings"},
                          {"ui:window-shared-data", "window-shared-data"},
                          {"ui:view",
                           "w",
                           {{"is-root-view", "true"},
                            {"is-main-window", "true"},
                            {"width", "400"},
                            {"height", "300"},
                            {"palette", "Default"},
                            {"font-name", "shared::font.base"},
                            {"color", "Panel"}},
                           std::move(views)}}});
        failure_ = firstLine(loadTree(*root, nodes));
        if (failure_.empty()) {
            EXPECT_EQ(consumed(at<CWindow>("w.window-renderer").open()), "");
            system.advance(0.1);
        }
    }
    ~CPresetEditor() {
        root_.reset();
        CApplication::closeEditor();
    }

    /// Of loading the tree; "" for success.
    const std::string& failure() const { return failure_; }
    template <class T>
    T* find(const std::string& path) const {
        return root_->findObjectOf<T>(("ui." + path).c_str());
    }
    template <class T>
    T& at(const std::string& path) const {
        T* found = find<T>(path);
        EXPECT_TRUE(found) << path;
        return *found;
    }
    CAudioInterfaceClient& client() const { return at<CAudioInterfaceClient>("client"); }
    CAudioPresetStore& store(const char* name = kBanks) const {
        CAudioPresetStore* found = nullptr;
        EXPECT_EQ(firstLine(client().findPresetStore(name, found)), "");
        return *found;
    }
    /// Opens a popup for a view of the main window.
    void openPopup(const std::string& opener, const std::string& name, const CTexts& texts = {}) const {
        CAttributeMap params;
        for (const auto& [key, text] : texts) {
            params[key.c_str()] = CAttributeValue::fromString(text.c_str());
        }
        EXPECT_EQ(firstLine(at<CView>("w." + opener).openPopup(name.c_str(), params)), "");
        system_.advance(0.1);
    }
    /// A click in the middle of a rectangle of the window that a view stands in.
    void clickIn(const CObject& root, const CViewRect& rect) const {
        const auto* window = dynamic_cast<const CWindow*>(root.findChild("window-renderer"));
        ASSERT_TRUE(window);
        system_.input().moveIn(window->handle(), static_cast<int32_t>(rect.x + rect.width / 2),
                               static_cast<int32_t>(rect.y + rect.height / 2));
        system_.input().click();
    }

private:
    CWindowSystemByHand& system_;
    std::unique_ptr<CObject> root_;
    std::string failure_;
};

/// An instance of the product, and editors of it.
class CPresetTest : public CProductTree {
protected:
    CPresetTest() : instance_(makeInstance()) {}
    ~CPresetTest() override {
        instance_.reset();
        CLocalData::instance().write(kBanks, {}, blockIdOf(CAudioBankList::kBlockId));
        CGlobalData::instance().write(kRouting, {}, blockIdOf("alst"));
    }
    static std::unique_ptr<CHostlessInstance> makeInstance() {
        auto made = std::make_unique<CHostlessInstance>();
        EXPECT_EQ(firstLine(made->init()), "");
        return made;
    }
    std::unique_ptr<CPresetEditor> openEditor(std::vector<CTestNode> views, CHostlessInstance* instance = nullptr) {
        return std::make_unique<CPresetEditor>(system_, (instance ? instance : instance_.get())->instanceRoot(),
                                               templates_, std::move(views));
    }
    static uint32_t blockIdOf(const char* text) {
        uint32_t id = 0;
        for (int32_t i = 0; i < 4; ++i) {
            id |= static_cast<uint32_t>(static_cast<uint8_t>(text[i])) << (8 * i);
        }
        return id;
    }
    /// What another program stores: the file changes, and no editor of this one is notified.
    static void storeElsewhere(const CAudioBankList& banks) {
        CByteBuffer bytes;
        CBufferWriter writer(bytes);
        EXPECT_EQ(firstLine(banks.save(writer)), "");
        CApplicationData other("Tarvelo/Audio Plug-Ins/Brindle XEQ/", "none");
        other.write(kBanks, bytes, blockIdOf(CAudioBankList::kBlockId));
    }

    CAudioParamRegistry& registry() { return *instance_->paramRegistry(); }
    CAudioParam& param(const char* name) { return *instance_->paramCollector()->findParam(name); }
    std::vector<std::string> programs() {
        std::vector<std::string> names;
        for (int32_t i = 0; i < registry().programCount(); ++i) {
            names.push_back(registry().programName(i).toUtf8());
        }
        return names;
    }
    /// Label of the last step of the history, and how many there are behind the start.
    std::string lastStep() {
        auto labels = instance_->interfaceBase()->getStepLabels(nullptr);
        return std::to_string(labels.count() - 1) + ' ' + labels.last().toUtf8();
    }
    void tick() { system_.advance(0.1); }

    CWindowSystemByHand system_;
    std::vector<CTestNode> templates_ = {testTemplate(
        "ui:window-app-popup-list", "ui:view",
        {{"is-root-view", "true"},
         {"is-popup-window", "true"},
         {"window-alignment", "{window-alignment}"},
         {"font-name", "shared::font.base"},
         {"palette", "Default"},
         {"color", "Popup"}},
        {{"ui:window-renderer", "window-renderer"},
         {"ui:popup-list", "list", {{"placement", "full"}, {"is-scrollable", "true"}, {"is-text-wrapped", "false"}}}})};
    std::unique_ptr<CHostlessInstance> instance_;
};

}  // namespace tarv
