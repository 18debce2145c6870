#include "UI/Resources/CFontObject.h"

#include <algorithm>
#include <memory>

namespace tarv {

const char* const CFontObject::kStyles[kStyleCount] = {"regular", "bold", "italic", "bold-italic", "superscript"};

CFontObject::~CFontObject() {
    for (CFont* font : fonts_) {
        delete font;
    }
}

int32_t CFontObject::styleIndex(const CString& style) {
    const auto* found = std::find_if(kStyles, kStyles + kStyleCount, [&](const char* name) { return style == name; });
    return static_cast<int32_t>(found - kStyles);
}

CError* CFontObject::finishInit() {
    TARV_TRY(CObject::finishInit());
    for (const CObject* child : children()) {
        if (child->getAttrBool("is-font-style")) {
            TARV_TRY(loadStyle(*child));
        }
    }
    return nullptr;
}

CError* CFontObject::loadStyle(const CObject& child) {
    const int32_t index = styleIndex(child.name());
    if (index == kStyleCount) {
        TARV_FAIL("@tarvstr_CFontObject_initChilds_UnknownFontStyle Unknown font style '%1'.", child.name());
    }
    auto font = std::make_unique<CFont>();
    TARV_TRY(loadDataSet(*font, child.getAttrString("file")));
    delete fonts_[index];
    fonts_[index] = font.release();
    return nullptr;
}

const CFont* CFontObject::findStyle(const CString& style) const {
    const int32_t index = styleIndex(style);
    return index == kStyleCount ? nullptr : fonts_[index];
}

}  // namespace tarv
