#pragma once

#include <string>
#include <vector>

#include "Tests/Product/Editor/ProductEditor.h"

namespace tarv::host {

struct CScreenPoint {
    int32_t x = 0;
    int32_t y = 0;
};

/// The product's effect and editor once more, compiled into the test and in windows in memory, on a screen like the
/// real one: says by names where views are on it, and what its windows show after the same input. Its time is by hand,
/// and its settings lie in a folder of its own.
class CEditorTwin final : public CProductEditor {
public:
    CEditorTwin(const CIntRect& screen, const CIntRect& host);

    /// Of the library's data, not the twin's: the folder of the maker below that of the user.
    static std::string libraryFolder();
    /// The same of the twin's.
    static std::string folder();

    /// Ends the effect and takes a new one, which knows only what is stored, for a window of the host.
    void restart(const CIntRect& host);
    /// The middle of what is seen of a view, moved by the spot's pixels. Fails the test where nothing is seen.
    CScreenPoint where(const CSpot& spot);
    /// Of a row of a list in a window.
    CScreenPoint whereRow(const std::string& path, int32_t row);
    vst::AEffect& effect() { return *effect_; }
    CInputByHand& input() { return system_.input(); }
    /// What the main window covers of the screen, and what each window that popped up.
    CIntRect mainWindow();
    std::vector<CIntRect> popups();
    /// What a user sees there.
    CPictureByHand screen(const CIntRect& part) { return system_.desktop().picture(part); }

    using CProductEditor::at;
    using CProductEditor::chunk;
    using CProductEditor::closeEditor;
    using CProductEditor::column;
    using CProductEditor::decibels;
    using CProductEditor::engine;
    using CProductEditor::engineText;
    using CProductEditor::exists;
    using CProductEditor::hasState;
    using CProductEditor::heard;
    using CProductEditor::openEditor;
    using CProductEditor::system_;
    using CProductEditor::text;
    using CProductEditor::tree;
    using CProductEditor::wait;

private:
    void TestBody() override {}
};

}  // namespace tarv::host
