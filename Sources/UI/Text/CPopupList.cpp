#include "UI/Text/CPopupList.h"

#include "Core/CObjectWatch.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

namespace {

constexpr int32_t kMaxTargets = 64;
}  // namespace

CPopupList::~CPopupList() {
    endInput();
}

CError* CPopupList::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CPopupList::limitWidth>("popup-width-limit");
    descriptor.addHandler<&CPopupList::limitHeight>("popup-height-limit");
    return CTextView::initClass(descriptor);
}

CError* CPopupList::open(const CObject& control, CViewBaseCtlEvents& opener, CAttributeMap& params) {
    constexpr const char* kTemplate = "popup-template";
    const CString& own = control.getAttrString(kTemplate);
    const CString name = own.isEmpty() ? CString("ui:window-app-popup-list") : own;
    params[kTemplate] = CAttributeValue::fromString(name);
    return opener.openPopup(name, params);
}

const CString& CPopupList::param(const char* name) const {
    return rootView()->getAttrString(name);
}

CObject* CPopupList::opener() const {
    return findObject(param("opener"));
}

CObject* CPopupList::originalOpener() const {
    const CString& path = param("original-opener");
    return path.isEmpty() ? opener() : findObject(path);
}

CError* CPopupList::finishInit() {
    TARV_TRY(setAttribute("is-list", CString("true")));
    TARV_TRY(setAttribute("is-drop-down-behavior-disabled", CString("false")));
    // The keys come from the list above.
    TARV_TRY(setAttribute("is-focusable", CAttributeValue::fromBool(!above())));
    const CString& border = param("popup-inner-border");
    if (!border.isEmpty()) {
        TARV_TRY(setAttribute("inner-border", border));
    }
    TARV_TRY(fillRows());
    const CString& selected = param("selected-item");
    if (!selected.isEmpty()) {
        TARV_TRY(setAttribute("selected-paragraph", selected));
    }
    TARV_TRY(CTextView::finishInit());
    rootView()->linkObserver(*this, "width", "popup-width-limit");
    rootView()->linkObserver(*this, "popup-height-limit", "popup-height-limit");
    startTimer();
    return nullptr;
}

CError* CPopupList::limitWidth() {
    return setAttribute("width", CString("100%"));
}

CError* CPopupList::limitHeight() {
    return setAttribute("height", CString("100%"));
}

/// At the first ticks of the window: the place of the list is final behind the first or the second one.
bool CPopupList::animate(double now) {
    const CObjectWatch watch(*this);
    const bool isMoving = CTextView::animate(now);
    const bool isFirst = openingTicks_ == kOpeningTicks;
    if (openingTicks_ > 0 && window()) {
        --openingTicks_;
        scrollToParagraph(selectedParagraph());
    }
    if (isFirst && window() && !above()) {
        window()->setKeyFocusView(this);
    }
    TARV_CONSUME(watch.isAlive() ? workHovered(now) : nullptr);
    return !watch.isAlive() || isMoving || openingTicks_ > 0 || isHovering();
}

CError* CPopupList::paragraphChosen(int32_t index) {
    const CObject* chosen = row(index);
    if (!chosen) {
        return nullptr;
    }
    // Read before the handlers, which may destroy the row.
    const bool isAboveList = hasSubList(index);
    const CString id = chosen->getAttrString("id");
    CAttributeMap params;
    params["index"] = CAttributeValue::fromInt(index);
    params["text"] = CAttributeValue::fromPlainString(rowText(index));
    params["id"] = CAttributeValue::fromPlainString(id);
    const CObjectWatch watch(*this);
    CError* error = CTextView::paragraphChosen(index);
    if (error || !watch.isAlive()) {
        return error;
    }
    if (isAboveList) {
        return index == openRow_ && below() ? enterBelow() : openBelow(index, id, false);
    }
    params["list-id"] = CAttributeValue::fromPlainString(param("list-id"));
    const CObject* first = originalOpener();
    params["original-opener"] = CAttributeValue::fromPlainString(first ? first->fullName() : CString());
    // Closed first, so that the receiver may open another popup, or edit a text, in the window that waited.
    error = closeAll();
    return error || !watch.isAlive() ? error : answer(params);
}

CError* CPopupList::findTarget(CObject*& target) const {
    const CString& path = param("result-target");
    const CString& redirect = param("result-target-redirect-attr");
    const CObject* from = originalOpener();
    target = path.isEmpty() || !from ? nullptr : from->findObject(path);
    if (!path.isEmpty() && !target) {
        TARV_FAIL("@tarvstr_CPopupList_findTarget_NotFound Result target '%1' of a list not found.", path);
    }
    for (int32_t i = 0; target && !redirect.isEmpty() && !target->getAttrString(redirect).isEmpty(); ++i) {
        const CString& next = target->getAttrString(redirect);
        target = i < kMaxTargets ? target->findObject(next) : nullptr;
        if (!target) {
            TARV_FAIL("@tarvstr_CPopupList_findTarget_NoRedirect Result target '%1' of a list not found.", next);
        }
    }
    return nullptr;
}

/// The window is closed already, and the receiver may do anything.
CError* CPopupList::answer(CAttributeMap& params) {
    CObject* target = nullptr;
    TARV_TRY(findTarget(target));
    if (!target) {
        // The window of the opener finds the receiver.
        CPopupList* list = this;
        while (CPopupList* const next = list->above()) {
            list = next;
        }
        return static_cast<CViewBaseCtlEvents*>(list->rootView())->passEvent("popup-result", params);
    }
    params["source"] = CAttributeValue::fromString(rootView()->fullName());
    const CString attribute = param("result-target-index-attr");
    if (!attribute.isEmpty()) {
        const CObjectWatch watch(*target);
        CError* error = target->setAttribute(attribute, params["index"]);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return deliverEvent(*target, "popup-result", params);
}

/// This window, and those of the lists that it is below.
CError* CPopupList::closeAll() {
    // A window takes those that it has opened with it.
    CPopupList* const first = above();
    return first ? first->closeAll() : close();
}

CError* CPopupList::close() {
    CAttributeMap none;
    return static_cast<CViewBaseCtlEvents*>(rootView())->passEvent("close-window", none);
}

}  // namespace tarv
