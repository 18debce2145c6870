#include "Audio/Processes/CQPLEXContextObject.h"

#include "Audio/Processes/StandardKernels.h"

namespace tarv {

CError* CQPLEXContextObject::init() {
    TARV_TRY(CObject::init());
    if (!context_) {
        context_ = makeStandardContext();
    }
    return nullptr;
}

}  // namespace tarv
