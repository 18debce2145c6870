#include "UI/Windows/CWindow.h"

#include "Core/CNotifyServer.h"
#include "Platform/Clock.h"
#include "UI/Windows/CUIEventBridge.h"
#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

namespace {

// Rates where the data say nothing: what a hand does not notice.
constexpr double kDefaultHelperFps = 10.0;
constexpr double kDefaultAutoClickFps = 20.0;

}  // namespace

CWindow::CWindow()
    : router_(*this, *this), popups_(*this), now_(clockSeconds()), lastTick_(now_), lastStaticUpdate_(now_) {}

CWindow::CBusy::CBusy(CWindow& window)
    : window_(window), shared_(*window.shared_), watch_(window), sharedWatch_(shared_) {
    ++window_.busy_;
    shared_.beginCall();
}

CWindow::CBusy::~CBusy() {
    if (watch_.isAlive()) {
        --window_.busy_;
    }
    if (sharedWatch_.isAlive()) {
        shared_.endCall();
    }
}

CWindow::~CWindow() {
    shut();
    if (openerWindow_) {
        openerWindow_->popups().takeOver(popups_);
        openerWindow_->popups().windowGoes(*this);
    }
    // The timers are children, and call no more.
    destroyChildren();
    if (root_) {
        root_->setWindow(nullptr);
    }
}

CError* CWindow::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CWindow::renderTick>("render-tick");
    descriptor.addHandler<&CWindow::cursorTick>("cursor-tick");
    descriptor.addHandler<&CWindow::deactivateTick>("deactivate-tick");
    descriptor.addHandler<&CWindow::autoClickTick>("auto-click-tick");
    descriptor.addHandler<&CWindow::updateWindowBounds>("update-window-bounds");
    descriptor.addHandler<&CWindow::closeWindow>("close-window");
    descriptor.addHandler<&CWindow::blockWindow>("block-window");
    descriptor.addHandler<&CWindow::unblockWindow>("unblock-window");
    descriptor.addHandler<&CWindow::popupResult>("popup-result");
    descriptor.addHandler<&CWindow::popupChanged>("popup-changed");
    descriptor.addHandler<&CWindow::titleChanged>("title");
    descriptor.addHandler<&CWindow::keyFocusViewChanged>("key-focus-view");
    return nullptr;
}

CError* CWindow::init() {
    TARV_TRY(CObject::init());
    TARV_TRY(findObjects());
    root_->setWindow(this);
    router_.setRootView(root_);
    const CString& view = root_->fullName();
    listenObject(view, "update-window-bounds", "update-window-bounds");
    listenObject(view, "close-window", "close-window");
    listenObject(view, "block-window", "block-window");
    listenObject(view, "unblock-window", "unblock-window");
    listenObject(view, "popup-close", "close-window");
    listenObject(view, "popup-result", "popup-result");
    listenObject(view, "popup-changed", "popup-changed");
    root_->linkObserver(*this, "title", "title");
    return nullptr;
}

CError* CWindow::findObjects() {
    if (!root()->findObject("ui.global-settings")) {
        TARV_FAIL("@tarvstr_CWindow_init_NoGlobalSettings Unable to locate global settings object.");
    }
    auto* view = dynamic_cast<CViewBaseCtlEvents*>(parent());
    if (!view || !view->isRootView()) {
        TARV_FAIL("@tarvstr_CWindow_init_NoRootView Unable to find root view.");
    }
    // The tiles of a root view that is shown already belong to the window that shows it.
    if (view->window()) {
        TARV_FAIL("@tarvstr_CWindow_init_NoSectorMap Unable to find sector map.");
    }
    shared_ = root()->findObjectOf<CWindowSharedData>(CWindowSharedData::kPath);
    if (!shared_) {
        TARV_FAIL("@tarvstr_CWindow_init_NoWindowSharedData Unable to find window shared data object.");
    }
    if (!dynamic_cast<CUIEventBridge*>(eventAnchor())) {
        TARV_FAIL("@tarvstr_CWindow_init_NoEventBridge Unable to locate a suitable event bridge.");
    }
    root_ = view;
    return nullptr;
}

CError* CWindow::finishInit() {
    TARV_TRY(CObject::finishInit());
    TARV_TRY(startTimer("render-timer", "fps", kDefaultFps, "render-tick"));
    TARV_TRY(startTimer("cursor-timer", "cursor-fps", kDefaultHelperFps, "cursor-tick"));
    TARV_TRY(startTimer("deactivate-timer", "deactivate-fps", kDefaultHelperFps, "deactivate-tick"));
    TARV_TRY(startTimer("auto-click-timer", "auto-click-fps", kDefaultAutoClickFps, "auto-click-tick"));
    return nullptr;
}

CError* CWindow::startTimer(const char* name, const char* rate, double fallback, const char* handler) {
    CAttributeMap attributes;
    attributes["interval"] = CAttributeValue::fromReal(1.0 / number(rate, fallback));
    CObject* timer = nullptr;
    TARV_TRY(createChild(timer, "core:timer", name, false, &attributes));
    listenObject(timer->fullName(), "tick", handler);
    return nullptr;
}

const CString& CWindow::attr(const char* name) const {
    const CString& own = getAttrString(name);
    return own.isEmpty() && root_ ? root_->getAttrString(name) : own;
}

bool CWindow::flag(const char* name) const {
    return CString::toBool(attr(name));
}

/// Of a rate or a time: what is not above 0 counts as missing.
double CWindow::number(const char* name, double fallback) const {
    const double value = CString::toDouble(attr(name));
    return value > 0.0 ? value : fallback;
}

bool CWindow::isListened(const char* name) const {
    return notifyServer() && notifyServer()->hasListeners(fullName(), name);
}

bool CWindow::sendHere(const char* name, CAttributeMap& params) {
    if (!isListened(name)) {
        return true;
    }
    const CBusy busy(*this);
    CError* error = sendEvent(name, params, false);
    TARV_CONSUME(error);
    return busy.isAlive();
}

bool CWindow::sendHere(const char* name) {
    CAttributeMap params;
    return sendHere(name, params);
}

void CWindow::setKeyFocusView(CViewBase* view) {
    // While a popup stands in the way, its views have the keys; a window that ends takes none.
    if (view && (isBlocked() || isEnding_)) {
        return;
    }
    router_.setKeyFocus(dynamic_cast<CViewBaseCtlEvents*>(view));
}

CError* CWindow::keyFocusViewChanged() {
    const CString& path = getAttrString("key-focus-view");
    setKeyFocusView(path.isEmpty() ? nullptr : findObjectOf<CViewBaseCtlEvents>(path));
    return nullptr;
}

void CWindow::takeHint(const CString& hint, bool isPlain) {
    hint_ = hint;
    isHintPlain_ = isPlain;
    refreshHint();
}

void CWindow::refreshHint() {
    const CString& path = attr("window-status-path");
    CObject* status = path.isEmpty() || !root_ ? nullptr : root_->findObject(path);
    if (!status) {
        return;
    }
    CObject* label = status->findChild("label");
    CObject& target = label ? *label : *status;
    const CString text = shared_->isShowHints() ? hint_ : CString();
    const CAttributeValue title =
        isHintPlain_ ? CAttributeValue::fromPlainString(text) : CAttributeValue::fromString(text);
    const auto shown = target.attributes().find("title");
    if (shown == target.attributes().end() || shown->second.isPlain() != isHintPlain_ ||
        !(shown->second.asString() == text)) {
        TARV_CONSUME(target.setAttribute("title", title));
    }
}

void CWindow::setCursor(CCursorShape shape) {
    if (isOpen()) {
        window_->setCursor(shape);
    }
}

CError* CWindow::openPopup(CViewBaseCtlEvents& opener, const CString& templateName, CAttributeMap& params) {
    const bool isTaken = isOpen() && !isClosing_ && !isEnding_ && !shared_->isShutting();
    return isTaken ? popups_.open(opener, templateName, params) : nullptr;
}

CError* CWindow::popupResult(CAttributeMap& params) {
    return openerWindow_ ? openerWindow_->popups().answer(*this, "popup-result", params) : nullptr;
}

CError* CWindow::popupChanged(CAttributeMap& params) {
    return openerWindow_ ? openerWindow_->popups().answer(*this, "popup-changed", params) : nullptr;
}

CColorMixes* CWindow::colorMixes() {
    return shared_ ? &shared_->colorMixes() : nullptr;
}

bool CWindow::isOwnOrPopup(const CWindow* window) const {
    while (window && window != this) {
        window = window->openerWindow_;
    }
    return window == this;
}

}  // namespace tarv
