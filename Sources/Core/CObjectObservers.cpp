// Observers: objects that hear of each setting of another object's attributes.

#include "Core/CObject.h"

namespace tarv {

CObject::CObserver* CObject::findObserver(const CObject* observer) const {
    for (CObserver* entry : observers_) {
        if (entry->observer == observer) {
            return entry;
        }
    }
    return nullptr;
}

void CObject::addObserver(CObject& observer) {
    if (!findObserver(&observer)) {
        observers_.append(new CObserver(observer));
        observer.observed_.append(this);
    }
}

void CObject::linkObserver(CObject& observer, const CString& sourceAttr, const CString& targetAttr) {
    addObserver(observer);
    findObserver(&observer)->links[sourceAttr] = targetAttr;
}

void CObject::dropObserver(const CObject* observer) {
    CObserver* entry = findObserver(observer);
    observers_.removeAt(observers_.indexOf(entry));
    delete entry;
}

void CObject::leaveObservation() {
    for (CObject* source : observed_) {
        source->dropObserver(this);
    }
    observed_.clear();
    for (CObserver* entry : observers_) {
        CArray<CObject*, 1>& sources = entry->observer->observed_;
        sources.removeAt(sources.indexOf(this));
    }
    observers_.deleteAll();
}

CError* CObject::tellObservers(const CString& name, const CAttributeValue& value) {
    // Two attributes may follow each other: the second arrival of a name ends the circle.
    if (observers_.isEmpty() || telling_.indexOf(name) >= 0) {
        return nullptr;
    }
    // A handler that runs meanwhile may add or remove observers.
    CArray<CObject*, 4> observers;
    for (CObserver* entry : observers_) {
        observers.append(entry->observer);
    }
    telling_.append(name);
    CError* error = nullptr;
    for (int32_t i = 0; i < observers.count() && !error; ++i) {
        error = tellObserver(observers[i], name, value);
    }
    telling_.removeLast();
    return error;
}

CError* CObject::tellObserver(CObject* observer, const CString& name, const CAttributeValue& value) {
    CObserver* entry = findObserver(observer);
    if (!entry) {
        return nullptr;
    }
    CString target = name;
    if (!entry->links.empty()) {
        auto link = entry->links.find(name);
        if (link == entry->links.end()) {
            return nullptr;
        }
        target = link->second;
    }
    TARV_TRY(observer->setAttribute(this, target, value));
    return nullptr;
}

}  // namespace tarv
