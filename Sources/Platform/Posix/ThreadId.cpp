// Thread ids of POSIX systems.

#include "Platform/ThreadId.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace tarv {

uint64_t currentThreadId() {
    return static_cast<uint64_t>(syscall(SYS_gettid));
}

}  // namespace tarv
