// Nested popup lists: which list is open below which row, who has the keys, and what they do.

#include <algorithm>
#include <utility>

#include "Core/CApplication.h"
#include "Core/CObjectWatch.h"
#include "Core/Log.h"
#include "Platform/Keyboard.h"
#include "UI/Text/CPopupList.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

namespace {

/// Parameters that a list hands on to the list below one of its rows.
constexpr const char* kHandedOn[] = {"popup-text-source", "list-id", "result-target", "result-target-index-attr",
                                     "result-target-redirect-attr"};

uint16_t lowered(uint16_t unit) {
    return unit >= 'A' && unit <= 'Z' ? static_cast<uint16_t>(unit + ('a' - 'A')) : unit;
}

bool beginsWith(const CString& text, const CString& typed) {
    for (int32_t i = 0; i < typed.length(); ++i) {
        if (i >= text.length() || lowered(text.at(i)) != lowered(typed.at(i))) {
            return false;
        }
    }
    return true;
}

}  // namespace

CPopupList* CPopupList::above() const {
    return dynamic_cast<CPopupList*>(opener());
}

/// The list that is open below a row; the last one made, since a former one may still be closing.
CPopupList* CPopupList::below() const {
    const CObject* const windows = openRow_ < 0 ? nullptr : rootView()->parent();
    for (int32_t i = windows ? windows->children().count() - 1 : -1; i >= 0; --i) {
        for (CObject* child : windows->children()[i]->children()) {
            auto* list = dynamic_cast<CPopupList*>(child);
            if (list && list != this && list->opener() == this) {
                return list;
            }
        }
    }
    return nullptr;
}

/// Lists that this one is below.
int32_t CPopupList::depth() const {
    int32_t count = 0;
    for (const CPopupList* list = above(); list; list = list->above()) {
        ++count;
    }
    return count;
}

bool CPopupList::hasSubList(int32_t index) const {
    const CObject* const found = row(index);
    return found && found->getAttrBool("has-sub-list");
}

CError* CPopupList::openBelow(int32_t index, const CString& id, bool isByHover) {
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
    // The activation stays with the first list, so that the lists close together.
    params["is-helper-window"] = CAttributeValue::fromBool(true);
    params["window-alignment"] = CAttributeValue::fromString("right");
    params["selected-item"] = CAttributeValue::fromString(isKeyed_ ? "0" : "");
    const CViewRect box = wholeRect();
    params["shift-y"] = CAttributeValue::fromReal((rowRect(index).y - box.y) / CApplication::uiScale());
    openRow_ = -1;
    areKeysBelow_ = false;
    const CObjectWatch watch(*this);
    CError* error = open(*rootView(), *this, params);
    if (!error && watch.isAlive()) {
        ++belowCount_;
        openRow_ = index;
        areKeysBelow_ = !isByHover;
    }
    return error;
}

/// The list below the selected row is open already.
CError* CPopupList::enterBelow() {
    CPopupList* const list = below();
    list->takeKeys();
    return isKeyed_ && list->selectedParagraph() < 0 && list->paragraphCount() > 0 ? list->selectByUser(0) : nullptr;
}

CError* CPopupList::closeBelow() {
    CPopupList* const list = below();
    openRow_ = -1;
    areKeysBelow_ = false;
    return list ? list->close() : nullptr;
}

/// The keys come to this list, by way of those above.
void CPopupList::takeKeys() {
    areKeysBelow_ = false;
    for (CPopupList* list = above(); list; list = list->above()) {
        list->areKeysBelow_ = true;
    }
}

/// The pointer is on another row, or on none.
CError* CPopupList::noteHover() {
    if (hoveredParagraph() == lastHover_) {
        return nullptr;
    }
    lastHover_ = hoveredParagraph();
    hoverRow_ = -1;
    if (lastHover_ < 0) {
        // The row whose list is open stays the selected one.
        return openRow_ >= 0 ? selectByUser(openRow_) : nullptr;
    }
    takeKeys();
    if (lastHover_ != openRow_ && (openRow_ >= 0 || hasSubList(lastHover_))) {
        hoverRow_ = lastHover_;
        hoverSince_ = now();
        startTimer();
    }
    return nullptr;
}

CError* CPopupList::workHovered(double now) {
    if (!isHovering() || now - hoverSince_ < kHoverSeconds) {
        return nullptr;
    }
    const int32_t index = std::exchange(hoverRow_, -1);
    return hasSubList(index) ? openBelow(index, CString(row(index)->getAttrString("id")), true) : closeBelow();
}

CError* CPopupList::mouseEnter(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = CTextView::mouseEnter(params);
    return error || !watch.isAlive() ? error : noteHover();
}

CError* CPopupList::mouseMove(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = CTextView::mouseMove(params);
    return error || !watch.isAlive() ? error : noteHover();
}

CError* CPopupList::mouseExit(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = CTextView::mouseExit(params);
    return error || !watch.isAlive() ? error : noteHover();
}

/// The list below stands beside a row that has moved.
CError* CPopupList::mouseWheel(CAttributeMap& params) {
    // A list with room for all its rows has no offset.
    const auto offset = [this] { return area().isScrollable() ? area().value(CViewCell::OffsetY) : 0.0F; };
    const float before = offset();
    const CObjectWatch watch(*this);
    CError* error = CTextView::mouseWheel(params);
    const bool isScrolled = !error && watch.isAlive() && offset() != before;
    return isScrolled ? closeBelow() : error;
}

CError* CPopupList::inputEvent(const CString& name, CAttributeMap& params) {
    if (name == CString("popup-closed") && --belowCount_ == 0) {
        openRow_ = -1;
        areKeysBelow_ = false;
    }
    return CTextView::inputEvent(name, params);
}

CError* CPopupList::keyPress(CAttributeMap& params) {
    if (CPopupList* const list = areKeysBelow_ ? below() : nullptr) {
        return list->keyPress(params);
    }
    const CObjectWatch watch(*this);
    isKeyed_ = true;
    CError* error = CTextView::keyPress(params);
    if (!error && watch.isAlive() && !isHandled(params)) {
        error = workKey(params);
    }
    if (!watch.isAlive()) {
        return error;
    }
    isKeyed_ = false;
    return !error && openRow_ >= 0 && selectedParagraph() != openRow_ ? closeBelow() : error;
}

CError* CPopupList::workKey(CAttributeMap& params) {
    const int32_t key = params["keycode"].asInt();
    const int32_t index = selectedParagraph();
    if ((key == kKeyLeft || key == kKeyEscape) && above()) {
        setHandled(params);
        return above()->closeBelow();
    }
    if (row(index) && (key == kKeySpace || (key == kKeyRight && hasSubList(index)))) {
        setHandled(params);
        return paragraphChosen(index);
    }
    const CString characters = params["characters"].asString();
    const bool isPlain = !params["is-ctrl"].asBool() && !params["is-alt"].asBool();
    if (isPlain && characters.length() == 1 && characters.at(0) > ' ') {
        setHandled(params);
        return typeAhead(characters);
    }
    return nullptr;
}

/// To the row that begins with all that was typed; where there is none, to the next one of the last character.
CError* CPopupList::typeAhead(const CString& character) {
    const bool isGoingOn = !typed_.isEmpty() && now() - typedAt_ < kTypingSeconds;
    typed_ = isGoingOn ? typed_ + character : character;
    typedAt_ = now();
    int32_t found = isGoingOn ? rowBeginningWith(typed_, std::max(selectedParagraph(), 0)) : -1;
    if (found < 0) {
        typed_ = character;
        found = rowBeginningWith(character, selectedParagraph() + 1);
    }
    if (found < 0) {
        return nullptr;
    }
    scrollToParagraph(found);
    return selectByUser(found);
}

/// From the first one on, around the end; -1 for none.
int32_t CPopupList::rowBeginningWith(const CString& text, int32_t first) const {
    for (int32_t i = 0; i < paragraphCount(); ++i) {
        const int32_t index = (first + i) % paragraphCount();
        if (beginsWith(paragraphText(index), text)) {
            return index;
        }
    }
    return -1;
}

}  // namespace tarv
