#include "HostileSession.h"

#include <filesystem>
#include <fstream>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Core/CApplication.h"
#include "Core/CApplicationData.h"
#include "Platform/ByHand/CWindowByHand.h"
#include "Platform/Keyboard.h"
#include "Product/Product.h"
#include "ProductEditor.h"
#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

namespace {

constexpr CIntRect kScreen{0, 0, 1900, 1000};
constexpr int32_t kDeepest = 2;
constexpr int32_t kBlocksAtOnce = 5;

/// Input views below a view that are seen.
void collect(const CView& view, std::vector<const CView*>& views) {
    if (view.isInputView() && !view.visibleRect().isEmpty()) {
        views.push_back(&view);
    }
    for (const CObject* child : view.children()) {
        const auto* below = dynamic_cast<const CView*>(child);
        if (below && below->isShown()) {
            collect(*below, views);
        }
    }
}

}  // namespace

CHostileSession::CHostileSession() : system_({kScreen}) {
    ensureProductStarted();
    forgetStoredSettings();
    for (int32_t i = 0; i < kSides; ++i) {
        sides_.push_back(std::make_unique<CHostileSide>(system_, 40 + 940 * i, 7u + static_cast<uint32_t>(i)));
    }
    answerCalls();
    std::filesystem::create_directories(std::filesystem::path(file(0)).parent_path());
}

CHostileSession::~CHostileSession() {
    for (const auto& each : sides_) {
        each->meanwhile = nullptr;
    }
    sides_.clear();
    system_.pump();
    EXPECT_TRUE(system_.isClean());
}

/// What the hosts do inside calls of the effects to them.
void CHostileSession::answerCalls() {
    for (const auto& each : sides_) {
        each->meanwhile = [this] {
            if (any(12) == 0) {
                nested(true);
            }
        };
    }
}

std::string CHostileSession::file(int32_t which) const {
    static constexpr const char* kNames[] = {"a.cpf", "b.cbf", "a", "none/x.cpf", "damaged.cpf"};
    return std::string(std::getenv("TARV_DATA_ROOT")) + "/files/" + kNames[which];
}

void CHostileSession::openAll() {
    for (const auto& each : sides_) {
        each->openEditor();
    }
    system_.advance(0.1);
}

void CHostileSession::step() {
    switch (any(12)) {
        case 0:
        case 1:
            host();
            break;
        case 2:
            system();
            break;
        case 3:
            key();
            break;
        case 4:
            files();
            break;
        default:
            hand();
    }
    if (any(3) > 0) {
        system_.advance(0.025 * any(8));
    }
}

CHostileSession::CPlace CHostileSession::anyPlace() {
    const std::vector<CWindow*> windows = anySide().windows();
    if (windows.empty()) {
        return {};
    }
    const auto last = static_cast<int32_t>(windows.size()) - 1;
    CWindow* window = windows[static_cast<size_t>(any(2) == 0 ? last : any(last + 1))];
    std::vector<const CView*> views;
    if (const auto* root = dynamic_cast<const CView*>(&window->view())) {
        collect(*root, views);
    }
    return {window, views.empty() ? nullptr : views[static_cast<size_t>(any(static_cast<int32_t>(views.size())))]};
}

void CHostileSession::pointAt(const CPlace& place) {
    const CViewRect& rect = place.view->visibleRect();
    trace_ += place.view->fullName().toUtf8() + ' ';
    system_.input().moveIn(place.window->handle(),
                           static_cast<int32_t>(rect.x) + any(static_cast<int32_t>(rect.width) + 1),
                           static_cast<int32_t>(rect.y) + any(static_cast<int32_t>(rect.height) + 1));
}

void CHostileSession::hand() {
    CInputByHand& input = system_.input();
    const int32_t act = any(14);
    if (act >= 4) {
        const CPlace place = anyPlace();
        if (!place.view) {
            return;
        }
        pointAt(place);
        system_.advance(0.02 * any(3));
    }
    const CPointerButton button = any(6) == 0 ? CPointerButton::Right : CPointerButton::Left;
    static constexpr const char* kActs[] = {"move\n",  "release\n", "release\n", "keys\n", "point\n",
                                            "press\n", "press\n",   "double\n",  "wheel\n"};
    trace_ += act < 9 ? kActs[act] : "click\n";
    switch (act) {
        case 0:
            for (int32_t i = 0; i < 4; ++i) {
                input.move(input.x() + any(61) - 30, input.y() + any(61) - 30);
                system_.advance(0.01);
            }
            break;
        case 1:
        case 2:
            input.release(button);
            break;
        case 3:
            input.holdKeys(any(3) == 0, any(4) == 0, any(4) == 0);
            break;
        case 4:
            break;
        case 5:
        case 6:
            input.press(button);
            break;
        case 7:
            input.click();
            input.click();
            break;
        case 8:
            input.wheel(any(9) / 2.0 - 2.0);
            break;
        default:
            input.click(button);
    }
}

void CHostileSession::key() {
    static constexpr int32_t kKeys[] = {kKeyTab,  kKeyEnter, kKeyEscape, kKeySpace,  kKeyLeft, kKeyRight,    kKeyUp,
                                        kKeyDown, kKeyHome,  kKeyEnd,    kKeyDelete, kKeyF2,   kKeyBackspace};
    static constexpr const char16_t* kTexts[] = {u"+3", u"-0,5 dB", u"1K", u"", u"[B]x", u"a: b", u"{y}", u"9999"};
    if (any(2) == 0) {
        const int32_t which = any(static_cast<int32_t>(std::size(kKeys)));
        trace_ += "key " + std::to_string(kKeys[which]) + '\n';
        system_.input().tap(kKeys[which], kKeys[which] == kKeySpace ? u" " : u"");
        return;
    }
    trace_ += "text\n";
    system_.input().type(kTexts[any(static_cast<int32_t>(std::size(kTexts)))]);
    if (any(2) == 0) {
        system_.input().tap(kKeyEnter);
    }
}

void CHostileSession::host() {
    CHostileSide& of = anySide();
    const int32_t act = any(14);
    trace_ += "host " + std::to_string(act) + '\n';
    switch (act) {
        case 0:
            of.openEditor();
            break;
        case 1:
            any(3) == 0 ? of.renewParent() : of.closeEditor();
            break;
        case 2:
            if (!isAudioElsewhere_) {
                of.setRunning(any(3) > 0);
            }
            break;
        case 3:
            if (!isAudioElsewhere_) {
                of.setRunning(false);
                of.setRate(any(2) == 0 ? 44100.0f : 96000.0f);
                of.setRunning(true);
            }
            break;
        case 4:
            of.dispatch(vst::kEffectVendorSpecific, 0x73744341, 0x57686565, nullptr, any(2) == 0 ? 1.0f : -1.0f);
            break;
        case 5:
            of.dispatch(vst::kEffectEditIdle);
            break;
        case 6:
            rescale();
            break;
        case 7:
        case 8:
            state(of);
            break;
        case 9:
            loseEngine(of);
            break;
        default:
            for (int32_t i = 0; i < kBlocksAtOnce && !isAudioElsewhere_; ++i) {
                of.automate();
                of.process(1 + any(CHostileSide::kLongestBlock));
            }
    }
}

/// Hands go on, with lists and windows open, until the host takes the editor away.
void CHostileSession::loseEngine(CHostileSide& of) {
    CWindow* const main = of.mainWindow();
    if (!main) {
        return;
    }
    main->root()->findObjectOf<CAudioInterfaceClient>("ui.interface-client")->engineGone();
    if (!isAudioElsewhere_) {
        of.setRunning(any(2) == 0);
    }
    for (int32_t left = any(8); left > 0; --left) {
        any(3) == 0 ? key() : hand();
        system_.advance(0.025 * any(8));
    }
    of.closeEditor();
    of.openEditor();
    if (!isAudioElsewhere_) {
        of.setRunning(true);
    }
}

/// What is stored as the scale counts when no editor is open.
void CHostileSession::rescale() {
    if (any(4) == 0) {
        for (const auto& each : sides_) {
            each->closeEditor();
        }
        CLocalData::instance().writeText("ui-scale", any(2) == 0 ? "1.25" : "0.8");
        openAll();
    }
}

void CHostileSession::state(CHostileSide& of) {
    std::string& kept = chunks_[any(2)];
    switch (any(4)) {
        case 0:
            kept = of.chunk(any(2) == 0);
            break;
        case 1:
            of.setChunk(kept, any(2) == 0);
            break;
        case 2: {
            std::string damaged = of.chunk(any(2) == 0);
            damaged.resize(damaged.size() / 2);
            of.setChunk(damaged, any(2) == 0);
            break;
        }
        default:
            of.dispatch(vst::kEffectSetProgram, 0, any(20) - 2);
    }
}

void CHostileSession::system() {
    const int32_t act = any(8);
    trace_ += "system " + std::to_string(act) + '\n';
    CDesktopByHand& desktop = system_.desktop();
    switch (act) {
        case 0:
            desktop.takeCapture();
            break;
        case 1:
            desktop.activate(0);
            break;
        case 2:
            desktop.activate(anySide().parent());
            break;
        case 3:
            if (const CPlace place = anyPlace(); place.window && !place.window->isMainWindow()) {
                desktop.requestClose(place.window->handle());
            }
            break;
        case 4:
            system_.starve(0.2);
            break;
        case 5:
            system_.input().jump(any(kScreen.right), any(kScreen.bottom));
            break;
        case 6:
            system_.keepClipboard(any(4));
            break;
        default:
            if (const CPlace place = anyPlace(); place.window) {
                desktop.expose(place.window->handle(), {0, 0, 1 + any(600), 1 + any(400)});
            }
    }
}

void CHostileSession::files() {
    const int32_t which = any(5);
    trace_ += "file " + std::to_string(which) + '\n';
    if (which == 4) {
        std::ofstream(file(4)) << "damaged";
    }
    if (any(4) == 0) {
        system_.refuseFileDialog(any(2) == 0 ? u"no" : u"");
        return;
    }
    const std::string path = file(which);
    system_.answerFileDialog(std::u16string(path.begin(), path.end()), [this] { nested(any(4) == 0); });
}

void CHostileSession::nested(bool isClosing) {
    if (depth_ >= kDeepest) {
        return;
    }
    ++depth_;
    trace_ += "  inside: ";
    CHostileSide& of = anySide();
    switch (any(isClosing ? 8 : 6)) {
        case 0:
            trace_ += "automation\n";
            if (!isAudioElsewhere_) {
                of.automate();
            }
            break;
        case 1:
            trace_ += "state\n";
            state(of);
            break;
        case 2:
            trace_ += "time\n";
            system_.advance(0.05);
            break;
        case 3:
            trace_ += "hand\n";
            hand();
            break;
        case 4:
            trace_ += "idle\n";
            of.dispatch(vst::kEffectEditIdle);
            break;
        case 5:
            trace_ += "key\n";
            key();
            break;
        case 6:
            trace_ += "open\n";
            of.openEditor();
            break;
        default:
            trace_ += "close\n";
            of.closeEditor();
    }
    --depth_;
}

}  // namespace tarv
