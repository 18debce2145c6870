#pragma once

#include "Tests/UI/Windows/WindowTree.h"
#include "Tools/Renderer/CVstHost.h"

namespace tarv {

/// An application with all classes of the product and those of the tests, whose editor's tree is the test's.
class CEditorApplication {
public:
    explicit CEditorApplication(const std::vector<CTestNode>& editor);
    ~CEditorApplication();
    CEditorApplication(const CEditorApplication&) = delete;
    CEditorApplication& operator=(const CEditorApplication&) = delete;

private:
    std::vector<CCreatorRow> creators_;
    std::string editorTree_;
    std::vector<CResourceRow> rows_;
};

/// One effect in a host with a window at kHostX, kHostY. Its editor is "a", 100 pixels wide and filled with 17, and "b"
/// with 34 beside it, in a main window of the project's size.
struct CEditorHost : testing::Test {
    CEditorHost();
    ~CEditorHost() override;

    /// The ends of the exchange with the engine, the settings' root objects, and these views in the main window.
    static std::vector<CTestNode> editorTree(std::vector<CTestNode> views);
    static std::vector<CTestNode> twoViews();

    bool openEditor(host::CVstHost& in, CWindowHandle parent) {
        return in.dispatch(vst::kEffectEditOpen, 0, 0, reinterpret_cast<void*>(parent)) != 0;
    }
    bool open() { return openEditor(effect, parent); }
    void close() { effect.dispatch(vst::kEffectEditClose); }
    void idle() { effect.dispatch(vst::kEffectEditIdle); }
    /// As hosts with this extension report the wheel.
    bool wheel(float distance) {
        return effect.dispatch(vst::kEffectVendorSpecific, 0x73744341, 0x57686565, nullptr, distance) != 0;
    }
    vst::Rect rect();
    /// The editor's windows, from the bottom.
    std::vector<CWindowByHand*> windows() const { return system.desktop().windows(); }
    /// The only one; null without.
    CWindowByHand* window() const;
    uint32_t pixel(int32_t x, int32_t y);
    void moveTo(int32_t x, int32_t y) { system.input().move(kHostX + x, kHostY + y); }
    void press(int32_t x, int32_t y);
    void on(const std::string& moment, CFilledView::CAction action) {
        CFilledView::actions[moment] = std::move(action);
    }
    static std::string heard();

    static constexpr int32_t kHostX = 100;
    static constexpr int32_t kHostY = 50;

    mutable CWindowSystemByHand system;
    std::unique_ptr<CEditorApplication> application;
    CWindowHandle parent = 0;
    host::CVstHost effect;
};

}  // namespace tarv
