#include "Tests/Audio/VST/Editor/EditorHost.h"

#include "Audio/VST/CAudioWrapperVST.h"
#include "Product/CreatorTable.h"
#include "Product/ResourceTable.h"

namespace tarv {

CEditorApplication::CEditorApplication(const std::vector<CTestNode>& editor)
    : creators_(kCreatorRows, kCreatorRows + kCreatorRowCount), editorTree_(treeResource(editor)) {
    creators_.push_back({"test:view", &createObject<CFilledView>, &CFilledView::initClass});
    for (const CResourceRow* row = kResourceRows; row->name; ++row) {
        rows_.push_back(*row);
        if (std::string(row->name) == "UserInterface.xml") {
            rows_.back().data = reinterpret_cast<const unsigned char*>(editorTree_.data());
        }
    }
    rows_.push_back({nullptr, nullptr});
    EXPECT_EQ(consumed(CApplication::start({.creators = creators_.data(),
                                            .creatorCount = static_cast<int32_t>(creators_.size()),
                                            .resources = rows_.data()})),
              "");
}

CEditorApplication::~CEditorApplication() {
    CApplication::finish();
}

CEditorHost::CEditorHost() {
    CFilledView::heard.clear();
    CFilledView::actions.clear();
    application = std::make_unique<CEditorApplication>(editorTree(twoViews()));
    parent = system.desktop().openHost({kHostX, kHostY, kHostX + 1000, kHostY + 700});
    EXPECT_TRUE(effect.open(&CAudioWrapperVST::create));
}

CEditorHost::~CEditorHost() {
    CFilledView::actions.clear();
    effect.close();
    system.pump();
    application.reset();
    EXPECT_TRUE(system.isClean());
}

std::vector<CTestNode> CEditorHost::editorTree(std::vector<CTestNode> views) {
    views.insert(views.begin(), {"ui:window-renderer", "window-renderer", {{"is-plugin-vst", "true"}}});
    return {{"ui:ui-event-bridge",
             "ui",
             {},
             {{"audio:interface-client-connector-vst",
               "interface-client-connector",
               {{"base-connector", "plugin.interface-base-connector"}}},
              {"audio:interface-client",
               "interface-client",
               {{"client-connector", "ui.interface-client-connector"},
                {"group-names-param", "plugin.modMain.io-params.group-names"}}},
              {"core:global-settings", "global-settings"},
              {"ui:window-shared-data", "window-shared-data"},
              {"test:view",
               "main-window",
               {{"is-root-view", "true"},
                {"is-main-window", "true"},
                {"is-input", "false"},
                {"width", "{/shared::project window-width}"},
                {"height", "{/shared::project window-height}"}},
               std::move(views)}}}};
}

std::vector<CTestNode> CEditorHost::twoViews() {
    return {
        CWindowTree::view(
            "a",
            {{"placement", "left"}, {"width", "100"}, {"height", "100%"}, {"fill", "17"}, {"is-focusable", "true"}}),
        CWindowTree::view("b", {{"placement", "full"}, {"width", "100%"}, {"height", "100%"}, {"fill", "34"}})};
}

vst::Rect CEditorHost::rect() {
    vst::Rect* found = nullptr;
    EXPECT_EQ(effect.dispatch(vst::kEffectEditGetRect, 0, 0, &found), 1);
    return found ? *found : vst::Rect{};
}

CWindowByHand* CEditorHost::window() const {
    const std::vector<CWindowByHand*> all = windows();
    EXPECT_LE(all.size(), 1u);
    return all.empty() ? nullptr : all.back();
}

uint32_t CEditorHost::pixel(int32_t x, int32_t y) {
    return system.desktop().picture({kHostX + x, kHostY + y, kHostX + x + 1, kHostY + y + 1}).at(0, 0);
}

void CEditorHost::press(int32_t x, int32_t y) {
    moveTo(x, y);
    system.input().press();
}

std::string CEditorHost::heard() {
    return CWindowTree::heard();
}

}  // namespace tarv
