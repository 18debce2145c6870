// Children: creation, and names that stay unique.

#include "Core/CCreatorRegistry.h"
#include "Core/CObject.h"
#include "Core/Log.h"

namespace tarv {

namespace {

void logUnknownTag(const CString& tag, const CString& name, const CString& context) {
    if (tag == "template" || tag == "content") {
        return;
    }
    const CString arguments[] = {name, tag};
    CString text;
    text.format("Creating CObject \"%1\" (tag \"%2\")", arguments, 2);
    logLineIn(text, context);
}

}  // namespace

CError* CObject::addChild(CObject*& child, const CString& tag, const CString& name, bool useTemplates) {
    child = nullptr;
    if (readOnly_) {
        TARV_FAIL("@tarvstr_CObject_addChild_ReadOnly Error adding child to read-only object.");
    }
    CObject* definition = useTemplates ? findTemplate(tag) : nullptr;
    child = CCreatorRegistry::create(definition ? definition->realTag_ : tag);
    if (!child) {
        child = new CObject;
        logUnknownTag(tag, name, fullName_);
    }
    place(*child, tag, name, definition);
    CError* error = childAdded(child);
    if (error) {
        delete child;
        child = nullptr;
    }
    TARV_TRY(error);
    return nullptr;
}

void CObject::place(CObject& child, const CString& tag, const CString& requestedName, CObject* definition) {
    child.parent_ = this;
    child.notifyServer_ = notifyServer_;
    child.root_ = root_;
    child.tag_ = tag;
    child.definition_ = definition;

    int32_t mark = requestedName.indexOf('#');
    child.baseName_ = mark < 0 ? requestedName : requestedName.substring(0, mark);
    int32_t wanted = mark < 0 ? 0 : CString::toInt(requestedName.substring(mark + 1));
    child.nameIndex_ = uniqueIndex(child.baseName_, wanted);
    childMap_[child.baseName_][child.nameIndex_] = &child;

    CString name = child.baseName_;
    if (child.nameIndex_ != 0) {
        name += CString("#") + CString::fromInt(child.nameIndex_);
    }
    child.fullName_ = fullName_.isEmpty() ? name : fullName_ + "." + name;
    child.attributes_["name"] = CAttributeValue::fromString(name);
    child.attributes_["full-name"] = CAttributeValue::fromString(child.fullName_);
    children_.append(&child);
}

int32_t CObject::uniqueIndex(const CString& baseName, int32_t wanted) {
    auto [recorded, isNew] = nextIndexes_.try_emplace(baseName, wanted);
    auto taken = childMap_.find(baseName);
    if (isNew || taken == childMap_.end()) {
        return wanted;
    }
    while (taken->second.count(wanted) != 0) {
        // Unsigned, since an index read from a name may be the largest there is.
        wanted = static_cast<int32_t>(static_cast<uint32_t>(recorded->second) + 1);
        recorded->second = wanted;
    }
    return wanted;
}

}  // namespace tarv
