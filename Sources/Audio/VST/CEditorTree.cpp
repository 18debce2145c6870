// The life of an editor's tree.

#include "Audio/VST/CEditorTree.h"

#include "Audio/Messages/CAudioInterfaceClientConnector.h"
#include "Core/CApplication.h"
#include "Core/CObjectWatch.h"
#include "Platform/ThreadId.h"
#include "Platform/WindowSystem.h"
#include "UI/Windows/CUIEventBridge.h"
#include "UI/Windows/CWindow.h"
#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

namespace {

constexpr int32_t kRounds = 8;

}  // namespace

CEditorTree::CEditorTree(const CVariables& variables) : variables_(variables), threadId_(currentThreadId()) {}

CEditorTree::~CEditorTree() {
    delete root_;
    if (isCounted_) {
        CApplication::closeEditor();
    }
}

CError* CEditorTree::open() {
    if (!windowSystem()) {
        TARV_FAIL("@tarvstr_CEditorTree_open_NoWindows Unable to show windows. %1", CString(noWindowsReason().c_str()));
    }
    TARV_TRY(CApplication::openEditor());
    isCounted_ = true;
    TARV_TRY(CApplication::initRootObject(root_));
    setVariables();
    TARV_TRY(root_->loadFromResource("UserInterface.xml", true));
    TARV_TRY(takeWhatWaits());
    if (CWindow* window = mainWindow()) {
        TARV_TRY(window->open());
    }
    return nullptr;
}

/// Reads what the engine has answered so far: the first picture shows the values, and no control that lights up a
/// moment later.
CError* CEditorTree::takeWhatWaits() {
    // What is read may ask for more.
    for (int32_t round = 0; round < kRounds; ++round) {
        auto* connector = root_->findObjectOf<CAudioInterfaceClientConnector>("ui.interface-client-connector");
        if (!connector || connector->pendingCount() == 0) {
            break;
        }
        TARV_TRY(connector->takePending());
    }
    return nullptr;
}

void CEditorTree::setVariables() {
    TARV_CONSUME(root_->setAttribute("PluginRootPtrVar", CAttributeValue::fromPointer(variables_.pluginRoot)));
    TARV_CONSUME(root_->setAttribute("ParentWindow", CAttributeValue::fromPointer(variables_.parentWindow)));
    TARV_CONSUME(root_->setAttribute("IsFocusTaken", CAttributeValue::fromBool(variables_.isFocusTaken)));
    TARV_CONSUME(root_->setAttribute("plugin-tech", CString("VST PlugIn Technology by Steinberg")));
}

bool CEditorTree::isOpen() const {
    if (!isOwnThread()) {
        return true;
    }
    const CWindow* window = mainWindow();
    return window && window->isOpen();
}

bool CEditorTree::isOwnThread() const {
    return currentThreadId() == threadId_;
}

CWindow* CEditorTree::mainWindow() const {
    return root_ ? root_->findObjectOf<CWindow>("ui.main-window.window-renderer") : nullptr;
}

bool CEditorTree::passEndOn() {
    auto* bridge = root_ && !isOwnThread() ? root_->findObjectOf<CUIEventBridge>("ui") : nullptr;
    if (!bridge) {
        return false;
    }
    CError* error = bridge->call([this] { end(); });
    const bool isPassed = !error;
    TARV_CONSUME(error);
    return isPassed;
}

void CEditorTree::end() {
    if (passEndOn()) {
        return;
    }
    auto* shared = root_ ? root_->findObjectOf<CWindowSharedData>(CWindowSharedData::kPath) : nullptr;
    if (shared) {
        const CObjectWatch watch(*shared);
        shared->shutWindows();
        if (watch.isAlive() && shared->isBusy()) {
            shared->callWhenDone([this] { delete this; });
            return;
        }
    }
    delete this;
}

}  // namespace tarv
