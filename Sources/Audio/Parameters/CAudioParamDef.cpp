#include "Audio/Parameters/CAudioParamDef.h"

namespace tarv {

CError* CAudioParamDef::init() {
    TARV_TRY(CObject::init());
    const int32_t elementSize = getAttrIntOr("element-size", 1);
    if (elementSize < 1) {
        TARV_FAIL("@tarvstr_CAudioParamDef_init_InvalidElementSize Invalid element size %1 specified.",
                  CString::fromInt(elementSize));
    }
    const CString& type = getAttrString("data-type");
    const bool isString = type == "string" || type == "str" || type == "1";
    if (isString && elementSize > 1) {
        TARV_FAIL("@tarvstr_CAudioParamDef_init_ElementSizeStr Invalid element size %1 for non-float data specified.",
                  CString::fromInt(elementSize));
    }
    info_.setShape(elementSize, isString, readFlags());
    info_.setNames(getAttrString("visual-name"), name(), fullName());
    info_.setRegistry(getAttrString("param-registry"));
    TARV_TRY(info_.parse(*root(), {getAttrString("converter"), getAttrString("min-values"), getAttrString("max-values"),
                                   getAttrString("def-values")}));
    if (info_.defaultRowCount() == 0) {
        TARV_FAIL("@tarvstr_CAudioParamDef_init_NoDefValues No default values specified.");
    }
    return nullptr;
}

int32_t CAudioParamDef::readFlags() const {
    int32_t flags = 0;
    // The first that is set counts: the value is stored with the instance, in presets, or for all instances.
    if (getAttrBool("is-persistent")) {
        flags = CAudioParamInfo::Persistent;
    } else if (getAttrBool("is-storable")) {
        flags = CAudioParamInfo::Storable;
    } else if (getAttrBool("is-global")) {
        flags = CAudioParamInfo::Global;
    }
    flags |= getAttrBool("is-discrete") ? CAudioParamInfo::Discrete : 0;
    flags |= getAttrBool("is-single-group") ? CAudioParamInfo::SingleGroup : 0;
    return flags;
}

CError* CAudioParamAllocDef::init() {
    TARV_TRY(CObject::init());
    paramName_ = getAttrString("param-name");
    if (paramName_.isEmpty()) {
        TARV_FAIL("@tarvstr_CAudioParamAllocDef_init_InvalidParamName Invalid parameter name specified.");
    }
    index_ = getAttrIntOr("index", -1);
    if (index_ < 0) {
        TARV_FAIL("@tarvstr_CAudioParamAllocDef_init_InvalidIndex Invalid index value '%1' specified.",
                  getAttrString("index"));
    }
    return nullptr;
}

CError* CAudioParamRemapDef::init() {
    TARV_TRY(CObject::init());
    origName_ = getAttrString("orig");
    if (origName_.isEmpty()) {
        TARV_FAIL("@tarvstr_CAudioParamRemapDef_init_InvalidOrigName Invalid orignal parameter name specified.");
    }
    newName_ = getAttrString("new");
    if (newName_.isEmpty()) {
        TARV_FAIL("@tarvstr_CAudioParamRemapDef_init_InvalidNewName Invalid new parameter name specified.");
    }
    return nullptr;
}

}  // namespace tarv
