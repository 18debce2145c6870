// Files of Windows.

#include "Platform/File.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "Platform/Win32/WideText.h"

namespace tarv {

namespace {

constexpr int64_t kMaxStep = 1 << 30;

struct CAccessRow {
    DWORD access;
    DWORD disposition;
    DWORD hints;
};

// In the order of CFileAccess.
constexpr CAccessRow kAccessRows[] = {
    {GENERIC_READ, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN},
    {GENERIC_WRITE, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL},
    {GENERIC_WRITE, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL},
};

HANDLE asHandle(intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

CPlatformError moveTo(intptr_t handle, int64_t distance, DWORD origin, int64_t* position) {
    LARGE_INTEGER step;
    LARGE_INTEGER reached;
    step.QuadPart = distance;
    if (!SetFilePointerEx(asHandle(handle), step, &reached, origin)) {
        return GetLastError();
    }
    if (position) {
        *position = reached.QuadPart;
    }
    return 0;
}

}  // namespace

bool isFileBusy(CPlatformError error) {
    return error == ERROR_SHARING_VIOLATION;
}

bool isFileMissing(CPlatformError error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

const char* fileErrorText(CPlatformError error) {
    if (isFileMissing(error)) {
        return "There is no such file or folder";
    }
    switch (error) {
        case ERROR_ACCESS_DENIED:
            return "Access is denied: the file or its folder may be read-only";
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return "There is no room for the file: the disk may be full";
        case ERROR_WRITE_PROTECT:
            return "The disk is write-protected";
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
            return "Another program has the file open";
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
        return ERROR_BUSY;
    }
    const CAccessRow& row = kAccessRows[static_cast<size_t>(access)];
    const DWORD share = (sharing.read ? FILE_SHARE_READ : 0u) | (sharing.write ? FILE_SHARE_WRITE : 0u);
    const HANDLE file = CreateFileW(asWide(path), row.access, share, nullptr, row.disposition, row.hints, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return GetLastError();
    }
    handle_ = reinterpret_cast<intptr_t>(file);
    const CPlatformError error = access == CFileAccess::kAppend ? moveTo(handle_, 0, FILE_END, nullptr) : 0;
    if (error) {
        (void)close();
    }
    return error;
}

CPlatformError CFile::close() {
    return CloseHandle(asHandle(std::exchange(handle_, kNoHandle))) ? 0 : GetLastError();
}

CPlatformError CFile::read(void* buffer, int64_t& count) {
    DWORD done = 0;
    const BOOL isGood =
        ReadFile(asHandle(handle_), buffer, static_cast<DWORD>(std::min(count, kMaxStep)), &done, nullptr);
    count = done;
    return isGood ? 0 : GetLastError();
}

CPlatformError CFile::write(const void* buffer, int64_t& count) {
    DWORD done = 0;
    const BOOL isGood =
        WriteFile(asHandle(handle_), buffer, static_cast<DWORD>(std::min(count, kMaxStep)), &done, nullptr);
    count = done;
    return isGood ? 0 : GetLastError();
}

CPlatformError CFile::getSize(int64_t& size) const {
    LARGE_INTEGER value;
    if (!GetFileSizeEx(asHandle(handle_), &value)) {
        return GetLastError();
    }
    size = value.QuadPart;
    return 0;
}

CPlatformError CFile::getPosition(int64_t& position) const {
    return moveTo(handle_, 0, FILE_CURRENT, &position);
}

CPlatformError CFile::setPosition(int64_t position) {
    return moveTo(handle_, position, FILE_BEGIN, nullptr);
}

CPlatformError CFile::skip(int64_t count) {
    return moveTo(handle_, count, FILE_CURRENT, nullptr);
}

CPlatformError moveFileOver(const char16_t* from, const char16_t* to) {
    return MoveFileExW(asWide(from), asWide(to), MOVEFILE_REPLACE_EXISTING) ? 0 : GetLastError();
}

}  // namespace tarv
