#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "Platform/Clock.h"
#include "Platform/Folders.h"
#include "Platform/OwnFile.h"
#include "Platform/ProcessHeap.h"
#include "Platform/ThreadId.h"
#include "Platform/WindowClass.h"

namespace tarv {
namespace {

TEST(Clock, NeverRunsBackwards) {
    double last = clockSeconds();
    for (int i = 0; i < 1000; ++i) {
        const double now = clockSeconds();
        EXPECT_GE(now, last);
        last = now;
    }
}

TEST(ThreadId, IsTheSameOnOneThreadAndDiffersBetweenTwo) {
    uint64_t other = 0;
    std::thread([&] { other = currentThreadId(); }).join();
    EXPECT_NE(currentThreadId(), 0u);
    EXPECT_EQ(currentThreadId(), currentThreadId());
    EXPECT_NE(currentThreadId(), other);
}

TEST(ProcessHeap, GivesBlocksAlsoOfSize0) {
    void* block = processHeapAlloc(0);
    EXPECT_NE(block, nullptr);
    processHeapFree(block);
    processHeapFree(nullptr);
}

TEST(Folders, AreMadeLevelByLevelAndNamesMayHoldAnyLetter) {
    const std::filesystem::path base = std::filesystem::temp_directory_path() / "tarv-folders";
    std::filesystem::remove_all(base);
    const std::u16string deep = base.u16string() + u"/Tarvelo/Audio Plug-Ins/\u0141\U0001f600";
    EXPECT_FALSE(folderExists(deep.c_str()));
    EXPECT_NE(makeFolder(deep.c_str()), 0u);
    EXPECT_EQ(makeFolders((deep + u"/").c_str()), 0u);
    EXPECT_TRUE(folderExists(deep.c_str()));
    EXPECT_TRUE(std::filesystem::is_directory(deep));
    EXPECT_EQ(makeFolders(deep.c_str()), 0u);
    const std::u16string file = deep + u"/a.bin";
    CFile writer;
    EXPECT_EQ(writer.open(file.c_str(), CFileAccess::kRewrite, {false, false}), 0u);
    EXPECT_EQ(writer.close(), 0u);
    EXPECT_NE(makeFolders((file + u"/b").c_str()), 0u);
    EXPECT_EQ(removeFile(file.c_str()), 0u);
    EXPECT_NE(removeFile(file.c_str()), 0u);
    std::filesystem::remove_all(base);
}

TEST(OwnFile, IsTheFileOfThisProgram) {
    std::u16string path;
    ASSERT_EQ(ownFilePath(path), 0u);
    const std::u16string name = path.substr(path.rfind(u'/') + 1);
    EXPECT_EQ(name.substr(0, name.find(u'.')), u"PlatformTests");
    EXPECT_TRUE(std::filesystem::is_regular_file(path)) << "it may be relative to the current folder";
}

TEST(WindowClass, ANameIsTakenUntilItIsGivenBack) {
    EXPECT_EQ(registerWindowClass(u"TarvTestClass"), 0u);
    EXPECT_NE(registerWindowClass(u"TarvTestClass"), 0u);
    EXPECT_EQ(unregisterWindowClass(u"TarvTestClass"), 0u);
    EXPECT_NE(unregisterWindowClass(u"TarvTestClass"), 0u);
    EXPECT_EQ(registerWindowClass(u"TarvTestClass"), 0u);
    EXPECT_EQ(unregisterWindowClass(u"TarvTestClass"), 0u);
}

}  // namespace
}  // namespace tarv
