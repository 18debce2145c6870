#include "Audio/CAudioVizCollector.h"

#include "Audio/CAudioEnv.h"
#include "Audio/CAudioParamCollector.h"
#include "Audio/CAudioParamDef.h"

namespace tarv {

CError* CAudioVizCollector::init() {
    TARV_TRY(CObject::init());
    env_ = findObjectOf<CAudioEnv>(getAttrString("env"));
    if (!env_) {
        TARV_FAIL("@tarvstr_CAudioVizCollector_init_NoAudioEnv No audio environment object '%1' found.",
                  getAttrString("env"));
    }
    auto* collector = findObjectOf<CAudioParamCollector>(getAttrString("param-collector"));
    if (!collector) {
        TARV_FAIL("@tarvstr_CAudioVizCollector_init_NoParamCollector No parameter collector '%1' found.",
                  getAttrString("param-collector"));
    }
    const auto* definition = findObjectOf<CAudioParamDef>("shared::audio.param-enable-viz");
    if (!definition) {
        TARV_FAIL(
            "@tarvstr_CAudioVizCollector_init_NoParamDef No parameter 'audio.param-enable-viz' definition found.");
    }
    enableParam_ = collector->define("audio.param-enable-viz", definition->info());
    return nullptr;
}

bool CAudioVizCollector::isEnabled() const {
    return isGoing_ && enableParam_ && enableParam_->value(0, 0) >= 0.5;
}

}  // namespace tarv
