#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "Platform/ByHand/CWindowByHand.h"
#include "Platform/ByHand/CWindowSystemByHand.h"

namespace tarv {

inline std::string textOf(const CIntRect& rect) {
    return std::to_string(rect.left) + ',' + std::to_string(rect.top) + ' ' + std::to_string(rect.right) + ',' +
           std::to_string(rect.bottom);
}

/// A window that notes what it is called for, in words separated by blanks, and does what the test wants meanwhile.
class CNotingWindow final : public CWindowHandler {
public:
    CNotingWindow(CWindowSystemByHand& system, const CWindowRequest& request) {
        CPlatformError error = 0;
        window = system.createWindow(request, *this, error);
        EXPECT_EQ(error, 0u);
    }
    /// Shown at once.
    static std::unique_ptr<CNotingWindow> child(CWindowSystemByHand& system, CWindowHandle parent,
                                                const CIntRect& bounds) {
        return shown(system, {true, parent, bounds});
    }
    static std::unique_ptr<CNotingWindow> popup(CWindowSystemByHand& system, CWindowHandle owner,
                                                const CIntRect& bounds) {
        return shown(system, {false, owner, bounds});
    }

    CWindowByHand& byHand() { return static_cast<CWindowByHand&>(*window); }
    CWindowHandle handle() const { return window->handle(); }
    /// What was noted since the last call.
    std::string take() { return std::exchange(noted_, {}); }
    std::string takeWithout(const std::string& word) {
        std::string text = take();
        for (size_t at = text.find(word); at != std::string::npos; at = text.find(word)) {
            text.erase(at, word.size() + (at + word.size() < text.size() ? 1 : 0));
        }
        return text;
    }

    void onPaint(const CIntRect& dirty) override { note("paint(" + textOf(dirty) + ')'); }
    void onPointer(const CPointerEvent& event) override {
        static constexpr const char* kKinds[] = {"move", "press", "release", "leave", "lost"};
        static constexpr const char* kButtons[] = {"", "-l", "-r", "-o"};
        std::string text = kKinds[static_cast<int>(event.kind)];
        text += kButtons[static_cast<int>(event.button)];
        if (event.kind == CPointerKind::Move || event.kind == CPointerKind::Press ||
            event.kind == CPointerKind::Release) {
            text += '(' + std::to_string(event.x) + ',' + std::to_string(event.y) + ')';
        }
        text += event.isDouble ? "!" : "";
        modifiers = event.modifiers;
        note(text);
    }
    bool onWheel(const CWheelEvent& event) override {
        wheel = event;
        note("wheel");
        return takes;
    }
    bool onKey(const CKeyEvent& event) override {
        key = event;
        note((event.isDown ? "down" : "up") + std::to_string(event.code));
        return takes;
    }
    void onActivation(bool isActive, CWindowHandle other) override {
        activeNow = other;
        note(isActive ? "active" : "inactive");
    }
    void onKeysLost() override { note("keys-lost"); }
    void onCloseRequest() override { note("close"); }
    void onGone() override { note("gone"); }

    std::unique_ptr<CPlatformWindow> window;
    /// Runs in each call, behind the note of it.
    std::function<void(const std::string&)> meanwhile;
    CInputModifiers modifiers;
    CWheelEvent wheel;
    CKeyEvent key;
    CWindowHandle activeNow = 0;
    bool takes = true;

private:
    static std::unique_ptr<CNotingWindow> shown(CWindowSystemByHand& system, const CWindowRequest& request) {
        auto made = std::make_unique<CNotingWindow>(system, request);
        made->window->show(true);
        return made;
    }
    void note(const std::string& word) {
        noted_ += (noted_.empty() ? "" : " ") + word;
        if (meanwhile) {
            // A copy, since it may replace itself.
            const auto call = meanwhile;
            call(word);
        }
    }

    std::string noted_;
};

}  // namespace tarv
