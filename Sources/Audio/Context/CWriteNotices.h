#pragma once

#include <cstdint>

#include "Core/CArray.h"

namespace tarv {

struct CContextBuffer;

/// What waits for the next write of a buffer: two bytes that are set to 1 then. A buffer with a notice has kWatched in
/// its state, so that others are not looked up here. Thread: that of the context.
class CWriteNotices {
public:
    /// In place of an earlier notice of the buffer. Allocates beyond kRoom notices.
    void set(const CContextBuffer& buffer, uint8_t* first, uint8_t* second);
    bool has(const CContextBuffer& buffer) const { return find(buffer) >= 0; }
    /// Sets the bytes of the buffer's notice, if there is one, and drops it.
    void deliver(const CContextBuffer& buffer);
    void forget(const CContextBuffer& buffer);

private:
    static constexpr int32_t kRoom = 8;
    struct CNotice {
        const CContextBuffer* buffer;
        uint8_t* bytes[2];
    };

    int32_t find(const CContextBuffer& buffer) const;

    CArray<CNotice, kRoom> notices_;
};

}  // namespace tarv
