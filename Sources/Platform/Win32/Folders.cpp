// Folders of the user's data on Windows.

#include "Platform/Folders.h"

#include <windows.h>

#include <shlobj.h>

#include "Platform/Win32/WideText.h"

namespace tarv {

CPlatformError dataRootPath(CDataRoot root, std::u16string& path) {
    const int folder = root == CDataRoot::kUser ? CSIDL_APPDATA : CSIDL_COMMON_APPDATA;
    wchar_t found[MAX_PATH] = {};
    const HRESULT result = SHGetFolderPathW(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, found);
    if (result != S_OK) {
        return static_cast<CPlatformError>(result);
    }
    path.clear();
    for (const wchar_t* unit = found; *unit; ++unit) {
        path += *unit == L'\\' ? u'/' : static_cast<char16_t>(*unit);
    }
    while (!path.empty() && path.back() == u'/') {
        path.pop_back();
    }
    return path.empty() ? ERROR_PATH_NOT_FOUND : 0;
}

bool folderExists(const char16_t* path) {
    const DWORD attributes = GetFileAttributesW(asWide(path));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

CPlatformError makeFolder(const char16_t* path) {
    if (CreateDirectoryW(asWide(path), nullptr)) {
        return 0;
    }
    const CPlatformError error = GetLastError();
    return folderExists(path) ? 0 : error;
}

CPlatformError removeFile(const char16_t* path) {
    return DeleteFileW(asWide(path)) ? 0 : GetLastError();
}

}  // namespace tarv
