// The file dialogs of Windows.

#include "Platform/Win32/FileDialog.h"

#include <commdlg.h>
#include <shlobj.h>

#include <algorithm>
#include <vector>

#include "Platform/Win32/COpenDialog.h"
#include "Platform/Win32/WideText.h"

namespace tarv {

namespace {

constexpr size_t kMostUnits = size_t{1} << 15;  // no path is longer

/// The common dialogs may move the current folder of the process, whatever flags they get.
class CCurrentFolderScope {
public:
    CCurrentFolderScope() : folder_(kMostUnits, L'\0') {
        GetCurrentDirectoryW(static_cast<DWORD>(folder_.size()), folder_.data());
    }
    ~CCurrentFolderScope() { SetCurrentDirectoryW(folder_.c_str()); }
    CCurrentFolderScope(const CCurrentFolderScope&) = delete;
    CCurrentFolderScope& operator=(const CCurrentFolderScope&) = delete;

private:
    std::wstring folder_;
};

std::wstring systemPath(const std::u16string& path) {
    std::wstring text(path.begin(), path.end());
    std::replace(text.begin(), text.end(), L'/', L'\\');
    return text;
}

std::u16string ownPath(const wchar_t* path) {
    std::u16string text;
    for (; *path; ++path) {
        text += *path == L'\\' ? u'/' : static_cast<char16_t>(*path);
    }
    return text;
}

/// Pairs of a name and a pattern, each with a 0 behind it, and another 0 at the end.
std::wstring filterOf(const CFileDialogRequest& request) {
    const std::wstring extension(request.extension.begin(), request.extension.end());
    if (extension.empty()) {
        return {};
    }
    std::wstring filter(request.filterName.begin(), request.filterName.end());
    filter += L" (*." + extension + L")";
    filter += L'\0';
    filter += L"*." + extension;
    filter += L'\0';
    if (request.isAllOffered) {
        filter += L"All files (*.*)";
        filter += L'\0';
        filter += L"*.*";
        filter += L'\0';
    }
    return filter;
}

bool askForName(const CFileDialogRequest& request, HWND owner, std::u16string& path, std::u16string& message) {
    std::wstring file(request.name.begin(), request.name.end());
    file.resize(std::min<size_t>(file.size(), MAX_PATH));
    file.resize(kMostUnits);
    const std::wstring folder = systemPath(request.folder);
    const std::wstring filter = filterOf(request);
    OPENFILENAMEW ask{};
    ask.lStructSize = sizeof(ask);
    ask.hwndOwner = owner;
    ask.lpstrFilter = filter.empty() ? nullptr : filter.c_str();
    ask.lpstrFile = file.data();
    ask.nMaxFile = static_cast<DWORD>(file.size());
    ask.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
    ask.lpstrTitle = request.title.empty() ? nullptr : asWide(request.title.c_str());
    ask.lpstrDefExt = request.extension.empty() ? nullptr : asWide(request.extension.c_str());
    ask.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST |
                (request.isSave ? OFN_OVERWRITEPROMPT | OFN_NOREADONLYRETURN : OFN_FILEMUSTEXIST);
    const CCurrentFolderScope scope;
    if (request.isSave ? GetSaveFileNameW(&ask) : GetOpenFileNameW(&ask)) {
        path = ownPath(file.c_str());
        return true;
    }
    message = fileDialogMessage(CommDlgExtendedError());
    return false;
}

int CALLBACK beginInFolder(HWND dialog, UINT message, LPARAM, LPARAM folder) {
    if (message == BFFM_INITIALIZED && *reinterpret_cast<const wchar_t*>(folder)) {
        SendMessageW(dialog, BFFM_SETSELECTIONW, TRUE, folder);
    }
    return 0;
}

// The older form of the dialog: the newer one asks for a mode of COM that the thread may not have, and it is the
// host's.
bool askForFolder(const CFileDialogRequest& request, HWND owner, std::u16string& path, std::u16string& message) {
    const std::wstring folder = systemPath(request.folder);
    wchar_t found[MAX_PATH] = {};
    BROWSEINFOW ask{};
    ask.hwndOwner = owner;
    ask.pszDisplayName = found;
    ask.lpszTitle = asWide(request.title.c_str());
    ask.ulFlags = BIF_RETURNONLYFSDIRS;
    ask.lpfn = &beginInFolder;
    ask.lParam = reinterpret_cast<LPARAM>(folder.c_str());
    const CCurrentFolderScope scope;
    const LPITEMIDLIST chosen = SHBrowseForFolderW(&ask);
    if (!chosen) {
        return false;
    }
    const bool isPath = SHGetPathFromIDListW(chosen, found) != 0;
    CoTaskMemFree(chosen);
    if (isPath) {
        path = ownPath(found);
    } else {
        message = u"What was chosen is no folder of a disk.";
    }
    return isPath;
}

}  // namespace

std::u16string fileDialogMessage(CPlatformError number) {
    if (number == 0) {
        return {};
    }
    const std::string digits = std::to_string(number);
    return u"The file dialog could not be shown: error " + std::u16string(digits.begin(), digits.end()) + u".";
}

bool showFileDialog(const CFileDialogRequest& request, std::u16string& path, std::u16string& message) {
    path.clear();
    message.clear();
    const HWND window = reinterpret_cast<HWND>(request.owner);
    // A child cannot own; the dialog disables the host's window, as the host's own dialogs do.
    const HWND root = window ? GetAncestor(window, GA_ROOT) : nullptr;
    const COpenDialog open(window);
    return request.isFolder ? askForFolder(request, root, path, message) : askForName(request, root, path, message);
}

void closeFileDialogs(HWND owner) {
    COpenDialog::cancelAll(owner);
}

}  // namespace tarv
