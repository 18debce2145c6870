#include "Core/CCreatorRegistry.h"

#include <memory>

#include "Core/CObject.h"

namespace tarv {

namespace {

struct CCreator {
    CObject* (*create)();
    CClassDescriptor* descriptor;
};

using CCreatorMap = std::map<CString, CCreator, std::less<CString>, CHeapAllocator<std::pair<const CString, CCreator>>>;

CCreatorMap& creators() {
    static CCreatorMap map;
    return map;
}

CClassDescriptor* makeObjectDescriptor() {
    auto* descriptor = new CClassDescriptor;
    TARV_CONSUME(CObject::initClass(*descriptor));
    return descriptor;
}

}  // namespace

CError* CCreatorRegistry::registerCreator(const CString& tag, CObject* (*create)(), CClassDescriptor* descriptor) {
    if (!creators().try_emplace(tag, CCreator{create, descriptor}).second) {
        delete descriptor;
        TARV_FAIL("@tarvstr_CObject_registerCreator_AlreadyRegistered Creator for '%1' has already been registered.",
                  tag);
    }
    return nullptr;
}

CError* CCreatorRegistry::registerRows(const CCreatorRow* rows, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        CClassDescriptor* descriptor = makeObjectDescriptor();
        CError* error = rows[i].initClass ? rows[i].initClass(*descriptor) : nullptr;
        if (error) {
            delete descriptor;
        }
        TARV_TRY(error);
        TARV_TRY(registerCreator(rows[i].tag, rows[i].create, descriptor));
    }
    return nullptr;
}

CObject* CCreatorRegistry::create(const CString& tag) {
    auto found = creators().find(tag);
    if (found == creators().end()) {
        return nullptr;
    }
    CObject* object = found->second.create();
    object->setDescriptor(found->second.descriptor);
    return object;
}

const CClassDescriptor& CCreatorRegistry::objectDescriptor() {
    static const std::unique_ptr<const CClassDescriptor> descriptor(makeObjectDescriptor());
    return *descriptor;
}

void CCreatorRegistry::clear() {
    for (auto& entry : creators()) {
        delete entry.second.descriptor;
    }
    creators().clear();
}

}  // namespace tarv
