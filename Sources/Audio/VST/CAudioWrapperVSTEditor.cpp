// The host's calls to the editor.

#include "Audio/VST/CAudioWrapperVSTEditor.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Audio/VST/CAudioWrapperVST.h"
#include "Audio/VST/CEditorTree.h"
#include "Core/CApplication.h"
#include "Platform/WindowSystem.h"
#include "UI/Windows/CWindow.h"

namespace tarv {

namespace {

constexpr int32_t kDefaultLength = 100;

int16_t scaledLength(const CObject& project, const char* name) {
    const double length = project.getAttrIntOr(name, kDefaultLength) * CApplication::uiScale();
    return static_cast<int16_t>(std::clamp(std::round(length), 0.0, 32767.0));
}

}  // namespace

CAudioWrapperVSTEditor::CAudioWrapperVSTEditor(CAudioWrapperVST& effect) : effect_(effect) {}

CAudioWrapperVSTEditor::~CAudioWrapperVSTEditor() {
    isOpening_ = true;
    endTree();
}

bool CAudioWrapperVSTEditor::getRect(vst::Rect** rect) {
    CApplication::refreshUiScale();
    rect_.right = scaledLength(*effect_.project(), "window-width");
    rect_.bottom = scaledLength(*effect_.project(), "window-height");
    *rect = &rect_;
    return true;
}

bool CAudioWrapperVSTEditor::open(void* parent) {
    // Without a parent a host only asks: there is nothing that the user could be notified of.
    if (!parent || isOpening_ || (tree_ && tree_->isOpenIn(parent))) {
        return false;
    }
    const std::weak_ptr<const bool> life(life_);
    isOpening_ = true;
    isCloseWanted_ = false;
    endTree();
    if (life.expired()) {
        return false;
    }
    auto* tree = new CEditorTree({effect_.instanceRoot(), parent, CAudioWrapperVST::isFocusTaken()});
    CError* error = tree->open();
    const bool isAlive = !life.expired();
    if (isAlive) {
        isOpening_ = false;
    }
    if (isAlive && !error && tree->isOpen() && !isCloseWanted_) {
        tree_ = tree;
        return true;
    }
    tree->end();
    // Waits for the user: the host may end the effect meanwhile.
    if (error) {
        showError(error);
    }
    return false;
}

void CAudioWrapperVSTEditor::close() {
    isCloseWanted_ = true;
    endTree();
}

void CAudioWrapperVSTEditor::endTree() {
    // The handlers may call close again.
    if (CEditorTree* tree = std::exchange(tree_, nullptr)) {
        tree->end();
    }
}

bool CAudioWrapperVSTEditor::isOpen() const {
    return tree_ && tree_->isOpen();
}

CEditorTree* CAudioWrapperVSTEditor::ownTree() const {
    return tree_ && tree_->isOwnThread() ? tree_ : nullptr;
}

void CAudioWrapperVSTEditor::idle() {
    CEditorTree* tree = ownTree();
    CWindow* window = tree ? tree->mainWindow() : nullptr;
    if (!window) {
        return;
    }
    CWindowSystem* system = windowSystem();
    // Either may end the editor: nothing of it is touched behind them.
    window->idle();
    system->serve();
}

bool CAudioWrapperVSTEditor::onWheel(float distance) {
    CEditorTree* tree = ownTree();
    CWindow* window = tree ? tree->mainWindow() : nullptr;
    return window && distance != 0.0f && window->onHostWheel(distance < 0.0f ? -1.0 : 1.0);
}

}  // namespace tarv
