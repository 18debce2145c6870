#pragma once

namespace tarv {

/// The system's type for the same units.
inline const wchar_t* asWide(const char16_t* text) {
    return reinterpret_cast<const wchar_t*>(text);
}

}  // namespace tarv
