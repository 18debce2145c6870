#include "Audio/Filters/CAudioFilterSerialGenItem.h"

namespace tarv {

CError* CAudioFilterSerialGenItem::init() {
    TARV_TRY(CObject::init());
    const CString& path = getAttrString("fltgen");
    const CAudioFilterGen* found = findObjectOf<CAudioFilterGen>(path);
    const CAudioFilterGen* owner = dynamic_cast<const CAudioFilterGen*>(parent());
    if (!found || (owner && found->uses(*owner))) {
        TARV_FAIL(
            "@tarvstr_CAudioFilterSerialGenItem_init_InvalidFltGen Invalid filter generator with the name '%1' "
            "specified.",
            path);
    }
    if (!readNumbers(getAttrString("adjust"), adjust_)) {
        TARV_FAIL("@tarvstr_CAudioFilterSerialGenItem_init_InvalidAdjust Invalid list of factors '%1' specified.",
                  getAttrString("adjust"));
    }
    generator_ = found;
    return nullptr;
}

}  // namespace tarv
