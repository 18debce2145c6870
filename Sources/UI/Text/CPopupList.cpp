#include "UI/Text/CPopupList.h"

#include <utility>

#include "Core/CApplication.h"
#include "Core/CObjectWatch.h"
#include "Core/Log.h"
#include "Platform/Keyboard.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

namespace {

constexpr const char* kTemplate = "ui:window-app-popup-list";
constexpr int32_t kMaxTargets = 64;
/// Parameters that a list hands on to the list below one of its rows.
constexpr const char* kHandedOn[] = {"popup-text-source", "list-id", "result-target", "result-target-index-attr",
                                     "result-target-redirect-attr"};

uint16_t lowered(uint16_t unit) {
    return unit >= 'A' && unit <= 'Z' ? static_cast<uint16_t>(unit + ('a' - 'A')) : unit;
}

}  // namespace

CPopupList::~CPopupList() {
    endInput();
}

CError* CPopupList::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CPopupList::limitWidth>("popup-width-limit");
    descriptor.addHandler<&CPopupList::limitHeight>("popup-height-limit");
    return CTextView::initClass(descriptor);
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
    TARV_TRY(setAttribute("is-focusable", CString("true")));
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
    if (isFirst && window()) {
        window()->setKeyFocusView(this);
    }
    TARV_CONSUME(watch.isAlive() ? openHovered(now) : nullptr);
    return !watch.isAlive() || isMoving || openingTicks_ > 0 || isHovering();
}

/// The pointer is on another row, or on none.
void CPopupList::noteHover() {
    if (hoveredParagraph() == lastHover_) {
        return;
    }
    lastHover_ = hoveredParagraph();
    const CObject* hovered = row(lastHover_);
    hoverRow_ = hovered && hovered->getAttrBool("has-sub-list") ? lastHover_ : -1;
    hoverSince_ = now();
    if (isHovering()) {
        startTimer();
    }
}

CError* CPopupList::openHovered(double now) {
    if (!isHovering() || now - hoverSince_ < kHoverSeconds) {
        return nullptr;
    }
    const int32_t index = std::exchange(hoverRow_, -1);
    const CObject* hovered = row(index);
    return hovered && hovered->getAttrBool("has-sub-list") ? openSubList(index, CString(hovered->getAttrString("id")))
                                                           : nullptr;
}

CError* CPopupList::mouseEnter(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = CTextView::mouseEnter(params);
    if (watch.isAlive()) {
        noteHover();
    }
    return error;
}

CError* CPopupList::mouseMove(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = CTextView::mouseMove(params);
    if (watch.isAlive()) {
        noteHover();
    }
    return error;
}

CError* CPopupList::mouseExit(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = CTextView::mouseExit(params);
    if (watch.isAlive()) {
        noteHover();
    }
    return error;
}

CError* CPopupList::inputEvent(const CString& name, CAttributeMap& params) {
    // The list below a row has closed: the keys come here again.
    if (name == CString("popup-closed") && window()) {
        window()->setKeyFocusView(this);
    }
    return CTextView::inputEvent(name, params);
}

CError* CPopupList::keyPress(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = CTextView::keyPress(params);
    if (error || !watch.isAlive() || isHandled(params)) {
        return error;
    }
    const int32_t key = params["keycode"].asInt();
    const CString characters = params["characters"].asString();
    const int32_t index = selectedParagraph();
    const CObject* selected = row(index);
    if (key == kKeyLeft && dynamic_cast<CPopupList*>(opener())) {
        setHandled(params);
        return close();
    }
    if (selected && (key == kKeySpace || (key == kKeyRight && selected->getAttrBool("has-sub-list")))) {
        setHandled(params);
        return paragraphChosen(index);
    }
    const bool isPlain = !params["is-ctrl"].asBool() && !params["is-alt"].asBool();
    if (isPlain && characters.length() == 1 && characters.at(0) > ' ') {
        setHandled(params);
        const int32_t found = rowBeginningWith(characters.at(0));
        if (found >= 0) {
            return selectByUser(found);
        }
    }
    return nullptr;
}

/// From the row behind the selected one on, around the end; -1 for none.
int32_t CPopupList::rowBeginningWith(uint16_t unit) const {
    for (int32_t i = 1; i <= paragraphCount(); ++i) {
        const int32_t index =
            (selectedParagraph() + i + (selectedParagraph() < 0 ? paragraphCount() : 0)) % paragraphCount();
        const CString text = paragraphText(index);
        if (!text.isEmpty() && lowered(text.at(0)) == lowered(unit)) {
            return index;
        }
    }
    return -1;
}

CError* CPopupList::paragraphChosen(int32_t index) {
    const CObject* chosen = row(index);
    if (!chosen) {
        return nullptr;
    }
    // Read before the handlers, which may destroy the row.
    const bool hasSubList = chosen->getAttrBool("has-sub-list");
    const CString id = chosen->getAttrString("id");
    CAttributeMap params;
    params["index"] = CAttributeValue::fromInt(index);
    params["text"] = CAttributeValue::fromPlainString(paragraphText(index));
    params["id"] = CAttributeValue::fromPlainString(id);
    const CObjectWatch watch(*this);
    CError* error = CTextView::paragraphChosen(index);
    if (error || !watch.isAlive()) {
        return error;
    }
    if (hasSubList) {
        return openSubList(index, id);
    }
    params["list-id"] = CAttributeValue::fromPlainString(param("list-id"));
    const CObject* first = originalOpener();
    params["original-opener"] = CAttributeValue::fromPlainString(first ? first->fullName() : CString());
    // Closed first, so that the receiver may open another popup, or edit a text, in the window that waited.
    error = closeAll();
    return error || !watch.isAlive() ? error : answer(params);
}

/// Lists that this one is below.
int32_t CPopupList::depth() const {
    int32_t above = 0;
    for (const auto* list = dynamic_cast<CPopupList*>(opener()); list;
         list = dynamic_cast<CPopupList*>(list->opener())) {
        ++above;
    }
    return above;
}

CError* CPopupList::openSubList(int32_t index, const CString& id) {
    hoverRow_ = -1;
    if (depth() + 1 >= kMaxDepth) {
        logLineIn("Too many recursions", fullName());
        return nullptr;
    }
    CAttributeMap params;
    for (const char* name : kHandedOn) {
        params[name] = CAttributeValue::fromString(param(name));
    }
    const CObject* first = originalOpener();
    params["original-opener"] = CAttributeValue::fromString(first ? first->fullName() : CString());
    params["popup-dynamic-list-parent-id"] = CAttributeValue::fromPlainString(id);
    params["is-popup-toggle-always-create"] = CAttributeValue::fromBool(true);
    params["window-alignment"] = CAttributeValue::fromString("right");
    const CViewRect box = wholeRect();
    params["shift-y"] = CAttributeValue::fromReal((rowRect(index).y - box.y) / CApplication::uiScale());
    return openPopup(kTemplate, params);
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
        while (auto* above = dynamic_cast<CPopupList*>(list->opener())) {
            list = above;
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
    auto* above = dynamic_cast<CPopupList*>(opener());
    return above ? above->closeAll() : close();
}

CError* CPopupList::close() {
    CAttributeMap none;
    return static_cast<CViewBaseCtlEvents*>(rootView())->passEvent("close-window", none);
}

}  // namespace tarv
