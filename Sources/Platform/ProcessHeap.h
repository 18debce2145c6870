#pragma once

#include <cstddef>

namespace tarv {

/// A block of the operating system's heap of this process, at least 8-aligned. Never null: a process without memory
/// ends here. Any thread, also before and after main.
void* processHeapAlloc(size_t size);
/// Null does nothing.
void processHeapFree(void* block);

}  // namespace tarv
