// Makes a folder with all folders above it, on every system.

#include "Platform/Folders.h"

namespace tarv {

namespace {

bool isSlash(char16_t unit) {
    return unit == u'/' || unit == u'\\';
}

}  // namespace

CPlatformError makeFolders(const char16_t* path) {
    std::u16string level;
    for (; *path; ++path) {
        const bool isLevelEnd = isSlash(*path) && !level.empty() && !isSlash(level.back()) && level.back() != u':';
        if (isLevelEnd && !folderExists(level.c_str())) {
            if (const CPlatformError error = makeFolder(level.c_str())) {
                return error;
            }
        }
        level += *path;
    }
    return folderExists(level.c_str()) ? 0 : makeFolder(level.c_str());
}

}  // namespace tarv
