#include "UI/Views/CEventParams.h"

#include "Core/CKeptParams.h"

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
    CKeptParams::dropAdded(entry_.params, [this](const CString& name) { return entry_.own.indexOf(name) >= 0; });
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
    if (entry_.own.isEmpty()) {
        for (const auto& param : entry_.params) {
            entry_.own.append(param.first);
        }
    }
    return entry_.params;
}

}  // namespace tarv
