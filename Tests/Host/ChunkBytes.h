#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tarv::host {

/// States as bytes, written and read by their layout, without the product's readers.

/// One stored parameter: numbers of each group, or the texts of group 0.
struct CStoredParam {
    std::string definition;
    std::vector<std::vector<double>> groups;
    std::vector<std::string> texts;
    bool operator==(const CStoredParam&) const = default;
};
using CStoredParams = std::map<std::string, CStoredParam>;

struct CStoredPreset {
    std::string name;
    CStoredParams params;
};

struct CStoredBank {
    std::string name;
    std::vector<CStoredPreset> presets;
};

std::string presetStream(const CStoredPreset& preset);
std::string bankStream(const CStoredBank& bank);
std::string recordBytes(const CStoredParam& param);
/// The compressed block of a stream; an id of four characters.
std::string block(const std::string& id, const std::string& stream);
/// The check value of the four bytes of a count.
std::string checkOf(const std::string& count);
inline std::string presetBlock(const CStoredPreset& preset) {
    return block("aprs", presetStream(preset));
}
inline std::string bankBlock(const CStoredBank& bank) {
    return block("abnk", bankStream(bank));
}

/// The content of a block; false if the id, check value, stream or layout is wrong.
bool inflate(const std::string& block, const std::string& id, std::string& stream);
bool readPreset(const std::string& block, CStoredPreset& preset);
bool readBank(const std::string& block, CStoredBank& bank);

}  // namespace tarv::host
