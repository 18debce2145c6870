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

/// Reads what a `file` attribute names: the embedded range of that name, otherwise the file. One thread at a time.
class CResourceReader : public CPosInputStream {
public:
    CResourceReader() = default;
    ~CResourceReader() override;
    /// Once. A name that is neither fails in the file reader's words.
    [[nodiscard]] CError* open(const CString& name);
    [[nodiscard]] CError* close() override;
    [[nodiscard]] CError* consume(int64_t count) override;
    [[nodiscard]] CError* read(void* buffer, int64_t count) override;
    [[nodiscard]] CError* readStreamed(void* buffer, int64_t& count) override;
    [[nodiscard]] CError* getPosition(int64_t& position) override;
    [[nodiscard]] CError* setPosition(int64_t position) override;
    [[nodiscard]] CError* getSize(int64_t& size) override;

private:
    [[nodiscard]] CError* requireOpen() const;

    CPosInputStream* source_ = nullptr;
};

}  // namespace tarv
