#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Clock.h"
#include "Platform/EventPost.h"
#include "Platform/Folders.h"
#include "Platform/Posix/ClockByHand.h"
#include "Platform/Posix/EventQueue.h"
#include "Platform/Posix/PathText.h"

namespace tarv {
namespace {

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

}  // namespace
}  // namespace tarv
