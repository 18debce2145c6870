#include "UI/Controls/Presets/CFileDialog.h"

#include <algorithm>
#include <string_view>

#include "Platform/WindowSystem.h"
#include "UI/Windows/CWindow.h"

namespace tarv {

namespace {

constexpr std::u16string_view kForbidden = u"\\/:*?\"<>|";

std::u16string wide(const CString& text) {
    CString copy(text);
    copy.widen();
    return {copy.wideData(), static_cast<size_t>(copy.length())};
}

int32_t lastSeparator(const CString& path) {
    return std::max(path.lastIndexOf('/'), path.lastIndexOf('\\'));
}

bool isBlankOrDot(uint16_t unit) {
    return unit == ' ' || unit == '.';
}

bool isFirstHalf(uint16_t unit) {
    return unit >= 0xd800 && unit < 0xdc00;
}

}  // namespace

bool CFileDialog::ask(const CViewBase& view, const CRequest& request, CString& path, CString& message) {
    CWindowSystem* system = windowSystem();
    const auto* window = dynamic_cast<const CWindow*>(view.window());
    if (!system || !window) {
        return false;
    }
    CFileDialogRequest asked;
    asked.isSave = request.isSave;
    asked.owner = window->handle();
    asked.title = wide(request.title);
    asked.folder = wide(request.folder);
    asked.name = wide(request.name);
    asked.filterName = wide(request.filterName);
    asked.extension = wide(request.extension);
    asked.isAllOffered = true;
    std::u16string chosen;
    std::u16string reason;
    const bool isChosen = system->askForFile(asked, chosen, reason);
    path = CString(chosen.c_str());
    message = CString(reason.c_str());
    return isChosen;
}

CString CFileDialog::fileNameOf(const CString& name) {
    CString result(name);
    for (int32_t i = 0; i < result.length(); ++i) {
        const uint16_t unit = result.at(i);
        if (unit < ' ' || unit == 0x7f || kForbidden.find(unit) != std::u16string_view::npos) {
            result.set(i, '_');
        }
    }
    int32_t length = std::min(result.length(), kMaxName);
    while (length > 0 && (isBlankOrDot(result.at(length - 1)) || isFirstHalf(result.at(length - 1)))) {
        --length;
    }
    return length > 0 ? result.substring(0, length) : CString("_");
}

CString CFileDialog::nameIn(const CString& path) {
    return path.substring(lastSeparator(path) + 1);
}

CString CFileDialog::folderIn(const CString& path) {
    const int32_t end = lastSeparator(path);
    return end < 0 ? CString() : path.substring(0, end);
}

}  // namespace tarv
