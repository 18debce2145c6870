#include "Audio/Graph/CAudioProcessLinkDef.h"

#include "Audio/Graph/CAudioProcessDef.h"

namespace tarv {

CError* CAudioProcessLinkDef::init() {
    TARV_TRY(CObject::init());
    const CString& src = getAttrString("src");
    if (src.isEmpty()) {
        TARV_FAIL("@tarvstr_CAudioProcessLinkDef_init_NoSrc No 'src' attribute defined.");
    }
    const CString& dst = getAttrString("dst");
    if (dst.isEmpty()) {
        TARV_FAIL("@tarvstr_CAudioProcessLinkDef_init_NoDst No 'dst' attribute defined.");
    }
    if (!parseEnd(src, srcName_, src_.port)) {
        TARV_FAIL(
            "@tarvstr_CAudioProcessLinkDef_init_SrcPortError Invalid port in the 'src' attribute value '%1' specified.",
            src);
    }
    if (!parseEnd(dst, dstName_, dst_.port)) {
        TARV_FAIL(
            "@tarvstr_CAudioProcessLinkDef_init_DstPortError Invalid port in the 'dst' attribute value '%1' specified.",
            dst);
    }
    stateId_ = getAttrIntOr("state-id", -1);
    if (stateId_ < -1) {
        TARV_FAIL("@tarvstr_CAudioProcessLinkDef_init_StateError Invalid state identifier '%1' specified.",
                  getAttrString("state-id"));
    }
    return nullptr;
}

CError* CAudioProcessLinkDef::resolve(const CAudioProcessDef& owner) {
    if (!findEnd(owner, srcName_, src_)) {
        TARV_FAIL(
            "@tarvstr_CAudioProcessLinkDef_init_SrcNameError Invalid process in the 'src' attribute value '%1' "
            "specified.",
            getAttrString("src"));
    }
    if (!findEnd(owner, dstName_, dst_)) {
        TARV_FAIL(
            "@tarvstr_CAudioProcessLinkDef_init_DstNameError Invalid process in the 'dst' attribute value '%1' "
            "specified.",
            getAttrString("dst"));
    }
    if (owner.isChained(src_, dst_)) {
        TARV_FAIL("@tarvstr_CAudioProcessLinkDef_init_DupeLink Link from '%1' to '%2' repeats an automatic one.",
                  getAttrString("src"), getAttrString("dst"));
    }
    for (const CString& text : getAttrString("bypass-state-id").split(' ')) {
        bool ok = false;
        const int32_t id = CString::toInt(text, &ok);
        if (ok && owner.findBypassState(id) != nullptr) {
            bypassStateIds_.append(id);
        }
    }
    return nullptr;
}

bool CAudioProcessLinkDef::parseEnd(const CString& text, CString& name, int32_t& port) {
    const int32_t slash = text.indexOf('/');
    if (slash < 0) {
        name = text;
        port = 0;
        return true;
    }
    name = text.substring(0, slash);
    bool ok = false;
    port = CString::toInt(text.substring(slash + 1), &ok);
    return ok && port >= 0 && port <= kMaxPort;
}

bool CAudioProcessLinkDef::findEnd(const CAudioProcessDef& owner, const CString& name, CAudioLinkEnd& end) {
    if (name == "*") {
        return true;
    }
    end.child = owner.findChildDef(name);
    return end.child != nullptr;
}

bool CAudioInterval::parse(const CString& text, CAudioInterval& interval) {
    const int32_t length = text.length();
    if (length < 2) {
        return false;
    }
    const uint16_t first = text.at(0);
    const uint16_t last = text.at(length - 1);
    if ((first != '[' && first != '(') || (last != ']' && last != ')')) {
        return false;
    }
    const CArray<CString, 4> limits = text.substring(1, length - 2).split(';', true);
    if (limits.count() != 2 || limits[0].isEmpty() || limits[1].isEmpty()) {
        return false;
    }
    bool okLow = false;
    bool okHigh = false;
    CAudioInterval parsed;
    parsed.low = CString::toDouble(limits[0], &okLow);
    parsed.high = CString::toDouble(limits[1], &okHigh);
    parsed.includesLow = first == '[';
    parsed.includesHigh = last == ']';
    if (okLow && okHigh) {
        interval = parsed;
    }
    return okLow && okHigh;
}

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
