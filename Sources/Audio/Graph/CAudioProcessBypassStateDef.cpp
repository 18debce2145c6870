#include "Audio/Graph/CAudioProcessBypassStateDef.h"

namespace tarv {

CError* CAudioProcessBypassStateDef::init() {
    TARV_TRY(CObject::init());
    bool isNumber = false;
    id_ = CString::toInt(getAttrString("id"), &isNumber);
    if (!isNumber || id_ < 0) {
        TARV_FAIL("@tarvstr_CAudioProcessBypassStateDef_init_InvalidId Invalid identifier '%1' specified.",
                  getAttrString("id"));
    }
    condition_.param = getAttrString("param");
    if (condition_.param.isEmpty()) {
        TARV_FAIL("@tarvstr_CAudioProcessBypassStateDef_init_InvalidParam Invalid parameter name specified.");
    }
    if (!readInterval("range", "value", condition_.interval)) {
        TARV_FAIL(
            "@tarvstr_CAudioProcessBypassStateDef_init_InvalidRange Invalid 'range' attribute value '%1' specified.",
            getAttrString("range"));
    }
    andCondition_.param = getAttrString("and-param");
    if (!readInterval("and-range", "and-value", andCondition_.interval)) {
        TARV_FAIL(
            "@tarvstr_CAudioProcessBypassStateDef_init_InvalidAndRange Invalid 'and-range' attribute value '%1' "
            "specified.",
            getAttrString("and-range"));
    }
    isMultiband_ = getAttrBool("is-multiband");
    isInverted_ = getAttrBool("is-inverted");
    isGroup0_ = getAttrBool("is-group0");
    return nullptr;
}

bool CAudioProcessBypassStateDef::readInterval(const char* rangeName, const char* valueName,
                                               CAudioInterval& interval) const {
    const CString& range = getAttrString(rangeName);
    if (!range.isEmpty()) {
        return CAudioInterval::parse(range, interval);
    }
    const double value = getAttrRealOr(valueName, 1.0);
    interval = {value, value, true, true};
    return true;
}

}  // namespace tarv
