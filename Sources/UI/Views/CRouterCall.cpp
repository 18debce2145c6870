#include "UI/Views/CRouterCall.h"

namespace tarv {

CInputRouter::CCall::CCall(CInputRouter& router) : router_(&router), outer_(router.calls_) {
    router.calls_ = this;
}

CInputRouter::CCall::~CCall() {
    // Still linked, since what follows may destroy the router as well.
    if (router_ && !outer_) {
        router_->settle();
    }
    if (router_) {
        router_->calls_ = outer_;
    }
}

bool CInputRouter::CCall::report(CError* error) const {
    if (!isAlive()) {
        logError(error);
    } else if (error) {
        router_->system_.inputFailed(error);
    }
    return isAlive();
}

}  // namespace tarv
