#include "Audio/Modules/CQPLEXContextObject.h"

#include "Audio/Kernels/StandardKernels.h"

namespace tarv {

CError* CQPLEXContextObject::init() {
    TARV_TRY(CObject::init());
    if (!context_) {
        context_ = makeStandardContext();
    }
    return nullptr;
}

}  // namespace tarv
