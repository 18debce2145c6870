#include "UI/Binding/CUIParamUpdateHandler.h"

#include "UI/Binding/CUIParam.h"

namespace tarv {

CUIParamUpdateHandler::~CUIParamUpdateHandler() {
    for (CUIParam* param : params_) {
        param->handler_ = nullptr;
    }
}

}  // namespace tarv
