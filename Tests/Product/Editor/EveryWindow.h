#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ProductEditor.h"

namespace tarv {

/// An editor in which a test looks at every window of the product.
class CEveryWindow : public CProductEditor {
protected:
    /// A screen that has room for all of them beside each other.
    static constexpr CIntRect kWideScreen{0, 0, 1900, 1200};
    explicit CEveryWindow(double scale = 1.0, const CIntRect& screen = kScreen) : CProductEditor(scale, screen) {}

    /// Opens each window by its button, and calls with the path of its root while it is open: of the main window once
    /// as it opens and once while a field is edited. The windows of settings stay open.
    void visitEveryWindow(const std::function<void(const char* window)>& visit);
    /// What `visitEveryWindow` calls with, each once.
    static const std::vector<std::string>& windows();

private:
    void visitMain(const std::function<void(const char* window)>& visit);
    void visitRouting(const std::function<void(const char* window)>& visit);
    void visitPresets(const std::function<void(const char* window)>& visit);
    void visitSettings(const std::function<void(const char* window)>& visit);
};

}  // namespace tarv
