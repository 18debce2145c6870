#include "Audio/VST/VstText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace tarv {
namespace {

TEST(VstTextTest, WholeCharactersAreCopiedUpToTheSize) {
    const struct {
        const char* text;
        int32_t size;
        const char* copied;
    } rows[] = {
        {"", 1, ""},          {"abc", 1, ""},    {"abc", 4, "abc"},       {"abc", 3, "ab"}, {"a\u00e9b", 4, "a\u00e9"},
        {"a\u00e9b", 3, "a"}, {"\u20ac", 3, ""}, {"\u20ac", 4, "\u20ac"},
    };
    for (const auto& row : rows) {
        char buffer[8];
        std::fill(std::begin(buffer), std::end(buffer), '#');
        copyVstText(buffer, CString::fromUtf8(row.text, std::strlen(row.text)), row.size);
        EXPECT_EQ(std::string(buffer), row.copied) << row.text << ' ' << row.size;
        EXPECT_EQ(buffer[row.size], '#') << "behind the buffer";
    }
}

}  // namespace
}  // namespace tarv
