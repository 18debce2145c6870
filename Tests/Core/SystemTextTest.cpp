// Texts of an encoding that nobody states. The native build's code page is Windows-1252.

#include "Core/SystemText.h"

#include <gtest/gtest.h>

namespace tarv {
namespace {

std::string decoded(const std::string& bytes) {
    return textOfUnknownEncoding(bytes.data(), bytes.size()).toUtf8();
}

TEST(SystemText, ValidUtf8IsInItsShortestFormAndWhole) {
    for (const std::string valid : {"", "plain", "\xc3\xa4", "\xe2\x82\xac", "\xf0\x9f\x98\x80", "\xf4\x8f\xbf\xbf",
                                    "\xed\x9f\xbf", "\xee\x80\x80", "\x7f\xc2\x80\xe0\xa0\x80"})
        EXPECT_TRUE(isValidUtf8(valid.data(), valid.size())) << valid;
    for (const std::string invalid :
         {"\x80", "\xe4", "a\xc3", "\xc3g", "\xc0\xaf", "\xc1\xbf", "\xe0\x9f\xbf", "\xf0\x8f\xbf\xbf",
          "\xf4\x90\x80\x80", "\xf5\x80\x80\x80", "\xff", "\xed\xa0\x80", "\xed\xbf\xbf", "\xe2\x82", "\xf0\x9f\x98"})
        EXPECT_FALSE(isValidUtf8(invalid.data(), invalid.size())) << invalid;
}

TEST(SystemText, OtherBytesAreInTheCodePage) {
    EXPECT_EQ(decoded("Gr\xfc\xdf"
                      "e"),
              "Gr\u00fc\u00df"
              "e");
    EXPECT_EQ(decoded("\x80 \x93quoted\x94 \x85"), "\u20ac \u201cquoted\u201d \u2026");
    EXPECT_EQ(decoded("\xe4\xc3\xa4"), "\u00e4\u00c3\u00a4") << "one stray byte, and none of it is UTF-8";
    EXPECT_EQ(decoded("Gr\u00fc\u00df"
                      "e"),
              "Gr\u00fc\u00df"
              "e");
    EXPECT_EQ(decoded(std::string("a\0\xfc", 3)), "a") << "a byte of 0 ends it";
}

TEST(SystemText, ATextIsCutBehindAWholeUnit) {
    const std::string cuts[] = {"", "a", "a", "a\u00e4", "a\u00e4", "a\u00e4", "a\u00e4\u20ac", "a\u00e4\u20ac"};
    const CString decodedText = CString::fromUtf8("a\u00e4\u20ac", 6);
    for (uint32_t limit = 0; limit < 8; ++limit)
        EXPECT_EQ(withinUtf8Bytes(decodedText, limit).toUtf8(), cuts[limit]) << limit;
}

}  // namespace
}  // namespace tarv
