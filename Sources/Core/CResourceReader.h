#pragma once

#include <cstdint>

#include "Core/CStreams.h"

namespace tarv {

/// One embedded byte range: `data` points at a u32 length (little-endian) and that many bytes. A table of rows ends
/// with a pair of null pointers.
struct CResourceRow {
    const unsigned char* data;
    const char* name;
};

/// Process-wide map from name to embedded bytes, filled at application start, read-only afterwards.
class CResourceMap {
public:
    struct CRange {
        const uint8_t* bytes = nullptr;
        uint32_t size = 0;
    };

    /// Enters all rows; of two with one name the later counts.
    static void addRows(const CResourceRow* rows);
    static bool find(const CString& name, CRange& range);
    static void clear();
};

/// Opens what a `file` attribute names.
class CResourceReader {
public:
    /// An embedded range of that name, otherwise a file. The caller owns the stream; on failure it is null.
    [[nodiscard]] static CError* open(const CString& name, CInputStream*& stream);
};

}  // namespace tarv
