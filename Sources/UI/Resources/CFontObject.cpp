#include "UI/Resources/CFontObject.h"

#include <algorithm>

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
            TARV_TRY(makeStyle(*child));
        }
    }
    TARV_TRY(loadWithOthers());
    return nullptr;
}

CError* CFontObject::makeStyle(const CObject& child) {
    const int32_t index = styleIndex(child.name());
    if (index == kStyleCount) {
        TARV_FAIL("@tarvstr_CFontObject_initChilds_UnknownFontStyle Unknown font style '%1'.", child.name());
    }
    files_[index] = child.getAttrString("file");
    TARV_TRY(requireDataSet(files_[index]));
    if (!fonts_[index]) {
        fonts_[index] = new CFont;
    }
    return nullptr;
}

CError* CFontObject::loadAt(double scale) {
    for (int32_t i = 0; i < kStyleCount; ++i) {
        if (fonts_[i]) {
            TARV_TRY(loadDataSet(*fonts_[i], files_[i], scale));
        }
    }
    return nullptr;
}

const CFont* CFontObject::findStyle(const CString& style) const {
    const int32_t index = styleIndex(style);
    return index == kStyleCount ? nullptr : fonts_[index];
}

}  // namespace tarv
