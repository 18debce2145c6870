#include "Core/CObjectWatch.h"

#include "Core/CObject.h"

namespace tarv {

CObjectWatch::CObjectWatch(CObject& object) : object_(&object), outer_(object.watch_) {
    object.watch_ = this;
}

CObjectWatch::~CObjectWatch() {
    if (object_) {
        object_->watch_ = outer_;
    }
}

}  // namespace tarv
