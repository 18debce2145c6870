#pragma once

#include <string>

namespace tarv {

/// As CWindowSystem's: three tries while another program keeps the clipboard.
bool readClipboard(std::u16string& text);
bool writeClipboard(const std::u16string& text);

}  // namespace tarv
