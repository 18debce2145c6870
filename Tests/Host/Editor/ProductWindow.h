#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>

#include "CPluginLibrary.h"
#include "CVstHost.h"
#include "Tests/Host/Editor/CEditorTwin.h"
#include "Tests/Host/Editor/CHostDesk.h"
#include "Tests/TestPaths.h"

namespace tarv::host {

/// The built library in a host on the system's desktop with its editor open, and a twin of it in memory. Each act of a
/// hand names a view: it is done in the real window where the twin shows that view, and in the twin, whose windows the
/// real ones then must equal in their places and pixels. Settings that the user has stored are put aside meanwhile.
class ProductWindow : public ::testing::Test {
protected:
    ProductWindow();
    ~ProductWindow() override;
    void SetUp() override;

    bool open() { return effect.dispatch(vst::kEffectEditOpen, 0, 0, parent) == 1; }
    void close() { effect.dispatch(vst::kEffectEditClose); }
    /// Closes both editors and opens them.
    void reopen();
    /// Opens a second instance and its editor, in a window that covers that of the first, which goes on.
    void openSecond();
    void closeSecond();
    /// Takes a new library, as a host that starts again. Its window is as large as the editor says, and within the
    /// screen.
    void restart();

    // Hands.
    void point(const CSpot& spot) { pointAt(twin->where(spot)); }
    void press(bool isRight = false);
    void release(bool isRight = false);
    void click(const CSpot& spot, bool isRight = false);
    void doubleClick(const CSpot& spot);
    void wheel(const CSpot& spot, int notches);
    void moveBy(int32_t x, int32_t y);
    void drag(const CSpot& spot, int32_t x, int32_t y);
    void strike(char key);
    /// Modifiers are down from now on, or with none of them, up.
    void hold(bool isShift, bool isCtrl = false, bool isAlt = false);
    /// Keeps still for longer than a double click takes.
    void keepStill();
    void type(const std::string& text);
    /// A row of the list that is open, or of one beside it.
    void choose(int32_t row, const std::string& window = "ui.window-app-popup-list");
    /// Longer than the pointer rests on a row whose list opens beside it, and than a list takes no press.
    void rest();
    /// A row of a list in a window.
    void pointRow(const std::string& path, int32_t row);
    void clickRow(const std::string& path, int32_t row);
    CSpot column(const std::string& view, int32_t band) { return twin->column(view, band); }

    /// Waits until the windows of the editor stand where those of the twin do and show the same pixels.
    void expectSame(const char* what);
    /// What the host heard since the last time, in order; runs of one text once.
    std::string heard();
    /// The same without values, and without updates of the display.
    std::string heardGestures();
    float parameter(int32_t index) const { return effect.parameter(index); }
    /// What the host shows of a parameter, and whether it becomes so.
    std::string shown(int32_t parameter) { return effect.text(vst::kEffectGetParamDisplay, parameter); }
    bool becomes(int32_t parameter, const char* text) {
        return desk.until([&] { return shown(parameter) == text; });
    }
    /// The effect and its twin hold the same state.
    void expectSameState() { EXPECT_TRUE(effect.chunk(false) == twin->chunk(false)); }

    /// What both have stored for all instances is the same, byte by byte.
    void expectSameSettings();

    CPluginLibrary library;
    CHostDesk desk;
    std::unique_ptr<CEditorTwin> twin;
    void* parent = nullptr;
    CVstHost effect;

private:
    void serveIdle();
    void fitParent();
    void pointAt(const CScreenPoint& at);
    bool wouldBeDouble(const CScreenPoint& at) const;
    void serveFor(double seconds);
    std::string differenceIn(const CIntRect& part);
    std::string differenceOfPopups();
    std::string difference();

    class CSetAsideSettings;
    std::unique_ptr<CSetAsideSettings> settings_;
    std::unique_ptr<CVstHost> second_;
    void* secondParent_ = nullptr;
    CScreenPoint pointer_;
    bool isHeld_[3] = {};
    int32_t step_ = 1;
    CScreenPoint lastPress_{-1, -1};
    std::chrono::steady_clock::time_point lastPressTime_{};
};

}  // namespace tarv::host
