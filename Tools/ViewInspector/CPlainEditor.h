#pragma once

#include <memory>
#include <string>

#include "CPlainInstance.h"
#include "Platform/ByHand/CWindowByHand.h"
#include "Platform/ByHand/CWindowSystemByHand.h"
#include "UI/Views/CView.h"
#include "UI/Windows/CWindow.h"

namespace tarv {

/// An editor's tree in windows in memory, with the product's classes and graphics: no display, no user's settings. One
/// at a time. Thread: the one that makes it.
class CPlainEditor {
public:
    /// Where the window of the host stands; the main window stands at its top left.
    static constexpr int32_t kHostX = 64;
    static constexpr int32_t kHostY = 32;

    CPlainEditor();
    ~CPlainEditor();
    CPlainEditor(const CPlainEditor&) = delete;
    CPlainEditor& operator=(const CPlainEditor&) = delete;

    /// Loads a definition in XML, or a compiled tree, and opens its main window; with `hasEngine`, that of an instance
    /// of the plug-in. Failure, or "".
    std::string open(const std::string& path, double scale = 1.0, bool hasEngine = false);
    /// The product's own tree, with an engine.
    std::string openProduct(double scale = 1.0);
    void close();

    CObject& tree() { return *tree_; }
    /// Null where the tree has none.
    CView* mainView() { return tree_ ? tree_->findObjectOf<CView>("ui.main-window") : nullptr; }
    CWindow* window() { return tree_ ? tree_->findObjectOf<CWindow>("ui.main-window.window-renderer") : nullptr; }
    CWindowSystemByHand& system() { return system_; }
    /// The engine behind the tree, or null.
    CPlainInstance* instance() { return instance_.get(); }
    /// The engine goes, the editor stays open.
    void endEngine();
    /// What a window has shown; empty if it is not open.
    CPictureByHand pictureOf(const CWindow& window);

    /// Moves the pointer onto the middle of what is seen of a view. False if nothing is.
    bool pointAt(const CView& view);
    /// Sets a state of a view, as input would. Failure, or "".
    std::string setState(const std::string& path, const std::string& states);

private:
    std::string makeEngine();
    std::string openTree(const CByteBuffer& bytes, const std::string& resource, double scale);
    [[nodiscard]] CError* load(const CByteBuffer& bytes, const std::string& resource);

    class COwnData;
    const std::unique_ptr<COwnData> ownData_;
    CWindowSystemByHand system_;
    CWindowHandle host_ = 0;
    std::unique_ptr<CPlainInstance> instance_;
    std::unique_ptr<CObject> tree_;
    bool isCounted_ = false;
};

}  // namespace tarv
