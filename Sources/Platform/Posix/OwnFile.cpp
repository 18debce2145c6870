// The path of this library on POSIX systems.

#include "Platform/OwnFile.h"

#include <dlfcn.h>

#include <cerrno>

#include "Platform/Posix/PathText.h"

namespace tarv {

CPlatformError ownFilePath(std::u16string& path) {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&ownFilePath), &info) == 0 || !info.dli_fname) {
        return ENOENT;
    }
    path = pathToUtf16(info.dli_fname);
    return path.empty() ? ENOENT : 0;
}

}  // namespace tarv
