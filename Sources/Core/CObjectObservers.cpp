// Observers: objects that are notified of each setting of another object's attributes.

#include "Core/CObject.h"
#include "Core/CObjectWatch.h"

namespace tarv {

namespace {

// Ends a circle of attributes that never comes to rest.
constexpr int32_t kMaxRestarts = 16;

}  // namespace

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

CError* CObject::notifyObservers(const CString& name) {
    // Two attributes may follow each other: the second arrival of a name ends the circle.
    if (observers_.isEmpty() || notifying_.indexOf(name) >= 0) {
        return nullptr;
    }
    // A handler that runs meanwhile may add or remove observers.
    CArray<CObject*, 16> observers;
    for (CObserver* entry : observers_) {
        if (entry->links.empty() || entry->links.find(name) != entry->links.end()) {
            observers.append(entry->observer);
        }
    }
    if (observers.isEmpty()) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    notifying_.append(name);
    CAttributeValue value = attributes_[name];
    CError* error = nullptr;
    int32_t waiting = observers.count();
    int32_t restarts = 0;
    for (int32_t i = 0; waiting > 0 && !error; i = (i + 1) % observers.count()) {
        --waiting;
        error = notifyObserver(observers[i], name, value);
        if (!watch.isAlive()) {
            return error;
        }
        // An observer may have set the attribute again: then each one gets the new value, also those before it.
        const CAttributeValue& current = attributes_[name];
        if (!current.isSame(value)) {
            value = current;
            ++restarts;
            if (restarts <= kMaxRestarts) {
                // The last time without the one that set it.
                waiting = observers.count() - (restarts == kMaxRestarts ? 1 : 0);
            }
        }
    }
    notifying_.removeLast();
    return error;
}

CError* CObject::notifyObserver(CObject* observer, const CString& name, const CAttributeValue& value) {
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
    return observer->setAttribute(this, target, value);
}

}  // namespace tarv
