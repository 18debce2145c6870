#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <thread>

#include "Tests/Platform/X11/CXDesktop.h"

namespace tarv {
namespace {

using CTexts = std::vector<std::string>;

class X11Window : public CXDesktop {
protected:
    /// A popup that stays where the user goes elsewhere.
    static CWindowRequest lasting(CWindowHandle parent) {
        CWindowRequest request;
        request.parent = parent;
        request.bounds = {300, 200, 400, 260};
        request.isLasting = true;
        return request;
    }
};

TEST_F(X11Window, AChildStandsInTheWindowOfTheHost) {
    CXRecorder recorder;
    const auto window = child(recorder, {10, 20, 210, 120});
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(client.childrenOf(host), std::vector{static_cast<xcb_window_t>(window->handle())});
    EXPECT_EQ(window->screenBounds(), (CIntRect{110, 70, 310, 170}));
    EXPECT_EQ(recorder.paints, std::vector{(CIntRect{0, 0, 200, 100})});
    window->setBounds({0, 0, 50, 60});
    EXPECT_EQ(window->screenBounds(), (CIntRect{100, 50, 150, 110}));
}

TEST_F(X11Window, WithoutAParentIsAnErrorOfTheServer) {
    CXRecorder recorder;
    CPlatformError error = 0;
    CWindowRequest request;
    request.isChild = true;
    request.parent = 0x12345;
    request.bounds = {0, 0, 10, 10};
    EXPECT_EQ(system.createWindow(request, recorder, error), nullptr);
    EXPECT_EQ(error, 3u) << "BadWindow";
}

TEST_F(X11Window, GoesWithTheWindowOfTheHostAndIsHarmlessAfterwards) {
    CXRecorder recorder, list;
    const auto window = child(recorder);
    const auto opened = popup(list, window->handle(), {10, 10, 60, 60});
    const size_t windows = client.childrenOf(client.root()).size();
    client.destroyWindow(host);
    ASSERT_TRUE(until([&] { return !window->handle(); }));
    EXPECT_EQ(recorder.events.back(), "gone");
    EXPECT_EQ(list.events.back(), "gone");
    EXPECT_EQ(opened->handle(), 0u);
    EXPECT_TRUE(until([&] { return client.childrenOf(client.root()).size() == windows - 2; }));
    CSurfaceStep step{};
    CPlatformError error = 0;
    const auto surface = system.createSurface(10, 10, step, error);
    window->show(false);
    window->show(true);
    window->setBounds({0, 0, 5, 5});
    window->setTitle(u"x");
    window->present(*surface, 0, 0, {0, 0, 10, 10});
    window->finishPresenting();
    window->invalidate({0, 0, 1, 1});
    window->setCapture();
    window->releaseCapture();
    window->setCursor(CCursorShape::Text);
    window->takeFocus();
    window->giveFocusBack();
    window->grabKeys(true);
    window->grabKeys(false);
    EXPECT_EQ(window->screenBounds(), CIntRect{});
    settle();
    EXPECT_EQ(recorder.events, CTexts{"gone"});
}

TEST_F(X11Window, APopupGoesWithAWindowOfTheHostThatOwnsIt) {
    CXRecorder recorder;
    const auto window = popup(recorder, host, {10, 10, 60, 60});
    client.destroyWindow(host);
    EXPECT_TRUE(until([&] { return !window->handle(); }));
    EXPECT_EQ(recorder.events.back(), "gone");
}

TEST_F(X11Window, MayBeDestroyedInEachOfItsHandlers) {
    for (const char* wanted : {"press", "release", "wheel", "leave", "key", "inactive", "active", "gone", "paint"}) {
        const xcb_window_t parent = client.makeWindow(0, 400, 100, 100);
        CXRecorder recorder;
        CPlatformError error = 0;
        CWindowRequest request;
        request.isChild = true;
        request.parent = parent;
        request.bounds = {0, 0, 100, 100};
        auto window = system.createWindow(request, recorder, error);
        ASSERT_NE(window, nullptr);
        recorder.act = [&] {
            if (wanted == std::string("paint") ||
                (!recorder.events.empty() && recorder.events.back().starts_with(wanted)))
                window.reset();
        };
        recorder.isKeyTaken = recorder.isWheelTaken = false;
        window->show(true);
        window->setCapture();
        window->grabKeys(true);
        settle();
        client.movePointer(50, 450);
        client.click(1);
        client.click(4);
        client.strike(38);
        settle();
        client.setFocus(host);
        client.movePointer(500, 500);
        settle();
        client.destroyWindow(parent);
        EXPECT_TRUE(until([&] { return !window; })) << wanted;
    }
}

TEST_F(X11Window, TwoHundredOpeningsLeaveNothingOnTheServer) {
    CXRecorder recorder, list;
    const auto open = [&] {
        const auto window = child(recorder);
        const auto opened = popup(list, window->handle(), {10, 10, 60, 60});
        CSurfaceStep step{};
        CPlatformError error = 0;
        const auto surface = system.createSurface(200, 100, step, error);
        ASSERT_NE(surface, nullptr);
        window->setCursor(CCursorShape::Hand);
        window->present(*surface, 0, 0, {0, 0, 200, 100});
        window->finishPresenting();
    };
    open();
    client.sync();
    const size_t windows = client.childrenOf(client.root()).size();
    const uint64_t resources = client.resourceCount();
    ASSERT_GT(resources, 0u);
    for (int i = 0; i < 200; ++i)
        open();
    // What a closed connection had is freed when the server comes to it.
    EXPECT_TRUE(until([&] { return client.resourceCount() <= resources; }));
    EXPECT_EQ(client.childrenOf(client.root()).size(), windows);
    EXPECT_TRUE(client.childrenOf(host).empty());
}

TEST_F(X11Window, PaintsWhatIsAskedForWhenServed) {
    CXRecorder recorder;
    const auto window = child(recorder);
    recorder.paints.clear();
    window->invalidate({10, 10, 20, 20});
    window->invalidate({30, 5, 900, 15});
    EXPECT_TRUE(recorder.paints.empty());
    settle();
    EXPECT_EQ(recorder.paints, std::vector{(CIntRect{10, 5, 200, 20})});
    settle();
    EXPECT_EQ(recorder.paints.size(), 1u);
}

TEST_F(X11Window, APopupTakesTheFocusAndGivesItBack) {
    CXRecorder recorder;
    auto window = popup(recorder, host, {300, 200, 400, 260});
    EXPECT_EQ(window->screenBounds(), (CIntRect{300, 200, 400, 260}));
    ASSERT_TRUE(until([&] { return recorder.events == CTexts{"active"}; }));
    EXPECT_EQ(client.focus(), window->handle());
    EXPECT_EQ(client.numbers(static_cast<xcb_window_t>(window->handle()), "WM_TRANSIENT_FOR"), std::vector{host});
    client.setFocus(host);
    ASSERT_TRUE(until([&] { return recorder.events.size() == 2; }));
    EXPECT_EQ(recorder.events, (CTexts{"active", "inactive"}));
    EXPECT_EQ(recorder.other, 0u);
    window->takeFocus();
    settle();
    window.reset();
    client.sync();
    EXPECT_EQ(client.focus(), host);
}

TEST_F(X11Window, APopupLearnsWhichOwnWindowHasTheActivationNow) {
    CXRecorder recorder, inner;
    const auto window = popup(recorder, host, {300, 200, 400, 260});
    auto second = popup(inner, window->handle(), {320, 220, 420, 280});
    ASSERT_TRUE(until([&] { return recorder.events.size() == 2; }));
    EXPECT_EQ(recorder.events, (CTexts{"active", "inactive"}));
    EXPECT_EQ(recorder.other, second->handle());
    second.reset();
    ASSERT_TRUE(until([&] { return recorder.events.size() == 3; }));
    EXPECT_EQ(recorder.events.back(), "active");
}

TEST_F(X11Window, APopupOfTheTaskbarIsLeftToTheWindowManager) {
    CXRecorder recorder, list;
    CPlatformError error = 0;
    CWindowRequest request;
    request.parent = host;
    request.bounds = {300, 200, 400, 260};
    request.isTaskbar = true;
    request.title = u"Br\u00fccke";
    const auto window = system.createWindow(request, recorder, error);
    const auto plain = popup(list, host, {10, 10, 20, 20});
    const auto id = static_cast<xcb_window_t>(window->handle());
    EXPECT_FALSE(client.isOverrideRedirect(id));
    EXPECT_TRUE(client.isOverrideRedirect(static_cast<xcb_window_t>(plain->handle())));
    EXPECT_EQ(client.numbers(id, "_NET_WM_WINDOW_TYPE"), std::vector{client.atom("_NET_WM_WINDOW_TYPE_DIALOG")});
    EXPECT_EQ(client.numbers(id, "_MOTIF_WM_HINTS"), (std::vector<uint32_t>{2, 0, 0, 0, 0})) << "no decorations";
    EXPECT_EQ(client.numbers(id, "WM_NORMAL_HINTS").at(0), 3u) << "the user's position and size";
    EXPECT_EQ(client.numbers(id, "_NET_WM_STATE"), std::vector<uint32_t>{});
    window->show(true);
    EXPECT_TRUE(until([&] { return client.focus() == id; }));
    window->show(false);
    client.sync();
    EXPECT_NE(client.focus(), id);
}

TEST_F(X11Window, ALastingPopupIsLeftToTheWindowManagerWithoutAButtonInTheTaskbar) {
    CXRecorder recorder;
    CPlatformError error = 0;
    const CWindowRequest request = lasting(host);
    client.setFocus(host);
    auto window = system.createWindow(request, recorder, error);
    const auto id = static_cast<xcb_window_t>(window->handle());
    EXPECT_FALSE(client.isOverrideRedirect(id));
    EXPECT_EQ(client.numbers(id, "_NET_WM_STATE"),
              (std::vector{client.atom("_NET_WM_STATE_SKIP_TASKBAR"), client.atom("_NET_WM_STATE_SKIP_PAGER")}));
    EXPECT_EQ(client.numbers(id, "WM_TRANSIENT_FOR"), std::vector{host});
    window->show(true);
    EXPECT_TRUE(until([&] { return client.focus() == id; }));
    EXPECT_EQ(window->screenBounds(), request.bounds);
    window.reset();
    client.sync();
    EXPECT_EQ(client.focus(), host);
}

TEST_F(X11Window, GivesTheFocusBackThatAManagerGaveToALastingPopupFirst) {
    CXRecorder recorder;
    CPlatformError error = 0;
    const CWindowRequest request = lasting(host);
    client.setFocus(host);
    const auto window = system.createWindow(request, recorder, error);
    window->show(true);
    // Before this program comes to read that the window is shown.
    client.sync();
    client.setFocus(static_cast<xcb_window_t>(window->handle()));
    client.sync();
    settle();
    window->show(false);
    client.sync();
    EXPECT_EQ(client.focus(), host);
}

TEST_F(X11Window, APopupIsHiddenWithTheWindowOfTheHostAndComesAgainWithIt) {
    CXRecorder recorder, list;
    const auto window = child(recorder);
    CPlatformError error = 0;
    const CWindowRequest request = lasting(window->handle());
    const auto opened = system.createWindow(request, list, error);
    opened->show(true);
    settle();
    const auto isMapped = [&] {
        settle();
        const auto cookie = xcb_get_window_attributes(client.connection(), static_cast<xcb_window_t>(opened->handle()));
        const std::unique_ptr<xcb_get_window_attributes_reply_t, void (*)(void*)> reply(
            xcb_get_window_attributes_reply(client.connection(), cookie, nullptr), &std::free);
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    };
    EXPECT_TRUE(until(isMapped));
    xcb_unmap_window(client.connection(), host);
    EXPECT_TRUE(until([&] { return !isMapped(); }));
    xcb_map_window(client.connection(), host);
    EXPECT_TRUE(until(isMapped));
    xcb_unmap_window(client.connection(), host);
    EXPECT_TRUE(until([&] { return !isMapped(); }));
    opened->show(false);
    xcb_map_window(client.connection(), host);
    settle();
    EXPECT_FALSE(isMapped()) << "closed meanwhile";
}

TEST_F(X11Window, HasOneCursorAtATimeOfEachShape) {
    CXRecorder recorder;
    auto window = child(recorder);
    const uint64_t before = client.resourceCount("CURSOR");
    const uint64_t fonts = client.resourceCount("FONT");
    for (const CCursorShape shape : {CCursorShape::Arrow, CCursorShape::Text, CCursorShape::Hand,
                                     CCursorShape::SizeVertical, CCursorShape::SizeHorizontal, CCursorShape::Move}) {
        window->setCursor(shape);
        EXPECT_TRUE(until([&] { return client.resourceCount("CURSOR") == before + 1; }));
    }
    EXPECT_EQ(client.resourceCount("FONT"), fonts);
    window.reset();
    EXPECT_TRUE(until([&] { return client.resourceCount("CURSOR") <= before; }));
}

TEST_F(X11Window, TheUserMayAskAPopupToClose) {
    CXRecorder recorder;
    const auto window = popup(recorder, host, {300, 200, 400, 260});
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<xcb_window_t>(window->handle());
    message.type = client.atom("WM_PROTOCOLS");
    message.data.data32[0] = client.atom("WM_DELETE_WINDOW");
    xcb_send_event(client.connection(), 0, message.window, 0, reinterpret_cast<const char*>(&message));
    EXPECT_TRUE(until([&] { return recorder.events.back() == "close"; }));
}

TEST_F(X11Window, APointOfTheScreenNamesTheOwnWindowThere) {
    CXRecorder recorder, list;
    const auto window = child(recorder);
    EXPECT_EQ(system.windowAt(150, 100), window->handle());
    EXPECT_EQ(system.windowAt(450, 300), 0u) << "the host's own";
    EXPECT_EQ(system.windowAt(20, 20), 0u) << "the desktop";
    const auto opened = popup(list, window->handle(), {120, 80, 160, 120});
    EXPECT_EQ(system.windowAt(150, 100), opened->handle());
}

TEST_F(X11Window, TheServersEndIsTheEndOfTheWindowAndNotOfTheProcess) {
    CXServer other;
    const CScopedVariable name("DISPLAY", other.display().c_str());
    CX11System own;
    CXClient far(other.display());
    CXRecorder recorder;
    CPlatformError error = 0;
    CWindowRequest request;
    request.isChild = true;
    request.parent = far.makeWindow(0, 0, 100, 100);
    request.bounds = {0, 0, 10, 10};
    const auto window = own.createWindow(request, recorder, error);
    ASSERT_NE(window, nullptr);
    CSurfaceStep step{};
    const auto surface = own.createSurface(10, 10, step, error);
    other.end();
    own.serve();
    EXPECT_EQ(recorder.events, CTexts{"gone"});
    EXPECT_EQ(own.createWindow(request, recorder, error), nullptr);
    EXPECT_NE(error, 0u);
    std::u16string text;
    EXPECT_FALSE(own.clipboardText(text));
    own.serve();
}

TEST_F(X11Window, OfTwoThreadsAreServedEachOnItsOwn) {
    CXRecorder recorder;
    const auto window = child(recorder);
    std::thread([&] {
        CXRecorder other;
        CPlatformError error = 0;
        CWindowRequest request;
        request.isChild = true;
        request.parent = host;
        request.bounds = {200, 100, 400, 300};
        const auto second = system.createWindow(request, other, error);
        ASSERT_NE(second, nullptr);
        second->show(true);
        for (int i = 0; i < 2000 && other.paints.empty(); ++i) {
            system.serve();
            usleep(1000);
        }
        EXPECT_EQ(other.paints, std::vector{(CIntRect{0, 0, 200, 200})});
    }).join();
    settle();
    EXPECT_EQ(recorder.paints.size(), 1u);
}

}  // namespace
}  // namespace tarv
