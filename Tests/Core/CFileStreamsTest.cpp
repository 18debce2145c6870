#include "Core/CFileStreams.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "Core/Log.h"
#include "Tests/Core/CoreTestHelp.h"

namespace tarv {
namespace {

/// A folder that goes with the test.
class FileStreams : public testing::Test {
protected:
    void SetUp() override { std::filesystem::create_directories(folder_); }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    CString pathOf(const char* name) const {
        const std::string path = (folder_ / name).string();
        return CString::fromUtf8(path.data(), path.size());
    }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() /
        ("tarv-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
};

void put(const CString& path, const std::string& text, bool append = false) {
    CFileWriter writer;
    EXPECT_GOOD(writer.open(path, append));
    EXPECT_GOOD(writer.write(text.data(), static_cast<int64_t>(text.size())));
    EXPECT_GOOD(writer.close());
}

std::string contentOf(const CString& path) {
    CFileReader reader;
    int64_t size = 0;
    EXPECT_GOOD(reader.open(path, kShareRead));
    EXPECT_GOOD(reader.getSize(size));
    std::string text(static_cast<size_t>(size), ' ');
    EXPECT_GOOD(reader.read(text.data(), size));
    EXPECT_GOOD(reader.close());
    return text;
}

TEST_F(FileStreams, RewritingEmptiesAndAppendingAdds) {
    const CString path = pathOf("\xc5\x81 a.bin");
    put(path, "first content");
    put(path, "second");
    EXPECT_EQ(contentOf(path), "second");
    put(path, " and third", true);
    EXPECT_EQ(contentOf(path), "second and third");
}

TEST_F(FileStreams, PositionsMoveAndStreamedReadsEndWith0) {
    const CString path = pathOf("a.bin");
    put(path, "0123456789");
    CFileReader reader;
    char buffer[20] = {};
    int64_t position = 0;
    int64_t count = sizeof(buffer);
    EXPECT_GOOD(reader.open(path, kShareRead | kShareWrite));
    EXPECT_GOOD(reader.setPosition(2));
    EXPECT_GOOD(reader.consume(3));
    EXPECT_GOOD(reader.read(buffer, 2));
    EXPECT_EQ(std::string(buffer, 2), "56");
    EXPECT_GOOD(reader.getPosition(position));
    EXPECT_EQ(position, 7);
    EXPECT_GOOD(reader.readStreamed(buffer, count));
    EXPECT_EQ(count, 3);
    count = sizeof(buffer);
    EXPECT_GOOD(reader.readStreamed(buffer, count));
    EXPECT_EQ(count, 0);
}

TEST_F(FileStreams, AWriterPatchesWhatItWrote) {
    const CString path = pathOf("a.bin");
    CFileWriter writer;
    int64_t position = 0;
    int64_t size = 0;
    EXPECT_GOOD(writer.open(path, false));
    EXPECT_GOOD(writer.write("0123456789", 10));
    EXPECT_GOOD(writer.setPosition(4));
    EXPECT_GOOD(writer.write("xy", 2));
    EXPECT_GOOD(writer.getPosition(position));
    EXPECT_GOOD(writer.getSize(size));
    EXPECT_GOOD(writer.close());
    EXPECT_EQ(position, 6);
    EXPECT_EQ(size, 10);
    EXPECT_EQ(contentOf(path), "0123xy6789");
}

TEST_F(FileStreams, FailuresNameFileErrorAndFlags) {
    const std::string missing = (folder_ / "none").string();
    CFileReader reader;
    CFileWriter writer;
    // 2 is "no such file" for both systems' numbers.
    EXPECT_EQ(messageOf(reader.open(pathOf("none"), 3)),
              "Unable to open file '" + missing + "' for reading (error 2, flags 3).");
    const std::string unmade = (folder_ / "none" / "a.bin").string();
    const CString path = CString::fromUtf8(unmade.data(), unmade.size());
    const std::string rewriting = messageOf(writer.open(path, false));
    EXPECT_TRUE(rewriting.starts_with("Unable to open file '" + unmade + "' for rewriting (error ")) << rewriting;
    const std::string appending = messageOf(writer.open(path, true));
    EXPECT_TRUE(appending.starts_with("Unable to open file '" + unmade + "' for appending (error ")) << appending;
}

TEST_F(FileStreams, AShortReadNamesBothCounts) {
    const CString path = pathOf("a.bin");
    put(path, "0123456789");
    CFileReader reader;
    char buffer[20];
    EXPECT_GOOD(reader.open(path, kShareRead));
    EXPECT_EQ(messageOf(reader.read(buffer, 20)),
              "Unable to read from file '" + path.toUtf8() + "' (required 20 bytes, read 10 bytes).");
}

TEST_F(FileStreams, PositionsBeforeTheBeginningFail) {
    const CString path = pathOf("a.bin");
    put(path, "0123456789");
    CFileReader reader;
    EXPECT_GOOD(reader.open(path, kShareRead | kShareWrite));
    EXPECT_TRUE(messageOf(reader.setPosition(-1))
                    .starts_with("Unable to set file's '" + path.toUtf8() + "' reading position (error "));
    EXPECT_TRUE(messageOf(reader.consume(-1))
                    .starts_with("Unable to set file's '" + path.toUtf8() + "' consume position (error "));
    EXPECT_GOOD(reader.close());
    CFileWriter writer;
    EXPECT_GOOD(writer.open(path, true));
    EXPECT_TRUE(messageOf(writer.setPosition(-1))
                    .starts_with("Unable to set file writing position for file '" + path.toUtf8() + "' (error "));
}

TEST_F(FileStreams, ClosedFilesFailInTheirWords) {
    CFileReader reader;
    CFileWriter writer;
    char byte = 0;
    int64_t value = 1;
    EXPECT_TRUE(messageOf(reader.read(&byte, 1)).starts_with("Unable to read from file '' (error "));
    EXPECT_TRUE(messageOf(reader.readStreamed(&byte, value)).starts_with("Unable to read from file '' (error "));
    EXPECT_TRUE(messageOf(reader.getSize(value)).starts_with("Unable to get file's '' size (error "));
    EXPECT_TRUE(messageOf(reader.getPosition(value)).starts_with("Unable to get file's '' reading position (error "));
    EXPECT_TRUE(messageOf(writer.write(&byte, 1)).starts_with("Unable to write to file '' (error "));
    EXPECT_TRUE(messageOf(writer.getSize(value)).starts_with("Unable to get file size of file '' (error "));
    EXPECT_TRUE(
        messageOf(writer.getPosition(value)).starts_with("Unable to get file writing position for file '' (error "));
    EXPECT_GOOD(reader.close());
    EXPECT_GOOD(writer.close());
}

TEST_F(FileStreams, SharingDecidesWhoMayOpen) {
    const CString path = pathOf("a.bin");
    put(path, "x");
    CFileReader first;
    CFileReader second;
    EXPECT_GOOD(first.open(path, 0));
    EXPECT_NE(messageOf(second.open(path, 0)), "");
    EXPECT_GOOD(first.open(path, kShareRead));
    EXPECT_GOOD(second.open(path, kShareRead));
    CFileWriter writer;
    EXPECT_NE(messageOf(writer.open(path, false)), "");
    EXPECT_GOOD(first.close());
    EXPECT_GOOD(second.close());
    EXPECT_EQ(contentOf(path), "x");
}

TEST_F(FileStreams, ALogFileBeginsEmptyAndEndsLinesWithCrLf) {
    const CString path = pathOf("log.txt");
    put(path, "from an earlier run");
    setLogFile(path);
    logLine("one");
    logLineIn("two", "place");
    setLogFile("");
    logLine("three");
    EXPECT_EQ(contentOf(path), "one\r\ntwo // place\r\n");
}

}  // namespace
}  // namespace tarv
