// The code page of Windows.

#include "Platform/CodePage.h"

#include <windows.h>

#include <algorithm>
#include <climits>

namespace tarv {

size_t decodeCodePage(const char* bytes, size_t count, char16_t* units) {
    const int limit = static_cast<int>(std::min<size_t>(count, INT_MAX));
    const int written = MultiByteToWideChar(CP_ACP, 0, bytes, limit, reinterpret_cast<wchar_t*>(units), limit);
    return static_cast<size_t>(std::max(written, 0));
}

}  // namespace tarv
