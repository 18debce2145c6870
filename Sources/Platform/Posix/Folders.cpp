// Folders of the user's data on POSIX systems.

#include "Platform/Folders.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "Platform/Posix/PathText.h"

namespace tarv {

namespace {

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string userRoot() {
    // A relative path counts as unset, as the base directory specification demands.
    const std::string data = variable("XDG_DATA_HOME");
    if (!data.empty() && data.front() == '/') {
        return data;
    }
    const std::string home = variable("HOME");
    return home.empty() ? home : home + "/.local/share";
}

}  // namespace

CPlatformError dataRootPath(CDataRoot root, std::u16string& path) {
    const std::string forced = variable("TARV_DATA_ROOT");
    std::string found = root == CDataRoot::kUser ? userRoot() : "/var/lib";
    if (!forced.empty()) {
        found = forced + (root == CDataRoot::kUser ? "/user" : "/common");
    }
    while (found.size() > 1 && found.back() == '/') {
        found.pop_back();
    }
    path = pathToUtf16(found.c_str());
    return found.empty() ? ENOENT : 0;
}

bool folderExists(const char16_t* path) {
    struct stat state {};
    return stat(pathToUtf8(path).c_str(), &state) == 0 && S_ISDIR(state.st_mode);
}

CPlatformError makeFolder(const char16_t* path) {
    if (mkdir(pathToUtf8(path).c_str(), 0777) == 0 || folderExists(path)) {
        return 0;
    }
    return static_cast<CPlatformError>(errno);
}

CPlatformError removeFile(const char16_t* path) {
    return unlink(pathToUtf8(path).c_str()) == 0 ? 0 : static_cast<CPlatformError>(errno);
}

}  // namespace tarv
