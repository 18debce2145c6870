#include "Audio/Parameters/CAudioParamNames.h"

namespace tarv {

CString resolveParamName(const CString& ownerPath, const CString& name) {
    if (name.startsWith("/")) {
        return name.substring(1);
    }
    CString path(ownerPath);
    int32_t start = 0;
    while (start < name.length() && name.at(start) == '^') {
        const int32_t dot = path.lastIndexOf('.');
        if (dot >= 0) {
            path = path.substring(0, dot);
        }
        ++start;
    }
    if (start > 0 && start < name.length() && name.at(start) == '.') {
        ++start;
    }
    return fullParamName(path, name.substring(start));
}

CString fullParamName(const CString& processPath, const CString& localName) {
    CString name(processPath);
    name.append(".");
    name.append(localName);
    return name;
}

}  // namespace tarv
