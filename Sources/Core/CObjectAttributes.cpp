// Attributes: typed reads, setting with handlers at once or pending.

#include "Core/CObject.h"
#include "Core/CObjectExpressions.h"
#include "Core/CObjectWatch.h"

namespace tarv {

namespace {

const CAttributeValue* findValue(const CAttributeMap& attributes, const CString& name) {
    auto found = attributes.find(name);
    return found == attributes.end() ? nullptr : &found->second;
}

const CAttributeValue* findFilled(const CAttributeMap& attributes, const CString& name) {
    const CAttributeValue* value = findValue(attributes, name);
    return value && !value->asString().isEmpty() ? value : nullptr;
}

}  // namespace

const CString& CObject::getAttrString(const CString& name) const {
    static const CString empty;
    const CAttributeValue* value = findValue(attributes_, name);
    return value ? value->asString() : empty;
}

bool CObject::getAttrBool(const CString& name) const {
    const CAttributeValue* value = findValue(attributes_, name);
    return value && value->asBool();
}

double CObject::getAttrReal(const CString& name) const {
    const CAttributeValue* value = findValue(attributes_, name);
    return value ? value->asReal() : 0.0;
}

int32_t CObject::getAttrInt(const CString& name) const {
    const CAttributeValue* value = findValue(attributes_, name);
    return value ? value->asInt() : 0;
}

void* CObject::getAttrPointer(const CString& name) const {
    const CAttributeValue* value = findValue(attributes_, name);
    return value ? value->asPointer() : nullptr;
}

bool CObject::hasAttr(const CString& name) const {
    return findValue(attributes_, name) != nullptr;
}

bool CObject::getAttrBoolOr(const CString& name, bool fallback) const {
    const CAttributeValue* value = findFilled(attributes_, name);
    return value ? value->asBool() : fallback;
}

double CObject::getAttrRealOr(const CString& name, double fallback) const {
    const CAttributeValue* value = findFilled(attributes_, name);
    return value ? value->asReal() : fallback;
}

int32_t CObject::getAttrIntOr(const CString& name, int32_t fallback) const {
    const CAttributeValue* value = findFilled(attributes_, name);
    return value ? value->asInt() : fallback;
}

const CString& CObject::name() const {
    return getAttrString("name");
}

CError* CObject::setAttribute(CObject*, const CString& name, const CAttributeValue& value) {
    return setAttribute(name, value, state_ == CObjectState::Finished);
}

CError* CObject::setAttribute(const CString& name, const CString& text) {
    return setAttribute(name, CAttributeValue::fromString(text), true);
}

CError* CObject::setAttributePlain(const CString& name, const CString& text) {
    return setAttribute(name, CAttributeValue::fromPlainString(text), true);
}

CError* CObject::addAttribute(const CString& name, const CString& text, bool immediate) {
    return setAttribute(name, CAttributeValue::fromString(text), immediate);
}

CError* CObject::setAttribute(const CString& name, const CAttributeValue& value, bool immediate) {
    if (readOnly_ || name.isEmpty()) {
        return nullptr;
    }
    CAttributeValue stored = value;
    prepareAttribute(name, stored);
    attributes_[name] = stored;
    const CObjectWatch watch(*this);
    CError* error = callHandler(name, immediate);
    if (!watch.isAlive()) {
        return error;
    }
    TARV_TRY(error);
    // A handler that set the attribute again has notified the observers of what it set.
    error = attributes_[name].isSame(stored) ? notifyObservers(name) : nullptr;
    if (!watch.isAlive()) {
        return error;
    }
    TARV_TRY(error);
    return nullptr;
}

void CObject::prepareAttribute(const CString& name, CAttributeValue& value) {
    expandValue(*this, name, value);
}

CError* CObject::callHandler(const CString& name, bool immediate) {
    int32_t index = descriptor_->handlerIndex(name);
    if (index < 0) {
        return nullptr;
    }
    if (immediate) {
        return descriptor_->handler(index)(*this, nullptr);
    }
    pendingHandlers_[index] = 1;
    return nullptr;
}

CError* CObject::setAttributes(const CAttributeMap& attributes, bool runHandlers) {
    const CObjectWatch watch(*this);
    CError* error = nullptr;
    for (auto attribute = attributes.begin(); attribute != attributes.end() && !error && watch.isAlive(); ++attribute) {
        error = setAttribute(attribute->first, attribute->second, false);
    }
    if (runHandlers && !error && watch.isAlive()) {
        error = runPendingHandlers();
    }
    if (!watch.isAlive()) {
        return error;
    }
    TARV_TRY(error);
    return nullptr;
}

CError* CObject::runPendingHandlers() {
    if (readOnly_) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < pendingHandlers_.count(); ++i) {
        if (pendingHandlers_[i]) {
            pendingHandlers_[i] = 0;
            CError* error = descriptor_->handler(i)(*this, nullptr);
            if (!watch.isAlive()) {
                return error;
            }
            TARV_TRY(error);
        }
    }
    return nullptr;
}

void CObject::freeze() {
    for (const auto& attribute : attributes_) {
        attribute.second.convertAll();
    }
    for (CObject* child : children_) {
        child->freeze();
    }
    readOnly_ = true;
}

}  // namespace tarv
