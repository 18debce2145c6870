#include "CDefinitionNode.h"

namespace tarv {

std::string CDefinitionError::message() const {
    std::string text;
    if (!place.file.empty()) {
        text += place.file + ":";
    }
    if (place.line > 0) {
        text += std::to_string(place.line) + ":" + std::to_string(place.column) + ":";
    }
    return (text.empty() ? text : text + " ") + "error: " + this->text;
}

}  // namespace tarv
