#pragma once

#include "Audio/Presets/CAudioRegistryParams.h"
#include "Audio/Presets/CPresetRequest.h"
#include "Audio/Stores/CAudioPreset.h"

namespace tarv {

/// Converts between the values of a registry's parameters and the records of a preset. Captures and decodes only: it
/// changes no value. Takes the lock of the list, then one parameter's at a time. Any thread but the audio thread.
class CAudioPresetCodec {
public:
    using CAssignment = CAudioParamCollector::CAssignment;
    using CAssignments = CArray<CAssignment, 1>;

    /// The list outlives the codec.
    explicit CAudioPresetCodec(const CAudioRegistryParams& params) : params_(params) {}

    /// Sets the record of every stored parameter to its user-side value; returns whether that changed the preset.
    /// Records of unknown keys stay.
    bool capture(CAudioPreset& preset, bool withPersistent) const;
    /// Reads all records and gives the values that differ from the present ones. A storable parameter without a record,
    /// or with one of another version or format, gets its default. On failure of one record's structure the assignments
    /// are not usable.
    [[nodiscard]] CError* decode(const CAudioPreset& preset, const CPresetRequest& request,
                                 CAssignments& assignments) const;
    /// Makes every record one whose group 0 is that group; parameters of a single group and unknown records are left
    /// out.
    void extractGroup(CAudioPreset& preset, int32_t group) const;
    /// The defaults of all storable parameters.
    void addDefaults(CAssignments& assignments) const;

private:
    struct CReading;
    [[nodiscard]] static CError* decodeEntry(CReading& reading, const CAudioRegistryParam& entry);
    [[nodiscard]] CError* decodeOthers(CReading& reading) const;

    const CAudioRegistryParams& params_;
};

}  // namespace tarv
