#include "Audio/Parameters/CAudioParamStringMap.h"

#include <algorithm>
#include <limits>
#include <memory>

namespace tarv {

CAudioParamStringMap& CAudioParamStringMap::operator=(const CAudioParamStringMap& other) {
    if (this != &other) {
        clear();
        for (const auto& [id, item] : other.items_) {
            CAudioParamDataItem* copy = item->clone();
            copy->uses = item->uses;
            items_[id] = copy;
        }
        lastId_ = other.lastId_;
    }
    return *this;
}

CAudioParamStringMap& CAudioParamStringMap::operator=(CAudioParamStringMap&& other) noexcept {
    if (this != &other) {
        clear();
        items_.swap(other.items_);
        lastId_ = std::exchange(other.lastId_, 0);
    }
    return *this;
}

int32_t CAudioParamStringMap::add(const CString& text) {
    items_[++lastId_] = new CAudioParamDataItemString(text);
    return lastId_;
}

int32_t CAudioParamStringMap::copy(int32_t id, const CAudioParamStringMap& other) {
    const auto found = other.items_.find(id);
    if (found == other.items_.end()) {
        return add(CString());
    }
    CAudioParamDataItem* item = found->second->clone();
    item->uses = 1;
    items_[++lastId_] = item;
    return lastId_;
}

bool CAudioParamStringMap::use(int32_t id) {
    const auto found = items_.find(id);
    if (found == items_.end()) {
        return false;
    }
    ++found->second->uses;
    return true;
}

void CAudioParamStringMap::release(int32_t id) {
    const auto found = items_.find(id);
    if (found != items_.end() && --found->second->uses <= 0) {
        delete found->second;
        items_.erase(found);
    }
}

void CAudioParamStringMap::dropUnused() {
    for (auto it = items_.begin(); it != items_.end();) {
        if (it->second->uses > 0) {
            ++it;
        } else {
            delete it->second;
            it = items_.erase(it);
        }
    }
}

const CString* CAudioParamStringMap::get(int32_t id) const {
    const auto found = items_.find(id);
    if (found == items_.end() || found->second->type() != CAudioParamDataItemString::kType) {
        return nullptr;
    }
    return &static_cast<const CAudioParamDataItemString*>(found->second)->text();
}

void CAudioParamStringMap::clear() {
    for (const auto& entry : items_) {
        delete entry.second;
    }
    items_.clear();
    lastId_ = 0;
}

CError* CAudioParamStringMap::loadItem(CInputStream& stream) {
    uint32_t id = 0;
    uint32_t type = 0;
    TARV_TRY(stream.readValue(id));
    TARV_TRY(stream.readValue(type));
    if (type != CAudioParamDataItemString::kType) {
        TARV_FAIL("@tarvstr_CAudioParamData_load_TypeError Unknown data type %1 encountered", CString::fromInt(type));
    }
    auto item = std::make_unique<CAudioParamDataItemString>();
    TARV_TRY(item->load(stream));
    // An id in the upper half of the range is dropped, so that the counter of new ids cannot overflow.
    if (id == 0 || id > static_cast<uint32_t>(std::numeric_limits<int32_t>::max() / 2)) {
        return nullptr;
    }
    CAudioParamDataItem*& place = items_[static_cast<int32_t>(id)];
    delete place;
    place = item.release();
    place->uses = 0;
    lastId_ = std::max(lastId_, static_cast<int32_t>(id));
    return nullptr;
}

CError* CAudioParamStringMap::load(CInputStream& stream) {
    clear();
    uint32_t count = 0;
    TARV_TRY(stream.readValue(count));
    for (uint32_t i = 0; i < count; ++i) {
        if (CError* error = loadItem(stream)) {
            clear();
            return addErrorLocation(error, __FILE__, __LINE__, CString(), CString());
        }
    }
    return nullptr;
}

CError* CAudioParamStringMap::save(COutputStream& stream) const {
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(count())));
    for (const auto& [id, item] : items_) {
        TARV_TRY(stream.writeValue(static_cast<uint32_t>(id)));
        TARV_TRY(stream.writeValue(item->type()));
        TARV_TRY(item->save(stream));
    }
    return nullptr;
}

}  // namespace tarv
