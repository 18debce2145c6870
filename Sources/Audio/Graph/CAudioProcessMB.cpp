#include "Audio/Graph/CAudioProcessMB.h"

namespace tarv {

CError* CAudioProcessMB::init() {
    if (def().multibandCountParam().isEmpty()) {
        TARV_FAIL("@tarvstr_CAudioProcessMB_init_NoMBCountParamDefined No 'multiband-count-param' attribute defined.");
    }
    if (def().multibandFreqParam().isEmpty()) {
        TARV_FAIL("@tarvstr_CAudioProcessMB_init_NoMBFreqParamDefined No 'multiband-freq-param' attribute defined.");
    }
    const auto* processDef = dynamic_cast<const CAudioProcessDef*>(&def());
    const CAudioProcessDefBase* lowPass = processDef != nullptr ? processDef->findChildDef(kLowPassName) : nullptr;
    if (lowPass == nullptr || !lowPass->isPrototype()) {
        TARV_FAIL("@tarvstr_CAudioProcessMB_init_NoLPMod No low-pass module prototype with the name '%1' found.",
                  kLowPassName);
    }
    return CAudioProcess::init();
}

}  // namespace tarv
