#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace tarv {

// Every machine that this is built for has that order; a loop over the bytes costs ten times what a load does.
static_assert(std::endian::native == std::endian::little);

/// An unsigned integer out of its bytes, the lowest first.
template <class T>
T fromLittleEndian(const uint8_t* bytes) {
    T value;
    std::memcpy(&value, bytes, sizeof(value));
    return value;
}

/// The bytes of an unsigned integer, the lowest first.
template <class T>
void toLittleEndian(T value, uint8_t* bytes) {
    std::memcpy(bytes, &value, sizeof(value));
}

}  // namespace tarv
