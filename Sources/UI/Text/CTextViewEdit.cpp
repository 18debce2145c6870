// A text view as what an edit box edits.

#include <cmath>

#include "Core/CNotifyServer.h"
#include "Core/CObjectWatch.h"
#include "Platform/WindowSystem.h"
#include "UI/Text/CEditBox.h"
#include "UI/Text/CTextView.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

namespace {

double realOf(const CAttributeMap& params, const char* name) {
    const auto found = params.find(name);
    return found == params.end() ? 0.0 : found->second.asReal();
}

}  // namespace

bool CTextView::isEditable(int32_t paragraph) const {
    return isList_ == (paragraph >= 0) && paragraph < paragraphCount() && !getAttrBoolOr("is-read-only", true);
}

CViewRole CTextView::role() const {
    const CViewRole named = CViewReader::roleNamed(getAttrString("role"));
    if (named != CViewRole::None) {
        return named;
    }
    return isList_ ? CViewRole::List : isEditable(-1) ? CViewRole::Edit : CViewRole::Text;
}

CString CTextView::readableName() const {
    return isList_ || isEditable(-1) ? nameWithoutTitle() : CView::readableName();
}

CString CTextView::readableValue() const {
    return isList_ ? paragraphText(selected_) : isEditable(-1) ? editText(-1) : CString();
}

CError* CTextView::openEdit(int32_t paragraph) {
    endWaiting();
    bool isAllowed = isEditable(paragraph);
    if (isAllowed && paragraph >= 0) {
        const CObjectWatch watch(*this);
        CError* error = mayEditRow(paragraph, isAllowed);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return isAllowed ? CEditBox::open(*this, paragraph) : nullptr;
}

CError* CTextView::mayEditRow(int32_t row, bool& isAllowed) {
    CAttributeMap params;
    params["index"] = CAttributeValue::fromInt(row);
    params["text"] = CAttributeValue::fromPlainString(paragraphText(row));
    const CObjectWatch watch(*this);
    CError* error = inputEvent("paragraph-edit-query", params);
    if (!error && watch.isAlive()) {
        const auto refused = params.find("is-refused");
        isAllowed = (refused == params.end() || !refused->second.asBool()) && isEditable(row);
    }
    return error;
}

void CTextView::waitForEdit(int32_t row, const CAttributeMap& params) {
    endWaiting();
    if (!isDropDown_ && isEditable(row)) {
        waiting_ = {row, realOf(params, "actual-x"), realOf(params, "actual-y")};
    }
}

void CTextView::beginWaiting() {
    constexpr double kTickSeconds = 0.05;  // a tick may be that old
    if (waiting_.row >= 0 && window() && windowSystem()) {
        waiting_.due = window()->now() + windowSystem()->doubleClickSeconds() + kTickSeconds;
        startTimer();
    }
}

void CTextView::endWaitingIfMoved(const CAttributeMap& params) {
    constexpr double kPixels = 4.0;
    if (std::abs(realOf(params, "actual-x") - waiting_.x) > kPixels ||
        std::abs(realOf(params, "actual-y") - waiting_.y) > kPixels) {
        endWaiting();
    }
}

CError* CTextView::editWhenDue(double time) {
    if (!isWaiting() || time < waiting_.due) {
        return nullptr;
    }
    const int32_t row = waiting_.row;
    endWaiting();
    return row == selected_ ? openEdit(row) : nullptr;
}

/// The handler of `edit-text`.
CError* CTextView::editOnEvent(CAttributeMap& params) {
    const auto index = params.find("index");
    const int32_t row = index == params.end() ? selected_ : index->second.asInt();
    return openEdit(isList_ ? row : -1);
}

CString CTextView::editText(int32_t paragraph) const {
    return paragraph >= 0 ? paragraphText(paragraph) : source_.plainText(0, source_.count());
}

CTextEditRules CTextView::editRules() const {
    CTextEditRules rules;
    rules.acceptChars = getAttrString("accept-chars");
    rules.maxLength = getAttrInt("max-paragraph-length");
    rules.isAcceptEnter = getAttrBool("is-accept-enter");
    rules.isAcceptTab = getAttrBool("is-accept-tab");
    return rules;
}

CError* CTextView::acceptText(int32_t paragraph, const CString& text, bool&) {
    if (paragraph < 0) {
        const CObjectWatch watch(*this);
        CError* error = setAttributePlain("title", text);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return sendEditEvent("paragraph-text-changed", paragraph, text);
}

CError* CTextView::editTextChanged(const CString& text) {
    return sendEditEvent("editbox-text-changed", editBox_ ? editBox_->paragraph() : -1, text);
}

CError* CTextView::sendEditEvent(const char* name, int32_t paragraph, const CString& text) {
    if (!hasCommandOn(name) && (!notifyServer() || !notifyServer()->hasListeners(fullName(), name))) {
        return nullptr;
    }
    CAttributeMap params;
    params["index"] = CAttributeValue::fromInt(paragraph < 0 ? 0 : paragraph);
    params["text"] = CAttributeValue::fromPlainString(text);
    return inputEvent(name, params);
}

}  // namespace tarv
