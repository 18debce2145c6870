// Writes the texts of an effect into the buffers of its host.

#include "Audio/VST/CVstTexts.h"

#include "Audio/Instance/CAudioWrapper.h"
#include "Audio/Parameters/CAudioExtParam.h"
#include "Audio/VST/Vst2.h"
#include "Audio/VST/VstText.h"

namespace tarv {

void CVstTexts::effectName(char* text) const {
    copyVstText(text, core_.pluginName(), vst::kMaxEffectName);
}

void CVstTexts::vendor(char* text) const {
    copyVstText(text, core_.vendorName(), vst::kMaxVendorText);
}

void CVstTexts::product(char* text) const {
    copyVstText(text, core_.vendorName() + " " + core_.pluginName(), vst::kMaxProductText);
}

bool CVstTexts::programName(int32_t index, char* text) const {
    if (index < 0 || index >= core_.paramRegistry()->programCount()) {
        return false;
    }
    copyVstText(text, core_.paramRegistry()->programName(index), vst::kMaxProgramName);
    return true;
}

void CVstTexts::currentProgramName(char* text) const {
    copyVstText(text, core_.paramRegistry()->programName(core_.paramRegistry()->currentProgram()),
                vst::kMaxProgramName);
}

void CVstTexts::parameterName(int32_t index, char* text) const {
    if (const CAudioExtParam* param = core_.extParamList()->param(index)) {
        copyVstText(text, param->extName(), vst::kMaxParamText);
    }
}

void CVstTexts::parameterDisplay(int32_t index, char* text) const {
    if (const CAudioExtParam* param = core_.extParamList()->param(index)) {
        CString display;
        param->getDisplay(display);
        copyVstText(text, display, vst::kMaxParamText);
    }
}

void CVstTexts::parameterLabel(int32_t index, char* text) const {
    if (const CAudioExtParam* param = core_.extParamList()->param(index)) {
        CString label;
        param->getLabel(label);
        copyVstText(text, label, vst::kMaxParamText);
    }
}

void CVstTexts::parameterDisplayFor(intptr_t index, double position, char* text) const {
    const bool isIndex = index >= 0 && index < core_.extParamList()->count();
    if (const CAudioExtParam* param = isIndex ? core_.extParamList()->param(static_cast<int32_t>(index)) : nullptr) {
        CString display;
        CString label;
        param->getDisplayFor(display, position);
        param->getLabel(label);
        copyVstText(text, display + label, vst::kMaxParamText);
    }
}

}  // namespace tarv
