#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/WindowSystem.h"

namespace tarv {

using CLines = std::vector<std::string>;

/// Takes what waits for this thread, as a host's loop does.
void pump();
/// Pumps until the condition holds; false after that many milliseconds.
bool pumpUntil(const std::function<bool()>& condition, DWORD mostMs = 2000);

/// A host's window at 100, 100 of the screen. Notes wheel and keys that come to it.
class CHostWindow {
public:
    explicit CHostWindow(DWORD extendedStyle = 0, int width = 400, int height = 300);
    ~CHostWindow();
    CHostWindow(const CHostWindow&) = delete;
    CHostWindow& operator=(const CHostWindow&) = delete;

    HWND window() const { return window_; }
    CWindowHandle handle() const { return reinterpret_cast<CWindowHandle>(window_); }
    void destroy();
    /// e.g. "wheel 120", "down 32", "up 32", "char 97".
    const CLines& heard() const { return heard_; }
    CLines takeHeard() { return std::exchange(heard_, {}); }
    std::function<LRESULT(UINT, WPARAM, LPARAM)> onMessage;  ///< asked before the note; null for none

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void note(UINT message, WPARAM wParam);

    HWND window_;
    CLines heard_;
};

/// Notes what a window says, e.g. "press L 10,20", "move -3,5 L", "wheel 4,4 0.25", "key 65 down 'a'", "gone".
class CNotes final : public CWindowHandler {
public:
    void onPaint(const CIntRect& dirty) override;
    void onPointer(const CPointerEvent& event) override;
    bool onWheel(const CWheelEvent& event) override;
    bool onKey(const CKeyEvent& event) override;
    void onActivation(bool isActive, CWindowHandle other) override;
    void onKeysLost() override { note("keys lost"); }
    void onCloseRequest() override { note("close"); }
    void onGone() override { note("gone"); }

    /// Since the last call.
    CLines take();
    bool takesWheel = true;
    bool takesKeys = true;
    double wheelSum = 0.0;
    std::u16string typed;
    CWindowHandle lastActive = 0;
    std::function<void(const std::string&)> react;                 ///< after each note
    std::function<void(const CIntRect&)> draw = [](auto&&...) {};  ///< within onPaint

private:
    void note(const std::string& line);
    CLines lines_;
};

/// Sends real input through the system's queue. Programs that do so take turns: the pointer is one for all.
class CRealInput {
public:
    CRealInput();
    ~CRealInput();
    CRealInput(const CRealInput&) = delete;
    CRealInput& operator=(const CRealInput&) = delete;

    /// On the screen. Each call pumps afterwards.
    void moveTo(int x, int y);
    void button(DWORD flags);
    void wheel(int delta);
    void key(WORD code, bool isDown);
    void press(WORD code);
    /// A character without a key.
    void packet(char16_t unit);

private:
    HANDLE turn_;
};

/// A child of 200 x 100 pixels at 150, 150 of the screen, shown.
std::unique_ptr<CPlatformWindow> openChild(const CHostWindow& host, CWindowHandler& handler);
/// A popup on the screen, shown.
std::unique_ptr<CPlatformWindow> openPopup(CWindowHandle owner, CWindowHandler& handler, const CIntRect& bounds,
                                           bool isActivated = true);

}  // namespace tarv
