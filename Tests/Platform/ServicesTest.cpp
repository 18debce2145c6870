#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <thread>
#include <vector>

#include "Platform/Clock.h"
#include "Platform/EventPost.h"
#include "Platform/Folders.h"
#include "Platform/ProcessHeap.h"
#include "Platform/ThreadId.h"
#include "Platform/WindowClass.h"
#ifndef _WIN32
#include "Platform/Posix/ClockByHand.h"
#include "Platform/Posix/EventQueue.h"
#include "Platform/Posix/PathText.h"
#endif

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

TEST(WindowClass, ANameIsTakenUntilItIsGivenBack) {
    EXPECT_EQ(registerWindowClass(u"TarvTestClass"), 0u);
    EXPECT_NE(registerWindowClass(u"TarvTestClass"), 0u);
    EXPECT_EQ(unregisterWindowClass(u"TarvTestClass"), 0u);
    EXPECT_NE(unregisterWindowClass(u"TarvTestClass"), 0u);
    EXPECT_EQ(registerWindowClass(u"TarvTestClass"), 0u);
    EXPECT_EQ(unregisterWindowClass(u"TarvTestClass"), 0u);
}

#ifndef _WIN32

/// Sets a variable of the environment for a scope.
class CVariable {
public:
    CVariable(const char* name, const char* value) : name_(name) {
        const char* before = std::getenv(name);
        hadValue_ = before != nullptr;
        before_ = before ? before : "";
        value ? setenv(name, value, 1) : unsetenv(name);
    }
    ~CVariable() { hadValue_ ? setenv(name_, before_.c_str(), 1) : unsetenv(name_); }

private:
    const char* name_;
    std::string before_;
    bool hadValue_;
};

TEST(Folders, DataRootsFollowTheEnvironment) {
    struct CCase {
        const char *forced, *data, *home;
        CDataRoot root;
        const char16_t* path;
    };
    constexpr CCase kCases[] = {
        {"/x/", "/data", "/home/me", CDataRoot::kUser, u"/x//user"},
        {"/x", "/data", "/home/me", CDataRoot::kCommon, u"/x/common"},
        {nullptr, "/data/", "/home/me", CDataRoot::kUser, u"/data"},
        {nullptr, "relative", "/home/me", CDataRoot::kUser, u"/home/me/.local/share"},
        {nullptr, nullptr, "/home/me", CDataRoot::kUser, u"/home/me/.local/share"},
        {nullptr, nullptr, nullptr, CDataRoot::kCommon, u"/var/lib"},
    };
    for (const CCase& c : kCases) {
        const CVariable forced("TARV_DATA_ROOT", c.forced);
        const CVariable data("XDG_DATA_HOME", c.data);
        const CVariable home("HOME", c.home);
        std::u16string path;
        EXPECT_EQ(dataRootPath(c.root, path), 0u);
        EXPECT_EQ(path, c.path);
    }
    const CVariable forced("TARV_DATA_ROOT", nullptr);
    const CVariable data("XDG_DATA_HOME", nullptr);
    const CVariable home("HOME", nullptr);
    std::u16string path;
    EXPECT_NE(dataRootPath(CDataRoot::kUser, path), 0u);
}

TEST(PathText, GoesToUtf8AndBack) {
    EXPECT_EQ(pathToUtf8(u"a\\b/\u00e4\u20ac\U0001f600"), "a/b/\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80");
    EXPECT_EQ(pathToUtf16("b/\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80"), u"b/\u00e4\u20ac\U0001f600");
    EXPECT_EQ(pathToUtf16("a\xff\xe2\x82"), u"a\ufffd\ufffd");
}

TEST(Clock, FollowsTheHandThatDrivesIt) {
    setClockByHand(12.5);
    EXPECT_EQ(clockSeconds(), 12.5);
    releaseClock();
    EXPECT_NE(clockSeconds(), 12.5);
}

using CCookies = std::vector<uintptr_t>;

void noteCookie(void* user, uintptr_t cookie) {
    static_cast<CCookies*>(user)->push_back(cookie);
}

TEST(EventPost, ArrivesInOrderWhenPumpedOnTheThreadOfTheWindow) {
    CCookies cookies;
    CEventWindow window = 0;
    EXPECT_EQ(openEventWindow(&noteCookie, &cookies, window), 0u);
    std::thread([&] {
        EXPECT_EQ(postEvent(window, 1), 0u);
        EXPECT_EQ(postEvent(window, 2), 0u);
        EXPECT_EQ(pumpEvents(), 0) << "another thread's window";
    }).join();
    EXPECT_TRUE(cookies.empty());
    EXPECT_EQ(pumpEvents(), 2);
    EXPECT_EQ(cookies, (CCookies{1, 2}));
    closeEventWindow(window);
}

TEST(EventPost, DropsWhatWaitsForAClosedWindow) {
    CCookies cookies;
    CEventWindow window = 0;
    EXPECT_EQ(openEventWindow(&noteCookie, &cookies, window), 0u);
    EXPECT_EQ(postEvent(window, 1), 0u);
    closeEventWindow(window);
    EXPECT_EQ(pumpEvents(), 0);
    EXPECT_NE(postEvent(window, 2), 0u);
    EXPECT_NE(postEvent(0, 2), 0u);
}

TEST(EventPost, AHandlerMayPostAndClose) {
    struct CState {
        CEventWindow window = 0;
        int calls = 0;
    } state;
    const CEventHandler handler = [](void* user, uintptr_t cookie) {
        auto* self = static_cast<CState*>(user);
        ++self->calls;
        if (cookie == 0) {
            EXPECT_EQ(postEvent(self->window, 1), 0u);
        } else {
            closeEventWindow(self->window);
        }
    };
    EXPECT_EQ(openEventWindow(handler, &state, state.window), 0u);
    EXPECT_EQ(postEvent(state.window, 0), 0u);
    EXPECT_EQ(pumpEvents(), 2);
    EXPECT_EQ(state.calls, 2);
}

#endif

}  // namespace
}  // namespace tarv
