// Replaces a file in one step through a temporary file, on every system.

#include <string>

#include "Platform/File.h"
#include "Platform/Folders.h"
#include "Platform/ThreadId.h"

namespace tarv {

namespace {

constexpr CPlatformError kNothingWritten = ~0u;

// Two programs may write one file at a time: they are two threads of one system.
std::u16string partPath(const char16_t* path) {
    std::u16string part = path;
    part += u'.';
    for (uint64_t id = currentThreadId(); id != 0; id >>= 4) {
        part += u"0123456789abcdef"[id & 15];
    }
    return part + u".part";
}

CPlatformError writeAll(CFile& file, const void* bytes, int64_t count) {
    for (int64_t at = 0; at < count;) {
        int64_t done = count - at;
        if (const CPlatformError error = file.write(static_cast<const uint8_t*>(bytes) + at, done)) {
            return error;
        }
        if (done == 0) {
            return kNothingWritten;
        }
        at += done;
    }
    return 0;
}

}  // namespace

CPlatformError replaceFile(const char16_t* path, const void* bytes, int64_t count) {
    const std::u16string part = partPath(path);
    CFile file;
    if (const CPlatformError error = file.open(part.c_str(), CFileAccess::kRewrite, {false, false})) {
        return error;
    }
    CPlatformError error = writeAll(file, bytes, count);
    const CPlatformError closeError = file.close();
    if (!error) {
        error = closeError ? closeError : moveFileOver(part.c_str(), path);
    }
    if (error) {
        (void)removeFile(part.c_str());
    }
    return error;
}

}  // namespace tarv
