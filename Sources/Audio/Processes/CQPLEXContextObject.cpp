#include "Audio/Processes/CQPLEXContextObject.h"

namespace tarv {

CQPLEXContextObject::~CQPLEXContextObject() {
    delete context_;
}

CError* CQPLEXContextObject::init() {
    TARV_TRY(CObject::init());
    if (!context_) {
        context_ = new CQPLEXContext;
    }
    return nullptr;
}

}  // namespace tarv
