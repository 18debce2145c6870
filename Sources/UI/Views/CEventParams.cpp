#include "UI/Views/CEventParams.h"

namespace tarv {

CEventParamPool::CEntry& CEventParamPool::take(CEventShape shape) {
    for (CEntry* entry : entries_) {
        if (entry->shape == shape && !entry->isTaken) {
            entry->isTaken = true;
            return *entry;
        }
    }
    auto* entry = new CEntry;
    entry->shape = shape;
    entry->isTaken = true;
    entries_.append(entry);
    return *entry;
}

CEventParams::CEventParams(const std::shared_ptr<CEventParamPool>& pool, CEventShape shape, const CHIDInfo& info)
    : pool_(pool), entry_(pool->take(shape)) {
    // What handlers and listeners of the former event have added is none of this one's.
    if (entry_.params.size() != entry_.count) {
        entry_.params.clear();
    }
    set("actual-x", CAttributeValue::fromReal(info.x));
    set("actual-y", CAttributeValue::fromReal(info.y));
    set("is-alt", CAttributeValue::fromBool(info.modifiers.isAlt));
    set("is-ctrl", CAttributeValue::fromBool(info.modifiers.isCtrl));
    set("is-shift", CAttributeValue::fromBool(info.modifiers.isShift));
}

CEventParams::~CEventParams() {
    entry_.isTaken = false;
}

CAttributeMap& CEventParams::complete() {
    entry_.count = entry_.params.size();
    return entry_.params;
}

}  // namespace tarv
