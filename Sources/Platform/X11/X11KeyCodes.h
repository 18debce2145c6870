#pragma once

#include <cstdint>

namespace tarv {

/// The number of CKeyCode's kind of a key that types a symbol (xkb's number), or 0. Letters and figures in both cases.
int32_t keyCodeOfSymbol(uint32_t symbol);

}  // namespace tarv
