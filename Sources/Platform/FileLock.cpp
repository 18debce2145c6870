// A lock between programs, by a file that only one of them can have open.

#include "Platform/FileLock.h"

#include <chrono>
#include <thread>

namespace tarv {

CPlatformError CFileLock::acquire(const char16_t* path, int32_t milliseconds) {
    for (int32_t waited = 0;; ++waited) {
        const CPlatformError error = file_.open(path, CFileAccess::kAppend, {false, false});
        if (!isFileBusy(error) || waited >= milliseconds) {
            return error;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void CFileLock::release() {
    if (file_.isOpen()) {
        (void)file_.close();
    }
}

}  // namespace tarv
