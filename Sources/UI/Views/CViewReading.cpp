#include "UI/Views/CViewReading.h"

#include "UI/Views/CInputTarget.h"
#include "UI/Views/CViewBaseCtlEvents.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

namespace {

constexpr std::pair<const char*, CViewRole> kRoles[] = {
    {"button", CViewRole::Button}, {"check-box", CViewRole::CheckBox}, {"edit", CViewRole::Edit},
    {"group", CViewRole::Group},   {"list", CViewRole::List},          {"slider", CViewRole::Slider},
    {"text", CViewRole::Text},     {"window", CViewRole::Window}};

constexpr const char* kMarks[] = {"B", "/B", "C1", "/C1", "C2", "/C2", "SUP", "/SUP"};

bool isMark(const CString& name) {
    for (const char* mark : kMarks) {
        if (name == CString(mark)) {
            return true;
        }
    }
    return name.startsWith("IMG=");
}

/// A narrow text that gets its first wide character widens.
void appendWide(CString& text, uint16_t unit) {
    if (unit > 255 && !text.isWide()) {
        text.widen();
    }
    text.appendChar(unit);
}

void collect(CViewBaseCtlEvents& view, CArray<CViewBaseCtlEvents*, 8>& views) {
    if (!view.isShown()) {
        return;
    }
    if (view.isFocusable()) {
        views.append(&view);
    }
    for (CObject* child : view.children()) {
        auto* below = dynamic_cast<CViewBaseCtlEvents*>(child);
        if (below && below->parentInput() == &view) {
            collect(*below, views);
        }
    }
}

}  // namespace

CViewRole CViewReader::roleNamed(const CString& name) {
    for (const auto& [text, role] : kRoles) {
        if (name == CString(text)) {
            return role;
        }
    }
    return CViewRole::None;
}

uint16_t CViewReader::characterOfMark(const CString& mark) {
    if (!mark.startsWith("U+") || mark.length() < 3 || mark.length() > 6 || mark.at(2) == '-') {
        return 0;
    }
    bool isOk = false;
    const int32_t code = CString::toInt(CString("0x") + mark.substring(2), &isOk);
    return isOk && code >= ' ' ? static_cast<uint16_t>(code) : uint16_t{0};
}

CString CViewReader::withMarks(const CString& typed, uint16_t separator) {
    CString result;
    for (int32_t i = 0; i < typed.length(); ++i) {
        const uint16_t unit = typed.at(i);
        if (unit == '[' || unit == '{' || unit == '}' || (separator != 0 && unit == separator)) {
            result += CString("[U+") + CString::fromInt(unit, 2, 16) + "]";
        } else if (unit >= ' ') {
            appendWide(result, unit);
        }
    }
    return result;
}

CString CViewReader::withoutMarks(const CString& text) {
    CString result;
    for (int32_t i = 0; i < text.length(); ++i) {
        const int32_t end = text.at(i) == '[' ? text.indexOf(']', i) : -1;
        const CString name = end < 0 ? CString() : text.substring(i + 1, end - i - 1);
        const uint16_t character = name == CString("BR") ? uint16_t{' '} : characterOfMark(name);
        if (character != 0) {
            appendWide(result, character);
            i = end;
        } else if (end >= 0 && isMark(name)) {
            i = end;
        } else {
            result.append(text.substring(i, 1));
        }
    }
    return result;
}

CViewReading CViewReader::read(const CViewBaseCtlEvents& view) {
    CViewReading reading;
    reading.name = view.readableName();
    reading.value = view.readableValue();
    reading.role = view.role();
    for (const CViewBaseCtlEvents* from = &view; from && reading.help.isEmpty(); from = from->parentInput()) {
        reading.help = withoutMarks(from->hint());
    }
    reading.rect = view.visibleRect();
    reading.isFocused = view.window() && view.window()->keyFocusView() == &view;
    reading.isDisabled = view.isDisabled();
    return reading;
}

CArray<CViewBaseCtlEvents*, 8> CViewReader::focusableViews(CViewBaseCtlEvents& root) {
    CArray<CViewBaseCtlEvents*, 8> views;
    collect(root, views);
    return views;
}

}  // namespace tarv
