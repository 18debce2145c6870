#include "Audio/Filters/CAudioFilterGenArrayItem.h"

#include "Audio/Filters/CAudioFilterGenArray.h"

namespace tarv {

CError* CAudioFilterGenArrayItem::init() {
    TARV_TRY(CObject::init());
    if (!dynamic_cast<CAudioFilterGenArray*>(parent())) {
        TARV_FAIL("@tarvstr_CAudioFilterGenArrayItem_init_InvalidParent CAudioFilterGenArray class parent expected.");
    }
    return nullptr;
}

CError* CAudioFilterGenArrayItem::initChildren() {
    TARV_TRY(CObject::initChildren());
    const CString& path = getAttrString("fltgen");
    const CAudioFilterGen* found = findObjectOf<CAudioFilterGen>(path);
    if (!found) {
        TARV_FAIL(
            "@tarvstr_CAudioFilterGenArrayItem_initChilds_GenNotFound Audio filter generator with the name '%1' not "
            "found.",
            path);
    }
    bool ok = false;
    const int32_t index = CString::toInt(getAttrString("index"), &ok);
    if (!ok || index < 0 || index > kMaxIndex) {
        TARV_FAIL("@tarvstr_CAudioFilterGenArrayItem_initChilds_InvalidIndex Invalid audio filter index '%1' specified",
                  getAttrString("index"));
    }
    generator_ = found;
    index_ = index;
    return nullptr;
}

}  // namespace tarv
