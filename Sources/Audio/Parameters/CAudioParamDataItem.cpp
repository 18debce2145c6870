#include "Audio/Parameters/CAudioParamDataItem.h"

namespace tarv {

CAudioParamDataItem* CAudioParamDataItemString::clone() const {
    return new CAudioParamDataItemString(text_);
}

CError* CAudioParamDataItemString::load(CInputStream& stream) {
    TARV_TRY(stream.readString(text_));
    return nullptr;
}

CError* CAudioParamDataItemString::save(COutputStream& stream) const {
    TARV_TRY(stream.writeString(text_));
    return nullptr;
}

}  // namespace tarv
