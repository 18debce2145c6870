#include "UI/Controls/Plugin/CNameSetup.h"

#include <algorithm>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Audio/Messages/CAudioInterfaceMessage.h"
#include "Core/CObjectWatch.h"
#include "Platform/WindowSystem.h"
#include "UI/Binding/CParamBridge.h"
#include "UI/Text/CEditBox.h"
#include "UI/Views/CViewBase.h"

namespace tarv {

namespace {

constexpr const char* kDefaultClient = "ui.interface-client";
constexpr int32_t kDefaultLength = 12;

bool isBlank(uint16_t unit) {
    return unit <= ' ' || unit == 0xa0;
}

std::u16string wideOf(CString text) {
    text.widen();
    return {text.wideData(), static_cast<size_t>(text.length())};
}

bool isLineEnd(uint16_t unit) {
    return unit == '\n' || unit == '\r' || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

/// The lines of a text. The end of the last line begins no further one.
CTextList linesOf(const CString& text) {
    CTextList lines;
    int32_t first = 0;
    for (int32_t i = 0; i < text.length(); ++i) {
        if (isLineEnd(text.at(i))) {
            lines.append(text.substring(first, i - first));
            const bool isPair = text.at(i) == '\r' && i + 1 < text.length() && text.at(i + 1) == '\n';
            i += isPair ? 1 : 0;
            first = i + 1;
        }
    }
    if (first < text.length()) {
        lines.append(text.substring(first, text.length() - first));
    }
    return lines;
}

}  // namespace

CError* CNameSetup::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CNameSetup::accept>("accept");
    descriptor.addHandler<&CNameSetup::copyNames>("copy-names");
    descriptor.addHandler<&CNameSetup::pasteNames>("paste-names");
    descriptor.addHandler<&CNameSetup::importNames>("import-names");
    descriptor.addHandler<&CNameSetup::showNames>("names-changed");
    return nullptr;
}

CError* CNameSetup::finishInit() {
    TARV_TRY(CObject::finishInit());
    if (!bridge()) {
        TARV_FAIL("@tarvstr_CNameSetup_init_NoBridge Invalid parameter bridge object '%1'.", getAttrString("bridge"));
    }
    auto* rows = findObjectOf<CViewBase>(getAttrString("rows"));
    if (!rows) {
        TARV_FAIL("@tarvstr_CNameSetup_init_NoRows No view '%1' for the names found.", getAttrString("rows"));
    }
    listenObject(bridge()->fullName(), "param-change", "names-changed");
    const int32_t count = getAttrIntOr("name-count", bridge()->elementCount(0));
    for (int32_t i = 0; i < count; ++i) {
        drafts_.append(CDraft());
    }
    TARV_TRY(makeRows(*rows));
    return showNames();
}

CError* CNameSetup::makeRows(CObject& rows) {
    for (int32_t i = 0; i < nameCount(); ++i) {
        CAttributeMap attributes;
        attributes["number"] = CAttributeValue::fromInt(i + 1);
        attributes["max-length"] = CAttributeValue::fromInt(maxLength());
        CObject* row = nullptr;
        const CString name = CString("item") + CString::fromInt(i + 1);
        TARV_TRY(rows.createChild(row, getAttrString("item-tag"), name, true, &attributes));
        if (!field(i)) {
            TARV_FAIL("@tarvstr_CNameSetup_makeRows_NoField No field 'name' in '%1' found.", row->fullName());
        }
    }
    return nullptr;
}

CParamBridge* CNameSetup::bridge() const {
    return findObjectOf<CParamBridge>(getAttrString("bridge"));
}

CAudioInterfaceClient* CNameSetup::client() const {
    const CString& path = getAttrString("interface-client");
    return findObjectOf<CAudioInterfaceClient>(path.isEmpty() ? CString(kDefaultClient) : path);
}

CObject* CNameSetup::field(int32_t index) const {
    const CObject* rows = findObject(getAttrString("rows"));
    const CObject* row = rows ? rows->findChild(CString("item") + CString::fromInt(index + 1)) : nullptr;
    return row ? row->findChild("name") : nullptr;
}

CString CNameSetup::stored(int32_t index) const {
    return bridge() ? bridge()->valueText(0, index, CAudioTextMode::Full) : CString();
}

int32_t CNameSetup::maxLength() const {
    return getAttrIntOr("max-length", kDefaultLength);
}

CString CNameSetup::name(int32_t index) const {
    const CObject* found = field(index);
    return found ? trimmed(found->getAttrString("title"), maxLength()) : CString();
}

CString CNameSetup::wanted(int32_t index) const {
    const CObject* found = field(index);
    return !found || found->getAttrString("title") == stored(index) ? stored(index) : name(index);
}

CString CNameSetup::trimmed(const CString& text, int32_t length) const {
    CString printable;
    printable.widen();
    for (int32_t i = 0; i < text.length(); ++i) {
        printable.appendChar(text.at(i) < ' ' ? uint16_t{' '} : text.at(i));
    }
    int32_t first = 0;
    int32_t end = printable.length();
    while (first < end && isBlank(printable.at(first))) {
        ++first;
    }
    end = std::min(end, first + length);
    while (end > first && isBlank(printable.at(end - 1))) {
        --end;
    }
    return printable.substring(first, end - first);
}

CError* CNameSetup::showNames() {
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < nameCount(); ++i) {
        CObject* shown = field(i);
        CDraft& draft = drafts_[i];
        draft.isChanged = draft.isChanged || (shown && shown->getAttrString("title") != draft.shown);
        if (!shown || draft.isChanged) {
            continue;
        }
        draft.shown = stored(i);
        CError* error = showName(*shown, draft.shown);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

/// A field that is being edited begins anew where nothing has been typed into it.
CError* CNameSetup::showName(CObject& field, const CString& name) {
    auto* text = dynamic_cast<CTextView*>(&field);
    const CEditBox* box = text && field.getAttrString("title") != name ? text->editBox() : nullptr;
    const bool isUntyped = box && box->edit().text() == text->editText(-1);
    const CObjectWatch watch(field);
    CError* error = field.setAttributePlain("title", name);
    return error || !isUntyped || !watch.isAlive() ? error : text->openEdit();
}

CError* CNameSetup::accept() {
    const CParamBridge* const names = bridge();
    if (!names || !names->isActive() || !client()) {
        return nullptr;
    }
    // From the first one that differs to the last one.
    int32_t first = 0;
    int32_t end = nameCount();
    while (first < end && wanted(first) == stored(first)) {
        ++first;
    }
    while (end > first && wanted(end - 1) == stored(end - 1)) {
        --end;
    }
    CTextList texts;
    for (int32_t i = first; i < end; ++i) {
        texts.append(wanted(i));
    }
    CInterfaceUndo undo;
    undo.label = label(first, end);
    // What is accepted is no draft any more.
    for (int32_t i = 0; i < nameCount(); ++i) {
        const CObject* shown = field(i);
        drafts_[i] = {shown ? shown->getAttrString("title") : CString(), CString(), false};
    }
    return texts.isEmpty() ? nullptr : client()->setTexts(names->getAttrString("param"), 0, first, texts, undo);
}

/// That of an import where all that differs is what the host calls its channels, otherwise that of any edit.
CString CNameSetup::label(int32_t first, int32_t end) const {
    for (int32_t i = first; i < end; ++i) {
        const bool isImported = !drafts_[i].imported.isEmpty() && wanted(i) == drafts_[i].imported;
        if (wanted(i) != stored(i) && !isImported) {
            return {};
        }
    }
    return kLabelImport;
}

CError* CNameSetup::copyNames() {
    CString text;
    for (int32_t i = 0; i < nameCount(); ++i) {
        const CString line = trimmed(wanted(i), wanted(i).length());
        text += i > 0 ? CString("\r\n") + line : line;
    }
    if (CWindowSystem* system = windowSystem()) {
        // A clipboard that stays busy is left alone.
        system->setClipboardText(wideOf(text));
    }
    return nullptr;
}

/// What is written into a field loses what nobody could type into it.
CError* CNameSetup::write(int32_t index, const CString& name) {
    CObject* shown = field(index);
    return shown ? shown->setAttributePlain("title", trimmed(CTextEditRules().filter(name), maxLength())) : nullptr;
}

CError* CNameSetup::pasteNames() {
    CWindowSystem* system = windowSystem();
    std::u16string clipboard;
    if (!system || !system->clipboardText(clipboard)) {
        return nullptr;
    }
    const CTextList lines = linesOf(CString(clipboard.c_str()));
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < lines.count() && i < nameCount(); ++i) {
        CError* error = write(i, lines[i]);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

CError* CNameSetup::importNames() {
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < nameCount() && client(); ++i) {
        const CString host = client()->inputLabel(i);
        CError* error = host.isEmpty() ? nullptr : write(i, host);
        if (error || !watch.isAlive()) {
            return error;
        }
        drafts_[i].imported = host.isEmpty() ? CString() : name(i);
    }
    return nullptr;
}

}  // namespace tarv
