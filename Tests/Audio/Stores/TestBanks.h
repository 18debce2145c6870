#pragma once

#include <initializer_list>
#include <string>

#include "Audio/Stores/CAudioBankList.h"

namespace tarv {

/// A bank of presets without records.
struct CBank : CAudioPresetBank {
    CBank(const char* bankName, std::initializer_list<const char*> presets, const char* prefix = "TAEQ:")
        : CAudioPresetBank(CString(bankName)) {
        for (const char* preset : presets) {
            append().setName(CString(prefix) + preset);
        }
    }
};

/// Names of all banks with their presets: "One(a b)Two()".
inline std::string listed(const CAudioBankList& banks) {
    std::string text;
    for (int32_t b = 0; b < banks.count(); ++b) {
        text += banks.bank(b).name().toUtf8() + "(";
        for (int32_t i = 0; i < banks.bank(b).count(); ++i) {
            text += (i > 0 ? " " : "") + banks.bank(b).preset(i).displayName().toUtf8();
        }
        text += ")";
    }
    return text;
}

}  // namespace tarv
