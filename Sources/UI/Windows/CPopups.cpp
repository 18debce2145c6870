#include "UI/Windows/CPopups.h"

#include "Core/CApplication.h"
#include "Core/CObjectWatch.h"
#include "UI/Views/CViewBaseState.h"
#include "UI/Windows/CUIEventBridge.h"
#include "UI/Windows/CWindow.h"
#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

namespace {

constexpr int32_t kMaxTargets = 64;
/// Of the event that has led here; none of them is the popup's.
constexpr const char* kEventParams[] = {"sender",        "event-name", "listener", "listener-id",
                                        "listener-proc", "is-handled", "name",     "full-name"};

const CAttributeValue* filled(const CAttributeMap& params, const char* name) {
    const auto found = params.find(name);
    return found == params.end() || found->second.asString().isEmpty() ? nullptr : &found->second;
}

bool flag(const CAttributeMap& params, const char* name) {
    const CAttributeValue* value = filled(params, name);
    return value && value->asBool();
}

double number(const CAttributeMap& params, const char* name) {
    const CAttributeValue* value = filled(params, name);
    return value ? value->asReal() : 0.0;
}

int32_t scaled(const CAttributeMap& params, const char* name) {
    return pixels(number(params, name) * CApplication::uiScale());
}

CIntRect onScreen(const CViewRect& rect, const CIntRect& window) {
    return {window.left + pixels(rect.x), window.top + pixels(rect.y), window.left + pixels(rect.right()),
            window.top + pixels(rect.bottom())};
}

/// Whether it stays until it is closed, also when the window that it was opened from closes.
bool isLasting(const CWindow& window) {
    return !window.uniqueName().isEmpty() && !window.isBlocking();
}

/// Openers that stand in a window which is being destroyed get nothing any more.
template <class Popups>
void forgetOpenersIn(const CObject& window, Popups& popups) {
    for (auto& popup : popups) {
        const CObject* above = popup.opener;
        while (above && above != &window) {
            above = above->parent();
        }
        if (above) {
            popup.opener = nullptr;
        }
    }
}

CWindow* windowIn(const CObject& object) {
    for (CObject* child : object.children()) {
        if (auto* window = dynamic_cast<CWindow*>(child)) {
            return window;
        }
    }
    return nullptr;
}

}  // namespace

CPopups::~CPopups() {
    for (const CPopup& popup : popups_) {
        popup.window->setOpenerWindow(nullptr);
    }
}

CError* CPopups::open(CViewBaseCtlEvents& opener, const CString& templateName, CAttributeMap& params) {
    CWindow* main = owner_.sharedData().mainWindow();
    CWindow* former = popupOf(opener);
    if (!former && main) {
        former = main->popups().popupOf(opener);
    }
    if (former) {
        const char* always = "is-popup-toggle-always-create";
        const bool isCreated = flag(params, always) || opener.getAttrBool(always);
        const CObjectWatch watch(opener);
        former->requestClose();
        if (!isCreated || !watch.isAlive()) {
            return nullptr;
        }
    }
    CObject* made = nullptr;
    CWindow* window = nullptr;
    TARV_TRY(make(opener, templateName, params, made, window));
    if (CWindow* same = owner_.sharedData().findNamed(window->uniqueName())) {
        delete made;
        // The view stands where the opener stood that has gone with its window: for the user it is the same button.
        const bool isOrphan = same->openerWindow() && !same->openerWindow()->popups().hasOpener(*same);
        isOrphan ? same->requestClose() : same->raise();
        return nullptr;
    }
    main = owner_.sharedData().mainWindow();
    CWindow& home = main && main->isOpen() && isLasting(*window) ? *main : owner_;
    if (window->takesFocus()) {
        home.keepFocus();
    }
    home.popups().popups_.append({made, window, &opener});
    window->setOpenerWindow(&home);
    const CObjectWatch watch(*made);
    const CObjectWatch ofHome(home);
    if (CError* error = openMade(opener, params, *made, *window)) {
        if (watch.isAlive()) {
            delete made;
        }
        if (ofHome.isAlive()) {
            home.popupLeaves();
            home.returnFocus();
        }
        TARV_TRY(error);
    }
    if (ofHome.isAlive()) {
        home.block(home.popups().blocking());
    } else if (watch.isAlive()) {
        // A handler of its opening has destroyed the window above.
        window->requestClose();
    }
    return nullptr;
}

CError* CPopups::make(CViewBaseCtlEvents& opener, const CString& templateName, const CAttributeMap& params,
                      CObject*& made, CWindow*& window) {
    // The window has found it when it was made.
    auto* bridge = dynamic_cast<CUIEventBridge*>(owner_.eventAnchor());
    CAttributeMap attributes(params);
    for (const char* name : kEventParams) {
        attributes.erase(name);
    }
    attributes["opener"] = CAttributeValue::fromString(opener.fullName());
    const int32_t prefix = templateName.lastIndexOf(':');
    TARV_TRY(bridge->createChild(made, templateName, templateName.substring(prefix + 1), true, &attributes));
    window = windowIn(*made);
    if (!window) {
        delete made;
        made = nullptr;
        TARV_FAIL("@tarvstr_CPopups_make_NoWindow Template '%1' has no window.", templateName);
    }
    return nullptr;
}

CError* CPopups::openMade(CViewBaseCtlEvents& opener, const CAttributeMap& params, CObject& made, CWindow& window) {
    const CPopupPlace place = placeOf(opener, params, window);
    TARV_TRY(setWidth(opener, params, made, window));
    TARV_TRY(limitHeight(place.around.monitor, window));
    TARV_TRY(window.open(&place));
    return nullptr;
}

CError* CPopups::setWidth(const CViewBaseCtlEvents& opener, const CAttributeMap& params, CObject& made,
                          CWindow& window) const {
    double width = number(params, "popup-width");
    const double openerWidth = CWindow::boxOf(opener).width;
    bool isAsOpener = flag(params, "is-same-width");
    if (!isAsOpener && flag(params, "is-least-width")) {
        TARV_TRY(window.view().advanceViews());
        isAsOpener = window.view().wholeRect().width < openerWidth;
    }
    if (isAsOpener) {
        width = openerWidth / CApplication::uiScale();
    }
    if (width > 0.0) {
        width += number(params, "width-modif");
        TARV_TRY(made.setAttribute("width", CString::fromDouble(width, 4)));
    }
    return nullptr;
}

/// A list that is taller than the monitor gets the height that there is.
CError* CPopups::limitHeight(const CIntRect& monitor, CWindow& window) {
    CViewBaseCtlEvents& view = window.view();
    if (!window.isPopupWindow()) {
        return nullptr;
    }
    TARV_TRY(view.advanceViews());
    if (view.wholeRect().height > monitor.height()) {
        const CString height = CString::fromDouble(monitor.height() / CApplication::uiScale(), 4);
        TARV_TRY(view.setAttribute("popup-height-limit", height));
        TARV_TRY(view.setAttribute("height", height));
    }
    return nullptr;
}

CPopupPlace CPopups::placeOf(const CViewBaseCtlEvents& opener, const CAttributeMap& params,
                             const CWindow& window) const {
    CPopupPlace place;
    CWindowSurroundings& around = place.around;
    around.openerWindow = owner_.screenBounds();
    around.opener = onScreen(CWindow::boxOf(opener), around.openerWindow);
    if (const CWindow* main = owner_.sharedData().mainWindow()) {
        around.mainWindow = main->screenBounds();
    }
    CWindowSystem& system = *windowSystem();
    around.monitor = system.monitorArea((around.opener.left + around.opener.right) / 2,
                                        (around.opener.top + around.opener.bottom) / 2);
    system.pointerPosition(around.pointerX, around.pointerY);
    around.shiftX = scaled(params, "shift-x");
    around.shiftY = scaled(params, "shift-y");
    // The parameters are attributes of the popup by now.
    around.isConstrained = !window.attr("constrain-y").isEmpty();
    around.constrainY = pixels(CString::toDouble(window.attr("constrain-y")));
    if (flag(params, "is-manual-coords")) {
        place.isManual = true;
        place.x = around.openerWindow.left + pixels(number(params, "actual-x")) + around.shiftX;
        place.y = around.openerWindow.top + pixels(number(params, "actual-y")) + around.shiftY;
    } else if (!window.attr("window-x").isEmpty() && !window.attr("window-y").isEmpty()) {
        place.isManual = true;
        place.x = pixels(CString::toDouble(window.attr("window-x"))) + around.shiftX;
        place.y = pixels(CString::toDouble(window.attr("window-y"))) + around.shiftY;
    }
    return place;
}

void CPopups::release() {
    for (int32_t i = popups_.count() - 1; i >= 0 && i < popups_.count(); --i) {
        CPopup popup = popups_[i];
        // The popups of a popup go first.
        if (!popup.window->isClosing() || popup.window->isBusy() || popup.window->popups().count() > 0) {
            continue;
        }
        const CObjectWatch watch(owner_);
        const CObjectWatch ofPopup(*popup.object);
        // Its handlers may destroy anything; no destructor runs meanwhile.
        popup.window->endInput();
        if (!watch.isAlive()) {
            return;
        }
        i = ofPopup.isAlive() ? indexOf(*popup.window) : -1;
        if (i < 0) {
            i = popups_.count();
            continue;
        }
        popup.opener = popups_[i].opener;
        popups_.removeAt(i);
        popup.window->setOpenerWindow(nullptr);
        forgetOpenersIn(*popup.object, popups_);
        delete popup.object;
        CAttributeMap params;
        if (popup.opener) {
            CError* error = popup.opener->passEvent("popup-closed", params);
            TARV_CONSUME(error);
        }
        if (!watch.isAlive()) {
            return;
        }
    }
}

void CPopups::vanish() {
    for (const CPopup& popup : popups_) {
        popup.window->vanish();
    }
}

int32_t CPopups::indexOf(const CWindow& window) const {
    for (int32_t i = 0; i < popups_.count(); ++i) {
        if (popups_[i].window == &window) {
            return i;
        }
    }
    return -1;
}

void CPopups::close() {
    const CObjectWatch watch(owner_);
    for (int32_t i = popups_.count() - 1; watch.isAlive() && i >= 0 && i < popups_.count(); --i) {
        popups_[i].window->requestClose();
    }
}

void CPopups::openerGoes(const CViewBaseCtlEvents& opener, bool isOwn) {
    for (int32_t i = popups_.count() - 1; i >= 0 && i < popups_.count(); --i) {
        if (popups_[i].opener == &opener) {
            popups_[i].opener = nullptr;
            // A window that it opened from another one stays.
            if (isOwn) {
                popups_[i].window->vanish();
            }
        }
    }
}

void CPopups::takeOver(CPopups& popups) {
    for (CPopup& popup : popups.popups_) {
        popup.opener = nullptr;
        popup.window->setOpenerWindow(&owner_);
        popups_.append(popup);
    }
    popups.popups_.clear();
}

void CPopups::windowGoes(const CWindow& window) {
    for (int32_t i = popups_.count() - 1; i >= 0; --i) {
        if (popups_[i].window == &window) {
            const CObject* object = popups_[i].object;
            popups_.removeAt(i);
            forgetOpenersIn(*object, popups_);
        }
    }
    owner_.block(blocking());
}

CWindow* CPopups::blocking() const {
    for (int32_t i = popups_.count() - 1; i >= 0; --i) {
        CWindow* window = popups_[i].window;
        if (window->isOpen() && !window->isClosing() && window->isBlocking()) {
            return window;
        }
    }
    return nullptr;
}

CWindow* CPopups::findPopup(const CString& path) const {
    for (const CPopup& popup : popups_) {
        if (popup.object->fullName() == path && popup.window->isOpen() && !popup.window->isClosing()) {
            return popup.window;
        }
    }
    return nullptr;
}

const CPopups::CPopup* CPopups::find(const CWindow& window) const {
    for (const CPopup& popup : popups_) {
        if (popup.window == &window) {
            return &popup;
        }
    }
    return nullptr;
}

bool CPopups::hasOpener(const CWindow& window) const {
    const CPopup* popup = find(window);
    return popup && popup->opener;
}

CWindow* CPopups::popupOf(const CViewBaseCtlEvents& opener) const {
    for (const CPopup& popup : popups_) {
        if (popup.opener == &opener && !popup.window->isClosing()) {
            return popup.window;
        }
    }
    return nullptr;
}

CError* CPopups::findTarget(const CPopup& popup, CObject*& target) const {
    constexpr const char* kTarget = "popup-result-target";
    target = popup.object;
    for (int32_t i = 0; i < kMaxTargets; ++i) {
        const CString& path = target->getAttrString(kTarget);
        if (path.isEmpty()) {
            target = target == popup.object ? popup.opener : target;
            return nullptr;
        }
        target = target->findObject(path);
        if (!target) {
            TARV_FAIL("@tarvstr_CPopups_findTarget_NotFound Object '%1' caused by popup-result-target not found.",
                      path);
        }
        if (target == popup.object) {
            break;
        }
    }
    TARV_FAIL("@tarvstr_CPopups_findTarget_InfiniteLoop Infinite loop caused by popup-result-target");
}

CError* CPopups::answer(const CWindow& window, const CString& eventName, CAttributeMap& params) {
    const CPopup* popup = find(window);
    CObject* target = nullptr;
    if (popup) {
        TARV_TRY(findTarget(*popup, target));
    }
    if (!target) {
        return nullptr;
    }
    CAttributeMap answer(params);
    for (const char* name : kEventParams) {
        answer.erase(name);
    }
    const CAttributeValue* own = filled(params, "event");
    const CString name(own ? own->asString() : eventName);
    answer.erase("event");
    answer["source"] = CAttributeValue::fromString(popup->object->fullName());
    // This call may destroy the objects that the caller uses.
    return deliverEvent(*target, name, answer);
}

}  // namespace tarv
