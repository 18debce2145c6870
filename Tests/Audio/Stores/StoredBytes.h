#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tarv {

/// Writes stored state byte by byte, without the product's writers.
class CStored {
public:
    CStored& word(uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            bytes_ += static_cast<char>(value >> shift);
        return *this;
    }
    CStored& words(const std::vector<uint32_t>& values) {
        for (uint32_t value : values)
            word(value);
        return *this;
    }
    CStored& real(double value) {
        const auto bits = std::bit_cast<uint64_t>(value);
        return word(static_cast<uint32_t>(bits)).word(static_cast<uint32_t>(bits >> 32));
    }
    CStored& raw(const std::string& bytes) {
        bytes_ += bytes;
        return *this;
    }
    /// Count and bytes: a string, or a record behind its length.
    CStored& text(const std::string& bytes) { return word(static_cast<uint32_t>(bytes.size())).raw(bytes); }
    const std::string& bytes() const { return bytes_; }

private:
    std::string bytes_;
};

/// One row of numbers a group.
inline std::string realRecord(const std::vector<std::vector<double>>& groups, uint32_t elementSize = 1,
                              const std::string& path = "path") {
    CStored record;
    record.text(path).words({1, elementSize, 0, static_cast<uint32_t>(groups.size())});
    for (const std::vector<double>& group : groups) {
        record.word(static_cast<uint32_t>(group.size()) / elementSize);
        for (double number : group)
            record.real(number);
    }
    return record.bytes();
}

/// Texts of group 0, numbered from 1.
inline std::string textRecord(const std::vector<std::string>& texts, const std::string& path = "path") {
    const auto count = static_cast<uint32_t>(texts.size());
    CStored record;
    record.text(path).words({1, 1, 1, 1, count});
    for (uint32_t id = 1; id <= count; ++id)
        record.words({id, 1}).text(texts[id - 1]);
    record.word(count);
    for (uint32_t id = 1; id <= count; ++id)
        record.word(id);
    return record.bytes();
}

using CStoredRecords = std::vector<std::pair<std::string, std::string>>;

inline std::string storedPreset(const std::string& name, const CStoredRecords& records = {}) {
    CStored preset;
    preset.text(name).word(static_cast<uint32_t>(records.size()));
    for (const auto& [key, record] : records)
        preset.text(key).text(record);
    return preset.bytes();
}

inline std::string storedBank(const std::string& name, const std::vector<std::string>& presets) {
    CStored bank;
    bank.text(name).word(static_cast<uint32_t>(presets.size()));
    for (const std::string& preset : presets)
        bank.raw(preset);
    return bank.bytes();
}

inline std::string storedList(const std::vector<std::string>& presets) {
    CStored list;
    list.words({1, 0, static_cast<uint32_t>(presets.size())});
    for (const std::string& preset : presets)
        list.raw(preset);
    return list.bytes();
}

}  // namespace tarv
