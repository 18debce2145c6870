// From the opening of a window to its end.

#include <utility>

#include "Core/Log.h"
#include "UI/Views/CViewBasePlacement.h"
#include "UI/Windows/CUIEventBridge.h"
#include "UI/Windows/CWindow.h"
#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

namespace {

constexpr const char* kDefaultTitle = "Untitled";

}  // namespace

CError* CWindow::open(const CPopupPlace* place) {
    if (isOpen() || shared_->isShutting()) {
        return nullptr;
    }
    TARV_TRY(root_->advanceViews());
    TARV_TRY(updateWindowBounds());
    TARV_TRY(createWindow(place));
    isClosing_ = false;
    isDeactivated_ = false;
    isElsewhere_ = false;
    wasActive_ = false;
    shared_->add(*this);
    beMainWindow(true);
    // A view may have taken the focus before there was a window.
    if (router_.keyFocus()) {
        wantKeys(true);
    }
    // Its first picture is ready before it is seen, and does not wait for the system to ask for it.
    const CBusy busy(*this);
    tick();
    if (!busy.isAlive() || !isOpen()) {
        return nullptr;
    }
    window_->show(true);
    if (busy.isAlive() && isOpen()) {
        const CViewRect rect = boxOf(*root_);
        showAgain({0, 0, pixels(rect.width), pixels(rect.height)});
        endPresenting();
        return beginEdit();
    }
    return nullptr;
}

/// A window that asks for a text opens with its field being edited.
CError* CWindow::beginEdit() {
    const CString& path = attr("edit-view");
    auto* view = path.isEmpty() ? nullptr : root_->findObjectOf<CViewBaseCtlEvents>(path);
    CAttributeMap params;
    return view ? deliverEvent(*view, "edit-text", params) : nullptr;
}

CError* CWindow::createWindow(const CPopupPlace* place) {
    CWindowSystem* system = windowSystem();
    CPlatformError code = 0;
    CWindowRequest request;
    TARV_TRY(requestBounds(place, request));
    CString title = attr("title");
    if (title.isEmpty()) {
        title = kDefaultTitle;
    }
    title.widen();
    request.title = title.wideData();
    request.isTaskbar = flag("is-taskbar");
    request.isLasting = !isPopupWindow();
    request.isActivated = takesFocus();
    if (system) {
        window_ = system->createWindow(request, *this, code);
    }
    if (!window_) {
        TARV_FAIL("@tarvstr_CWindow_createWindow_CreateError Unable to create window (error %1).",
                  CString::fromInt(code));
    }
    return nullptr;
}

CError* CWindow::requestBounds(const CPopupPlace* place, CWindowRequest& request) {
    const CViewRect box = boxOf(*root_);
    const int32_t width = pixels(box.width);
    const int32_t height = pixels(box.height);
    request.isChild = flag("is-plugin-vst");
    if (request.isChild) {
        request.parent = reinterpret_cast<CWindowHandle>(root()->getAttrPointer("ParentWindow"));
        request.bounds = {0, 0, width, height};
        if (request.parent == 0) {
            TARV_FAIL("@tarvstr_CWindow_createWindow_NoParentWindow Unable to locate parent window.");
        }
        return nullptr;
    }
    CWindowAlignment alignment = place ? CWindowAlignment::Bottom : CWindowAlignment::Center;
    const CString& name = attr("window-alignment");
    if (!name.isEmpty() && !readWindowAlignment(name, alignment)) {
        TARV_FAIL("@tarvstr_CWindow_createWindow_InvalidWinAlign Invalid window alignment '%1'", name);
    }
    CPopupPlace alone;
    if (!place && windowSystem()) {
        alone.around.monitor = windowSystem()->monitorArea(0, 0);
    }
    const CPopupPlace& wanted = place ? *place : alone;
    request.parent = openerWindow_ ? openerWindow_->handle() : 0;
    request.bounds = wanted.isManual ? placeWindowAt(wanted.x, wanted.y, wanted.around, width, height)
                                     : placeWindow(alignment, wanted.around, width, height);
    return nullptr;
}

CViewRect CWindow::boxOf(const CViewBaseCtlEvents& view) {
    const auto* placed = dynamic_cast<const CViewBasePlacement*>(&view);
    return placed && placed->hasArea() ? placed->area().box() : view.wholeRect();
}

/// The root view has another size.
CError* CWindow::updateWindowBounds() {
    const CViewRect rect = boxOf(*root_);
    const int32_t columns = (pixels(rect.width) >> CSector::kBits) + 1;
    const int32_t rows = (pixels(rect.height) >> CSector::kBits) + 1;
    if (map_.isEmpty() || columns != map_.columns() || rows != map_.rows()) {
        endPresenting();
        TARV_TRY(map_.resize(rect.width, rect.height));
    }
    map_.invalidate({0.0, 0.0, rect.width, rect.height}, nullptr);
    if (isOpen()) {
        CIntRect bounds = flag("is-plugin-vst") ? CIntRect() : window_->screenBounds();
        bounds.right = bounds.left + pixels(rect.width);
        bounds.bottom = bounds.top + pixels(rect.height);
        window_->setBounds(bounds);
    }
    return nullptr;
}

void CWindow::moveTo(int32_t x, int32_t y) {
    if (isOpen() && !flag("is-plugin-vst")) {
        const CIntRect bounds = window_->screenBounds();
        window_->setBounds({x, y, x + bounds.width(), y + bounds.height()});
    }
}

void CWindow::raise() {
    if (isOpen()) {
        window_->show(false);
        window_->show(true);
    }
}

CError* CWindow::titleChanged() {
    if (isOpen()) {
        CString title = attr("title");
        title.widen();
        window_->setTitle(title.isEmpty() ? u"Untitled" : title.wideData());
    }
    return nullptr;
}

void CWindow::shut() {
    if (!window_) {
        return;
    }
    const CObjectWatch watch(*this);
    if (!std::exchange(isEnding_, true) && isMainWindow()) {
        sendHere("close-app");
    }
    if (watch.isAlive()) {
        router_.setKeyFocus(nullptr);
    }
    if (watch.isAlive()) {
        router_.cancel();
    }
    if (watch.isAlive()) {
        popups_.close();
    }
    if (watch.isAlive()) {
        leaveSystem();
    }
}

/// The window of the system, and what refers to it, go.
void CWindow::leaveSystem() {
    shared_->remove(*this);
    beMainWindow(false);
    isEnding_ = false;
    endPresenting();
    isGrabbing_ = false;
    isAwaiting_ = false;
    while (!router_.heldKeys().isEmpty()) {
        passKeyOn(router_.heldKeys()[0]);
    }
    window_.reset();
    if (openerWindow_) {
        if (takesFocus() && !isElsewhere_) {
            openerWindow_->popupLeaves();
        }
        openerWindow_->block(openerWindow_->popups().blocking());
    }
}

/// Lets data find the main window.
void CWindow::beMainWindow(bool isOpened) {
    constexpr const char* kMainWindow = "app-main-window";
    CObject* ui = isMainWindow() ? dynamic_cast<CUIEventBridge*>(eventAnchor()) : nullptr;
    if (ui && (isOpened || ui->getAttrString(kMainWindow) == root_->fullName())) {
        TARV_CONSUME(ui->setAttribute(kMainWindow, isOpened ? root_->fullName() : CString()));
    }
}

void CWindow::onGone() {
    // With the handle void, what follows touches nothing of the system.
    shut();
}

void CWindow::onCloseRequest() {
    CAttributeMap params;
    const CBusy busy(*this);
    TARV_CONSUME(root_->passEvent("close-window", params));
}

CError* CWindow::closeWindow() {
    requestClose();
    return nullptr;
}

void CWindow::requestClose() {
    // The embedded window closes with its editor.
    if (isClosing_ || flag("is-plugin-vst")) {
        return;
    }
    isClosing_ = true;
    CWindow* opener = openerWindow_;
    if (!opener) {
        shut();
        return;
    }
    const CObjectWatch ofOpener(*opener);
    shut();
    if (ofOpener.isAlive()) {
        opener->returnFocus();
    }
}

/// A popup of this window, named by `blocked-by`, stands in the way from now on.
CError* CWindow::blockWindow(CAttributeMap& params) {
    const CString path(params["blocked-by"].asString());
    CWindow* popup = popups_.findPopup(path);
    if (popup) {
        block(popup);
    } else {
        logLineIn(CString("Target not found: ") + path, fullName());
    }
    return nullptr;
}

void CWindow::vanish() {
    if (isClosing_ || flag("is-plugin-vst")) {
        return;
    }
    isClosing_ = true;
    // The system may activate another window of ours.
    shared_->beginSilence();
    popups_.vanish();
    if (window_) {
        leaveSystem();
    }
    shared_->endSilence();
}

void CWindow::endInput() {
    const CBusy busy(*this);
    router_.setKeyFocus(nullptr);
    if (busy.isAlive()) {
        router_.cancel();
    }
}

CError* CWindow::unblockWindow() {
    if (blockedBy_) {
        blockedBy_->requestClose();
    }
    return nullptr;
}

void CWindow::block(CWindow* popup) {
    if (popup == blockedBy_ || !root_) {
        return;
    }
    blockedBy_ = popup;
    if (popup) {
        const CObjectWatch watch(*this);
        router_.setKeyFocus(nullptr);
        if (watch.isAlive()) {
            router_.cancel();
        }
        if (!watch.isAlive() || blockedBy_ != popup) {
            return;
        }
    }
    showBlocker();
}

/// A blocker that goes may take a popup with it, and then what blocks is another one: the outer call shows that.
void CWindow::showBlocker() {
    constexpr const char* kBlocker = "window-blocker";
    if (isBlockerChanging_) {
        return;
    }
    const CObjectWatch watch(*this);
    isBlockerChanging_ = true;
    const CWindow* shown = nullptr;
    do {
        shown = blockedBy_;
        delete root_->findChild(kBlocker);
        if (blockedBy_ && root_->findTemplate("ui:window-blocker")) {
            CAttributeMap attributes;
            attributes["blocked-by"] = CAttributeValue::fromString(blockedBy_->view().fullName());
            // A list leaves in a moment: what it stands over stays as bright as it was.
            attributes["state"] = CAttributeValue::fromString(blockedBy_->isModal() ? "modal" : "");
            CObject* blocker = nullptr;
            TARV_CONSUME(root_->createChild(blocker, "ui:window-blocker", kBlocker, true, &attributes));
        }
    } while (watch.isAlive() && shown != blockedBy_);
    if (watch.isAlive()) {
        isBlockerChanging_ = false;
    }
}

}  // namespace tarv
