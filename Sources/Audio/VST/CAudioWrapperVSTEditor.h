#pragma once

#include <memory>

#include "Audio/VST/AudioEffectX.h"

namespace tarv {

class CAudioWrapperVST;
class CEditorTree;

/// The editor of one effect: a second object tree with a separate root, which finds the engine by the pointer in the
/// root's attribute `PluginRootPtrVar`. The effect makes one where the project has `has-editor`. Calls in any order
/// are harmless. Thread: the host's user interface. A tree lives on the thread that opened it: idle and wheel on
/// another thread do nothing.
class CAudioWrapperVSTEditor : public AEffEditor {
public:
    /// The effect outlives its editor.
    explicit CAudioWrapperVSTEditor(CAudioWrapperVST& effect);
    ~CAudioWrapperVSTEditor() override;

    CAudioWrapperVST* getEffect() const { return &effect_; }
    /// `window-width` and `window-height` of the project, in pixels at scale 1, times the editor's scale. A scale that
    /// the user has chosen counts if no editor is open in the process.
    bool getRect(vst::Rect** rect) override;
    /// False if the editor is open in that very window, and on failure, which is shown. An editor whose window has
    /// gone, or stands in another parent, is built anew.
    bool open(void* parent) override;
    void close() override;
    /// The tree exists and its window lives.
    bool isOpen() const override;
    void idle() override;
    /// One notch, by the sign of the distance, to the window at the pointer.
    bool onWheel(float distance) override;

private:
    /// Null on another thread than the tree's.
    CEditorTree* ownTree() const;
    /// Handlers run, which may end the effect.
    void endTree();

    CAudioWrapperVST& effect_;
    vst::Rect rect_{};
    CEditorTree* tree_ = nullptr;
    bool isOpening_ = false;      ///< an open inside it, or inside the end of the effect, is refused
    bool isCloseWanted_ = false;  ///< the host has called close inside open
    /// Goes with this object: who has called handlers looks.
    const std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);
};

}  // namespace tarv
