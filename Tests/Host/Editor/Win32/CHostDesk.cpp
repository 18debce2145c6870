// A host's side of Windows.

#include "Tests/Host/Editor/CHostDesk.h"

#include <xmmintrin.h>

#include <algorithm>
#include <clocale>
#include <string>
#include <vector>

#include "Tests/Host/ProcessMemory.h"
#include "Tests/Platform/Win32/CTestWindows.h"

namespace tarv::host {

namespace {

HWND asWindow(void* parent) {
    return static_cast<HWND>(parent);
}

/// The highest of many handles that the system gives now: it grows with those in use, once the places that others have
/// left are taken. Wine does not count them.
int64_t highestPen() {
    int64_t highest = 0;
    HPEN pens[1024];
    for (HPEN& pen : pens) {
        pen = CreatePen(PS_SOLID, 1, 0);
        // The lower half is the place in the table.
        highest = std::max<int64_t>(highest, reinterpret_cast<intptr_t>(pen) & 0xffff);
    }
    for (HPEN pen : pens) {
        DeleteObject(pen);
    }
    return highest;
}

CIntRect boundsOf(HWND window) {
    RECT bounds{};
    GetWindowRect(window, &bounds);
    return {bounds.left, bounds.top, bounds.right, bounds.bottom};
}

WORD keyCode(char key) {
    if (key == '-' || key == '.') {
        return key == '-' ? VK_OEM_MINUS : VK_OEM_PERIOD;
    }
    switch (key) {
        case CHostDesk::kF2:
            return VK_F2;
        case CHostDesk::kUp:
            return VK_UP;
        case CHostDesk::kDown:
            return VK_DOWN;
        case CHostDesk::kLeft:
            return VK_LEFT;
        case CHostDesk::kRight:
            return VK_RIGHT;
        default:
            break;
    }
    // Figures and capitals, and those beside them, have their character's number.
    return static_cast<WORD>(key >= 'a' && key <= 'z' ? key - 'a' + 'A' : key);
}

/// A part of a window, or of the screen, row by row.
std::vector<uint32_t> readPixels(HWND window, const CIntRect& part) {
    const HDC context = GetDC(window);
    const HDC memory = CreateCompatibleDC(context);
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(info.bmiHeader), part.width(), -part.height(), 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ former = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, part.width(), part.height(), context, part.left, part.top, SRCCOPY);
    GdiFlush();
    const auto* first = static_cast<const uint32_t*>(bits);
    std::vector<uint32_t> all(first, first + part.width() * part.height());
    for (uint32_t& color : all) {
        color &= 0xffffff;
    }
    SelectObject(memory, former);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(window, context);
    return all;
}

/// Refuses each window of the system's class of dialogs.
LRESULT CALLBACK refuseDialogs(int code, WPARAM wParam, LPARAM lParam) {
    wchar_t name[16] = {};
    if (code == HCBT_CREATEWND && GetClassNameW(reinterpret_cast<HWND>(wParam), name, 16) > 0 &&
        std::wstring(name) == L"#32770") {
        return 1;
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

std::wstring& pathToType() {
    static std::wstring path;
    return path;
}

BOOL CALLBACK typePath(HWND window, LPARAM) {
    constexpr int kNameField = 0x480;
    constexpr int kNameList = 0x47c;
    wchar_t name[16] = {};
    HWND field = GetDlgItem(window, kNameField);
    field = field ? field : GetDlgItem(window, kNameList);
    if (field && IsWindowVisible(window) && GetClassNameW(window, name, 16) > 0 && std::wstring(name) == L"#32770") {
        SetWindowTextW(field, pathToType().c_str());
        PostMessageW(window, WM_COMMAND, IDOK, 0);
        return FALSE;
    }
    return TRUE;
}

void CALLBACK onAnswerTime(HWND, UINT, UINT_PTR, DWORD) {
    EnumThreadWindows(GetCurrentThreadId(), &typePath, 0);
}

BOOL CALLBACK noteShown(HWND window, LPARAM list) {
    if (IsWindowVisible(window)) {
        reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    }
    return TRUE;
}

BOOL CALLBACK countWindow(HWND, LPARAM count) {
    ++*reinterpret_cast<int64_t*>(count);
    return TRUE;
}

}  // namespace

struct CHostDesk::CParts {
    CRealInput hands;
    std::vector<std::unique_ptr<CHostWindow>> parents;
    std::vector<WORD> heldKeys;

    /// Wine takes keys that no keyboard holds as released when the pointer enters a window.
    void keepHeld() {
        for (const WORD code : heldKeys) {
            if (GetAsyncKeyState(code) >= 0) {
                hands.key(code, true);
            }
        }
    }

    std::vector<HWND> shownPopups() const {
        std::vector<HWND> all;
        EnumThreadWindows(GetCurrentThreadId(), &noteShown, reinterpret_cast<LPARAM>(&all));
        std::erase_if(all, [&](HWND window) {
            return std::any_of(parents.begin(), parents.end(), [&](auto& p) { return p->window() == window; });
        });
        return all;
    }
    /// Windows keeps what a window owns above it. Wine puts an owner that is activated, by a press or because an owned
    /// window has closed, on top of all, and leaves it to a window manager to put that right. The owned windows keep
    /// their order: those that stand below the owner come before those that opened above it since.
    void raiseOwned() const {
        std::vector<HWND> shown;
        EnumThreadWindows(GetCurrentThreadId(), &noteShown, reinterpret_cast<LPARAM>(&shown));
        for (auto owner = shown.begin(); owner != shown.end(); ++owner) {
            const auto isOwned = [&](HWND window) {
                return window != *owner && GetAncestor(window, GA_ROOTOWNER) == *owner;
            };
            if (std::none_of(owner, shown.end(), isOwned)) {
                continue;
            }
            // Wine's X windows follow only to the top: all go there, from the lowest.
            for (auto at = shown.rbegin(); at != shown.rend(); ++at) {
                if (isOwned(*at)) {
                    SetWindowPos(*at, HWND_TOP, 0, 0, 0, 0,
                                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
                }
            }
        }
    }
    CHostWindow& find(void* parent) {
        return **std::find_if(parents.begin(), parents.end(), [&](auto& p) { return p->window() == parent; });
    }
};

CHostDesk::CHostDesk() : parts_(std::make_unique<CParts>()) {}

CHostDesk::~CHostDesk() = default;

void* CHostDesk::openParent(int width, int height) {
    parts_->parents.push_back(std::make_unique<CHostWindow>(0, width, height));
    CHostWindow& made = *parts_->parents.back();
    made.onMessage = [this](UINT message, WPARAM, LPARAM) {
        if (message == WM_KILLFOCUS || message == WM_MOUSEWHEEL || message == WM_KEYDOWN) {
            insideCall(message == WM_KILLFOCUS ? "focus" : message == WM_MOUSEWHEEL ? "wheel" : "key");
        }
        return LRESULT{0};
    };
    return made.window();
}

void CHostDesk::destroyParent(void* parent) {
    std::erase_if(parts_->parents, [&](auto& p) { return p->window() == parent; });
    serve();
}

void CHostDesk::raise(void* parent) {
    SetForegroundWindow(asWindow(parent));
    SetFocus(asWindow(parent));
    serve();
}

void CHostDesk::moveParent(void* parent, int x, int y) {
    SetWindowPos(asWindow(parent), nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    serve();
}

int CHostDesk::childCount(void* parent) const {
    int count = 0;
    for (HWND at = GetWindow(asWindow(parent), GW_CHILD); at; at = GetWindow(at, GW_HWNDNEXT)) {
        ++count;
    }
    return count;
}

CIntRect CHostDesk::place(void* parent) const {
    return boundsOf(asWindow(parent));
}

CIntRect CHostDesk::screen() const {
    RECT area{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    return {area.left, area.top, area.right, area.bottom};
}

std::vector<CIntRect> CHostDesk::popups() const {
    std::vector<CIntRect> all;
    for (const HWND window : parts_->shownPopups()) {
        all.push_back(boundsOf(window));
    }
    return all;
}

void CHostDesk::serve() {
    pump();
    idle();
}

bool CHostDesk::until(const std::function<bool()>& condition) {
    return pumpUntil(
        [&] {
            parts_->raiseOwned();
            idle();
            return condition();
        },
        20000);
}

void CHostDesk::moveTo(void* parent, int x, int y) {
    const CIntRect bounds = place(parent);
    moveOnScreen(bounds.left + x, bounds.top + y);
}

void CHostDesk::moveOnScreen(int x, int y) {
    parts_->raiseOwned();
    parts_->keepHeld();
    parts_->hands.moveTo(x, y);
}

void CHostDesk::press(bool isRight) {
    parts_->raiseOwned();
    parts_->keepHeld();
    parts_->hands.button(isRight ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN);
}

void CHostDesk::release(bool isRight) {
    parts_->hands.button(isRight ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP);
}

void CHostDesk::wheel(int notches) {
    parts_->keepHeld();
    parts_->hands.wheel(notches * WHEEL_DELTA);
}

void CHostDesk::strike(char key, CHeldKey held) {
    hold(held, true);
    parts_->hands.press(keyCode(key));
    hold(held, false);
}

void CHostDesk::hold(CHeldKey key, bool isDown) {
    static constexpr WORD kCodes[] = {0, VK_SHIFT, VK_CONTROL, VK_MENU};
    if (key == CHeldKey::None) {
        return;
    }
    const WORD code = kCodes[static_cast<size_t>(key)];
    std::erase(parts_->heldKeys, code);
    parts_->hands.key(code, isDown);
    if (isDown) {
        parts_->heldKeys.push_back(code);
    }
}

const bool CHostDesk::kHasKeyHook = true;

bool CHostDesk::hasFocus(void* parent) const {
    return GetFocus() == asWindow(parent);
}

uint32_t CHostDesk::pixel(void* parent, int x, int y) const {
    return pixels(parent, x, y, 1, 1).front();
}

std::vector<uint32_t> CHostDesk::pixels(void* parent, int x, int y, int width, int height) const {
    const HWND child = GetWindow(asWindow(parent), GW_CHILD);
    return readPixels(child ? child : asWindow(parent), {x, y, x + width, y + height});
}

std::vector<uint32_t> CHostDesk::screenPixels(const CIntRect& part) const {
    return readPixels(nullptr, part);
}

std::string CHostDesk::heard(void* parent) {
    serve();
    CHostWindow& window = parts_->find(parent);
    std::string text;
    for (const std::string& line : window.takeHeard()) {
        const bool isHeld = line == "down 16" || line == "down 17" || line == "down 18";
        const bool isKey = line.rfind("down", 0) == 0 && !isHeld;
        const std::string name = line.rfind("wheel", 0) == 0 ? "wheel"
                                 : line == "down 32"         ? "space"
                                 : isKey                     ? "key"
                                                             : "";
        text += (text.empty() || name.empty() ? "" : " ") + name;
    }
    return text;
}

CHeldThings CHostDesk::held() {
    CHeldThings held;
    EnumThreadWindows(GetCurrentThreadId(), &countWindow, reinterpret_cast<LPARAM>(&held.windows));
    for (HWND at = nullptr; (at = FindWindowExW(HWND_MESSAGE, at, nullptr, nullptr));) {
        held.windows += GetWindowThreadProcessId(at, nullptr) == GetCurrentThreadId();
    }
    held.windows += GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    held.graphics = highestPen() + GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    held.memory = processMemory();
    return held;
}

std::string CHostDesk::processState() {
    char folder[MAX_PATH] = {};
    GetCurrentDirectoryA(MAX_PATH, folder);
    return "locale " + std::string(setlocale(LC_ALL, nullptr)) + " float " + std::to_string(_mm_getcsr() & ~0x3fU) +
           " folder " + folder + " priority " + std::to_string(GetPriorityClass(GetCurrentProcess())) + ' ' +
           std::to_string(GetThreadPriority(GetCurrentThread())) + " dpi " + std::to_string(IsProcessDPIAware()) +
           " errors " + std::to_string(GetErrorMode());
}

CNoDialogs::CNoDialogs() : hook_(SetWindowsHookExW(WH_CBT, &refuseDialogs, nullptr, GetCurrentThreadId())) {}

CNoDialogs::~CNoDialogs() {
    UnhookWindowsHookEx(static_cast<HHOOK>(hook_));
}

CFileAnswer::CFileAnswer(const std::string& path) : timer_(SetTimer(nullptr, 0, 50, &onAnswerTime)) {
    pathToType().assign(path.begin(), path.end());
}

CFileAnswer::~CFileAnswer() {
    KillTimer(nullptr, timer_);
}

}  // namespace tarv::host
