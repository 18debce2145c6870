#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "CPluginLibrary.h"
#include "CVstHost.h"
#include "Tests/Host/Editor/CHostDesk.h"
#include "Tests/TestPaths.h"

namespace tarv::host {

/// One effect of the library with an editor, in a host on the system's desktop. The editor's stripes of 100 pixels
/// show what reaches them, from the top: a press, the wheel, a key; from x = 100 to 300 a column of texts lies over
/// them.
class HostEditorTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { load(kHostedEditorFile); }
    static void load(const char* file) {
        std::string error;
        library = std::make_unique<CPluginLibrary>();
        ASSERT_TRUE(library->load(file, error)) << error;
    }
    static void TearDownTestSuite() { library.reset(); }
    void SetUp() override {
        ASSERT_TRUE(library && library->entry());
        ASSERT_TRUE(effect.open(library->entry()));
        desk.idle = [this] { idle(effect); };
        parent = desk.openParent();
    }
    void TearDown() override {
        desk.idle = [] {};
        desk.insideCall = [](auto&&) {};
    }

    static bool open(CVstHost& in, void* window) { return in.dispatch(vst::kEffectEditOpen, 0, 0, window) == 1; }
    static void close(CVstHost& in) { in.dispatch(vst::kEffectEditClose); }
    static void idle(CVstHost& in) {
        if (in.effect()) {
            in.dispatch(vst::kEffectEditIdle);
        }
    }
    bool open() { return open(effect, parent); }
    void close() { close(effect); }
    uint32_t pixel(int x, int y) const { return desk.pixel(parent, x, y); }
    /// The stripe at y shows another colour than this one.
    bool turnsFrom(uint32_t color, int y) {
        return desk.until([&] { return pixel(10, y) != color; });
    }
    bool turnsTo(uint32_t color, int y) {
        return desk.until([&] { return pixel(10, y) == color; });
    }

    static constexpr int kPressY = 50;
    static constexpr int kWheelY = 150;
    static constexpr int kKeysY = 250;
    /// Within the first field of the column of texts.
    static constexpr int kFieldX = 110;
    static constexpr int kFieldY = 36;
    static inline std::unique_ptr<CPluginLibrary> library;
    CHostDesk desk;
    void* parent = nullptr;
    CVstHost effect;
};

}  // namespace tarv::host
