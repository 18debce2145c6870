// Templates: their definitions up the tree, and objects made from them at run time.

#include "Core/CApplication.h"
#include "Core/CObject.h"
#include "Core/CObjectWatch.h"

namespace tarv {

CObject* CObject::findTemplate(const CString& name) const {
    for (const CObject* object = this; object; object = object->parent_) {
        auto found = object->templates_.find(name);
        if (found != object->templates_.end()) {
            return found->second;
        }
    }
    const CObject* shared = CApplication::sharedRoot();
    if (!shared) {
        return nullptr;
    }
    auto found = shared->templates_.find(name);
    return found == shared->templates_.end() ? nullptr : found->second;
}

CError* CObject::createChild(CObject*& child, const CString& tag, const CString& name, bool requireTemplate,
                             const CAttributeMap* instanceAttributes, const CAttributeMap* extraAttributes) {
    return createChildOf<CObject>(child, tag, name, requireTemplate, instanceAttributes, extraAttributes);
}

CError* CObject::startChild(CObject*& child, const CString& tag, const CString& name, bool requireTemplate) {
    child = nullptr;
    if (requireTemplate && !findTemplate(tag)) {
        TARV_FAIL("@tarvstr_CObject_createChild_NoTemplate Run-time template '%1' does not exist.", tag);
    }
    TARV_TRY(addChild(child, tag, name, true));
    return nullptr;
}

CError* CObject::finishChild(CObject& child, const CAttributeMap* instanceAttributes,
                             const CAttributeMap* extraAttributes) {
    const CObjectWatch watch(child);
    child.instanceAttributes_ = instanceAttributes;
    CError* error = extraAttributes ? child.setAttributes(*extraAttributes, false) : nullptr;
    if (!error) {
        error = runStart(child, watch);
    }
    if (error && watch.isAlive()) {
        delete &child;
    }
    TARV_TRY(error);
    return nullptr;
}

CError* CObject::runStart(CObject& child, const CObjectWatch& watch) {
    const CString name(child.name());
    CError* error = watch.isAlive() ? child.init() : nullptr;
    if (watch.isAlive()) {
        child.instanceAttributes_ = nullptr;
    }
    // Each step runs handlers, which may destroy the child.
    for (auto step : {&CObject::initChildren, &CObject::runPendingHandlers, &CObject::finishInit}) {
        if (!error && watch.isAlive()) {
            error = (child.*step)();
        }
    }
    TARV_TRY(error);
    if (!watch.isAlive()) {
        TARV_FAIL("@tarvstr_CObject_createChild_Destroyed Child '%1' was destroyed while it was created.", name);
    }
    return nullptr;
}

CError* CObject::failInvalidClass(CObject* child) {
    CString tag = child->tag_;
    CString name = child->name();
    delete child;
    TARV_FAIL(
        "@tarvstr_CObject_createChild_InvalidClass Object of invalid class created (child tag '%1', child name "
        "'%2').",
        tag, name);
}

CError* CObject::readTemplateBody(bool skipAttributes, bool skipChildren) {
    const CArray<uint8_t, 1>& body = definition_->templateBody_;
    CTreeCursor cursor{body.data(), body.data() + body.count()};
    return createFromBinary(cursor, false, true, skipAttributes, skipChildren);
}

}  // namespace tarv
