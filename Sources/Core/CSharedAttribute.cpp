#include "Core/CSharedAttribute.h"

#include "Core/CNotifyServer.h"
#include "Core/CObjectWatch.h"
#include "Platform/ThreadId.h"

namespace tarv {

namespace {

constexpr const char* kStoredChanged = "stored-value-changed";

}  // namespace

CSharedAttribute::~CSharedAttribute() {
    bridge_.disconnect();
}

CError* CSharedAttribute::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CSharedAttribute::storedValueChanged>(kStoredChanged);
    return nullptr;
}

CError* CSharedAttribute::init() {
    TARV_TRY(CObject::init());
    store_ = getAttrBool("is-global") ? static_cast<CApplicationData*>(&CGlobalData::instance())
                                      : static_cast<CApplicationData*>(&CLocalData::instance());
    attribute_ = getAttrString("attribute");
    if (attribute_.isEmpty()) {
        TARV_FAIL("@tarvstr_CSharedAttribute_init_NoAttribute No attached attribute name specified.");
    }
    key_ = getAttrString("data-name");
    if (key_.isEmpty()) {
        key_ = name();
    }
    fallback_ = getAttrString("def-value");
    range_ = {getAttrReal("min-value"), getAttrReal("max-value"), getAttrBool("is-integer")};
    linkObserver(*this, attribute_, attribute_);
    listenObject(fullName(), kStoredChanged, kStoredChanged);
    bridge_.subscribe(*store_, key_);
    TARV_TRY(takeStored());
    return nullptr;
}

void CSharedAttribute::prepareAttribute(const CString& name, CAttributeValue& value) {
    CObject::prepareAttribute(name, value);
    double number = 0.0;
    if (!range_.isEmpty() && name == attribute_ && !range_.read(value.asString(), number)) {
        value = CAttributeValue::fromPlainString(fallback_);
    }
}

CError* CSharedAttribute::setAttribute(CObject* sender, const CString& name, const CAttributeValue& value) {
    if (sender != this) {
        // Returned as it is, since an observer may have destroyed this object.
        return CObject::setAttribute(sender, name, value);
    }
    if (!isTaking_ && value.asString() != known_) {
        write(value.asString());
    }
    return nullptr;
}

void CSharedAttribute::write(const CString& text) {
    known_ = text;
    // The thread and not a mere flag: another thread's write may notify right before or behind this one.
    writingThread_ = currentThreadId();
    store_->writeText(key_, text);
    writingThread_ = 0;
}

void CSharedAttribute::storeWritten(CCheckedObject*) {
    // A post that is still under way reads what is stored when it arrives.
    if (writingThread_ == currentThreadId() || !notifyServer() || isTold_.exchange(true)) {
        return;
    }
    CAttributeMap params;
    if (CError* error = notifyServer()->sendPosted(fullName(), kStoredChanged, params)) {
        isTold_ = false;
        TARV_CONSUME(error);
    }
}

CError* CSharedAttribute::takeStored() {
    isTold_ = false;
    const CObjectWatch watch(*this);
    const CString name(attribute_);
    isTaking_ = true;
    // Plain, since a user may have typed it: expressions were replaced before it was stored.
    CError* error = setAttributePlain(name, store_->readText(key_, fallback_));
    if (!watch.isAlive()) {
        return error;
    }
    isTaking_ = false;
    known_ = getAttrString(attribute_);
    return error ? addErrorLocation(error, __FILE__, __LINE__, fullName(), CString()) : nullptr;
}

CError* CSharedAttribute::storedValueChanged() {
    const CObjectWatch watch(*this);
    CError* error = takeStored();
    if (!watch.isAlive()) {
        return error;
    }
    TARV_TRY(error);
    CAttributeMap params;
    // Last, since a listener may destroy this object.
    return sendEvent("update", params, false);
}

}  // namespace tarv
