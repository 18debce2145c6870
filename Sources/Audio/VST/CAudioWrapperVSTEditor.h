#pragma once

#include "Audio/VST/AudioEffectX.h"
#include "Core/CObject.h"

namespace tarv {

class CAudioWrapperVST;

/// The editor of one effect: a second object tree with a separate root, which finds the engine by the pointer in the
/// root's attribute `PluginRootPtrVar`. There is no window yet: open fails without one, and the effect makes no editor.
/// Thread: the host's user interface.
class CAudioWrapperVSTEditor : public AEffEditor {
public:
    /// The effect outlives its editor.
    explicit CAudioWrapperVSTEditor(CAudioWrapperVST& effect);
    ~CAudioWrapperVSTEditor() override;

    CAudioWrapperVST* getEffect() const { return &effect_; }
    /// `window-width` and `window-height` of the project, in pixels at scale 1, times the editor's scale. A scale that
    /// the user has chosen counts if no editor is open in the process.
    bool getRect(vst::Rect** rect) override;
    bool open(void* parent) override;
    void close() override;
    bool isOpen() const override { return root_ != nullptr; }
    void idle() override {}
    bool onWheel(float) override { return false; }

private:
    [[nodiscard]] CError* buildTree(void* parent);
    const CString& errorContextName() const;

    CAudioWrapperVST& effect_;
    vst::Rect rect_{};
    CObject* root_ = nullptr;
    bool isCounted_ = false;  ///< as open, in the application
};

}  // namespace tarv
