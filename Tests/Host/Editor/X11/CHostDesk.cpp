// A host's side of an X server.

#include "Tests/Host/Editor/CHostDesk.h"

#include <unistd.h>
#include <xmmintrin.h>

#include <algorithm>
#include <chrono>
#include <clocale>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>

#include "Tests/Host/ProcessMemory.h"
#include "Tests/Platform/X11/CXDesktop.h"

namespace tarv::host {

namespace {

constexpr int kX = 100;
constexpr int kY = 50;
constexpr int kSpaceKey = 65;
constexpr int kShiftKey = 50;
constexpr int kCtrlKey = 37;
constexpr int kAltKey = 64;
constexpr int kWheelUp = 4;
constexpr int kWheelDown = 5;
constexpr int kLeftButton = 1;
constexpr int kRightButton = 3;

xcb_window_t asWindow(void* parent) {
    return static_cast<xcb_window_t>(reinterpret_cast<uintptr_t>(parent));
}

/// The keys of a row of the keyboard stand side by side from this number on.
struct CKeyRow {
    int first;
    const char* keys;
};
constexpr CKeyRow kKeyRows[] = {{9,
                                 "\x1b"
                                 "1234567890"},
                                {20, "-"},
                                {23, "\t"},
                                {24, "qwertyuiop"},
                                {36, "\r"},
                                {38, "asdfghjkl"},
                                {52, "zxcvbnm"},
                                {60, "."},
                                {68, "\x02"},
                                {111, "\x03"},
                                {113, "\x05\x06"},
                                {116, "\x04"},
                                {kSpaceKey, " "}};

int keyNumber(char key) {
    for (const CKeyRow& row : kKeyRows) {
        if (const char* found = std::strchr(row.keys, key)) {
            return row.first + static_cast<int>(found - row.keys);
        }
    }
    ADD_FAILURE() << "no key " << key;
    return 0;
}

/// On the server that all tests share.
CXClient*& eye() {
    static CXClient* client = nullptr;
    return client;
}

}  // namespace

struct CHostDesk::CParts {
    CScopedVariable display{"DISPLAY", CXServer::common().display().c_str()};
    CXClient client{CXServer::common().display()};
    std::map<xcb_window_t, std::string> heard;
    std::map<xcb_window_t, CIntRect> places;

    void takeEvents() {
        client.sync();
        while (const auto event = client.nextEvent()) {
            const auto& input = reinterpret_cast<const xcb_key_press_event_t&>(*event);
            const int type = event->response_type & 0x7f;
            const bool isHeld = input.detail == kShiftKey || input.detail == kCtrlKey || input.detail == kAltKey;
            if (type == XCB_KEY_PRESS && !isHeld) {
                note(input.event, input.detail == kSpaceKey ? "space" : "key");
            } else if (type == XCB_BUTTON_PRESS && (input.detail == kWheelUp || input.detail == kWheelDown)) {
                note(input.event, "wheel");
            }
        }
    }
    void note(xcb_window_t window, const char* name) {
        heard[window] += (heard[window].empty() ? "" : " ") + std::string(name);
    }
};

CHostDesk::CHostDesk() : parts_(std::make_unique<CParts>()) {
    eye() = &parts_->client;
}

CHostDesk::~CHostDesk() {
    eye() = nullptr;
}

void* CHostDesk::openParent(int width, int height) {
    const xcb_window_t window = parts_->client.makeWindow(kX, kY, width, height);
    parts_->places[window] = {kX, kY, kX + width, kY + height};
    parts_->client.setFocus(window);
    return reinterpret_cast<void*>(uintptr_t{window});
}

void CHostDesk::destroyParent(void* parent) {
    parts_->client.destroyWindow(asWindow(parent));
    parts_->places.erase(asWindow(parent));
    serve();
}

void CHostDesk::raise(void* parent) {
    const uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(parts_->client.connection(), asWindow(parent), XCB_CONFIG_WINDOW_STACK_MODE, &above);
    parts_->client.setFocus(asWindow(parent));
    serve();
}

void CHostDesk::moveParent(void* parent, int x, int y) {
    const uint32_t at[] = {static_cast<uint32_t>(x), static_cast<uint32_t>(y)};
    xcb_configure_window(parts_->client.connection(), asWindow(parent), XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, at);
    CIntRect& place = parts_->places.at(asWindow(parent));
    place = {x, y, x + place.width(), y + place.height()};
    serve();
}

int CHostDesk::childCount(void* parent) const {
    return static_cast<int>(parts_->client.childrenOf(asWindow(parent)).size());
}

CIntRect CHostDesk::place(void* parent) const {
    return parts_->places.at(asWindow(parent));
}

CIntRect CHostDesk::screen() const {
    return parts_->client.boundsOf(parts_->client.root());
}

std::vector<CIntRect> CHostDesk::popups() const {
    std::vector<CIntRect> all;
    for (const xcb_window_t window : parts_->client.childrenOf(parts_->client.root())) {
        if (!parts_->places.contains(window) && parts_->client.isShown(window)) {
            all.push_back(parts_->client.boundsOf(window));
        }
    }
    return all;
}

void CHostDesk::serve() {
    parts_->client.sync();
    idle();
    parts_->client.sync();
}

bool CHostDesk::until(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    for (serve(); !condition(); serve()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        usleep(1000);
    }
    return true;
}

void CHostDesk::moveTo(void* parent, int x, int y) {
    const CIntRect bounds = place(parent);
    moveOnScreen(bounds.left + x, bounds.top + y);
}

void CHostDesk::moveOnScreen(int x, int y) {
    parts_->client.movePointer(x, y);
    serve();
}

void CHostDesk::press(bool isRight) {
    parts_->client.button(isRight ? kRightButton : kLeftButton, true);
    serve();
}

void CHostDesk::release(bool isRight) {
    parts_->client.button(isRight ? kRightButton : kLeftButton, false);
    serve();
}

void CHostDesk::wheel(int notches) {
    for (int i = 0; i < std::abs(notches); ++i) {
        parts_->client.click(notches > 0 ? kWheelUp : kWheelDown);
    }
    serve();
}

void CHostDesk::strike(char key, CHeldKey held) {
    hold(held, true);
    parts_->client.strike(keyNumber(key));
    hold(held, false);
    serve();
}

void CHostDesk::hold(CHeldKey key, bool isDown) {
    static constexpr int kNumbers[] = {0, kShiftKey, kCtrlKey, kAltKey};
    if (key != CHeldKey::None) {
        parts_->client.key(kNumbers[static_cast<size_t>(key)], isDown);
        serve();
    }
}

const bool CHostDesk::kHasKeyHook = false;

bool CHostDesk::hasFocus(void* parent) const {
    return parts_->client.focus() == asWindow(parent);
}

uint32_t CHostDesk::pixel(void* parent, int x, int y) const {
    return pixels(parent, x, y, 1, 1).front();
}

std::vector<uint32_t> CHostDesk::pixels(void* parent, int x, int y, int width, int height) const {
    const CIntRect place = parts_->places.at(asWindow(parent));
    const std::vector<uint32_t> all = parts_->client.pixels(asWindow(parent), place.width(), place.height());
    std::vector<uint32_t> some(static_cast<size_t>(width * height));
    for (int row = 0; row < height && !all.empty(); ++row) {
        const auto from = all.begin() + (y + row) * place.width() + x;
        std::copy(from, from + width, some.begin() + row * width);
    }
    return some;
}

std::vector<uint32_t> CHostDesk::screenPixels(const CIntRect& part) const {
    return parts_->client.pixels(parts_->client.root(), part.width(), part.height(), part.left, part.top);
}

std::string CHostDesk::heard(void* parent) {
    serve();
    parts_->takeEvents();
    return std::exchange(parts_->heard[asWindow(parent)], {});
}

CHeldThings CHostDesk::held() {
    CHeldThings held;
    eye()->sync();
    held.windows = static_cast<int64_t>(eye()->resourceCount("WINDOW"));
    held.graphics = static_cast<int64_t>(eye()->resourceCount());
    held.memory = processMemory();
    return held;
}

std::string CHostDesk::processState() {
    return "locale " + std::string(setlocale(LC_ALL, nullptr)) + " float " + std::to_string(_mm_getcsr() & ~0x3fU) +
           " folder " + std::filesystem::current_path().string() + " priority " + std::to_string(nice(0));
}

// The desktop's programs show dialogs.
CNoDialogs::CNoDialogs() : former_(getenv("PATH") ? getenv("PATH") : "") {
    setenv("PATH", "/nowhere", 1);
}

CNoDialogs::~CNoDialogs() {
    setenv("PATH", former_.c_str(), 1);
}

// In place of the desktop's program that shows one.
CFileAnswer::CFileAnswer(const std::string& path) : former_(getenv("PATH") ? getenv("PATH") : "") {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    std::ofstream(folder / "zenity") << "#!/bin/sh\nprintf '%s\\n' '" << path << "'\n";
    std::filesystem::permissions(folder / "zenity", std::filesystem::perms::owner_all);
    setenv("PATH", (folder.string() + ":" + former_).c_str(), 1);
}

CFileAnswer::~CFileAnswer() {
    setenv("PATH", former_.c_str(), 1);
}

}  // namespace tarv::host
