#include "Audio/Modules/CModDownsampler.h"

namespace tarv {

CAudioProcessBase* CModDownsamplerDef::createProcess() const {
    return new CModDownsampler;
}

}  // namespace tarv
