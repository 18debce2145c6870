// Files of POSIX systems.

#include "Platform/File.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "Platform/Posix/PathText.h"

namespace tarv {

namespace {

constexpr int64_t kMaxStep = 1 << 30;

CPlatformError lastError() {
    return static_cast<CPlatformError>(errno);
}

/// Holds the file against others as far as the sharing forbids them.
bool lockFor(int file, CFileAccess access, CFileSharing sharing) {
    if (sharing.write) {
        return true;
    }
    const bool isShared = sharing.read && access == CFileAccess::kRead;
    return flock(file, (isShared ? LOCK_SH : LOCK_EX) | LOCK_NB) == 0;
}

}  // namespace

bool isFileBusy(CPlatformError error) {
    return error == EWOULDBLOCK;
}

bool isFileMissing(CPlatformError error) {
    return error == ENOENT || error == ENOTDIR;
}

const char* fileErrorText(CPlatformError error) {
    if (isFileMissing(error)) {
        return "There is no such file or folder";
    }
    switch (error) {
        case EACCES:
        case EPERM:
            return "Access is denied: the file or its folder may be read-only";
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return "There is no room for the file: the disk may be full";
        case EROFS:
            return "The disk is write-protected";
        case EWOULDBLOCK:
        case ETXTBSY:
            return "Another program has the file open";
        case EISDIR:
            return "A folder has that name";
        default:
            return nullptr;
    }
}

CFile::~CFile() {
    if (isOpen()) {
        (void)close();
    }
}

CPlatformError CFile::open(const char16_t* path, CFileAccess access, CFileSharing sharing) {
    if (isOpen()) {
        return EBUSY;
    }
    const int mode = access == CFileAccess::kRead ? O_RDONLY : O_WRONLY | O_CREAT;
    const int file = ::open(pathToUtf8(path).c_str(), mode | O_CLOEXEC, 0666);
    if (file < 0) {
        return lastError();
    }
    struct stat state {};
    // Emptied only behind the lock, so that a file in another's hands keeps its content.
    const bool isGood = lockFor(file, access, sharing) && fstat(file, &state) == 0 &&
                        (access != CFileAccess::kRewrite || ftruncate(file, 0) == 0) &&
                        (access != CFileAccess::kAppend || lseek(file, 0, SEEK_END) >= 0);
    const CPlatformError error = !isGood ? lastError() : S_ISDIR(state.st_mode) ? EISDIR : 0;
    if (error) {
        ::close(file);
        return error;
    }
    handle_ = file;
    return 0;
}

CPlatformError CFile::close() {
    return ::close(static_cast<int>(std::exchange(handle_, kNoHandle))) == 0 ? 0 : lastError();
}

CPlatformError CFile::read(void* buffer, int64_t& count) {
    const ssize_t done = ::read(static_cast<int>(handle_), buffer, static_cast<size_t>(std::min(count, kMaxStep)));
    count = std::max<ssize_t>(done, 0);
    return done < 0 ? lastError() : 0;
}

CPlatformError CFile::write(const void* buffer, int64_t& count) {
    const ssize_t done = ::write(static_cast<int>(handle_), buffer, static_cast<size_t>(std::min(count, kMaxStep)));
    count = std::max<ssize_t>(done, 0);
    return done < 0 ? lastError() : 0;
}

CPlatformError CFile::getSize(int64_t& size) const {
    struct stat state {};
    if (fstat(static_cast<int>(handle_), &state) != 0) {
        return lastError();
    }
    size = state.st_size;
    return 0;
}

CPlatformError CFile::getPosition(int64_t& position) const {
    position = lseek(static_cast<int>(handle_), 0, SEEK_CUR);
    return position < 0 ? lastError() : 0;
}

CPlatformError CFile::setPosition(int64_t position) {
    return lseek(static_cast<int>(handle_), position, SEEK_SET) < 0 ? lastError() : 0;
}

CPlatformError CFile::skip(int64_t count) {
    return lseek(static_cast<int>(handle_), count, SEEK_CUR) < 0 ? lastError() : 0;
}

CPlatformError moveFileOver(const char16_t* from, const char16_t* to) {
    return rename(pathToUtf8(from).c_str(), pathToUtf8(to).c_str()) == 0 ? 0 : lastError();
}

}  // namespace tarv
