#include "UI/Controls/Presets/CPresetPlace.h"

namespace tarv {

namespace {

constexpr uint16_t kSeparator = '.';
constexpr int32_t kNumbers = 4;

}  // namespace

/// kind.bank.preset.length of the bank's name.bank's name preset's name: names may hold any character.
CString CPresetPlace::toId() const {
    CString id;
    for (const int32_t number : {static_cast<int32_t>(kind), bank, preset, bankName.length()}) {
        id += CString::fromInt(number);
        id.appendChar(kSeparator);
    }
    return id + bankName + presetName;
}

bool CPresetPlace::fromId(const CString& id, CPresetPlace& place) {
    int32_t numbers[kNumbers] = {};
    int32_t start = 0;
    for (int32_t& number : numbers) {
        const int32_t end = id.indexOf(kSeparator, start);
        bool isNumber = end > start;
        number = isNumber ? CString::toInt(id.substring(start, end - start), &isNumber) : 0;
        if (!isNumber) {
            return false;
        }
        start = end + 1;
    }
    const auto [kind, bank, preset, length] = numbers;
    if (kind < 0 || kind > static_cast<int32_t>(CPresetBankKind::Stored) || bank < 0 || preset < -1 || length < 0 ||
        length > id.length() - start) {
        return false;
    }
    place.kind = static_cast<CPresetBankKind>(kind);
    place.bank = bank;
    place.preset = preset;
    place.bankName = id.substring(start, length);
    place.presetName = id.substring(start + length);
    return true;
}

}  // namespace tarv
