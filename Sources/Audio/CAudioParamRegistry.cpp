#include "Audio/CAudioParamRegistry.h"

#include "Audio/CAudioParamUndo.h"

namespace tarv {

CAudioParamRegistry::~CAudioParamRegistry() {
    if (collector_ && isLive(collector_)) {
        collector_->removeRegistry(*this);
    }
}

CError* CAudioParamRegistry::init() {
    TARV_TRY(CObject::init());
    hierarchy_ = getAttrString("hierarchy");
    if (hierarchy_.isEmpty() || hierarchy_.at(hierarchy_.length() - 1) != '.') {
        hierarchy_.appendChar('.');
    }
    isMaster_ = getAttrBool("is-master");
    isEnumerated_ = getAttrBool("is-enumerated");
    id_ = getAttrString("id");
    presetNaming_ = getAttrString("preset-naming");
    presetNameParam_ = getAttrString("preset-name-param");
    groupNamesParam_ = getAttrString("group-names-param");
    bankFile_ = getAttrString("file");
    undo_ = findObjectOf<CAudioParamUndo>(getAttrString("param-undo"));
    collector_ = findObjectOf<CAudioParamCollector>(getAttrString("param-collector"));
    if (!collector_) {
        TARV_FAIL(
            "@tarvstr_CAudioParamRegistry_init_NoParamCollector No parameter collector with the name '%1' defined.",
            getAttrString("param-collector"));
    }
    collector_->addRegistry(*this);
    return nullptr;
}

bool CAudioParamRegistry::offerParam(const CString& name, CAudioParam& param) {
    if (!name.startsWith(hierarchy_)) {
        return false;
    }
    takeParam(name, param);
    return true;
}

void CAudioParamRegistry::takeParam(const CString& name, CAudioParam& param) {
    CLockScope scope(paramLock_);
    params_.append({name.startsWith(hierarchy_) ? name.substring(hierarchy_.length()) : name, &param});
}

int32_t CAudioParamRegistry::paramCount() const {
    CLockScope scope(paramLock_);
    return params_.count();
}

CAudioParamRegistry::CEntry CAudioParamRegistry::param(int32_t index) const {
    CLockScope scope(paramLock_);
    return params_[index];
}

}  // namespace tarv
