#pragma once

#include <cstddef>
#include <cstdint>

namespace tarv {

/// 0 for success, otherwise the operating system's number of the failure.
using CPlatformError = uint32_t;

enum class CFileAccess : uint8_t {
    kRead,     ///< an existing file
    kRewrite,  ///< created, or emptied
    kAppend,   ///< made or kept, written behind its end
};

/// What others may do with the file while it is open. Only advisory where the system knows no sharing.
struct CFileSharing {
    bool read;
    bool write;
};

/// An open file of the operating system, unbuffered. Paths are UTF-16 with `/` or `\`, ended by 0. One thread at a
/// time. Positions and counts are bytes; a count of a read or write beyond 1 GiB is done in part.
class CFile {
public:
    CFile() = default;
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;
    /// Closes without a report.
    ~CFile();

    [[nodiscard]] CPlatformError open(const char16_t* path, CFileAccess access, CFileSharing sharing);
    [[nodiscard]] CPlatformError close();
    bool isOpen() const { return handle_ != kNoHandle; }
    /// Gives the number done in `count`; 0 at the end of the file.
    [[nodiscard]] CPlatformError read(void* buffer, int64_t& count);
    [[nodiscard]] CPlatformError write(const void* buffer, int64_t& count);
    [[nodiscard]] CPlatformError getSize(int64_t& size) const;
    [[nodiscard]] CPlatformError getPosition(int64_t& position) const;
    [[nodiscard]] CPlatformError setPosition(int64_t position);
    /// Moves relative to the present position.
    [[nodiscard]] CPlatformError skip(int64_t count);

private:
    static constexpr intptr_t kNoHandle = -1;
    intptr_t handle_ = kNoHandle;
};

/// Whether CFile::open failed because somebody else has the file open and does not share it.
bool isFileBusy(CPlatformError error);
/// Whether CFile::open failed because there is no file of that name.
bool isFileMissing(CPlatformError error);
/// Why a file could not be opened, read, written or moved: one plain sentence without a full stop; null where the
/// number says nothing that a user can act on.
const char* fileErrorText(CPlatformError error);

/// Moves a file to another name in the same folder and over what stands there, in one step: the name leads to the old
/// content or to the new at any moment, also if the program ends meanwhile. Fails if a folder stands there or, on
/// Windows, somebody has that file open.
[[nodiscard]] CPlatformError moveFileOver(const char16_t* from, const char16_t* to);

/// Makes `count` bytes the whole content of a file: written beside it, under its name with the thread's number and
/// ".part" behind, and moved over it. A failure leaves the old content and nothing beside it; a program that is ended
/// in the middle leaves the old content and the part. Nothing waits for the disk itself.
[[nodiscard]] CPlatformError replaceFile(const char16_t* path, const void* bytes, int64_t count);

}  // namespace tarv
