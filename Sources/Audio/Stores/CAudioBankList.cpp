#include "Audio/Stores/CAudioBankList.h"

#include <utility>

#include "Audio/Stores/PackedStream.h"

namespace tarv {

void CAudioBankList::insert(int32_t index, const CAudioPresetBank& bank) {
    auto* copy = new CAudioPresetBank;
    copy->copyFrom(bank);
    banks_.append(copy);
    for (int32_t i = banks_.count() - 1; i > index; --i) {
        std::swap(banks_[i], banks_[i - 1]);
    }
}

void CAudioBankList::remove(int32_t index) {
    delete banks_[index];
    banks_.removeAt(index);
}

void CAudioBankList::take(CAudioBankList& other) {
    using CPointers = CArray<CAudioPresetBank*, 4>;
    std::swap(static_cast<CPointers&>(banks_), static_cast<CPointers&>(other.banks_));
}

CError* CAudioBankList::load(CMemoryReader& stream) {
    uint32_t version = 0;
    uint32_t reserved = 0;
    uint32_t count = 0;
    TARV_TRY(stream.readValue(version));
    if (version != kVersion) {
        TARV_FAIL("@tarvstr_CAudioBankList_load_VersionError Unsupported bank list version %1.",
                  CString::fromInt(version));
    }
    TARV_TRY(stream.readValue(reserved));
    TARV_TRY(stream.readValue(count));
    if (count > CAudioPresetBank::kCountLimit) {
        TARV_FAIL("@tarvstr_CAudioBankList_load_TooManyBanks Too many banks: %1.", CString::fromInt(count));
    }
    CAudioBankList loaded;
    for (uint32_t i = 0; i < count; ++i) {
        auto bank = std::make_unique<CAudioPresetBank>();
        TARV_TRY(bank->load(stream));
        loaded.banks_.append(bank.release());
    }
    TARV_TRY(expectStreamEnd(stream));
    take(loaded);
    return nullptr;
}

CError* CAudioBankList::save(COutputStream& stream) const {
    TARV_TRY(stream.writeValue(kVersion));
    TARV_TRY(stream.writeValue(0));
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(banks_.count())));
    for (const CAudioPresetBank* bank : banks_) {
        TARV_TRY(bank->save(stream));
    }
    return nullptr;
}

}  // namespace tarv
