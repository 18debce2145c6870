#pragma once

#include "Core/CObject.h"

namespace tarv {

class CWindow;

/// The object tree of an open editor: a separate root, loaded from "UserInterface.xml", whose main window
/// `ui.main-window.window-renderer` stands in the host's window. Belongs to the thread that made it; the host's calls
/// may come from others. Ended by `end`, which may be called inside any call of its windows.
class CEditorTree : public CHeapObject {
public:
    /// Attributes of the root: `PluginRootPtrVar`, `ParentWindow`, `IsFocusTaken`.
    struct CVariables {
        CObject* pluginRoot = nullptr;
        void* parentWindow = nullptr;
        bool isFocusTaken = false;
    };

    explicit CEditorTree(const CVariables& variables);
    CEditorTree(const CEditorTree&) = delete;
    CEditorTree& operator=(const CEditorTree&) = delete;

    /// Loads the tree and opens its main window with its first picture. A tree without a main window is no failure,
    /// and not open. Behind a failure the object needs its end, too.
    [[nodiscard]] CError* open();
    /// The main window lives. On another thread: unless `end` was called.
    bool isOpen() const;
    bool isOpenIn(void* parentWindow) const { return parentWindow == variables_.parentWindow && isOpen(); }
    bool isOwnThread() const;
    /// Null without one. Only on the tree's thread.
    CWindow* mainWindow() const;

    /// Closes all windows, destroys the tree and this object: at once, or behind the call of a window that runs. On
    /// another thread it asks the tree's own to do so, and returns; if that thread has ended, it does so itself.
    /// Handlers run: the caller may be gone when it returns.
    void end();

private:
    ~CEditorTree();
    void setVariables();
    [[nodiscard]] CError* takeWhatWaits();
    bool passEndOn();

    const CVariables variables_;
    const uint64_t threadId_;
    CObject* root_ = nullptr;
    bool isCounted_ = false;  ///< as open, in the application
};

}  // namespace tarv
