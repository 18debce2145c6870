#include "Core/CStreams.h"

#include <gtest/gtest.h>

#include <cstring>

#include "Tests/Core/CoreTestHelp.h"

namespace tarv {
namespace {

CByteBuffer bytesOf(const std::string& text) {
    CByteBuffer bytes;
    bytes.resize(static_cast<int32_t>(text.size()));
    std::memcpy(bytes.data(), text.data(), text.size());
    return bytes;
}

std::string textOf(const CByteBuffer& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<size_t>(bytes.count())};
}

std::string written(const CMemoryWriteBuffer& target) {
    CByteBuffer bytes;
    target.copyTo(bytes);
    return textOf(bytes);
}

/// A stored string of the count and bytes given, which need not agree.
CByteBuffer storedString(uint32_t count, const std::string& utf8) {
    std::string bytes;
    for (int i = 0; i < 4; ++i) {
        bytes += static_cast<char>(count >> (8 * i));
    }
    return bytesOf(bytes + utf8);
}

CMemoryReader readerOf(const CByteBuffer& bytes) {
    return CMemoryReader(bytes.data(), static_cast<uint32_t>(bytes.count()));
}

TEST(Streams, ValuesAreLittleEndian) {
    CMemoryWriteBuffer target;
    EXPECT_GOOD(target.writeValue(0x01020384));
    EXPECT_GOOD(target.writeDouble(1.5));
    EXPECT_EQ(written(target), std::string("\x84\x03\x02\x01\0\0\0\0\0\0\xf8\x3f", 12));
    const CByteBuffer bytes = bytesOf(written(target));
    CMemoryReader source = readerOf(bytes);
    uint32_t value = 0;
    double real = 0;
    EXPECT_GOOD(source.readValue(value));
    EXPECT_GOOD(source.readDouble(real));
    EXPECT_EQ(value, 0x01020384u);
    EXPECT_EQ(real, 1.5);
}

TEST(Streams, AStringOf61440BytesIsReadAnd61441Fails) {
    CString text;
    const CByteBuffer longest = storedString(61440, std::string(61440, 'x'));
    CMemoryReader source = readerOf(longest);
    EXPECT_GOOD(source.readString(text));
    EXPECT_EQ(text.length(), 61440);
    const CByteBuffer tooLong = storedString(61441, std::string(61441, 'x'));
    CMemoryReader second = readerOf(tooLong);
    EXPECT_EQ(messageOf(second.readString(text)), "String length 61441 too long in readString().");
    EXPECT_EQ(text, "");
}

TEST(Streams, ANegativeCountGivesAnEmptyString) {
    CString text("before");
    const CByteBuffer bytes = storedString(0xffffffff, "");
    CMemoryReader source = readerOf(bytes);
    EXPECT_GOOD(source.readString(text));
    EXPECT_EQ(text, "");
}

TEST(Streams, AnUncodedPlaneKeepsItsLow16Bits) {
    CString text;
    const CByteBuffer bytes = storedString(4, "\xf0\x9f\x98\x80");
    CMemoryReader source = readerOf(bytes);
    EXPECT_GOOD(source.readString(text));
    ASSERT_EQ(text.length(), 1);
    EXPECT_EQ(text.at(0), 0xf600);
}

TEST(Streams, StringsOfBothWidthsComeBack) {
    std::u16string longText;
    for (int i = 1; i < 3000; ++i) {
        longText += static_cast<char16_t>(i * 19 % 0xd7ff + 1);
    }
    for (const CString& text : {CString(""), CString("narrow"), CString("\xe4\xff"), CString(longText.c_str())}) {
        CMemoryWriteBuffer target;
        EXPECT_GOOD(target.writeString(text));
        const CByteBuffer bytes = bytesOf(written(target));
        CMemoryReader source = readerOf(bytes);
        CString back;
        EXPECT_GOOD(source.readString(back));
        EXPECT_EQ(back, text);
        int64_t position = 0;
        EXPECT_GOOD(source.getPosition(position));
        EXPECT_EQ(position, bytes.count());
    }
}

TEST(Streams, SurrogatesAreDropped) {
    CString text(u"a");
    text.appendChar(0xd83d);
    text.appendChar('b');
    CMemoryWriteBuffer target;
    EXPECT_GOOD(target.writeString(text));
    EXPECT_EQ(written(target), std::string("\2\0\0\0ab", 6));
}

TEST(CMemoryReader, ReadsBeyondTheEndFail) {
    uint8_t bytes[10] = {};
    CMemoryReader source(bytes, sizeof(bytes));
    EXPECT_GOOD(source.consume(6));
    EXPECT_EQ(messageOf(source.read(bytes, 5)),
              "Premature end of memory resource while reading (pos 6, count 5, size 10).");
    EXPECT_EQ(messageOf(source.consume(5)),
              "Premature end of memory resource while consuming (pos 6, count 5, size 10).");
    EXPECT_EQ(messageOf(source.consume(-1)),
              "Premature end of memory resource while consuming (pos 6, count -1, size 10).");
    EXPECT_NE(messageOf(source.setPosition(11)).find("(pos 11, size 10)"), std::string::npos);
    EXPECT_NE(messageOf(source.setPosition(-1)).find("(pos -1, size 10)"), std::string::npos);
    int64_t position = 0;
    EXPECT_GOOD(source.getPosition(position));
    EXPECT_EQ(position, 6);
    EXPECT_GOOD(source.setPosition(10));
}

TEST(CMemoryReader, StreamedReadsShortenTheCountAndGive0AtTheEnd) {
    const uint8_t bytes[10] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    uint8_t buffer[20] = {};
    CMemoryReader source(bytes, sizeof(bytes));
    int64_t count = 7;
    EXPECT_GOOD(source.readStreamed(buffer, count));
    EXPECT_EQ(count, 7);
    count = 7;
    EXPECT_GOOD(source.readStreamed(buffer, count));
    EXPECT_EQ(count, 3);
    EXPECT_EQ(buffer[2], 9);
    count = 7;
    EXPECT_GOOD(source.readStreamed(buffer, count));
    EXPECT_EQ(count, 0);
    EXPECT_NE(messageOf(source.read(buffer, 1)), "");
}

TEST(CMemoryWriteBuffer, WritesAnywhereInItsChain) {
    CMemoryWriteBuffer target;
    std::string expected;
    for (int i = 0; i < 100; ++i) {
        const std::string part(static_cast<size_t>(i * 7 % 300), static_cast<char>('a' + i % 26));
        EXPECT_GOOD(target.write(part.data(), static_cast<int64_t>(part.size())));
        expected += part;
    }
    for (size_t at : {size_t{5000}, size_t{0}, size_t{127}, expected.size() - 3, size_t{1000}}) {
        const std::string patch(200, 'Z');
        EXPECT_GOOD(target.setPosition(static_cast<int64_t>(at)));
        EXPECT_GOOD(target.write(patch.data(), 200));
        expected.resize(std::max(expected.size(), at + 200));
        expected.replace(at, 200, patch);
        int64_t position = 0;
        EXPECT_GOOD(target.getPosition(position));
        EXPECT_EQ(position, static_cast<int64_t>(at) + 200);
    }
    int64_t size = 0;
    EXPECT_GOOD(target.getSize(size));
    EXPECT_EQ(size, static_cast<int64_t>(expected.size()));
    EXPECT_EQ(written(target), expected);
    EXPECT_NE(messageOf(target.setPosition(size + 1)), "");
}

TEST(Streams, BytesAreReadBehindWhatTheBufferHolds) {
    const CByteBuffer source = bytesOf("abcdef");
    CMemoryReader reader = readerOf(source);
    CByteBuffer buffer = bytesOf("x");
    EXPECT_GOOD(reader.readBytes(buffer, 2));
    EXPECT_GOOD(reader.readBytes(buffer, 0));
    EXPECT_GOOD(reader.readBytes(buffer, 4));
    EXPECT_EQ(textOf(buffer), "xabcdef");
}

TEST(Streams, BytesThatTheSourceCannotFillLeaveTheBufferAsLongAsItWas) {
    const CByteBuffer source = bytesOf("abcdef");
    for (const uint32_t count : {7u, 1u << 20, 0x7fffffffu, 0xffffffffu}) {
        CMemoryReader reader = readerOf(source);
        CByteBuffer buffer = bytesOf("x");
        EXPECT_NE(messageOf(reader.readBytes(buffer, count)), "") << count;
        EXPECT_EQ(textOf(buffer), "x") << count;
        EXPECT_LE(buffer.capacity(), (1 << 16) + 1) << count;
    }
}

/// Memory behind a face that knows only how to read.
class CPlainStream : public CInputStream {
public:
    explicit CPlainStream(const CByteBuffer& source) : reader_(readerOf(source)) {}
    CError* consume(int64_t count) override { return reader_.consume(count); }
    CError* read(void* buffer, int64_t count) override { return reader_.read(buffer, count); }

private:
    CMemoryReader reader_;
};

void expectStringBytes(CInputStream& stream, const std::string& expected) {
    CByteBuffer room = bytesOf("former");
    const uint8_t* bytes = nullptr;
    uint32_t count = 0;
    EXPECT_GOOD(stream.viewString(bytes, count, room));
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes), count), expected);
}

TEST(Streams, TheBytesOfAStringComeAsTheyStand) {
    for (const auto& [stored, expected] :
         {std::pair(storedString(3, "\xff\x80z"), std::string("\xff\x80z")), {storedString(0xffffffff, "z"), ""}}) {
        CMemoryReader memory = readerOf(stored);
        CPlainStream plain(stored);
        expectStringBytes(memory, expected);
        expectStringBytes(plain, expected);
    }
    const CByteBuffer tooLong = storedString(61441, std::string(61441, 'a'));
    CMemoryReader reader = readerOf(tooLong);
    CByteBuffer room;
    const uint8_t* bytes = nullptr;
    uint32_t count = 0;
    EXPECT_EQ(messageOf(reader.viewString(bytes, count, room)), "String length 61441 too long in readString().");
}

TEST(Streams, AViewOfMemoryCopiesNothingAndEndsWithIt) {
    const CByteBuffer source = bytesOf("abcdef");
    CMemoryReader reader = readerOf(source);
    CByteBuffer room;
    const uint8_t* bytes = nullptr;
    EXPECT_GOOD(reader.view(bytes, 4, room));
    EXPECT_EQ(bytes, source.data());
    EXPECT_EQ(room.count(), 0);
    EXPECT_EQ(messageOf(reader.view(bytes, 3, room)),
              "Premature end of memory resource while reading (pos 4, count 3, size 6).");
    EXPECT_GOOD(reader.view(bytes, 2, room));
    EXPECT_EQ(bytes, source.data() + 4);
    CPlainStream plain(source);
    EXPECT_GOOD(plain.view(bytes, 4, room));
    EXPECT_EQ(textOf(room), "abcd");
    EXPECT_NE(messageOf(plain.view(bytes, 0x7fffffff, room)), "");
    EXPECT_LE(room.capacity(), (1 << 16) + 1);
}

TEST(Streams, AStreamedViewGivesWhatThereIsUpToTheEnd) {
    const CByteBuffer source = bytesOf("abcdef");
    CMemoryReader reader = readerOf(source);
    CByteBuffer room;
    const uint8_t* bytes = nullptr;
    for (const auto& [asked, given] : {std::pair(4, 4), {INT32_MAX, 2}, {1, 0}}) {
        int64_t count = asked;
        EXPECT_GOOD(reader.viewStreamed(bytes, count, room));
        EXPECT_EQ(count, given);
    }
    EXPECT_EQ(bytes, source.data() + 6);
    EXPECT_EQ(room.count(), 0);
    CPlainStream plain(source);
    int64_t count = 6;
    EXPECT_GOOD(plain.viewStreamed(bytes, count, room));
    EXPECT_EQ(count, 6);
    EXPECT_EQ(bytes, room.data());
    EXPECT_EQ(textOf(room), "abcdef");
}

TEST(Streams, WhatIsTakenOutOfMemoryIsWhatIsReadFromIt) {
    const CByteBuffer stored = storedString(3, "\xff\x80z");
    CMemoryReader reader = readerOf(stored);
    const uint8_t* bytes = nullptr;
    uint32_t value = 0;
    EXPECT_GOOD(reader.takeValue(value));
    EXPECT_EQ(value, 3u);
    EXPECT_EQ(messageOf(reader.takeValue(value)),
              "Premature end of memory resource while reading (pos 4, count 4, size 7).");
    EXPECT_EQ(messageOf(reader.takeBytes(bytes, 4)),
              "Premature end of memory resource while reading (pos 4, count 4, size 7).");
    EXPECT_GOOD(reader.takeBytes(bytes, 3));
    EXPECT_EQ(bytes, stored.data() + 4);
    reader.open(stored.data(), static_cast<uint32_t>(stored.count()));
    EXPECT_GOOD(reader.takeString(bytes, value));
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes), value), "\xff\x80z");
    EXPECT_EQ(reader.restCount(), 0u);
    const CByteBuffer tooLong = storedString(61441, "");
    reader.open(tooLong.data(), static_cast<uint32_t>(tooLong.count()));
    EXPECT_EQ(messageOf(reader.takeString(bytes, value)), "String length 61441 too long in readString().");
}

TEST(Streams, ABufferWriterAppends) {
    CByteBuffer buffer = bytesOf("a");
    CBufferWriter writer(buffer);
    EXPECT_GOOD(writer.write("bc", 2));
    EXPECT_GOOD(writer.writeValue(0x64656667));
    EXPECT_EQ(textOf(buffer), "abcgfed");
    EXPECT_EQ(messageOf(writer.write("x", -1)), "Unable to write -1 bytes behind 7.");
    EXPECT_EQ(textOf(buffer), "abcgfed");
}

}  // namespace
}  // namespace tarv
