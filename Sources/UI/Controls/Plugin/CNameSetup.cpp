#include "UI/Controls/Plugin/CNameSetup.h"

#include <algorithm>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Core/CObjectWatch.h"
#include "Platform/WindowSystem.h"
#include "UI/Binding/CParamBridge.h"
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
    count_ = getAttrIntOr("name-count", bridge()->elementCount(0));
    TARV_TRY(makeRows(*rows));
    return showNames();
}

CError* CNameSetup::makeRows(CObject& rows) {
    for (int32_t i = 0; i < count_; ++i) {
        CAttributeMap attributes;
        attributes["number"] = CAttributeValue::fromInt(i + 1);
        attributes["max-length"] = CAttributeValue::fromInt(getAttrIntOr("max-length", kDefaultLength));
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

CString CNameSetup::name(int32_t index) const {
    const CObject* found = field(index);
    return found ? trimmed(found->getAttrString("title")) : CString();
}

CString CNameSetup::trimmed(const CString& text) const {
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
    end = std::min(end, first + getAttrIntOr("max-length", kDefaultLength));
    while (end > first && isBlank(printable.at(end - 1))) {
        --end;
    }
    return printable.substring(first, end - first);
}

CError* CNameSetup::showNames() {
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < count_; ++i) {
        CObject* shown = field(i);
        CError* error = shown ? shown->setAttributePlain("title", stored(i)) : nullptr;
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

CError* CNameSetup::accept() {
    const CParamBridge* const names = bridge();
    if (!names || !names->isActive() || !client()) {
        return nullptr;
    }
    // From the first one that differs to the last one.
    int32_t first = 0;
    int32_t end = count_;
    while (first < end && name(first) == stored(first)) {
        ++first;
    }
    while (end > first && name(end - 1) == stored(end - 1)) {
        --end;
    }
    CTextList texts;
    for (int32_t i = first; i < end; ++i) {
        texts.append(name(i));
    }
    return texts.isEmpty() ? nullptr : client()->setTexts(names->getAttrString("param"), 0, first, texts);
}

CError* CNameSetup::copyNames() {
    CString text;
    for (int32_t i = 0; i < count_; ++i) {
        text += i > 0 ? CString("\r\n") + name(i) : name(i);
    }
    if (CWindowSystem* system = windowSystem()) {
        // A clipboard that stays busy is left alone.
        system->setClipboardText(wideOf(text));
    }
    return nullptr;
}

CError* CNameSetup::pasteNames() {
    CWindowSystem* system = windowSystem();
    std::u16string clipboard;
    if (!system || !system->clipboardText(clipboard)) {
        return nullptr;
    }
    CArray<CString, 4> lines = CString(clipboard.c_str()).split('\n', true);
    // The end of the last line begins no further one.
    if (!lines.isEmpty() && trimmed(lines.last()).isEmpty()) {
        lines.removeLast();
    }
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < lines.count() && i < count_; ++i) {
        CObject* shown = field(i);
        CError* error = shown ? shown->setAttributePlain("title", trimmed(lines[i])) : nullptr;
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

CError* CNameSetup::importNames() {
    return client() ? client()->importChannelLabels() : nullptr;
}

}  // namespace tarv
