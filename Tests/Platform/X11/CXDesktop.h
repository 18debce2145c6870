#pragma once

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Platform/X11/CX11System.h"
#include "Tests/Platform/X11/CXServer.h"

namespace tarv {

/// Another program on the same display: a host with a window, a user's hands, an eye for pixels.
class CXClient {
public:
    explicit CXClient(const std::string& display);
    ~CXClient();
    CXClient(const CXClient&) = delete;
    CXClient& operator=(const CXClient&) = delete;

    xcb_connection_t* connection() const { return connection_; }
    xcb_window_t root() const { return root_; }
    void sync();
    xcb_atom_t atom(const char* name);
    /// Shown on the screen.
    xcb_window_t makeWindow(int x, int y, int width, int height);
    void destroyWindow(xcb_window_t window);
    xcb_window_t focus();
    void setFocus(xcb_window_t window);
    std::vector<xcb_window_t> childrenOf(xcb_window_t window);
    /// Windows, pictures and all else that all programs have on the server.
    /// Those of one type of the server's, or all.
    uint64_t resourceCount(const char* type = nullptr);
    bool isOverrideRedirect(xcb_window_t window);
    bool isShown(xcb_window_t window);
    /// In the window that it stands in.
    CIntRect boundsOf(xcb_window_t window);
    std::vector<uint32_t> numbers(xcb_window_t window, const char* property);
    std::vector<uint32_t> pixels(xcb_window_t window, int width, int height, int x = 0, int y = 0);

    void movePointer(int x, int y);
    void button(int number, bool isDown);
    void click(int number);
    /// A key by its number on an ordinary keyboard.
    void key(int number, bool isDown);
    void strike(int number);
    /// Events that came, by their types; the others wait no longer.
    std::vector<int> takeTypes();
    std::unique_ptr<xcb_generic_event_t, void (*)(void*)> nextEvent();

private:
    void fake(uint8_t type, uint8_t detail, int x, int y);

    xcb_connection_t* connection_;
    xcb_window_t root_ = 0;
};

/// Notes what a window reports, and does what a test asks of it meanwhile.
class CXRecorder : public CWindowHandler {
public:
    void onPaint(const CIntRect& dirty) override;
    void onPointer(const CPointerEvent& event) override;
    bool onWheel(const CWheelEvent& event) override;
    bool onKey(const CKeyEvent& event) override;
    void onActivation(bool isActive, CWindowHandle other) override;
    void onKeysLost() override { note("keys lost"); }
    void onCloseRequest() override;
    void onGone() override;

    /// "press left 3,4", "key 65 down a", "wheel 3,4 1", "active", "inactive", "keys lost", "close", "gone"; moves and
    /// paints are in separate lists.
    std::vector<std::string> events;
    std::vector<CPointerEvent> moves;
    std::vector<CIntRect> paints;
    std::u16string typed;
    int deadKeys = 0;
    CWindowHandle other = 0;
    bool isWheelTaken = true;
    bool isKeyTaken = true;
    std::function<void()> act;  ///< called with each event but moves
private:
    void note(std::string text);
};

/// A test on the common server, with a host's window of 400 x 300 at 100, 50.
class CXDesktop : public testing::Test {
protected:
    CXDesktop();
    explicit CXDesktop(const std::string& display);

    std::unique_ptr<CPlatformWindow> child(CWindowHandler& handler, const CIntRect& bounds = {0, 0, 200, 100});
    std::unique_ptr<CPlatformWindow> popup(CWindowHandler& handler, CWindowHandle owner, const CIntRect& bounds);
    /// Serves until something is so; false after 5 seconds.
    bool until(const std::function<bool()>& condition);
    /// Serves until what was sent has come, both ways.
    void settle();

    const CScopedVariable display_;
    CXClient client;
    CX11System system;
    const xcb_window_t host;
};

}  // namespace tarv
