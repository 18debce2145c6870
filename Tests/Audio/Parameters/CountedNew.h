#pragma once

#include <cstdint>

namespace tarv {

/// Calls of the program's operator new and operator delete on this thread.
struct CNewCounters {
    uint64_t news;
    uint64_t deletes;
};
CNewCounters newCounters();

}  // namespace tarv
