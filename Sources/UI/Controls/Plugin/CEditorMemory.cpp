#include "UI/Controls/Plugin/CEditorMemory.h"

#include <algorithm>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Core/CObjectWatch.h"

namespace tarv {

namespace {

constexpr const char* kKey = "editor-memory";
constexpr const char* kDefaultClient = "ui.interface-client";

}  // namespace

CError* CEditorMemory::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CEditorMemory::restore>("kept-bytes-came");
    return nullptr;
}

CAudioInterfaceClient* CEditorMemory::client() const {
    const CString& path = getAttrString("interface-client");
    return findObjectOf<CAudioInterfaceClient>(path.isEmpty() ? CString(kDefaultClient) : path);
}

CError* CEditorMemory::init() {
    TARV_TRY(CObject::init());
    if (!client()) {
        TARV_FAIL("@tarvstr_CEditorMemory_init_NoInterfaceClient No interfacing object '%1' found.",
                  getAttrString("interface-client"));
    }
    listenObject(client()->fullName(), "kept-bytes-came", "kept-bytes-came");
    return nullptr;
}

CError* CEditorMemory::finishInit() {
    TARV_TRY(CObject::finishInit());
    return client()->keptBytes(kKey).isEmpty() ? nullptr : restore();
}

/// What was not kept, or can't be read, stays as it is.
CError* CEditorMemory::restore() {
    if (isRestored_ || !client()) {
        return nullptr;
    }
    isRestored_ = true;
    const CByteBuffer bytes = client()->keptBytes(kKey);
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
    uint32_t count = 0;
    TARV_TRY(bytes.isEmpty() ? nullptr : takeField(reader, count));
    const CObjectWatch watch(*this);
    isRestoring_ = true;
    CError* error = nullptr;
    for (uint32_t i = 0; i < count && !error && watch.isAlive(); ++i) {
        CString path;
        CString attribute;
        CString value;
        error = takeFields(reader, path, attribute, value);
        CObject* target = error ? nullptr : targetOf(path, attribute);
        error = target ? target->setAttributePlain(attribute, value) : error;
    }
    if (watch.isAlive()) {
        isRestoring_ = false;
    }
    return error;
}

/// Null for what is kept no more.
CObject* CEditorMemory::targetOf(const CString& path, const CString& attribute) const {
    for (const CObject* item : children()) {
        CObject* target = item->findObject(item->getAttrString("target"));
        if (target && target->fullName() == path && item->getAttrString("attr") == attribute) {
            return target;
        }
    }
    return nullptr;
}

CError* CEditorMemory::keep() {
    CAudioInterfaceClient* const found = client();
    if (!found || isRestoring_ || state() != CObjectState::Finished) {
        return nullptr;
    }
    isRestored_ = true;
    bytes_.clear();
    CBufferWriter stream(bytes_);
    TARV_TRY(putField(stream, static_cast<uint32_t>(children().count())));
    for (const CObject* item : children()) {
        const CString& attribute = item->getAttrString("attr");
        if (const CObject* target = item->findObject(item->getAttrString("target"))) {
            TARV_TRY(putFields(stream, target->fullName(), attribute, target->getAttrString(attribute)));
        }
    }
    const CByteBuffer& former = found->keptBytes(kKey);
    const bool isSame = std::equal(bytes_.begin(), bytes_.end(), former.begin(), former.end());
    return isSame ? nullptr : found->keepBytes(kKey, bytes_);
}

CError* CEditorMemoryItem::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CEditorMemoryItem::valueChanged>("value");
    return nullptr;
}

CError* CEditorMemoryItem::init() {
    TARV_TRY(CObject::init());
    CObject* target = findObject(getAttrString("target"));
    if (!target) {
        TARV_FAIL("@tarvstr_CEditorMemoryItem_init_NoTarget No object '%1' found.", getAttrString("target"));
    }
    target->linkObserver(*this, getAttrString("attr"), "value");
    return nullptr;
}

CError* CEditorMemoryItem::valueChanged() {
    auto* memory = dynamic_cast<CEditorMemory*>(parent());
    return memory ? memory->keep() : nullptr;
}

}  // namespace tarv
