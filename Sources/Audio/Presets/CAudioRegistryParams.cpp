#include "Audio/Presets/CAudioRegistryParams.h"

namespace tarv {

namespace {

/// A parameter that was stored under another key before.
constexpr struct {
    const char* param;
    const char* formerKey;
} kFormerKeys[] = {{"plugin.modMain.oversampling", "io-params.oversampling"}};

const char* formerKeyOf(const CAudioParam& param) {
    for (const auto& row : kFormerKeys) {
        if (param.fullName() == row.param) {
            return row.formerKey;
        }
    }
    return nullptr;
}

}  // namespace

bool CAudioRegistryParam::isStored(const CAudioParam& param, bool withPersistent) {
    return param.isDefined() && (param.info().isStorable() || (withPersistent && param.info().isPersistent()));
}

void CAudioRegistryParams::init(CAudioParamCollector& collector, const CString& hierarchy, bool withFormerKeys) {
    collector_ = &collector;
    hierarchy_ = hierarchy;
    withFormerKeys_ = withFormerKeys;
}

void CAudioRegistryParams::add(const CString& name, CAudioParam& param) {
    auto* added = new CAudioRegistryParam;
    added->key = covers(name) ? name.substring(hierarchy_.length()) : name;
    added->keyBytes = added->key.toUtf8();
    added->formerKey = withFormerKeys_ ? formerKeyOf(param) : nullptr;
    added->param = &param;
    CLockScope scope(lock_);
    int32_t place = entries_.count();
    while (place > 0 && added->keyBytes < entries_[place - 1]->keyBytes) {
        --place;
    }
    entries_.insert(place, added);
}

int32_t CAudioRegistryParams::count() const {
    CLockScope scope(lock_);
    return entries_.count();
}

const CAudioRegistryParam& CAudioRegistryParams::entry(int32_t index) const {
    CLockScope scope(lock_);
    return *entries_[index];
}

CAudioRegistryParams::CEntries CAudioRegistryParams::entries() const {
    CLockScope scope(lock_);
    CEntries all;
    all.reserve(entries_.count());
    for (const CAudioRegistryParam* entry : entries_) {
        all.append(entry);
    }
    return all;
}

CAudioParam* CAudioRegistryParams::findAny(const CString& key) const {
    return collector_->findParam(hierarchy_ + key);
}

}  // namespace tarv
