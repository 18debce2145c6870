// A text view as what an edit box edits.

#include "Core/CNotifyServer.h"
#include "Core/CObjectWatch.h"
#include "UI/Text/CEditBox.h"
#include "UI/Text/CTextView.h"

namespace tarv {

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
    return isEditable(paragraph) ? CEditBox::open(*this, paragraph) : nullptr;
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
