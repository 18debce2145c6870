#pragma once

#include <string>

#include "Core/CStreams.h"

namespace tarv {

/// A named collection of raw parameter records by key. Records are not interpreted; those of unknown keys are kept as
/// they are. Keys are in ascending byte order. No lock; the owner guards it.
class CAudioPreset : public CHeapObject {
public:
    /// A run of bytes inside the preset, valid until the preset changes.
    struct CBytes {
        const uint8_t* data = nullptr;
        int32_t count = 0;
    };

    CAudioPreset() = default;
    explicit CAudioPreset(const CString& name) : name_(name) {}

    /// Prefix, ":" and display name; the first colon counts. Without one the whole name is the display name.
    const CString& name() const { return name_; }
    bool hasPrefix(const CString& prefix) const;
    CString displayName() const;
    void setName(const CString& name) { name_ = name; }
    /// Keeps the prefix. A name beyond kMaxNameBytes of UTF-8, what a message can hold, is cut.
    void setDisplayName(const CString& displayName);
    static constexpr uint32_t kMaxNameBytes = CInputStream::kMaxStringBytes;

    int32_t recordCount() const { return entries_.count(); }
    /// Key and record of an index in 0..recordCount-1, by ascending key.
    CBytes key(int32_t index) const;
    CBytes record(int32_t index) const;
    CString keyText(int32_t index) const;
    /// The index of a key (UTF-8, as all keys here), or -1.
    int32_t find(const std::string& key) const { return find(key, -1); }
    /// As find(key), but tries the index `guess` first, for a walk through the keys in their order.
    int32_t find(const std::string& key, int32_t guess) const;
    /// Sets or replaces the record of a key; returns whether that changed the preset.
    bool setRecord(const std::string& key, const CByteBuffer& record) {
        int32_t place = -1;
        return setRecord(key, record, place);
    }
    /// The same, but tries the index `place` first, which gets that of the record.
    bool setRecord(const std::string& key, const CByteBuffer& record, int32_t& place);
    /// Removes the record of a key, if there is one.
    void removeRecord(const std::string& key);
    /// Removes all records; the name stays.
    void clear();
    void copyFrom(const CAudioPreset& other);
    /// Whether name and records are the same, byte for byte.
    bool isSame(const CAudioPreset& other) const;
    /// Takes name and records out of the other.
    void take(CAudioPreset& other);
    /// Exchanges names and records.
    void swap(CAudioPreset& other);

    /// Identifies the preset among those of its owner, who also notes changes here. Not part of the contents: copyFrom,
    /// take, swap and save leave it unchanged. Id 0: none was assigned.
    struct CIdentity {
        uint64_t id = 0;
        uint64_t changedAt[2] = {0, 0};  ///< when each of two states (A/B) changed the contents last
    };
    CIdentity& identity() { return identity_; }
    const CIdentity& identity() const { return identity_; }

    /// The stream form: name, count, then key, byte length and record of each. On failure the preset is as it was. A
    /// count below 1 ends the read; of two records with one key the later counts. A name that is not valid UTF-8 is
    /// read in the system's code page; it is written back as UTF-8.
    [[nodiscard]] CError* load(CMemoryReader& stream);
    /// As load, into a new preset; on failure its contents are undefined.
    [[nodiscard]] CError* loadFresh(CMemoryReader& stream);
    [[nodiscard]] CError* save(COutputStream& stream) const;
    /// A file (or an embedded range) of the compressed form, id 'aprs'.
    [[nodiscard]] CError* load(const CString& path);

private:
    /// Where a record lies in `bytes_`: length of the key, key, length of the record, record.
    struct CEntry {
        int32_t start = 0;
        int32_t keyLength = 0;
        int32_t recordLength = 0;

        int32_t keyStart() const { return start + kLengthBytes; }
        int32_t recordStart() const { return keyStart() + keyLength + kLengthBytes; }
        int32_t byteCount() const { return 2 * kLengthBytes + keyLength + recordLength; }
    };
    static constexpr int32_t kLengthBytes = 4;

    int32_t colon() const { return name_.indexOf(':'); }
    int32_t placeOf(const CBytes& key, bool& isThere) const;
    CBytes keyOf(const CEntry& entry) const { return {bytes_.data() + entry.keyStart(), entry.keyLength}; }
    /// Returns the entry's index.
    int32_t enter(const CEntry& entry);
    void putInOrder();
    void waste(const CEntry& entry) { waste_ += entry.byteCount(); }
    void dropWaste();
    [[nodiscard]] CError* loadName(CMemoryReader& stream);
    [[nodiscard]] CError* loadEntries(CMemoryReader& stream, uint32_t count);
    void clearLengthsOfNamelessKeys();

    CString name_;
    // All keys and records in one run, in the stream's form: a host's chunk holds hundreds of them, and is read, copied
    // and written as a whole.
    CByteBuffer bytes_;
    CArray<CEntry, 16> entries_;
    int32_t waste_ = 0;  ///< bytes of the run that no entry uses
    CIdentity identity_;
};

}  // namespace tarv
