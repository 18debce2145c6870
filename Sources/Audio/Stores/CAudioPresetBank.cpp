#include "Audio/Stores/CAudioPresetBank.h"

#include <utility>

#include "Audio/Stores/PackedStream.h"
#include "Core/CompressedBlock.h"

namespace tarv {

namespace {

/// Reads count and presets and appends them to `bank`.
CError* loadPresets(CMemoryReader& stream, CAudioPresetBank& bank) {
    uint32_t count = 0;
    TARV_TRY(stream.readValue(count));
    if (count > CAudioPresetBank::kCountLimit) {
        TARV_FAIL("@tarvstr_CAudioPresetBank_load_CountError Invalid preset count %1.", CString::fromInt(count));
    }
    for (uint32_t i = 0; i < count; ++i) {
        TARV_TRY(bank.append().loadFresh(stream));
    }
    return nullptr;
}

CError* savePresets(COutputStream& stream, const CAudioPresetBank& bank) {
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(bank.count())));
    for (int32_t i = 0; i < bank.count(); ++i) {
        TARV_TRY(bank.preset(i).save(stream));
    }
    return nullptr;
}

}  // namespace

void CAudioPresetBank::select(int32_t index) {
    selected_ = index >= 0 && index < count() ? index : 0;
}

void CAudioPresetBank::insert(int32_t index, const CAudioPreset& preset) {
    auto copy = std::make_unique<CAudioPreset>();
    copy->copyFrom(preset);
    putIn(index, std::move(copy));
}

void CAudioPresetBank::putIn(int32_t index, std::unique_ptr<CAudioPreset> preset) {
    presets_.insert(index, preset.release());
    if (index <= selected_ && count() > 1) {
        ++selected_;
    }
}

int32_t CAudioPresetBank::indexOf(uint64_t id) const {
    for (int32_t i = 0; i < count(); ++i) {
        if (presets_[i]->identity().id == id) {
            return i;
        }
    }
    return -1;
}

CAudioPreset& CAudioPresetBank::append() {
    presets_.append(new CAudioPreset);
    return *presets_.last();
}

std::unique_ptr<CAudioPreset> CAudioPresetBank::takeOut(int32_t index) {
    std::unique_ptr<CAudioPreset> preset(presets_[index]);
    presets_.removeAt(index);
    select(index < selected_ ? selected_ - 1 : selected_ < count() ? selected_ : count() - 1);
    return preset;
}

void CAudioPresetBank::remove(int32_t index) {
    takeOut(index);
}

void CAudioPresetBank::copyPresets(const CAudioPresetBank& other) {
    if (this == &other) {
        return;
    }
    const int32_t selected = selected_;
    presets_.deleteAll();
    presets_.reserve(other.count());
    for (int32_t i = 0; i < other.count(); ++i) {
        append().copyFrom(other.preset(i));
    }
    select(selected);
}

void CAudioPresetBank::copyFrom(const CAudioPresetBank& other) {
    copyPresets(other);
    name_ = other.name_;
    select(other.selected_);
}

void CAudioPresetBank::swap(CAudioPresetBank& other) {
    using CPointers = CArray<CAudioPreset*, 8>;
    std::swap(name_, other.name_);
    std::swap(static_cast<CPointers&>(presets_), static_cast<CPointers&>(other.presets_));
    std::swap(selected_, other.selected_);
}

void CAudioPresetBank::take(CAudioPresetBank& other) {
    const int32_t selected = selected_;
    swap(other);
    select(selected);
}

CError* CAudioPresetBank::load(CMemoryReader& stream) {
    CAudioPresetBank loaded;
    TARV_TRY(stream.readString(loaded.name_));
    TARV_TRY(loadPresets(stream, loaded));
    take(loaded);
    return nullptr;
}

CError* CAudioPresetBank::save(COutputStream& stream) const {
    TARV_TRY(stream.writeString(name_));
    TARV_TRY(savePresets(stream, *this));
    return nullptr;
}

CError* CAudioPresetBank::load(const CString& path) {
    TARV_TRY(loadPackedFile(path, kBankBlockId, *this));
    return nullptr;
}

CError* CAudioPresetList::load(CMemoryReader& stream) {
    uint32_t version = 0;
    uint32_t reserved = 0;
    TARV_TRY(stream.readValue(version));
    if (version != kVersion) {
        TARV_FAIL("@tarvstr_CAudioPresetList_load_VersionError Unsupported preset list version %1.",
                  CString::fromInt(version));
    }
    TARV_TRY(stream.readValue(reserved));
    CAudioPresetList loaded;
    TARV_TRY(loadPresets(stream, loaded));
    take(loaded);
    return nullptr;
}

CError* CAudioPresetList::save(COutputStream& stream) const {
    TARV_TRY(stream.writeValue(kVersion));
    TARV_TRY(stream.writeValue(0));
    TARV_TRY(savePresets(stream, *this));
    return nullptr;
}

CError* CAudioPresetList::load(const CString& path) {
    TARV_TRY(loadPackedFile(path, kListBlockId, *this));
    return nullptr;
}

}  // namespace tarv
