#include "Audio/Context/CWriteNotices.h"

namespace tarv {

int32_t CWriteNotices::find(const CContextBuffer& buffer) const {
    for (int32_t i = 0; i < notices_.count(); ++i) {
        if (notices_[i].buffer == &buffer) {
            return i;
        }
    }
    return -1;
}

void CWriteNotices::set(const CContextBuffer& buffer, uint8_t* first, uint8_t* second) {
    forget(buffer);
    notices_.append({&buffer, {first, second}});
}

void CWriteNotices::deliver(const CContextBuffer& buffer) {
    const int32_t index = find(buffer);
    if (index >= 0) {
        *notices_[index].bytes[0] = 1;
        *notices_[index].bytes[1] = 1;
        notices_.removeAt(index);
    }
}

void CWriteNotices::forget(const CContextBuffer& buffer) {
    const int32_t index = find(buffer);
    if (index >= 0) {
        notices_.removeAt(index);
    }
}

}  // namespace tarv
