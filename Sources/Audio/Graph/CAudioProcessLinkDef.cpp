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

}  // namespace tarv
