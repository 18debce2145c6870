#include "EmptyDataSets.h"

#include <array>
#include <cstdint>

namespace tarv {

namespace {

constexpr uint32_t kVersion = 1;

/// A kind of data set and the words behind its size field. The counts of whatever it could hold are 0.
struct CEmptySet {
    std::string_view kind;
    int wordCount;
    std::array<uint32_t, 7> words;
};

constexpr CEmptySet kEmptySets[] = {
    {"imageset", 3, {kVersion, 0, 0}},                 // ranges, images
    {"font", 7, {kVersion, kVersion, 0, 0, 0, 0, 0}},  // its image set; line height and two spacings
    {"brushset", 2, {kVersion, 0}},                    // brushes
    {"palette", 3, {kVersion, 0, 0}},                  // colours, frame table
};

void putValue(std::string& out, uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) {
        out.push_back(static_cast<char>(value >> shift & 0xff));
    }
}

}  // namespace

std::optional<std::string> emptyDataSet(std::string_view kind) {
    for (const CEmptySet& set : kEmptySets) {
        if (set.kind == kind) {
            std::string bytes;
            putValue(bytes, static_cast<uint32_t>(set.wordCount) * 4);
            for (int i = 0; i < set.wordCount; ++i) {
                putValue(bytes, set.words[static_cast<size_t>(i)]);
            }
            return bytes;
        }
    }
    return std::nullopt;
}

}  // namespace tarv
