#pragma once

#include <gtest/gtest.h>

#include "CPlainEditor.h"
#include "Tests/TestPaths.h"
#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

/// The demonstration, open in a window in memory.
class CDemoEditor : public testing::Test {
protected:
    static constexpr const char* kMain = "ui.main-window.";

    void open(double scale = 1.0) {
        ASSERT_EQ(editor.open(std::string(kSourceFolder) + "/Definitions/Demonstration/Demonstration.xml", scale), "");
        ASSERT_TRUE(editor.window() && editor.window()->isOpen());
    }
    CView* find(const std::string& path) { return editor.tree().findObjectOf<CView>((kMain + path).c_str()); }
    CView& at(const std::string& path) {
        CView* found = find(path);
        EXPECT_TRUE(found) << path;
        return *found;
    }
    static std::string consumed(CError* error) {
        std::string text = error ? error->joined().toUtf8() : std::string();
        delete error;
        return text;
    }
    static void set(CView& view, const char* name, const char* text) {
        EXPECT_EQ(consumed(view.setAttribute(name, CString(text))), "") << name;
    }
    CWindowByHand& shown() { return *editor.system().desktop().find(editor.window()->handle()); }
    CPictureByHand picture() { return editor.pictureOf(*editor.window()); }
    void advance(double seconds) { editor.system().advance(seconds); }
    /// One render tick.
    static constexpr double kTick = 0.025;
    void pointAt(const std::string& path) { EXPECT_TRUE(editor.pointAt(at(path))) << path; }
    void click(const std::string& path) {
        pointAt(path);
        editor.system().input().click();
    }
    CWindow* popup(const std::string& name) {
        return editor.tree().findObjectOf<CWindow>(("ui." + name + ".window-renderer").c_str());
    }

    CPlainEditor editor;
};

}  // namespace tarv
