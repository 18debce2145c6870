// Copies texts into the buffers of a host.

#include "Audio/VST/VstText.h"

#include <algorithm>
#include <cstring>

namespace tarv {

void copyVstText(char* to, const CString& text, int32_t size) {
    const std::string bytes = text.toUtf8();
    size_t count = std::min(bytes.size(), static_cast<size_t>(size - 1));
    while (count > 0 && count < bytes.size() && (static_cast<unsigned char>(bytes[count]) & 0xc0) == 0x80) {
        --count;
    }
    std::memcpy(to, bytes.data(), count);
    to[count] = 0;
}

}  // namespace tarv
