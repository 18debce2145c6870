#include "Audio/CAudioInterfaceBase.h"

#include "Audio/CAudioInterfaceBaseConnector.h"
#include "Audio/CAudioParamCollector.h"
#include "Audio/CAudioVizCollector.h"

namespace tarv {

CAudioInterfaceBase::~CAudioInterfaceBase() {
    if (connector_ && isLive(connector_)) {
        connector_->setBase(nullptr);
    }
}

CError* CAudioInterfaceBase::init() {
    TARV_TRY(CAudioParamUndo::init());
    connector_ = findObjectOf<CAudioInterfaceBaseConnector>(getAttrString("base-connector"));
    if (!connector_) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_init_NoBaseConnector No base connector '%1' found.",
                  getAttrString("base-connector"));
    }
    paramCollector_ = findObjectOf<CAudioParamCollector>(getAttrString("param-collector"));
    if (!paramCollector_) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_init_NoParamCollector No parameter collector '%1' found.",
                  getAttrString("param-collector"));
    }
    vizCollector_ = findObjectOf<CAudioVizCollector>(getAttrString("viz-collector"));
    if (!vizCollector_) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_init_NoVizCollector No visual object collector '%1' found.",
                  getAttrString("viz-collector"));
    }
    connector_->setBase(this);
    return nullptr;
}

CError* CAudioInterfaceBase::notify(const CString& eventName) {
    CAttributeMap none;
    TARV_TRY(sendEvent(eventName, none, false));
    return nullptr;
}

}  // namespace tarv
