#include "UI/Binding/CControlParam.h"

#include "UI/Binding/CUIParam.h"

namespace tarv {

bool CControlParam::isWanted(const CObject& control) {
    return !control.getAttrString("bridge").isEmpty() || !control.getAttrString("shared-attribute").isEmpty();
}

CError* CControlParam::make(CObject& control, CUIParam*& param) {
    CAttributeMap attributes;
    for (const char* name : {"bridge", "group-selector", "shared-attribute"}) {
        // A path that begins at the control means another object one step below.
        const CString& path = control.getAttrString(name);
        const CObject* object = control.findObject(path);
        attributes[name] = CAttributeValue::fromString(object ? object->fullName() : path);
    }
    attributes["element"] = CAttributeValue::fromInt(control.getAttrInt("element"));
    return control.createChildOf(param, "ui:ui-param", "param", false, &attributes);
}

CError* CControlParam::updateElement(const CObject& control, CUIParam* param) {
    return param ? param->setAttribute("element", CAttributeValue::fromInt(control.getAttrInt("element"))) : nullptr;
}

}  // namespace tarv
