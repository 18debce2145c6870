#include "Core/CApplicationData.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>

#include "Tests/Core/LogCapture.h"
#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

constexpr uint32_t kId = 0x74736c61;       // 'alst'
constexpr uint32_t kOtherId = 0x73727061;  // 'aprs'

CByteBuffer bytesOf(const std::string& text) {
    CByteBuffer bytes;
    bytes.resize(static_cast<int32_t>(text.size()));
    std::copy(text.begin(), text.end(), bytes.data());
    return bytes;
}

std::string textOf(const CByteBuffer& bytes) {
    return std::string(bytes.begin(), bytes.end());
}

/// A block as it lies in a file.
std::string block(const std::string& text, uint32_t id) {
    CMemoryWriteBuffer writer;
    CByteBuffer bytes;
    EXPECT_EQ(consumed(writer.writeCompressedData(bytesOf(text), id)), "");
    writer.copyTo(bytes);
    return textOf(bytes);
}

struct CApplicationDataTest : testing::Test {
    CApplicationDataTest() {
        std::filesystem::remove_all(folder);
        setenv("TARV_DATA_ROOT", folder.c_str(), 1);
        appendText(embedded, block("embedded", kId));
        rows[0] =
            CResourceRow{reinterpret_cast<const unsigned char*>(embedded.data()), "AppDataGlobal_routing-presets"};
        CResourceMap::addRows(rows);
    }
    ~CApplicationDataTest() override {
        CResourceMap::clear();
        unsetenv("TARV_DATA_ROOT");
        std::filesystem::remove_all(folder);
    }
    void putFile(const std::string& path, const std::string& content) {
        std::filesystem::path whole = folder + "/" + path;
        std::filesystem::create_directories(whole.parent_path());
        std::ofstream(whole, std::ios::binary) << content;
    }
    std::string fileText(const std::string& path) {
        std::ifstream stream(folder + "/" + path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::string read(CApplicationData& data, uint32_t id = kId) {
        CByteBuffer buffer = bytesOf("old");
        data.read("routing-presets", buffer, id);
        return textOf(buffer);
    }

    std::string folder = testing::TempDir() + "tarv-data";
    std::string embedded;
    CResourceRow rows[2] = {};
    CGlobalData global;
    CLocalData local;
};

TEST_F(CApplicationDataTest, WithoutAFileTheEmbeddedCopyCounts) {
    EXPECT_EQ(read(global), "embedded");
    EXPECT_EQ(read(local), "") << "the other store has another prefix";
    EXPECT_FALSE(std::filesystem::exists(folder)) << "reading makes no folders";
}

TEST_F(CApplicationDataTest, TheUsersFileWins) {
    putFile("user/Tarvelo/Audio Plug-Ins/routing-presets", block("user", kId));
    putFile("common/Tarvelo/Audio Plug-Ins/routing-presets", block("common", kId));
    EXPECT_EQ(read(global), "user");
}

TEST_F(CApplicationDataTest, TheFileOfAllUsersComesNext) {
    putFile("common/Tarvelo/Audio Plug-Ins/routing-presets", block("common", kId));
    putFile("user/Tarvelo/Audio Plug-Ins/AppDataGlobal_routing-presets", block("by its embedded name", kId));
    EXPECT_EQ(read(global), "common");
}

TEST_F(CApplicationDataTest, AFileMayBearTheEmbeddedName) {
    putFile("user/Tarvelo/Audio Plug-Ins/AppDataGlobal_routing-presets", block("by its embedded name", kId));
    EXPECT_EQ(read(global), "by its embedded name");
}

TEST_F(CApplicationDataTest, ADamagedFileGivesNothingRatherThanTheEmbeddedCopy) {
    putFile("user/Tarvelo/Audio Plug-Ins/routing-presets", "rubbish");
    EXPECT_EQ(read(global), "");
}

TEST_F(CApplicationDataTest, ABlockOfAnotherIdIsNotRead) {
    EXPECT_EQ(read(global, kOtherId), "");
}

TEST_F(CApplicationDataTest, EachStoreWritesBelowItsOwnFolder) {
    global.write("a", bytesOf("one"), kId);
    local.write("a", bytesOf("two"), kId);
    EXPECT_TRUE(std::filesystem::exists(folder + "/user/Tarvelo/Audio Plug-Ins/a"));
    EXPECT_TRUE(std::filesystem::exists(folder + "/user/Tarvelo/Audio Plug-Ins/Brindle XEQ/a"));
    CGlobalData later;
    CByteBuffer buffer;
    later.read("a", buffer, kId);
    EXPECT_EQ(textOf(buffer), "one");
}

TEST_F(CApplicationDataTest, WhatWasWrittenLastIsReadFromMemory) {
    global.write("routing-presets", bytesOf("written"), kId);
    putFile("user/Tarvelo/Audio Plug-Ins/routing-presets", block("changed outside", kId));
    EXPECT_EQ(read(global), "written");
    EXPECT_EQ(read(global, kOtherId), "") << "another id goes to the file, which has not that id";
}

TEST_F(CApplicationDataTest, WithoutFileAccessItGivesAnEmptyBuffer) {
    global.setFileAccess(false);
    EXPECT_EQ(read(global), "");
    global.write("routing-presets", bytesOf("written"), kId);
    global.setFileAccess(true);
    EXPECT_EQ(read(global), "embedded");
}

TEST_F(CApplicationDataTest, WithoutFoldersTheEmbeddedCopyStillCounts) {
    unsetenv("TARV_DATA_ROOT");
    std::string home = getenv("HOME") ? getenv("HOME") : "";
    std::string data = getenv("XDG_DATA_HOME") ? getenv("XDG_DATA_HOME") : "";
    unsetenv("HOME");
    unsetenv("XDG_DATA_HOME");
    EXPECT_EQ(read(global), "embedded");
    setenv("TARV_DATA_ROOT", folder.c_str(), 1);
    putFile("user/Tarvelo/Audio Plug-Ins/routing-presets", block("user", kId));
    EXPECT_EQ(read(global), "embedded") << "files stay out of use after the first failure";
    global.write("routing-presets", bytesOf("written"), kId);
    EXPECT_EQ(read(global), "written") << "kept in memory only";
    EXPECT_EQ(read(local), "");
    setenv("HOME", home.c_str(), 1);
    if (!data.empty()) {
        setenv("XDG_DATA_HOME", data.c_str(), 1);
    }
}

TEST_F(CApplicationDataTest, AFolderThatCannotBeMadeCostsOnlyTheFile) {
    putFile("user/Tarvelo", "a file where a folder should be");
    global.write("routing-presets", bytesOf("written"), kId);
    EXPECT_EQ(read(global), "written");
    CGlobalData later;
    EXPECT_EQ(read(later), "embedded");
}

struct CFollower {
    explicit CFollower(CApplicationData& data) : bridge(this, &CFollower::changed) {
        bridge.subscribe(data, "routing-presets");
    }
    void changed(CCheckedObject* sender) {
        CByteBuffer buffer;
        dynamic_cast<CApplicationData*>(sender)->read("routing-presets", buffer, kId);
        seen.push_back(textOf(buffer));
    }
    std::vector<std::string> seen;
    CApplicationDataBridge<CFollower> bridge;
};

TEST_F(CApplicationDataTest, AWriteNotifiesTheFollowersOfItsName) {
    CFollower first(global);
    CFollower second(global);
    CFollower stranger(local);
    global.write("routing-presets", bytesOf("new"), kId);
    global.write("another", bytesOf("x"), kId);
    EXPECT_EQ(first.seen, (std::vector<std::string>{"new"}));
    EXPECT_EQ(second.seen, (std::vector<std::string>{"new"}));
    EXPECT_TRUE(stranger.seen.empty());
}

TEST_F(CApplicationDataTest, TextsComeBackAsWrittenOrAsTheirFallback) {
    EXPECT_EQ(local.readText("ui-scale", "1.0"), "1.0");
    local.writeText("ui-scale", "1.25");
    CLocalData later;
    EXPECT_EQ(later.readText("ui-scale", "1.0"), "1.25");
    later.writeText("ui-scale", "");
    EXPECT_EQ(CLocalData().readText("ui-scale", "1.0"), "");
}

TEST_F(CApplicationDataTest, AnUpdateBeginsWithWhatAnotherProgramWrote) {
    CApplicationData data("Maker/", "AppDataGlobal_");
    CApplicationData other("Maker/", "AppDataGlobal_");
    data.write("routing-presets", bytesOf("mine"), kId);
    other.write("routing-presets", bytesOf("theirs"), kId);
    EXPECT_EQ(read(data), "mine");
    EXPECT_EQ(consumed(data.update("routing-presets", kId,
                                   [](CByteBuffer& bytes) -> CError* {
                                       bytes = bytesOf(textOf(bytes) + " and mine");
                                       return nullptr;
                                   })),
              "");
    EXPECT_EQ(read(data), "theirs and mine");
    EXPECT_EQ(read(other), "theirs");
    CByteBuffer stored;
    other.readStored("routing-presets", stored, kId);
    EXPECT_EQ(textOf(stored), "theirs and mine");
}

TEST_F(CApplicationDataTest, AnUpdateThatFailsWritesNothing) {
    CApplicationData data("Maker/", "AppDataGlobal_");
    data.write("routing-presets", bytesOf("mine"), kId);
    EXPECT_NE(consumed(data.update("routing-presets", kId,
                                   [](CByteBuffer& bytes) -> CError* {
                                       bytes = bytesOf("half");
                                       TARV_FAIL("@test no");
                                   })),
              "");
    EXPECT_EQ(read(data), "mine");
}

TEST_F(CApplicationDataTest, AnUpdateWaitsForAnotherProgramAndThenSaysSo) {
    CApplicationData data("Maker/", "AppDataGlobal_");
    data.write("routing-presets", bytesOf("mine"), kId);
    CFileLock lock;
    const std::u16string path = std::filesystem::path(folder + "/user/Maker/routing-presets.lock").u16string();
    ASSERT_EQ(lock.acquire(path.c_str(), 0), 0u);
    const std::string failure =
        consumed(data.update("routing-presets", kId, [](CByteBuffer&) -> CError* { return nullptr; }));
    EXPECT_EQ(failure.substr(0, failure.find('\r')), "The stored 'routing-presets' is in use by another program.");
}

TEST_F(CApplicationDataTest, TheEmbeddedBlockIsReadAloneWhateverIsStored) {
    CApplicationData data("Maker/", "AppDataGlobal_");
    data.write("routing-presets", bytesOf("mine"), kId);
    CByteBuffer bytes;
    data.readEmbedded("routing-presets", bytes, kId);
    EXPECT_EQ(textOf(bytes), "embedded");
}

TEST_F(CApplicationDataTest, AWriteKeepsADamagedFileAside) {
    const std::string path = "user/Tarvelo/Audio Plug-Ins/routing-presets";
    putFile(path, "rubbish");
    global.write("routing-presets", bytesOf("new"), kId);
    EXPECT_EQ(fileText(path + "-damaged"), "rubbish");
    EXPECT_EQ(fileText(path), block("new", kId));
    putFile(path, "");
    CGlobalData().write("routing-presets", bytesOf("new"), kId);
    EXPECT_EQ(fileText(path + "-damaged-2"), "") << "nothing is lost with an empty file";
}

TEST_F(CApplicationDataTest, ADamagedFileThatCannotBeKeptIsNotReplaced) {
    const std::string path = "user/Tarvelo/Audio Plug-Ins/routing-presets";
    putFile(path, "rubbish");
    putFile(path + "-damaged", "earlier");
    for (int number = 2; number <= 99; ++number) {
        putFile(path + "-damaged-" + std::to_string(number), "earlier " + std::to_string(number));
    }
    CLogCapture log;
    global.write("routing-presets", bytesOf("new"), kId);
    EXPECT_TRUE(log.has("Too many damaged copies of 'routing-presets' are kept."));
    EXPECT_EQ(fileText(path), "rubbish");
    EXPECT_EQ(fileText(path + "-damaged"), "earlier");
    EXPECT_EQ(read(global), "new") << "for this process";
}

TEST_F(CApplicationDataTest, ADamagedFileIsLogged) {
    CApplicationData data("Maker/", "AppDataGlobal_");
    putFile("user/Maker/routing-presets", "damaged");
    CLogCapture log;
    EXPECT_EQ(read(data), "");
    EXPECT_FALSE(log.lines.empty());
}

}  // namespace
}  // namespace tarv
