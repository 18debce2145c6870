// The editor in a window of the system: pictures, real input, and every order of a host's calls.

#include <cstdlib>
#include <filesystem>

#include "Tests/Host/Editor/HostEditorTest.h"

namespace tarv::host {
namespace {

class EditorWindow : public HostEditorTest {};

TEST_F(EditorWindow, TheFirstPictureIsThereWhenOpenReturns) {
    const uint32_t ground = pixel(10, kPressY);
    ASSERT_TRUE(open());
    EXPECT_EQ(desk.childCount(parent), 1);
    const uint32_t stripe = pixel(10, kPressY);
    EXPECT_NE(stripe, ground);
    EXPECT_EQ(pixel(399, kKeysY), stripe);
    EXPECT_TRUE(desk.until([&] { return pixel(10, kWheelY) == stripe; }));
    close();
    EXPECT_EQ(desk.childCount(parent), 0);
}

TEST_F(EditorWindow, HasTheSizeThatTheHostWasGiven) {
    vst::Rect* rect = nullptr;
    ASSERT_EQ(effect.dispatch(vst::kEffectEditGetRect, 0, 0, &rect), 1);
    EXPECT_EQ(rect->right - rect->left, 640);
    EXPECT_EQ(rect->bottom - rect->top, 400);
}

TEST_F(EditorWindow, APressADragBeyondTheEdgeAndARelease) {
    ASSERT_TRUE(open());
    desk.moveTo(parent, 10, kPressY);
    const uint32_t rest = pixel(10, kPressY);
    desk.press();
    EXPECT_TRUE(turnsFrom(rest, kPressY));
    desk.moveTo(parent, -40, -30);
    desk.moveTo(parent, 30, kWheelY);
    EXPECT_NE(pixel(10, kPressY), rest) << "it is held";
    desk.release();
    EXPECT_TRUE(turnsTo(rest, kPressY)) << "the release elsewhere is a cancel";
    desk.moveTo(parent, 10, kPressY);
    desk.press();
    EXPECT_TRUE(turnsFrom(rest, kPressY));
    desk.release();
    EXPECT_TRUE(turnsTo(rest, kPressY));
}

TEST_F(EditorWindow, TheWheelTurnsTheViewAtThePointerOnceAndTheHostGetsWhatNoViewTakes) {
    ASSERT_TRUE(open());
    const uint32_t rest = pixel(10, kWheelY);
    desk.moveTo(parent, 10, kWheelY);
    desk.heard(parent);
    desk.wheel(1);
    EXPECT_TRUE(turnsFrom(rest, kWheelY));
    EXPECT_EQ(desk.heard(parent), "wheel");
    desk.wheel(-1);
    EXPECT_TRUE(turnsTo(rest, kWheelY));
    EXPECT_EQ(desk.heard(parent), "wheel");
}

TEST_F(EditorWindow, TheHostsWheelReportGoesToTheViewAtThePointer) {
    ASSERT_TRUE(open());
    const uint32_t rest = pixel(10, kWheelY);
    desk.moveTo(parent, 10, kWheelY);
    EXPECT_EQ(effect.dispatch(vst::kEffectVendorSpecific, 0x73744341, 0x57686565, nullptr, -1.0f), 0)
        << "the view shows it and leaves it to the host";
    EXPECT_TRUE(turnsFrom(rest, kWheelY));
    desk.moveTo(parent, -20, -20);
    effect.dispatch(vst::kEffectVendorSpecific, 0x73744341, 0x57686565, nullptr, 1.0f);
    desk.serve();
    EXPECT_NE(pixel(10, kWheelY), rest) << "beside the editor it does nothing";
}

TEST_F(EditorWindow, AKeyThatNoFieldEditsReachesTheHostOnce) {
    ASSERT_TRUE(open());
    desk.moveTo(parent, 10, kKeysY);
    desk.press();
    desk.release();
    desk.heard(parent);
    desk.strikeSpace();
    EXPECT_TRUE(desk.until([&] { return desk.heard(parent) == "space"; }));
    EXPECT_EQ(desk.heard(parent), "");
    close();
    desk.strikeSpace();
    EXPECT_TRUE(desk.until([&] { return desk.heard(parent) == "space"; })) << "the focus is where it was";
}

TEST_F(EditorWindow, TwoHundredOpeningsHoldNoMoreThanTheFirst) {
    const int openings = std::getenv("TARV_LONG") ? 1000 : 200;
    CHeldThings before;
    for (int i = 0; i < openings + 5; ++i) {
        if (i == 5) {
            before = CHostDesk::held();
        }
        ASSERT_TRUE(open());
        if (i % 2 == 1) {
            // An edit is open, too.
            desk.moveTo(parent, kFieldX, kFieldY);
            desk.press();
            desk.release();
            // Its keyboard shows some ticks later. A busy machine sees it in any opening, so the first ones do.
            if (i % 20 < 5) {
                EXPECT_TRUE(desk.until([&] { return desk.popups().size() == 1; }));
            }
        }
        desk.serve();
        close();
        desk.serve();
    }
    EXPECT_TRUE(desk.until([&] { return CHostDesk::held().graphics <= before.graphics; }));
    const CHeldThings after = CHostDesk::held();
    EXPECT_EQ(after.windows, before.windows);
    EXPECT_LE(after.graphics, before.graphics);
    // A block of 400 bytes left behind by each would be more.
    EXPECT_LE(after.memory, before.memory + 65536);
    EXPECT_EQ(desk.childCount(parent), 0);
}

TEST_F(EditorWindow, TheHostMayDestroyTheParentFirst) {
    ASSERT_TRUE(open());
    desk.moveTo(parent, 10, kPressY);
    desk.press();
    desk.destroyParent(parent);
    desk.release();
    close();
    desk.serve();
    parent = desk.openParent();
    ASSERT_TRUE(open());
    desk.destroyParent(parent);
    parent = desk.openParent();
    EXPECT_TRUE(open()) << "without a close between";
    EXPECT_EQ(desk.childCount(parent), 1);
    desk.destroyParent(parent);
    effect.close();
}

TEST_F(EditorWindow, AHostMayOpenTwice) {
    ASSERT_TRUE(open());
    EXPECT_FALSE(open()) << "it is open there";
    EXPECT_EQ(desk.childCount(parent), 1);
    void* other = desk.openParent();
    EXPECT_TRUE(open(effect, other));
    desk.serve();
    EXPECT_EQ(desk.childCount(parent), 0);
    EXPECT_EQ(desk.childCount(other), 1);
    const uint32_t rest = desk.pixel(other, 10, kPressY);
    desk.moveTo(other, 10, kPressY);
    desk.press();
    EXPECT_TRUE(desk.until([&] { return desk.pixel(other, 10, kPressY) != rest; }));
    desk.release();
    close();
    EXPECT_EQ(desk.childCount(other), 0);
}

TEST_F(EditorWindow, CallsInEveryOrderAreHarmless) {
    for (int round = 0; round < 3; ++round) {
        vst::Rect* rect = nullptr;
        desk.serve();
        close();
        EXPECT_EQ(effect.dispatch(vst::kEffectEditGetRect, 0, 0, &rect), 1);
        effect.dispatch(vst::kEffectVendorSpecific, 0x73744341, 0x57686565, nullptr, 1.0f);
        const std::string state = effect.chunk(false);
        ASSERT_TRUE(open());
        EXPECT_TRUE(effect.setChunk(state, false));
        desk.serve();
        close();
        close();
    }
}

TEST_F(EditorWindow, TwoEditorsLiveSideBySide) {
    CVstHost second;
    ASSERT_TRUE(second.open(library->entry()));
    desk.idle = [&] {
        idle(effect);
        idle(second);
    };
    ASSERT_TRUE(open());
    void* other = desk.openParent();
    ASSERT_TRUE(open(second, other));
    const uint32_t rest = desk.pixel(other, 10, kPressY);
    desk.moveTo(other, 10, kPressY);
    desk.press();
    EXPECT_TRUE(desk.until([&] { return desk.pixel(other, 10, kPressY) != rest; }));
    close();
    EXPECT_EQ(desk.childCount(parent), 0);
    desk.release();
    EXPECT_TRUE(desk.until([&] { return desk.pixel(other, 10, kPressY) == rest; })) << "the other one goes on";
    desk.idle = [this] { idle(effect); };
}

TEST_F(EditorWindow, TheEffectTakesItsEditorWithIt) {
    ASSERT_TRUE(open());
    desk.moveTo(parent, 10, kPressY);
    desk.press();
    effect.close();
    EXPECT_EQ(desk.childCount(parent), 0);
    desk.release();
    desk.serve();
}

TEST_F(EditorWindow, TwoVersionsOfTheLibraryLiveInOneProcess) {
    const std::filesystem::path file(kHostedEditorFile);
    const std::filesystem::path copy = file.parent_path() / ("HostedEditorCopy" + file.extension().string());
    std::filesystem::copy_file(file, copy, std::filesystem::copy_options::overwrite_existing);
    const auto before = CHostDesk::held().windows;
    for (int round = 0; round < 2; ++round) {
        auto other = std::make_unique<CPluginLibrary>();
        std::string error;
        ASSERT_TRUE(other->load(copy.string(), error)) << error;
        ASSERT_NE(other->entry(), library->entry());
        void* second = desk.openParent();
        {
            CVstHost inOther;
            ASSERT_TRUE(inOther.open(other->entry()));
            ASSERT_TRUE(open());
            ASSERT_TRUE(open(inOther, second));
            EXPECT_EQ(desk.childCount(second), 1);
        }
        other.reset();
        // The first one's classes and timers are its own.
        const uint32_t rest = pixel(10, kPressY);
        desk.destroyParent(second);
        desk.moveTo(parent, 10, kPressY);
        desk.press();
        EXPECT_TRUE(turnsFrom(rest, kPressY));
        desk.release();
        close();
    }
    desk.serve();
    EXPECT_TRUE(desk.until([&] { return CHostDesk::held().windows <= before; }));
    std::filesystem::remove(copy);
}

TEST_F(EditorWindow, NothingThatBelongsToTheProcessIsTouched) {
    const std::string before = CHostDesk::processState();
    ASSERT_TRUE(open());
    EXPECT_EQ(CHostDesk::processState(), before);
    desk.moveTo(parent, 10, kPressY);
    desk.press();
    desk.release();
    EXPECT_EQ(CHostDesk::processState(), before);
    close();
    EXPECT_EQ(CHostDesk::processState(), before);
}

}  // namespace
}  // namespace tarv::host
