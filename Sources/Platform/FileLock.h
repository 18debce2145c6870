#pragma once

#include "Platform/File.h"

namespace tarv {

/// A file that stands for a lock between programs, and between the threads of one. It stays behind, empty. Ended by
/// release, by the destructor and by the end of the program. Any thread but the audio thread.
class CFileLock {
public:
    /// Waits up to that many milliseconds while somebody else holds it. The path is UTF-16, ended by 0; its folder must
    /// be there. isFileBusy returns whether the failure is that another holder still has it.
    [[nodiscard]] CPlatformError acquire(const char16_t* path, int32_t milliseconds);
    void release();

private:
    CFile file_;
};

}  // namespace tarv
