#include "UI/Binding/CColorSwatch.h"

namespace tarv {

const CString* CColorSwatch::color(int32_t index) const {
    for (const CObject* child : children()) {
        if (child->getAttrBool("is-color") && child->getAttrInt("index") == index) {
            return &child->getAttrString("color");
        }
    }
    return nullptr;
}

}  // namespace tarv
