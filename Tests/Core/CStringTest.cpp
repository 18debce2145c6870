#include "Core/CString.h"

#include <gtest/gtest.h>

namespace tarv {
namespace {

CString repeated(char unit, int32_t count, bool wide = false) {
    CString text;
    if (wide) {
        text.widen();
    }
    for (int32_t i = 0; i < count; ++i) {
        text.appendChar(static_cast<uint16_t>(unit));
    }
    return text;
}

CString formatted(const CString& textTemplate, std::initializer_list<CString> arguments = {}) {
    CString text;
    text.format(textTemplate, arguments.begin(), static_cast<int32_t>(arguments.size()));
    return text;
}

TEST(CString, NarrowTextOf47UnitsLiesInlineAnd48TakeABlockOf57Bytes) {
    EXPECT_EQ(CString(std::string(47, 'a').c_str()).heapCapacity(), 0);
    EXPECT_EQ(CString(std::string(48, 'a').c_str()).heapCapacity(), 57);
    EXPECT_EQ(repeated('a', 48).heapCapacity(), 57);
}

TEST(CString, WideTextOf23UnitsLiesInlineAnd24TakeABlockOf66Bytes) {
    EXPECT_EQ(CString(std::u16string(23, u'a').c_str()).heapCapacity(), 0);
    EXPECT_EQ(CString(std::u16string(24, u'a').c_str()).heapCapacity(), 66);
    EXPECT_EQ(repeated('a', 24, true).heapCapacity(), 66);
}

TEST(CString, ABlockShrinksToTheNeedOnceItIsTwiceTheNeedAndNeverReturnsInline) {
    CString text = repeated('a', 48);
    text.setLength(28, true);  // 57 is below twice 29
    EXPECT_EQ(text.heapCapacity(), 57);
    text.setLength(27, true);  // 57 is at least twice 28
    EXPECT_EQ(text.heapCapacity(), 28);
    EXPECT_EQ(text, repeated('a', 27));
    text.clear();
    EXPECT_EQ(text.heapCapacity(), 1);
    EXPECT_EQ(text, "");
}

TEST(CString, AGrownBlockKeepsTheTextWhenAsked) {
    CString text("keep");
    text.setLength(100, true);
    EXPECT_EQ(text.substring(0, 4), "keep");
    EXPECT_EQ(text.heapCapacity(), 109);
    text.setLength(200, true);
    EXPECT_EQ(text.substring(0, 4), "keep");
    EXPECT_EQ(text.heapCapacity(), 209);
}

TEST(CString, ACopyOfALongTextTakesNoMemoryUntilOneChanges) {
    const CString text = repeated('a', 60);
    const uint64_t before = CHeap::counters().allocations;
    CString copy(text);
    CString other("short");
    other = copy;
    EXPECT_EQ(other.narrowData(), text.narrowData());
    EXPECT_EQ(CHeap::counters().allocations, before);
    // Back to a short one, and to the long one again.
    other = CString("short");
    EXPECT_EQ(other, "short");
    other = text;
    EXPECT_EQ(CHeap::counters().allocations, before);
    copy.set(0, 'b');
    EXPECT_EQ(CHeap::counters().allocations, before + 1);
    EXPECT_EQ(copy, CString("b") + repeated('a', 59));
    EXPECT_EQ(text, repeated('a', 60));
    EXPECT_EQ(other, repeated('a', 60));
}

TEST(CString, EachChangeOfACopyLeavesTheOtherTextAsItIs) {
    using CChange = void (*)(CString&);
    const CChange changes[] = {[](CString& text) { text.append("more"); },
                               [](CString& text) { text.append(CString(text)); },
                               [](CString& text) { text.appendChar('x'); },
                               [](CString& text) { text.appendChar(0x141); },
                               [](CString& text) { text.set(59, 'x'); },
                               [](CString& text) { text.setLength(59, true); },
                               [](CString& text) { text.setLength(10, true); },
                               [](CString& text) { text.setLength(200, false); },
                               [](CString& text) { text.clear(); },
                               [](CString& text) { text.widen(); },
                               [](CString& text) { text.narrow(); },
                               [](CString& text) { text = "short"; },
                               [](CString& text) { text = text.substring(1); },
                               [](CString& text) { const CString taken(std::move(text)); }};
    for (const bool isWide : {false, true}) {
        const CString expected = repeated('a', 60, isWide);
        for (const CChange change : changes) {
            const CString text = repeated('a', 60, isWide);
            CString copy(text);
            const CString third(copy);
            change(copy);
            EXPECT_EQ(text, expected);
            EXPECT_EQ(text.isWide(), isWide);
            EXPECT_EQ(third, expected);
        }
    }
}

TEST(CString, ThreadsMayChangeTheirOwnCopies) {
    const CString text = repeated('a', 100);
    std::vector<std::thread> threads;
    for (int32_t i = 0; i < 4; ++i) {
        threads.emplace_back([text, i] {
            for (int32_t round = 0; round < 1000; ++round) {
                CString own(text);
                const CString second(own);
                own.set(round % 100, static_cast<uint16_t>('b' + i));
                EXPECT_EQ(own.at(round % 100), 'b' + i);
                EXPECT_EQ(second.at(round % 100), 'a');
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(text, repeated('a', 100));
}

TEST(CString, WideningZeroExtendsAndNarrowingDropsTheHighByte) {
    CString text("\xe4z");
    text.widen();
    EXPECT_TRUE(text.isWide());
    EXPECT_EQ(text, u"\u00e4z");
    CString wide(u"\u0141\u00e4");
    wide.narrow();
    EXPECT_EQ(wide, "\x41\xe4");
    CString longText = repeated('x', 47);
    longText.widen();
    EXPECT_EQ(longText, std::u16string(47, u'x').c_str());
    EXPECT_EQ(longText.heapCapacity(), 47 * 2 + 2 + 16);
}

TEST(CString, WidthsMixInComparisonAndAppending) {
    EXPECT_EQ(CString("abc"), CString(u"abc"));
    EXPECT_LT(CString("abc"), CString(u"abd"));
    EXPECT_LT(CString(u"ab"), CString("abc"));
    EXPECT_GT(CString(u"\u0101"), CString("\xff"));
    CString text("a");
    text += CString(u"\u0141");
    EXPECT_EQ(text, u"a\u0141");
    EXPECT_FALSE((CString("a") + CString(u"b")).isWide());
}

TEST(CString, AppendsToItself) {
    CString text = repeated('a', 40);
    text += text;
    EXPECT_EQ(text, repeated('a', 80));
}

TEST(CString, CopiesAndMovesKeepTextAndWidth) {
    for (int32_t length : {0, 5, 47, 48, 300}) {
        for (bool wide : {false, true}) {
            CString source = repeated('q', length, wide);
            const CString copy(source);
            const CString moved(std::move(source));
            EXPECT_EQ(copy, moved);
            EXPECT_EQ(copy.length(), length);
            EXPECT_EQ(moved.isWide(), wide);
            CString assigned("something else that was here");
            assigned = copy;
            EXPECT_EQ(assigned, copy);
            assigned = CString(moved);
            EXPECT_EQ(assigned, copy);
        }
    }
}

TEST(CString, SubstringsOutsideTheTextAreEmpty) {
    const CString text("plugin");
    struct CCase {
        int32_t start, count;
        const char* expected;
    };
    constexpr CCase kCases[] = {{0, -1, "plugin"}, {2, 3, "ugi"}, {6, -1, ""}, {7, -1, ""},
                                {-1, 2, ""},       {4, 3, ""},    {0, -2, ""}, {0, 0, ""}};
    for (const CCase& c : kCases) {
        EXPECT_EQ(text.substring(c.start, c.count), c.expected) << c.start << ' ' << c.count;
    }
}

TEST(CString, FindsAndSplits) {
    const CString path("a.b..c");
    EXPECT_EQ(path.indexOf('.'), 1);
    EXPECT_EQ(path.indexOf('.', 2), 3);
    EXPECT_EQ(path.lastIndexOf('.'), 4);
    EXPECT_EQ(path.lastIndexOf('x'), -1);
    EXPECT_TRUE(path.startsWith(u"a.b"));
    EXPECT_FALSE(path.startsWith("a.b..cd"));
    EXPECT_TRUE(path.startsWith(CString()));
    EXPECT_TRUE(path.endsWith(path));
    EXPECT_TRUE(path.endsWith(CString()));
    EXPECT_TRUE(path.endsWith(path.substring(3)));
    EXPECT_FALSE(path.endsWith(path + "x"));
    EXPECT_FALSE(path.endsWith("a.b"));
    const CString wide(u"\u03b1.b");
    EXPECT_TRUE(wide.endsWith(".b"));
    EXPECT_FALSE(wide.endsWith("a.b"));
    EXPECT_TRUE((path + wide).endsWith(wide));
    EXPECT_EQ(path.split('.').count(), 3);
    EXPECT_EQ(path.split('.', true).count(), 4);
    EXPECT_EQ(path.split('.', true)[2], "");
    EXPECT_EQ(CString("").split('.').count(), 0);
    EXPECT_EQ(CString("").split('.', true).count(), 1);
}

TEST(CString, FormatDropsWhatItDoesNotKnow) {
    EXPECT_EQ(formatted("100%"), "100");
    EXPECT_EQ(formatted("%0"), "");
    EXPECT_EQ(formatted("%%"), "%");
    EXPECT_EQ(formatted("%x%2", {"only"}), "");
    EXPECT_EQ(formatted("%2-%1", {"a", "b"}), "b-a");
}

TEST(CString, FormatAppendsInTheWidthOfTheDestination) {
    CString text("<");
    const CString argument(u"\u0141x");
    text.format("%1>", &argument, 1);
    EXPECT_FALSE(text.isWide());
    EXPECT_EQ(text, "<Ax>");
    CString wide(u"<");
    wide.format("%1>", &argument, 1);
    EXPECT_EQ(wide, u"<\u0141x>");
}

TEST(CString, ReadsIntegersOfThreeBases) {
    struct CCase {
        const char* text;
        int32_t value;
        bool ok;
    };
    constexpr CCase kCases[] = {{"-0x10", -16, true}, {"010", 8, true},        {"#ff", 255, true}, {"$FF", 255, true},
                                {"09", 0, false},     {"0", 0, true},          {"-0", 0, true},    {"", 0, false},
                                {"-", 0, false},      {"0x", 0, false},        {"#", 0, false},    {"0X0A", 10, true},
                                {"12a", 0, false},    {"--1", 0, false},       {" 1", 0, false},   {"1.0", 0, false},
                                {"-37", -37, true},   {"$ffffffff", -1, true}, {"#g", 0, false},   {"00", 0, true}};
    for (const CCase& c : kCases) {
        bool ok = !c.ok;
        EXPECT_EQ(CString::toInt(c.text, &ok), c.value) << c.text;
        EXPECT_EQ(ok, c.ok) << c.text;
    }
    CString wide(u"-0x10");
    EXPECT_EQ(CString::toInt(wide), -16);
}

TEST(CString, ReadsDecimalsWithoutExponent) {
    struct CCase {
        const char* text;
        double value;
        bool ok;
    };
    constexpr CCase kCases[] = {{"1,5", 1.5, true},
                                {"1.5", 1.5, true},
                                {"1e3", 0, false},
                                {"-.5", -0.5, true},
                                {"1-", 0, false},
                                {"", 0, true},
                                {"-", 0, true},
                                {"--1", 0, false},
                                {" 1", 0, false},
                                {"1.2.3", 0, false},
                                {"7.", 7, true},
                                {".", 0, true},
                                {"+1", 0, false},
                                {"0.1", 0.1, true},
                                {"-12.0", -12, true},
                                {"99999999999999999999", 9223372036854775807.0, true},
                                {"0.33333333333333333333333", 0.333333333333333333, true}};
    for (const CCase& c : kCases) {
        bool ok = !c.ok;
        EXPECT_EQ(CString::toDouble(c.text, &ok), c.value) << c.text;
        EXPECT_EQ(ok, c.ok) << c.text;
    }
}

TEST(CString, LongDecimalsGiveTheNearestDouble) {
    EXPECT_EQ(CString::toDouble("0.042454709865267684"), 0.042454709865267684);
    EXPECT_EQ(CString::toDouble("0.941503094173755220"), 0.941503094173755220);
    EXPECT_EQ(CString::toDouble("3.14159265358979323"), 3.14159265358979323);
    EXPECT_EQ(CString::toDouble("-12345.6789012345678"), -12345.6789012345678);
}

TEST(CString, ReadsBooleansByFourWordsOnly) {
    struct CCase {
        const char* text;
        bool value, ok;
    };
    constexpr CCase kCases[] = {{"0", false, true},     {"false", false, true}, {"1", true, true}, {"true", true, true},
                                {"True", false, false}, {"2", false, false},    {"", false, false}};
    for (const CCase& c : kCases) {
        bool ok = !c.ok;
        EXPECT_EQ(CString::toBool(c.text, &ok), c.value) << c.text;
        EXPECT_EQ(ok, c.ok) << c.text;
    }
}

TEST(CString, WritesIntegers) {
    EXPECT_EQ(CString::fromInt(-42), "-42");
    EXPECT_EQ(CString::fromInt(7, 3), "007");
    EXPECT_EQ(CString::fromInt(255, 4, 16), "00FF");
    EXPECT_EQ(CString::fromInt(INT64_MIN), "-9223372036854775808");
}

TEST(CString, WritesDecimalsWithHalvesAwayFromZero) {
    struct CCase {
        double value;
        int32_t decimals;
        const char* text;
    };
    constexpr CCase kCases[] = {{0.5, 0, "1"},      {-0.5, 0, "-1"},
                                {2.5, 0, "3"},      {0.125, 2, "0.13"},
                                {1.5, 4, "1.5000"}, {-0.04, 1, "0.0"},
                                {-0.0, 2, "0.00"},  {12.0, 1, "12.0"},
                                {-1.25, 1, "-1.3"}, {1e20, 1, "100000000000000000000.0"}};
    for (const CCase& c : kCases) {
        EXPECT_EQ(CString::fromDouble(c.value, c.decimals), c.text) << c.value << ' ' << c.decimals;
    }
}

TEST(CString, DecodesUtf8WithoutJudgingIt) {
    struct CCase {
        std::string bytes;
        CString text;
    };
    const CCase kCases[] = {{"abc", "abc"},
                            {"\xc3\xa4", "\xe4"},
                            {"\xc5\x81", u"\u0141"},
                            {"\xe2\x82\xac", u"\u20ac"},
                            {"\xf0\x9f\x98\x80", u"\uf600"},
                            {"a\x80"
                             "b",
                             "ab"},
                            {"a\xf8"
                             "b",
                             "ab"},
                            {"ab\xe2\x82", "ab"},
                            {std::string("ab\0cd", 5), "ab"}};
    for (const CCase& c : kCases) {
        EXPECT_EQ(CString::fromUtf8(c.bytes.data(), c.bytes.size()), c.text) << c.bytes;
    }
    EXPECT_FALSE(CString::fromUtf8("\xc3\xa4", 2).isWide());
    EXPECT_TRUE(CString::fromUtf8("\xc5\x81", 2).isWide());
}

TEST(CString, EncodesUtf8WithoutSurrogates) {
    EXPECT_EQ(CString(u"a\u00e4\u20ac").toUtf8(), "a\xc3\xa4\xe2\x82\xac");
    CString surrogates(u"ab");
    surrogates.appendChar(0xd800);
    surrogates.appendChar(0xdfff);
    surrogates.appendChar('c');
    EXPECT_EQ(surrogates.toUtf8(), "abc");
}

}  // namespace
}  // namespace tarv
