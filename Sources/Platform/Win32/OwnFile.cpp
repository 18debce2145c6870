// The path of this library on Windows.

#include "Platform/OwnFile.h"

#include "Platform/Win32/Module.h"

namespace tarv {

CPlatformError ownFilePath(std::u16string& path) {
    constexpr size_t kMostUnits = 1 << 15;  // no path is longer
    std::wstring found(MAX_PATH, L'\0');
    DWORD count = 0;
    // A buffer that is too short is filled to its end.
    while ((count = GetModuleFileNameW(ownModule(), found.data(), static_cast<DWORD>(found.size()))) == found.size() &&
           found.size() < kMostUnits) {
        found.resize(2 * found.size());
    }
    if (count == 0 || count == found.size()) {
        return count == 0 ? GetLastError() : ERROR_INSUFFICIENT_BUFFER;
    }
    path.clear();
    for (DWORD i = 0; i < count; ++i) {
        path += found[i] == L'\\' ? u'/' : static_cast<char16_t>(found[i]);
    }
    return 0;
}

}  // namespace tarv
