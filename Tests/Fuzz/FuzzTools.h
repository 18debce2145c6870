#pragma once

#include <cstdlib>
#include <cstring>

#include "Core/CError.h"
#include "Core/CStreams.h"

namespace tarv {

/// True for an error, which ends here; a fuzzer's inputs fail all the time, so nothing is logged.
inline bool isFailure(CError* error) {
    const bool failed = error != nullptr;
    delete error;
    return failed;
}

/// What has to hold for every input: otherwise the fuzzer keeps the input and stops.
inline void must(bool holds) {
    if (!holds)
        std::abort();
}

inline void mustSucceed(CError* error) {
    must(!isFailure(error));
}

inline bool sameBytes(const CByteBuffer& a, const CByteBuffer& b) {
    return a.count() == b.count() && std::memcmp(a.data(), b.data(), static_cast<size_t>(a.count())) == 0;
}

}  // namespace tarv
