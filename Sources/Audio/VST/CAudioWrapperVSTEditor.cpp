// Builds and destroys the tree of an editor.

#include "Audio/VST/CAudioWrapperVSTEditor.h"

#include <algorithm>
#include <cmath>

#include "Audio/VST/CAudioWrapperVST.h"
#include "Core/CApplication.h"

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
    close();
}

const CString& CAudioWrapperVSTEditor::errorContextName() const {
    return effect_.pluginName();
}

bool CAudioWrapperVSTEditor::getRect(vst::Rect** rect) {
    CApplication::refreshUiScale();
    rect_.right = scaledLength(*effect_.project(), "window-width");
    rect_.bottom = scaledLength(*effect_.project(), "window-height");
    *rect = &rect_;
    return true;
}

bool CAudioWrapperVSTEditor::open(void* parent) {
    if (root_) {
        return false;
    }
    if (CError* error = buildTree(parent)) {
        showError(error);
        close();
        return false;
    }
    if (!root_->findObject("ui.main-window.window-renderer")) {
        close();
        return false;
    }
    return true;
}

CError* CAudioWrapperVSTEditor::buildTree(void* parent) {
    TARV_TRY(CApplication::openEditor());
    isCounted_ = true;
    TARV_TRY(CApplication::initRootObject(root_));
    TARV_CONSUME(root_->setAttribute("PluginRootPtrVar", CAttributeValue::fromPointer(effect_.instanceRoot())));
    TARV_CONSUME(root_->setAttribute("ParentWindow", CAttributeValue::fromPointer(parent)));
    TARV_CONSUME(root_->setAttribute("plugin-tech", CString("VST PlugIn Technology by Steinberg")));
    TARV_TRY(root_->loadFromResource("UserInterface.xml", true));
    return nullptr;
}

void CAudioWrapperVSTEditor::close() {
    delete root_;
    root_ = nullptr;
    if (isCounted_) {
        CApplication::closeEditor();
        isCounted_ = false;
    }
}

}  // namespace tarv
