#pragma once

#include <cstdint>

namespace tarv {

/// The step of making a surface that failed, for the message.
enum class CSurfaceStep : uint8_t { None, Context, Section, Selection };

/// Pixels that a window can show: rows from the top without gaps, 32 bits each, blue in the lowest byte. Freed by its
/// destructor. One thread.
class CSurface {
public:
    virtual ~CSurface() = default;
    virtual uint32_t* pixels() = 0;
    virtual int32_t width() const = 0;
    virtual int32_t height() const = 0;
};

}  // namespace tarv
