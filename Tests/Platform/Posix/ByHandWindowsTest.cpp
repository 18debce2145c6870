#include "Platform/Clock.h"
#include "Platform/EventPost.h"
#include "Tests/Platform/Posix/ByHandHelp.h"

namespace tarv {
namespace {

constexpr uint32_t kRed = 0x00ff0000;
constexpr uint32_t kBlue = 0x000000ff;

class ByHandWindows : public testing::Test {
protected:
    std::unique_ptr<CSurface> surface(int32_t width, int32_t height, uint32_t fill) {
        CSurfaceStep step = CSurfaceStep::None;
        CPlatformError error = 0;
        auto made = system.createSurface(width, height, step, error);
        EXPECT_EQ(error, 0u);
        std::fill_n(made->pixels(), width * height, fill);
        return made;
    }
    /// Fills a window with one colour, finished.
    void paint(CNotingWindow& window, uint32_t fill) {
        const CIntRect bounds = window.byHand().bounds();
        const auto source = surface(bounds.width(), bounds.height(), fill);
        window.window->present(*source, 0, 0, {0, 0, bounds.width(), bounds.height()});
        window.window->finishPresenting();
    }
    uint32_t screenAt(int32_t x, int32_t y) { return system.desktop().picture({x, y, x + 1, y + 1}).pixels.at(0); }

    CWindowSystemByHand system{{{0, 0, 800, 600}, {800, 100, 1824, 868}}};
    const CWindowHandle host = system.desktop().openHost({100, 50, 500, 350});
};

TEST_F(ByHandWindows, AreTheBackendInUseForTheirLife) {
    EXPECT_EQ(windowSystem(), &system);
    {
        CWindowSystemByHand other;
        EXPECT_EQ(windowSystem(), &other);
    }
    EXPECT_EQ(windowSystem(), systemWindows());
}

TEST_F(ByHandWindows, AChildStandsInItsParentAndIsClippedByIt) {
    const auto child = CNotingWindow::child(system, host, {10, 20, 1000, 70});
    EXPECT_EQ(textOf(child->window->screenBounds()), "110,70 1100,120");
    paint(*child, kRed);
    EXPECT_EQ(screenAt(110, 70), kRed);
    EXPECT_EQ(screenAt(499, 119), kRed);
    EXPECT_EQ(screenAt(500, 119), CDesktopByHand::kBackground) << "beside the parent";
    EXPECT_EQ(screenAt(109, 70), CWindowByHand::kUnpainted) << "the parent, which paints nothing";
    child->window->show(false);
    EXPECT_EQ(screenAt(110, 70), CWindowByHand::kUnpainted);
}

TEST_F(ByHandWindows, PopupsStandOnTopAndFollowTheOrderOfActivation) {
    const auto first = CNotingWindow::popup(system, host, {200, 100, 300, 200});
    const auto second = CNotingWindow::popup(system, host, {250, 100, 350, 200});
    paint(*first, kRed);
    paint(*second, kBlue);
    EXPECT_EQ(screenAt(260, 150), kBlue);
    EXPECT_EQ(system.windowAt(260, 150), second->handle());
    system.desktop().activate(first->handle());
    EXPECT_EQ(screenAt(260, 150), kRed);
    system.desktop().activate(host);
    EXPECT_EQ(screenAt(260, 150), kRed) << "what a window owns stays on top of it";
    EXPECT_EQ(system.windowAt(120, 60), host);
    EXPECT_EQ(system.windowAt(5, 5), 0u);
}

TEST_F(ByHandWindows, AreAskedToPaintWhenShownGrownExposedOrInvalidated) {
    const auto child = CNotingWindow::child(system, host, {0, 0, 100, 50});
    EXPECT_EQ(child->take(), "") << "nothing happens by itself";
    system.pump();
    EXPECT_EQ(child->take(), "paint(0,0 100,50)");
    system.pump();
    EXPECT_EQ(child->take(), "");
    paint(*child, kRed);
    child->window->setBounds({0, 0, 120, 40});
    EXPECT_EQ(child->byHand().picture().at(99, 39), kRed) << "what stays is kept";
    EXPECT_EQ(child->byHand().picture().at(100, 0), CWindowByHand::kUnpainted);
    system.pump();
    EXPECT_EQ(child->take(), "paint(100,0 120,40)");
    child->window->invalidate({-5, 10, 20, 30});
    child->window->invalidate({15, 5, 25, 20});
    system.pump();
    EXPECT_EQ(child->take(), "paint(0,5 25,30)");
    system.desktop().expose(child->handle(), {1, 1, 3, 3});
    EXPECT_EQ(child->byHand().picture().at(2, 2), CWindowByHand::kUnpainted);
    child->window->show(false);
    system.pump();
    EXPECT_EQ(child->take(), "") << "hidden";
}

TEST_F(ByHandWindows, PresentTakesAPartOfASurfaceAndReadsItWhenFinished) {
    const auto child = CNotingWindow::child(system, host, {0, 0, 100, 50});
    auto source = surface(40, 30, kRed);
    source->pixels()[5 * 40 + 3] = kBlue;
    child->window->present(*source, 10, 20, {12, 22, 90, 45});
    EXPECT_EQ(child->byHand().presentedPixels(), 38 * 23) << "no more than the surface has";
    child->window->finishPresenting();
    EXPECT_EQ(child->byHand().picture().at(13, 25), kBlue) << "pixel 3, 5 of the surface";
    EXPECT_EQ(child->byHand().picture().at(12, 22), kRed);
    EXPECT_EQ(child->byHand().picture().at(11, 22), CWindowByHand::kUnpainted);
    EXPECT_EQ(child->byHand().picture().at(50, 25), CWindowByHand::kUnpainted);

    // Pixels that are written before the end show: that is what the end is for.
    child->window->present(*source, 0, 0, {0, 0, 1, 1});
    source->pixels()[0] = kBlue;
    child->window->finishPresenting();
    EXPECT_EQ(child->byHand().picture().at(0, 0), kBlue);

    child->window->present(*source, 0, 0, {0, 0, 2, 1});
    source.reset();
    EXPECT_EQ(child->byHand().picture().at(1, 0), kRed) << "a surface that goes is read before";
    EXPECT_EQ(child->byHand().presentCount(), 3);
    child->byHand().forgetPresented();
    EXPECT_EQ(child->byHand().presentedPixels(), 0);
}

TEST_F(ByHandWindows, TheParentGoesFirst) {
    auto child = CNotingWindow::child(system, host, {0, 0, 100, 50});
    const auto popup = CNotingWindow::popup(system, child->handle(), {200, 100, 300, 200});
    const auto inner = CNotingWindow::popup(system, popup->handle(), {210, 110, 220, 120});
    child->window->setCapture();
    inner->window->grabKeys(true);
    inner->meanwhile = [&](const std::string& word) {
        if (word == "gone") {
            child.reset();
        }
    };
    system.desktop().destroy(host);
    EXPECT_EQ(popup->takeWithout("active"), "gone");
    EXPECT_EQ(popup->handle(), 0u);
    EXPECT_EQ(child, nullptr);
    EXPECT_EQ(system.desktop().capture(), 0u);
    EXPECT_EQ(system.desktop().keyGrabber(), 0u);
    EXPECT_EQ(system.desktop().windowCount(), 2) << "their objects are still there";
    // The handle is void: nothing of this does anything.
    popup->window->show(true);
    popup->window->setBounds({0, 0, 5, 5});
    popup->window->invalidate({0, 0, 5, 5});
    popup->window->setCapture();
    popup->window->takeFocus();
    popup->window->grabKeys(true);
    system.pump();
    EXPECT_EQ(popup->take(), "");
    EXPECT_EQ(system.desktop().capture(), 0u);
    EXPECT_FALSE(system.isClean());
}

TEST_F(ByHandWindows, ADestroyedChildLeavesThePopupsOfItsHost) {
    auto child = CNotingWindow::child(system, host, {0, 0, 100, 50});
    const auto popup = CNotingWindow::popup(system, child->handle(), {200, 100, 300, 200});
    EXPECT_EQ(popup->byHand().owner(), host);
    child.reset();
    EXPECT_NE(popup->handle(), 0u) << "a window left behind shows";
    EXPECT_EQ(system.desktop().windowCount(), 1);
}

TEST_F(ByHandWindows, OwnersCountAsActiveWhileWhatTheyOwnIs) {
    const auto list = CNotingWindow::popup(system, host, {200, 100, 300, 200});
    EXPECT_EQ(list->take(), "active");
    auto inner = CNotingWindow::popup(system, list->handle(), {210, 110, 220, 120});
    EXPECT_EQ(list->take(), "") << "its own window is active now";
    EXPECT_EQ(inner->take(), "active");
    EXPECT_EQ(inner->activeNow, inner->handle());
    inner.reset();
    EXPECT_EQ(system.desktop().active(), list->handle());
    EXPECT_EQ(list->take(), "");
    system.desktop().activate(host);
    EXPECT_EQ(list->take(), "inactive");
    EXPECT_EQ(list->activeNow, host);
    system.desktop().activate(list->handle());
    system.desktop().activate(system.desktop().openHost({0, 0, 10, 10}, false));
    EXPECT_EQ(list->take(), "active inactive");
    EXPECT_EQ(list->activeNow, 0u) << "a window of another program";
    const auto quiet =
        std::make_unique<CNotingWindow>(system, CWindowRequest{.bounds = {0, 0, 5, 5}, .isActivated = false});
    quiet->window->show(true);
    EXPECT_EQ(quiet->take(), "");
}

TEST_F(ByHandWindows, FailOnDemandOnceAndAfterSomeThatSucceed) {
    CPlatformError error = 0;
    CSurfaceStep step = CSurfaceStep::None;
    system.failSurface(CSurfaceStep::Selection, 8, 1);
    const auto first = system.createSurface(4, 4, step, error);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(system.createSurface(4, 4, step, error), nullptr);
    EXPECT_EQ(step, CSurfaceStep::Selection);
    EXPECT_EQ(error, 8u);
    EXPECT_NE(system.createSurface(4, 4, step, error), nullptr);
    EXPECT_EQ(system.desktop().surfaceCount(), 1);
    EXPECT_EQ(system.createSurface(0, 4, step, error), nullptr);
    EXPECT_EQ(error, 87u);

    CNotingWindow window(system, {.bounds = {0, 0, 5, 5}});
    system.failWindow(14);
    EXPECT_EQ(system.createWindow({}, window, error), nullptr);
    EXPECT_EQ(error, 14u);
    EXPECT_EQ(system.createWindow({true, 77, {}}, window, error), nullptr);
    EXPECT_EQ(error, 1400u);
    EXPECT_EQ(system.desktop().windowCount(), 1);
}

TEST_F(ByHandWindows, MonitorsAreThoseThatWereAskedFor) {
    EXPECT_EQ(textOf(system.monitorArea(5, 5)), "0,0 800,600");
    EXPECT_EQ(textOf(system.monitorArea(800, 100)), "800,100 1824,868");
    EXPECT_EQ(textOf(system.monitorArea(-50, 900)), "0,0 800,600") << "the nearest one";
    EXPECT_EQ(textOf(system.monitorArea(5000, 5000)), "800,100 1824,868");
    EXPECT_EQ(textOf(system.desktop().screen()), "0,0 1824,868");
}

TEST_F(ByHandWindows, CloseRequestsTitlesAndShapesReachTheirEnds) {
    const auto popup = CNotingWindow::popup(system, host, {0, 0, 50, 50});
    popup->take();
    system.desktop().requestClose(popup->handle());
    system.desktop().requestClose(host);
    EXPECT_EQ(popup->take(), "close");
    popup->window->setTitle(u"Presets");
    popup->window->setCursor(CCursorShape::Hand);
    EXPECT_EQ(popup->byHand().title(), u"Presets");
    EXPECT_EQ(popup->byHand().cursor(), CCursorShape::Hand);
}

/// Notes the times at which it fires.
class CTicks final : public CTimerHandler {
public:
    void onTimer() override {
        times.push_back(clockSeconds() - CWindowSystemByHand::kFirstSecond);
        if (meanwhile) {
            meanwhile();
        }
    }
    std::vector<double> times;
    std::function<void()> meanwhile;
};

class ByHandTimers : public ByHandWindows {
protected:
    CTimerId start(CTicks& ticks, int32_t milliseconds) {
        CPlatformError error = 0;
        bool isWindow = false;
        const CTimerId id = system.startTimer(ticks, milliseconds, error, isWindow);
        EXPECT_EQ(error, 0u);
        return id;
    }
};

TEST_F(ByHandTimers, FireOnTheirGridInTheOrderOfTime) {
    CTicks fast;
    CTicks slow;
    EXPECT_EQ(start(fast, 25), 1u);
    const CTimerId slowId = start(slow, 40);
    EXPECT_EQ(slowId, 2u);
    EXPECT_EQ(system.timers().hiddenWindowCount(), 1);
    system.advance(1.0);
    ASSERT_EQ(fast.times.size(), 40u);
    ASSERT_EQ(slow.times.size(), 25u);
    EXPECT_NEAR(fast.times[7], 0.2, 1e-9);
    EXPECT_NEAR(slow.times[4], 0.2, 1e-9);
    system.stopTimer(slowId);
    system.stopTimer(slowId);
    system.advance(0.1);
    EXPECT_EQ(slow.times.size(), 25u);
    EXPECT_EQ(fast.times.size(), 44u);
    system.stopTimer(1);
    EXPECT_EQ(system.timers().count(), 0);
    EXPECT_EQ(system.timers().hiddenWindowCount(), 0);
}

TEST_F(ByHandTimers, AreServedOnceWhereTheyStarved) {
    CTicks ticks;
    const CTimerId id = start(ticks, 25);
    system.starve(0.26);
    EXPECT_TRUE(ticks.times.empty());
    system.advance(0.0);
    ASSERT_EQ(ticks.times.size(), 1u);
    system.advance(0.02);
    ASSERT_EQ(ticks.times.size(), 2u) << "the grid stays";
    EXPECT_NEAR(ticks.times[1], 0.275, 1e-9);
    system.stopTimer(id);
}

TEST_F(ByHandTimers, TakeTheLeastIntervalForZero) {
    CTicks ticks;
    const CTimerId id = start(ticks, 0);
    EXPECT_EQ(system.timers().interval(id), 10);
    system.advance(0.1);
    EXPECT_EQ(ticks.times.size(), 10u);
    system.stopTimer(id);
}

TEST_F(ByHandTimers, MayBeStoppedByTheirHandlers) {
    CTicks ticks;
    CTicks other;
    const CTimerId id = start(ticks, 25);
    const CTimerId otherId = start(other, 25);
    ticks.meanwhile = [&] {
        system.stopTimer(id);
        system.stopTimer(otherId);
    };
    system.advance(1.0);
    EXPECT_EQ(ticks.times.size(), 1u);
    EXPECT_TRUE(other.times.empty());
    EXPECT_TRUE(system.isClean());
}

TEST_F(ByHandTimers, FailOnDemand) {
    CTicks ticks;
    CPlatformError error = 0;
    bool isWindow = false;
    system.timers().failWindow(8);
    EXPECT_EQ(system.startTimer(ticks, 25, error, isWindow), 0u);
    EXPECT_EQ(error, 8u);
    EXPECT_TRUE(isWindow);
    system.timers().failTimer(9);
    EXPECT_EQ(system.startTimer(ticks, 25, error, isWindow), 0u);
    EXPECT_EQ(error, 9u);
    EXPECT_FALSE(isWindow);
    EXPECT_TRUE(system.isClean());
}

TEST_F(ByHandTimers, PostsArriveBetweenThem) {
    CTicks ticks;
    const CTimerId id = start(ticks, 25);
    std::vector<size_t> seen;
    struct CState {
        std::vector<size_t>& seen;
        CTicks& ticks;
    } state{seen, ticks};
    CEventWindow window = 0;
    ASSERT_EQ(openEventWindow(
                  [](void* user, uintptr_t) {
                      auto* at = static_cast<CState*>(user);
                      at->seen.push_back(at->ticks.times.size());
                  },
                  &state, window),
              0u);
    ticks.meanwhile = [&] { EXPECT_EQ(postEvent(window, 1), 0u); };
    system.advance(0.05);
    EXPECT_EQ(seen, (std::vector<size_t>{1, 2}));
    closeEventWindow(window);
    system.stopTimer(id);
}

TEST_F(ByHandWindows, TheClipboardHasThreeTries) {
    std::u16string text = u"before";
    EXPECT_FALSE(system.clipboardText(text));
    EXPECT_TRUE(system.setClipboardText(u"-3.5 dB"));
    system.keepClipboard(2);
    EXPECT_TRUE(system.clipboardText(text));
    EXPECT_EQ(text, u"-3.5 dB");
    system.keepClipboard(4);
    EXPECT_FALSE(system.setClipboardText(u"x"));
    EXPECT_TRUE(system.clipboardText(text)) << "the fourth try was the last that failed";
    EXPECT_EQ(text, u"-3.5 dB");
    system.emptyClipboard();
    EXPECT_FALSE(system.clipboardText(text));
}

TEST_F(ByHandWindows, FileDialogsGiveTheirQueuedAnswers) {
    bool wasOpen = false;
    system.answerFileDialog(u"/tmp/a.preset", [&] { wasOpen = true; });
    system.refuseFileDialog(u"No helper.");
    std::u16string path;
    std::u16string message = u"before";
    CFileDialogRequest request;
    request.isSave = true;
    EXPECT_TRUE(system.askForFile(request, path, message));
    EXPECT_TRUE(wasOpen);
    EXPECT_EQ(path, u"/tmp/a.preset");
    EXPECT_EQ(message, u"");
    EXPECT_FALSE(system.askForFile({}, path, message));
    EXPECT_EQ(message, u"No helper.");
    EXPECT_FALSE(system.askForFile({}, path, message)) << "given up where nothing was queued";
    EXPECT_EQ(message, u"");
    ASSERT_EQ(system.fileDialogs().size(), 3u);
    EXPECT_TRUE(system.fileDialogs()[0].isSave);
}

}  // namespace
}  // namespace tarv
