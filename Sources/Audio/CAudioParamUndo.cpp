#include "Audio/CAudioParamUndo.h"

namespace tarv {

CError* CAudioParamUndo::init() {
    TARV_TRY(CObject::init());
    undoCountMax_ = getAttrInt("undo-count-max");
    return nullptr;
}

}  // namespace tarv
