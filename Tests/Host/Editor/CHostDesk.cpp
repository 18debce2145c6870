// What a host's side is on every system.

#include "Tests/Host/Editor/CHostDesk.h"

#include <cctype>

namespace tarv::host {

void CHostDesk::type(const std::string& text) {
    for (const char character : text) {
        const bool isCapital = std::isupper(static_cast<unsigned char>(character)) != 0;
        strike(static_cast<char>(std::tolower(static_cast<unsigned char>(character))),
               isCapital ? CHeldKey::Shift : CHeldKey::None);
    }
}

}  // namespace tarv::host
