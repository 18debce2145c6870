#include "Core/CClassDescriptor.h"

namespace tarv {

void CClassDescriptor::add(const CString& name, CHandlerFunction function) {
    int32_t known = handlerIndex(name);
    if (known >= 0) {
        handlers_[known] = function;
        return;
    }
    indexes_[name] = handlers_.count();
    handlers_.append(function);
    names_.append(name);
}

int32_t CClassDescriptor::handlerIndex(const CString& name) const {
    auto found = indexes_.find(name);
    return found == indexes_.end() ? -1 : found->second;
}

}  // namespace tarv
