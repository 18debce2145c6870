#include "Audio/Modules/CModUpsampler.h"

namespace tarv {

CAudioProcessBase* CModUpsamplerDef::createProcess() const {
    return new CModUpsampler;
}

}  // namespace tarv
