#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Audio/VST/CAudioWrapperVST.h"
#include "Platform/ByHand/CWindowByHand.h"
#include "Platform/ByHand/CWindowSystemByHand.h"
#include "Platform/Keyboard.h"
#include "UI/Text/CTextView.h"
#include "UI/Windows/CWindow.h"

namespace tarv {

/// Forgets what earlier tests have stored for all instances; the folder is that of the test program.
void forgetStoredSettings();

/// A pixel of a view that is seen, counted from the middle of what is seen of it.
struct CSpot {
    CSpot(const char* path) : path(path) {}
    CSpot(const std::string& path, int32_t x = 0, int32_t y = 0) : path(path), x(x), y(y) {}
    std::string path;
    int32_t x = 0;
    int32_t y = 0;
};

/// The effect in a host with its editor open, in windows in memory. A test works views by their names: a path begins at
/// the main window, or with `ui.` at the tree's root. Each act ends with the turns that its messages take. A path where
/// nothing is seen fails the test.
class CProductEditor : public testing::Test {
protected:
    static constexpr CIntRect kScreen{0, 0, 1600, 1000};
    static constexpr CIntRect kHost{100, 60, 1100, 760};
    /// Opens the editor at a scale; the host's window on the screen, at whose top left the main window stands.
    explicit CProductEditor(double scale = 1.0, const CIntRect& screen = kScreen, const CIntRect& host = kHost);
    ~CProductEditor() override;

    /// An effect with its editor, as the constructor and the destructor do.
    void start();
    void end();
    void openEditor();
    void closeEditor();
    /// Another window of the host, for the next editor. Without an open one.
    void renewHost(const CIntRect& bounds);
    CObject& tree() { return *tree_; }
    template <class T = CView>
    T& at(const std::string& path) {
        T* found = tree().findObjectOf<T>(full(path).c_str());
        EXPECT_TRUE(found) << path;
        return *found;
    }
    bool exists(const std::string& path) { return tree().findObject(CString(full(path).c_str())) != nullptr; }
    bool hasState(const std::string& path, const char* state) { return at(path).isStateSet(state); }
    std::string text(const std::string& path, const char* attribute) {
        return at<CObject>(path).getAttrString(attribute).toUtf8();
    }
    /// Box in pixels of its window.
    CViewRect box(const std::string& path) { return at(path).area().box(); }

    // Hands.
    void point(const CSpot& spot);
    void press(const CSpot& spot, CPointerButton button = CPointerButton::Left);
    void click(const CSpot& spot, CPointerButton button = CPointerButton::Left);
    void doubleClick(const CSpot& spot);
    void wheel(const CSpot& spot, double notches);
    /// Moves what is held by that many pixels, in steps of a few.
    void moveBy(int32_t x, int32_t y);
    void release(CPointerButton button = CPointerButton::Left);
    /// Press, move, release.
    void drag(const CSpot& spot, int32_t x, int32_t y);
    /// The middle of a band's column in the surface of bands of a view, from 0.
    CSpot column(const std::string& view, int32_t band);
    /// Into the field that is edited, in place of what is selected, and Enter.
    void type(const std::u16string& text);
    void tap(int32_t key);
    /// Chooses a row of the list that is open, or of one beside it.
    void choose(int32_t row, const std::string& window = "ui.window-app-popup-list");
    void wait(double seconds = 0.1) { system_.advance(seconds); }

    /// Real units, as the engine holds it.
    double engine(const std::string& param, int32_t group = 0, int32_t element = 0);
    double decibels(const std::string& param, int32_t group = 0, int32_t element = 0);
    std::string engineText(const std::string& param, int32_t element = 0);
    void setEngine(const std::string& param, int32_t group, int32_t element, double value);
    /// What the host heard since the last time: "begin 4", "automate 4 0.667", "end 4", runs of one text once.
    std::string heard();
    /// The same without how often and to what parameters were automated.
    std::string heardGestures();
    std::string chunk(bool isProgram);
    intptr_t dispatch(int32_t opcode, int32_t index = 0, intptr_t value = 0, void* ptr = nullptr, float opt = 0.0f) {
        return effect_->dispatcher(effect_, opcode, index, value, ptr, opt);
    }
    CAudioWrapperVST& wrapper();

    static std::string full(const std::string& path) {
        return path.starts_with("ui.") ? path : path.empty() ? "ui.main-window" : "ui.main-window." + path;
    }

    CWindowSystemByHand system_;
    vst::AEffect* effect_ = nullptr;

private:
    CAudioParam& param(const std::string& name);
    CWindowHandle host_ = 0;
    std::unique_ptr<CObject> tree_;
};

}  // namespace tarv
