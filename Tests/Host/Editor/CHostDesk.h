#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Platform/IntRect.h"

namespace tarv::host {

/// What a process holds of the system, for comparison.
struct CHeldThings {
    int64_t windows = 0;   ///< of this process, hidden ones too
    int64_t graphics = 0;  ///< pens and the like, or all that lies on the server
    int64_t memory = 0;    ///< bytes
};

/// A key that is held while another one is struck.
enum class CHeldKey : uint8_t { None, Shift, Ctrl, Alt };

/// A host's side of the system with windows, a user's hands and eyes. Points are pixels of such a window. Each call of
/// a hand is served before it returns. One at a time.
class CHostDesk {
public:
    CHostDesk();
    ~CHostDesk();
    CHostDesk(const CHostDesk&) = delete;
    CHostDesk& operator=(const CHostDesk&) = delete;

    /// What the host's loop calls each time: the idle calls of its effects.
    std::function<void()> idle = [] {};
    /// Called inside messages that come to a window of the host while an editor's call runs, by "focus", "wheel" or
    /// "key"; only where the system makes such calls.
    std::function<void(const std::string&)> insideCall = [](auto&&) {};

    /// Shows a window and gives what a plug-in gets of it.
    void* openParent(int width = 400, int height = 300);
    void destroyParent(void* parent);
    /// Brings a window of the host to the front, as a user does who presses on its frame.
    void raise(void* parent);
    void moveParent(void* parent, int x, int y);
    int childCount(void* parent) const;
    /// What a window of the host covers of the screen, and the work area of the monitor there.
    CIntRect place(void* parent) const;
    CIntRect screen() const;
    /// Shown windows of this process on the screen but the host's, in no order: what an editor popped up.
    std::vector<CIntRect> popups() const;
    /// The host's own loop, once.
    void serve();
    /// False after 20 seconds: a busy machine has its time.
    bool until(const std::function<bool()>& condition);

    void moveTo(void* parent, int x, int y);
    /// The same by a point of the screen.
    void moveOnScreen(int x, int y);
    /// Of the left button, or of the right one.
    void press(bool isRight = false);
    void release(bool isRight = false);
    /// By notches, up is positive.
    void wheel(int notches);
    void strikeSpace() { strike(' '); }
    static constexpr char kF2 = '\x02';
    static constexpr char kUp = '\x03';
    static constexpr char kDown = '\x04';
    static constexpr char kLeft = '\x05';
    static constexpr char kRight = '\x06';
    /// A key of a keyboard of the United States by its character, a small letter, a figure, a blank, '-', '.', '\r' for
    /// Enter, '\t' for Tab, '\x1b' for Escape, or one of those above, while the held key is down.
    void strike(char key, CHeldKey held = CHeldKey::None);
    void hold(CHeldKey key, bool isDown);
    /// Small letters, capitals with Shift, figures, blanks, '-' and '.'.
    void type(const std::string& text);
    bool hasFocus(void* parent) const;
    /// The host keeps the focus while a window of the editor takes the keys; elsewhere that window has it meanwhile.
    static const bool kHasKeyHook;
    /// What the window shows there, as 0xRRGGBB.
    uint32_t pixel(void* parent, int x, int y) const;
    /// The same of a rectangle, row by row.
    std::vector<uint32_t> pixels(void* parent, int x, int y, int width, int height) const;
    /// What a user sees in a part of the screen.
    std::vector<uint32_t> screenPixels(const CIntRect& part) const;
    /// What came to the window itself since the last call: "wheel", "space" and, for any other key but Shift
    /// and Ctrl, "key", one for each.
    std::string heard(void* parent);

    static CHeldThings held();
    /// What belongs to the whole process, as a text to compare.
    static std::string processState();

private:
    struct CParts;
    std::unique_ptr<CParts> parts_;
};

/// Answers the next dialog of the system for a file with a path, as a user does who types it. Lives until the dialog is
/// gone.
class CFileAnswer {
public:
    explicit CFileAnswer(const std::string& path);
    ~CFileAnswer();
    CFileAnswer(const CFileAnswer&) = delete;
    CFileAnswer& operator=(const CFileAnswer&) = delete;

private:
    uintptr_t timer_ = 0;
    std::string former_;
};

/// While it lives, dialogs of the system for files fail on this thread, as if there were none.
class CNoDialogs {
public:
    CNoDialogs();
    ~CNoDialogs();
    CNoDialogs(const CNoDialogs&) = delete;
    CNoDialogs& operator=(const CNoDialogs&) = delete;

private:
    /// Of the system, or what it had before.
    void* hook_ = nullptr;
    std::string former_;
};

}  // namespace tarv::host
