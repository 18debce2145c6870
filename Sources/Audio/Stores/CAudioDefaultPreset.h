#pragma once

#include "Core/CStreams.h"
#include "Core/CString.h"

namespace tarv {

/// The preset that new instances start with: one preset stream in the product's local store, in a block of id 'aprs'
/// under `kDataName`. An empty block means that there is none. Any thread but the audio thread; what can't be written
/// lasts for this process only, as CApplicationData documents.
class CAudioDefaultPreset {
public:
    static constexpr const char* kDataName = "default-preset";

    /// The preset stream as it is stored, empty for none; it may be damaged.
    static void read(CByteBuffer& stream);
    /// Reads the display name; false if there is no preset or it cannot be read.
    static bool readName(CString& displayName);
    /// Stores a preset stream; the store notifies its bridges. A damaged one that it replaces is kept aside. Fails, and
    /// changes nothing, as CApplicationData::update and keepDamaged do.
    [[nodiscard]] static CError* write(const CByteBuffer& stream);
    [[nodiscard]] static CError* clear();
};

}  // namespace tarv
