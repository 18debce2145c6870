#include "Audio/Parameters/CAudioEnv.h"

namespace tarv {

CError* CAudioEnv::init() {
    TARV_TRY(CObject::init());
    vizFps_ = getAttrReal("viz-fps");
    return nullptr;
}

}  // namespace tarv
