#pragma once

#include <cstddef>
#include <cstdint>

namespace tarv {

/// An unsigned integer out of its bytes, the lowest first.
template <class T>
T fromLittleEndian(const uint8_t* bytes) {
    T value = 0;
    for (size_t i = sizeof(T); i-- > 0;) {
        value = value << 8 | bytes[i];
    }
    return value;
}

/// The bytes of an unsigned integer, the lowest first.
template <class T>
void toLittleEndian(T value, uint8_t* bytes) {
    for (size_t i = 0; i < sizeof(T); ++i) {
        bytes[i] = static_cast<uint8_t>(value >> (8 * i));
    }
}

}  // namespace tarv
