#pragma once

#include "Core/CString.h"

namespace tarv {

/// Kinds of banks, in the order in which lists show them. A list of presets without banks is one stored bank.
enum class CPresetBankKind : uint8_t { Session, Rom, Stored };

/// A bank, or a preset in it, as a list has shown it: by index and name, since another editor or the host may move it
/// before the user acts on it.
struct CPresetPlace {
    CPresetBankKind kind = CPresetBankKind::Session;
    int32_t bank = 0;  ///< index in the store; 0 for the fixed banks
    CString bankName;
    int32_t preset = -1;  ///< -1: the bank itself
    CString presetName;   ///< without the prefix

    bool isBank() const { return preset < 0; }
    /// One text for all of it, as the id of a row.
    CString toId() const;
    /// False, and `place` undefined, for a text that toId has not made.
    [[nodiscard]] static bool fromId(const CString& id, CPresetPlace& place);
    bool operator==(const CPresetPlace&) const = default;
};

}  // namespace tarv
