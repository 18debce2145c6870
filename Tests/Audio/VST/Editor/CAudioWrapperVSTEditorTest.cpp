// The editor of an effect as its host opens, serves and closes it.

#include "Audio/VST/CAudioWrapperVSTEditor.h"

#include <thread>

#include "Audio/VST/CAudioWrapperVST.h"

#include "Tests/Audio/VST/Editor/EditorHost.h"
#include "Tests/Platform/X11/CXServer.h"

namespace tarv {
namespace {

class CAudioWrapperVSTEditorTest : public CEditorHost {};

TEST_F(CAudioWrapperVSTEditorTest, IsThereWhereTheProjectSaysSo) {
    EXPECT_TRUE(effect.effect()->flags & vst::kFlagHasEditor);
}

TEST_F(CAudioWrapperVSTEditorTest, OpensWithItsFirstPictureInTheHostsWindow) {
    const uint32_t ground = pixel(0, 0);
    ASSERT_TRUE(open());
    ASSERT_TRUE(window());
    EXPECT_EQ(window()->container(), parent);
    EXPECT_TRUE(window()->isChild());
    EXPECT_EQ(pixel(0, 0), 17u);
    EXPECT_EQ(pixel(99, 399), 17u);
    EXPECT_EQ(pixel(100, 0), 34u);
    EXPECT_EQ(pixel(639, 399), 34u);
    EXPECT_EQ(pixel(640, 0), ground);
    close();
    EXPECT_TRUE(windows().empty());
    EXPECT_TRUE(system.isClean());
    EXPECT_EQ(pixel(0, 0), ground);
}

TEST_F(CAudioWrapperVSTEditorTest, HasTheSizeThatTheHostWasGivenAtEachScale) {
    for (const char* scale : {"0.8", "1.0", "1.25", "2.0"}) {
        CLocalData::instance().writeText("ui-scale", scale);
        const vst::Rect wanted = rect();
        ASSERT_TRUE(open()) << scale;
        EXPECT_EQ(window()->bounds(), (CIntRect{wanted.left, wanted.top, wanted.right, wanted.bottom})) << scale;
        EXPECT_EQ(wanted.right, std::lround(640 * std::stod(scale)));
        CLocalData::instance().writeText("ui-scale", "3.0");
        EXPECT_EQ(rect().right, wanted.right) << "an open editor keeps its size";
        close();
    }
    EXPECT_EQ(rect().right, 1920) << "computed anew while it is closed";
    CLocalData::instance().writeText("ui-scale", "1.0");
}

TEST_F(CAudioWrapperVSTEditorTest, AnOpenEditorIsNotOpenedTwice) {
    ASSERT_TRUE(open());
    const CWindowHandle first = window()->handle();
    EXPECT_FALSE(open());
    EXPECT_EQ(window()->handle(), first);
    close();
    EXPECT_TRUE(open());
}

TEST_F(CAudioWrapperVSTEditorTest, IsBuiltAnewInAnotherWindowOfTheHost) {
    ASSERT_TRUE(open());
    const CWindowHandle other = system.desktop().openHost({0, 0, 700, 500});
    EXPECT_TRUE(openEditor(effect, other));
    EXPECT_EQ(window()->container(), other);
}

TEST_F(CAudioWrapperVSTEditorTest, TheHostMayDestroyTheParentFirst) {
    ASSERT_TRUE(open());
    press(20, 20);
    system.desktop().destroy(parent);
    EXPECT_TRUE(windows().empty());
    idle();
    EXPECT_FALSE(wheel(1.0f));
    rect();
    close();
    close();
    EXPECT_TRUE(system.isClean());
    parent = system.desktop().openHost({kHostX, kHostY, kHostX + 1000, kHostY + 700});
    EXPECT_TRUE(open());
    system.desktop().destroy(parent);
    parent = system.desktop().openHost({kHostX, kHostY, kHostX + 1000, kHostY + 700});
    EXPECT_TRUE(open()) << "without a close between";
    EXPECT_EQ(pixel(0, 0), 17u);
}

TEST_F(CAudioWrapperVSTEditorTest, CallsBeforeAndBehindItsLifeAreHarmless) {
    for (int round = 0; round < 2; ++round) {
        idle();
        EXPECT_FALSE(wheel(1.0f));
        close();
        rect();
        const std::string state = effect.chunk(false);
        EXPECT_TRUE(effect.setChunk(state, false));
        system.pump();
        ASSERT_TRUE(open());
        EXPECT_TRUE(effect.setChunk(state, false));
        idle();
        close();
    }
}

TEST_F(CAudioWrapperVSTEditorTest, WithoutAWindowOfTheHostItIsRefusedWithoutAMessage) {
    parent = 0;
    const CLogCapture log;
    EXPECT_FALSE(open());
    EXPECT_TRUE(log.lines.empty());
    EXPECT_TRUE(system.isClean());
}

TEST_F(CAudioWrapperVSTEditorTest, FailsWithoutADisplayAndSaysWhy) {
    const CScopedVariable display("DISPLAY", nullptr);
    setWindowSystem(nullptr);
    ASSERT_FALSE(windowSystem());
    const std::string reason = CString(noWindowsReason().c_str()).toUtf8();
    ASSERT_FALSE(reason.empty());
    const CLogCapture log;
    EXPECT_FALSE(open());
    EXPECT_TRUE(std::any_of(log.lines.begin(), log.lines.end(), [&](const std::string& line) {
        return line.find("Unable to show windows. " + reason) != std::string::npos;
    })) << reason;
    setWindowSystem(&system);
    EXPECT_TRUE(open());
}

TEST_F(CAudioWrapperVSTEditorTest, TheHostsIdleCallServesTheWindowSystem) {
    idle();
    EXPECT_EQ(system.serveCount(), 0) << "nothing to serve";
    ASSERT_TRUE(open());
    idle();
    EXPECT_EQ(system.serveCount(), 1);
}

TEST_F(CAudioWrapperVSTEditorTest, TheHostsWheelReportTurnsTheViewAtThePointerByOneNotch) {
    ASSERT_TRUE(open());
    moveTo(20, 20);
    std::vector<double> turned;
    on("a.mouse-wheel", [&](CFilledView&, CAttributeMap& params) {
        turned.push_back(params["delta"].asReal());
        params["is-handled"] = CAttributeValue::fromBool(true);
    });
    EXPECT_TRUE(wheel(-3.5f));
    EXPECT_TRUE(wheel(0.25f));
    EXPECT_FALSE(wheel(0.0f));
    EXPECT_EQ(turned, (std::vector<double>{-1.0, 1.0}));
    moveTo(200, 20);
    EXPECT_FALSE(wheel(1.0f)) << "no view takes it there";
    EXPECT_EQ(effect.dispatch(vst::kEffectVendorSpecific, 0x73744341, 0x57686564, nullptr, 1.0f), 0);
}

TEST_F(CAudioWrapperVSTEditorTest, APressTakesTheFocusInAllHostsButOne) {
    for (const auto& [vendor, isTaken] : {std::pair{"Steinberg", false}, {"Steinberg ", true}, {"Any", true}}) {
        host::CVstHost other;
        other.answers.vendor = vendor;
        ASSERT_TRUE(other.open(&CAudioWrapperVST::create));
        system.desktop().activate(parent);
        ASSERT_TRUE(openEditor(other, parent));
        press(20, 20);
        system.input().release();
        EXPECT_EQ(system.desktop().focus() == window()->handle(), isTaken) << vendor;
    }
}

TEST_F(CAudioWrapperVSTEditorTest, TwoEditorsLiveSideBySide) {
    host::CVstHost second;
    ASSERT_TRUE(second.open(&CAudioWrapperVST::create));
    const CWindowHandle other = system.desktop().openHost({0, 0, 50, 50});
    ASSERT_TRUE(open());
    ASSERT_TRUE(openEditor(second, other));
    EXPECT_EQ(windows().size(), 2u);
    close();
    ASSERT_EQ(windows().size(), 1u);
    EXPECT_EQ(windows()[0]->container(), other);
    system.advance(0.1);
    second.close();
    EXPECT_TRUE(system.isClean());
}

TEST_F(CAudioWrapperVSTEditorTest, ClosingEndsADragAndReleasesTheCapture) {
    ASSERT_TRUE(open());
    press(20, 20);
    EXPECT_EQ(system.desktop().capture(), window()->handle());
    heard();
    close();
    EXPECT_EQ(heard(), "a.focus-lost a.mouse-cancel a.mouse-exit");
    EXPECT_EQ(system.desktop().capture(), 0u);
    EXPECT_TRUE(system.isClean());
}

TEST_F(CAudioWrapperVSTEditorTest, TheEffectTakesItsEditorWithIt) {
    ASSERT_TRUE(open());
    press(20, 20);
    effect.close();
    EXPECT_TRUE(system.isClean());
}

TEST_F(CAudioWrapperVSTEditorTest, TimersAndEventsThatAreLateFindNothing) {
    ASSERT_TRUE(open());
    effect.setParameter(1, 0.75f);
    system.starve(1.0);
    close();
    system.advance(1.0);
    EXPECT_TRUE(system.isClean());
}

TEST_F(CAudioWrapperVSTEditorTest, AtRestItDrawsAndReceivesNothing) {
    ASSERT_TRUE(open());
    system.advance(0.1);
    window()->forgetPresented();
    const int32_t drawn = CFilledView::drawnViews;
    for (int tick = 0; tick < 100; ++tick) {
        idle();
        system.advance(0.025);
    }
    EXPECT_EQ(window()->presentCount(), 0);
    EXPECT_EQ(CFilledView::drawnViews, drawn);
    EXPECT_EQ(system.pump(), 0) << "no post waits";
}

TEST_F(CAudioWrapperVSTEditorTest, AnotherThreadClosesItWithoutWaiting) {
    ASSERT_TRUE(open());
    std::thread([&] {
        idle();
        EXPECT_FALSE(wheel(1.0f));
        EXPECT_FALSE(open()) << "it is open";
        close();
        close();
    }).join();
    EXPECT_EQ(system.serveCount(), 0);
    EXPECT_TRUE(window()) << "windows belong to the thread that made them";
    system.pump();
    EXPECT_FALSE(window());
    EXPECT_TRUE(open());
}

TEST_F(CAudioWrapperVSTEditorTest, EachStepThatFailsLeavesNothingBehind) {
    struct CFault {
        const char* text;
        std::function<void()> force;
    };
    const CFault faults[] = {
        {"Unable to create window (error 1400).", [&] { system.failWindow(1400); }},
        {"CreateCompatibleDC() execution error 6.", [&] { system.failSurface(CSurfaceStep::Context, 6); }},
        {"CreateDIBSection() error 8 (width=128, height=", [&] { system.failSurface(CSurfaceStep::Section, 8); }},
        {"SelectObject() error 7.", [&] { system.failSurface(CSurfaceStep::Selection, 7); }},
        {"Unable to register window class (error 1410).", [&] { system.failClass(CWindowKind::Seen, 1410); }},
        {"Unable to register bridge window class (error 87).", [&] { system.failClass(CWindowKind::Posts, 87); }},
        {"Unable to register timer window class: error 8.", [&] { system.failClass(CWindowKind::Timers, 8); }},
        {"Timer window creation error 5.", [&] { system.timers().failWindow(5); }},
        {"Timer creation error 4.", [&] { system.timers().failTimer(4); }},
    };
    for (const CFault& fault : faults) {
        const CLogCapture log;
        fault.force();
        EXPECT_FALSE(open()) << fault.text;
        EXPECT_TRUE(std::any_of(log.lines.begin(), log.lines.end(), [&](const std::string& line) {
            return line.find(fault.text) != std::string::npos;
        })) << fault.text;
        EXPECT_TRUE(system.isClean()) << fault.text;
        ASSERT_TRUE(open()) << fault.text;
        close();
    }
}

}  // namespace
}  // namespace tarv
